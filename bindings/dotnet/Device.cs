using System;
using System.IO;
using System.Threading;

namespace Tavlyn
{
    /// <summary>An open device, from Connect to Dispose. Any thread may use it: the library serves one at a time, and
    /// every operation waits for its turn.</summary>
    public abstract class Device : IDisposable
    {
        private const int WordsPerReply = 8;
        private const int NameRoom = 512;

        private readonly int index;
        private bool closed;
        private int used;  // when

        internal Device(Search search, Product product)
        {
            Product = product;
            index = Session.Open(search ?? new Search(), product);
            used = Environment.TickCount;
        }

        /// <summary>What it is.</summary>
        public Product Product { get; private set; }

        /// <summary>Serial number, which only readers have; else null. The reader is asked.</summary>
        public string SerialNumber
        {
            get { return Do(Session.SerialNumber); }
        }

        /// <summary>Logical unit ID.</summary>
        public int Luid
        {
            get { return Do(() => (int)Calls.GetLUID()); }
        }

        /// <summary>Part number; null for a device that has none.</summary>
        public string PartNumber
        {
            get { return Product == Product.Sonar ? null : Do(() => NullIfEmpty(Calls.getPartNumberString())); }
        }

        /// <summary>Firmware version: a reader's as text, of the others four hexadecimal digits.</summary>
        public string Firmware
        {
            get
            {
                if (Product == Product.Reader) return Do(() => NullIfEmpty(Calls.GetFullFWVersion()));
                return Do(() => Calls.GetFirmwareVersion(0, 1).ToString("X4"));
            }
        }

        /// <summary>Path or name under which the system knows it.</summary>
        public string Path
        {
            get { return Do(DevicePath); }
        }

        /// <summary>Beeps now: 1 to 5 times, or once or twice at length.</summary>
        public void Beep(int count = 1, bool isLong = false)
        {
            Ranges.Check(count, 1, isLong ? 2 : 5, "count");
            Require(() => Calls.BeepNow((byte)count, (short)(isLong ? 1 : 0)), "the beep");
        }

        /// <summary>Sends a command of up to eight bytes and returns the eight bytes of the reply.</summary>
        public byte[] Command(params byte[] command)
        {
            if (command == null || command.Length == 0 || command.Length > WordsPerReply)
                throw new ArgumentException("a command has one to eight bytes", "command");
            return Do(() => Exchange(command));
        }

        internal void ReadConfig()
        {
            Require(Calls.ReadCfg, "the read of the configuration");
        }

        internal void WriteConfig()
        {
            Require(Calls.WriteCfg, "the write of the configuration");
        }

        /// <summary>Saves the configuration as a text file.</summary>
        public void Save(string path)
        {
            RequireFile(() => Calls.WriteDevCfgToFile(path), FileAccess.Write, path);
        }

        /// <summary>Loads a file that Save wrote, and writes it to the device.</summary>
        public void Load(string path)
        {
            // A reader has it by the load.
            RequireFile(() => Calls.ReadDevCfgFmFile(path) != 1 ? 0 : Product == Product.Reader ? 1 : Calls.WriteCfg(),
                FileAccess.Read, path);
        }

        /// <summary>Makes the device the active one, calls, and lets no other thread come between.</summary>
        public T Do<T>(Func<T> calls)
        {
            lock (Session.Gate)
            {
                if (closed) throw new ObjectDisposedException(GetType().Name);
                Calls.SetActDev((short)index);
                try
                {
                    return calls();
                }
                finally
                {
                    used = Environment.TickCount;
                }
            }
        }

        /// <summary>Closes it. The last device that closes ends the connection of the process.</summary>
        public void Dispose()
        {
            StopEvents();
            lock (Session.Gate)
            {
                if (closed) return;
                closed = true;
                Session.Close();
            }
        }

        // Waits until the device was left alone for so long; in a turn, so that it stays alone.
        internal void Rest(int milliseconds)
        {
            int left = unchecked(used + milliseconds - Environment.TickCount);
            if (left > 0) Thread.Sleep(left);
        }

        internal virtual void StopEvents()
        {
        }

        // Most calls return 1 for success and have their reason in the error word.
        internal void Require(Func<uint> call, string what)
        {
            Do(() =>
            {
                if (call() != 1) throw Failed(what);
                return true;
            });
        }

        internal static TavlynException Failed(string what)
        {
            return new TavlynException(what + " failed", Calls.GetLastLibErr());
        }

        // Some calls leave the error word of an earlier one alone.
        internal void RequireFile(Func<uint> call, FileAccess access, string path)
        {
            if (path == null) throw new ArgumentNullException("path");
            Do(() =>
            {
                ClearErrorWord();
                if (call() == 1) return true;
                string what = access == FileAccess.Write ? "the save of " : "the load of ";
                throw new TavlynException(what + path + " failed", Calls.GetLastLibErr(), Refusal(path, access));
            });
        }

        // The library does not tell why the system opens no file; null if the system opens it.
        private static Exception Refusal(string path, FileAccess access)
        {
            bool isNew = access == FileAccess.Write && !File.Exists(path);
            try
            {
                new FileStream(path, isNew ? FileMode.CreateNew : FileMode.Open, access, FileShare.ReadWrite).Dispose();
                if (isNew) File.Delete(path);
                return null;
            }
            catch (Exception reason) when (reason is IOException || reason is UnauthorizedAccessException
                || reason is ArgumentException || reason is NotSupportedException)
            {
                return reason;
            }
        }

        // Of the active device, by a call that does nothing else.
        internal abstract void ClearErrorWord();

        internal static string NullIfEmpty(string text)
        {
            return string.IsNullOrEmpty(text) ? null : text;
        }

        private static string DevicePath()
        {
            var name = new byte[NameRoom];
            Calls.GetDevName(name);
            return Handing.Text(name);
        }

        private byte[] Exchange(byte[] command)
        {
            ClearErrorWord();
            Calls.SetRawPayload_index(0, 0);
            uint answered = 0;
            for (int at = 0; at < WordsPerReply; ++at)
                answered = Calls.SetRawPayload_index((short)(at + 1), at < command.Length ? command[at] : (byte)0);
            if (answered != 1 || Calls.GetLastLibErr() != 0) throw Failed("the command");
            // Over a serial link the reply begins where reports have their ID.
            int first = Calls.GetDevType() == 1 ? 0 : 1;
            var reply = new byte[WordsPerReply];
            for (int at = 0; at < reply.Length; ++at) reply[at] = Calls.GetRawPayload_index((ushort)(first + at));
            return reply;
        }
    }
}
