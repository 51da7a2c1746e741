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
