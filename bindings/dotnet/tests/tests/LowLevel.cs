using System;
using System.Collections.Generic;
using System.IO;
using System.Reflection;
using System.Runtime.InteropServices;
using System.Text;

namespace Tavlyn.Tests
{
    // What passes between the assembly and the library.
    internal static class LowLevel
    {
        internal static readonly Test[] Tests =
        {
            new Test("a buffer that is too short is refused", null, ShortBuffers),
            new Test("a null pointer is handed over", null, NullPointers),
            new Test("a library that is missing is told", "", NoLibrary),
            new Test("a path is any text, or any bytes", "", Paths),
            new Test("the trace reaches a function that is kept", "", Trace),
            new Test("what the caller owns is copied and freed", "--do \"sample 0001:01020303:26\"", Owned)
        };

        private static void Connect()
        {
            Calls.SetDevTypeSrch(0);
            Check.Equal(1u, Calls.usbConnect());
        }

        private static void ShortBuffers()
        {
            Check.Throws<ArgumentException>(() => Calls.GetActiveID32(new byte[31], 32));
            Check.Throws<ArgumentException>(() => Calls.GetDevName(new byte[100]));
            Check.Throws<ArgumentException>(() => Calls.ReadSecureData(new byte[4], new byte[255]));
            Check.Throws<ArgumentException>(() => Calls.SetHashKeyData(new byte[31]));
            Check.Throws<ArgumentException>(() => Calls.GetObjRangeInfo(new ushort[4]));
            Check.Throws<ArgumentException>(() => Calls.WriteSerialPort(new byte[3], 4));
            Check.Throws<ArgumentException>(() => Calls.WriteDevCfgToFile(new byte[] { 65, 66 }));
            // A negative length counts as 0.
            Check.Equal((ushort)0, Calls.GetActiveID(new byte[0], -1));
        }

        private static void NullPointers()
        {
            Check.Equal(0u, Calls.GetFlags(IntPtr.Zero));
            Check.Equal(1u, Calls.GetLibVersion(IntPtr.Zero, IntPtr.Zero, IntPtr.Zero));
            Check.Equal(0u, Calls.WriteDevCfgToFile((string)null));
            Check.Equal((ushort)0, Calls.GetActiveID32(null, 32));
            Check.Equal(null, Calls.GetFWFilename());
            Check.Equal(null, Calls.sorbaneGetTrackData(1, 0));
            Check.Equal("", Calls.getLibraryVersion_Beta());
            ushort major, minor, build;
            Check.Equal(1u, Calls.GetLibVersion(out major, out minor, out build));
            Check.Equal(Calls.getLibraryVersion_Major(), major);
            Check.Equal(Calls.getLibraryVersion_Build(), build);
        }

        private static void Paths()
        {
            Connect();
            Check.Equal(1u, Calls.WriteDevCfgToFile("Türschloß €.hwg"));
            Check.Equal(true, File.Exists("Türschloß €.hwg"));
            Check.Equal(1u, Calls.CheckTamperedFile("Türschloß €.hwg", 0) == 0 ? 1u : 0u);
            byte[] path = { (byte)'n', 0xFF, (byte)'.', (byte)'h', 0 };
            Check.Equal(1u, Calls.WriteDevCfgToFile(path));
            Check.Equal(1u, Calls.ReadDevCfgFmFile(path));
        }

        // A second copy of the assembly, which is sent to a file that does not exist.
        private static void NoLibrary()
        {
            string first = typeof(Calls).Assembly.Location;
            string folder = Directory.CreateDirectory("alone").FullName;
            string copy = Path.Combine(folder, Path.GetFileName(first));
            File.Copy(first, copy, true);
            File.WriteAllText(copy + ".config", File.ReadAllText(first + ".config").Replace("libtavlynapi", "missing"));
            Assembly assembly = Assembly.LoadFile(copy);
            foreach (string name in new[] { "Reader.Connect", "Calls.GetLastLibErr" })
            {
                string[] names = name.Split('.');
                MethodInfo call = assembly.GetType("Tavlyn." + names[0]).GetMethod(names[1]);
                var thrown = Check.Throws<TargetInvocationException>(
                    () => call.Invoke(null, new object[call.GetParameters().Length]));
                Exception reason = thrown.InnerException;
                Check.Equal("Tavlyn.LibraryException", reason.GetType().FullName);
                Check.Equal("Tavlyn.TavlynException", reason.GetType().BaseType.FullName);
                Check.Has("Install tavlynapi (" + 8 * IntPtr.Size + " bits), or put", reason.Message);
            }
        }

        private static void Trace()
        {
            var lines = new List<string>();
            Check.Equal(1u, Listen(lines));
            GC.Collect();
            GC.WaitForPendingFinalizers();
            Connect();
            Check.Equal(1u, Calls.SetMarkerFunction(null));
            Check.Equal(true, lines.Exists(one => one.Contains("USBConnect") && one.EndsWith("\n")));
        }

        // In a function of its own, so that nothing here holds the delegate.
        private static uint Listen(List<string> lines)
        {
            return Calls.SetMarkerFunction((line, length) =>
            {
                var bytes = new byte[length];
                Marshal.Copy(line, bytes, 0, bytes.Length);
                lines.Add(Encoding.UTF8.GetString(bytes));
            });
        }

        private static void Owned()
        {
            Connect();
            Check.Equal(8, Calls.InstalledHardware().Length);
            Check.Equal(32, Calls.getESN().Length);
            Calls.GetCardAnalyzerStatus();
            Check.Equal(1u, Calls.GetCardCount());
            CardAnalyzerRecord record = Calls.GetCardAnalyzerData()[0];
            Check.Equal(1u, record.RecType);
            Check.Equal(26u, record.BitCount);
            Check.Equal((byte)1, record.CardBits[31]);
        }
    }
}
