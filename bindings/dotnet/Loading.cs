using System;
using System.Reflection;
using System.Runtime.InteropServices;

namespace Tavlyn
{
    // The native library's file. Every runtime looks for "tavlynapi" as tavlynapi.dll or libtavlynapi.so, but an
    // installed library is only libtavlynapi.so.7. Mono learns that from Tavlynapi.dll.config; .NET asks here. Its
    // NativeLibrary came with .NET Core 3.0 and is not part of netstandard2.0.
    internal static class Loading
    {
        private delegate bool TryLoad(string name, Assembly assembly, DllImportSearchPath? path, out IntPtr library);

        private static TryLoad tryLoad;

        private static volatile bool isLoaded;

        // Before any call: the runtime loads the library at the first one.
        internal static void Require()
        {
            if (isLoaded) return;
            try
            {
                ushort major, minor, build;
                Native.GetLibVersion(out major, out minor, out build);
                isLoaded = true;
            }
            catch (DllNotFoundException reason)
            {
                throw new LibraryException("the library " + File + " could not be loaded. " + Remedy + " ("
                    + reason.Message + ")", reason);
            }
            catch (BadImageFormatException reason)
            {
                throw new LibraryException(File + " is not for programs of " + Bits + ". " + Remedy, reason);
            }
            catch (EntryPointNotFoundException reason)
            {
                throw new LibraryException(File + " is not the library of the readers. " + Remedy, reason);
            }
        }

        private static string File
        {
            get { return Handing.IsUnix ? Native.Versioned : Native.Library + ".dll"; }
        }

        private static string Bits
        {
            get { return 8 * IntPtr.Size + " bits"; }
        }

        private static string Remedy
        {
            get
            {
                string beside = Handing.IsUnix ? "; Mono needs Tavlynapi.dll.config there, too" : "";
                return "Install tavlynapi (" + Bits + "), or put " + File + " beside Tavlynapi.dll" + beside;
            }
        }

        internal static void Prepare()
        {
            Assembly runtime = typeof(Marshal).Assembly;
            Type library = runtime.GetType("System.Runtime.InteropServices.NativeLibrary");
            Type resolver = runtime.GetType("System.Runtime.InteropServices.DllImportResolver");
            if (!Handing.IsUnix || library == null || resolver == null) return;
            tryLoad = (TryLoad)Delegate.CreateDelegate(typeof(TryLoad), library.GetMethod("TryLoad", new[]
            {
                typeof(string), typeof(Assembly), typeof(DllImportSearchPath?), typeof(IntPtr).MakeByRefType()
            }));
            MethodInfo resolve = typeof(Loading).GetMethod("Resolve", BindingFlags.Static | BindingFlags.NonPublic);
            library.GetMethod("SetDllImportResolver").Invoke(null,
                new object[] { typeof(Loading).Assembly, Delegate.CreateDelegate(resolver, resolve) });
        }

        // Zero for whatever the runtime finds by itself.
        private static IntPtr Resolve(string name, Assembly assembly, DllImportSearchPath? path)
        {
            IntPtr library = IntPtr.Zero;
            if (name == Native.Library && !tryLoad(name, assembly, path, out library))
                tryLoad(Native.Versioned, assembly, path, out library);
            return library;
        }
    }
}
