using System;

namespace Tavlyn
{
    /// <summary>An operation failed.</summary>
    public class TavlynException : Exception
    {
        internal TavlynException(string what, uint word, Exception reason = null)
            : base(Told(what, word, reason), reason)
        {
            Word = word;
            Text = ErrorText.Of(word);
        }

        internal TavlynException(string message, Exception reason = null) : base(message, reason)
        {
            Text = message;
        }

        private static string Told(string what, uint word, Exception reason)
        {
            string told = reason == null ? what : what + ": " + reason.Message;
            bool isAll = reason != null && word == 0;
            return isAll ? told : told + ", error word 0x" + word.ToString("X") + ": " + ErrorText.Of(word);
        }

        /// <summary>The library's error word; 0 when it names no reason.</summary>
        public uint Word { get; private set; }

        /// <summary>The error word in words.</summary>
        public string Text { get; private set; }
    }

    /// <summary>The library is not there, or is not the one that this process needs.</summary>
    public class LibraryException : TavlynException
    {
        internal LibraryException(string message, Exception reason) : base(message, reason)
        {
        }
    }

    /// <summary>No device answered, or none of the name that was asked for.</summary>
    public class NoDeviceException : TavlynException
    {
        internal NoDeviceException(string message) : base(message)
        {
        }
    }

    /// <summary>Several devices have the serial number or the LUID.</summary>
    public class SeveralDevicesException : TavlynException
    {
        internal SeveralDevicesException(string message) : base(message)
        {
        }
    }
}
