using System;
using System.Runtime.InteropServices;
using System.Text;

namespace Tavlyn
{
    // How texts and buffers pass between this assembly and the library.
    internal static class Handing
    {
        internal static readonly bool IsUnix = Environment.OSVersion.Platform == PlatformID.Unix;

        [DllImport("libc", EntryPoint = "free", CallingConvention = CallingConvention.Cdecl)]
        private static extern void FreeOnUnix(IntPtr memory);

        [DllImport("msvcrt", EntryPoint = "free", CallingConvention = CallingConvention.Cdecl)]
        private static extern void FreeOnWindows(IntPtr memory);

        // Null for a null pointer. Bytes that are no text become replacement characters.
        internal static string Text(IntPtr text)
        {
            if (text == IntPtr.Zero) return null;
            if (!IsUnix) return Marshal.PtrToStringAnsi(text);
            int length = 0;
            while (Marshal.ReadByte(text, length) != 0) ++length;
            return Encoding.UTF8.GetString(Bytes(text, length));
        }

        // Null for a null pointer.
        internal static byte[] Bytes(IntPtr from, int length)
        {
            if (from == IntPtr.Zero) return null;
            var bytes = new byte[length];
            Marshal.Copy(from, bytes, 0, length);
            return bytes;
        }

        // Of an array that belongs to the caller.
        internal static byte[] OwnBytes(IntPtr from, int length)
        {
            byte[] bytes = Bytes(from, length);
            Free(from);
            return bytes;
        }

        // Null for a null pointer; the array belonged to the caller.
        internal static T[] OwnRecords<T>(IntPtr from, uint count)
        {
            if (from == IntPtr.Zero) return null;
            var records = new T[count];
            for (int at = 0; at < records.Length; ++at)
                records[at] = (T)Marshal.PtrToStructure(IntPtr.Add(from, at * Marshal.SizeOf(typeof(T))), typeof(T));
            Free(from);
            return records;
        }

        // The library takes its memory from the C runtime.
        private static void Free(IntPtr memory)
        {
            if (IsUnix) FreeOnUnix(memory);
            else FreeOnWindows(memory);
        }

        // Of a narrow string that fills its room or ends before.
        internal static string Text(byte[] room)
        {
            int end = Array.IndexOf(room, (byte)0);
            Encoding encoding = IsUnix ? Encoding.UTF8 : Encoding.Default;
            return encoding.GetString(room, 0, end < 0 ? room.Length : end);
        }

        // The library would go beyond an array that is shorter than it was told.
        internal static void CheckRoom(Array buffer, long length, string name)
        {
            if (buffer != null && buffer.Length < length)
                throw new ArgumentException("it has room for " + buffer.Length + " of " + length, name);
        }

        // Of bytes that stand for a text.
        internal static void CheckTerminated(byte[] text, string name)
        {
            if (text != null && Array.IndexOf(text, (byte)0) < 0)
                throw new ArgumentException("it needs a terminating zero", name);
        }
    }
}
