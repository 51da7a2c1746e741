// Made by bindings/describe/describe; renew it with its option --renew.
using System;

namespace Tavlyn
{
    public static partial class Calls
    {
        /// <summary>Fetches an ID that was read while nobody polled, for GetQueuedID_index() to return.</summary>
        /// <param name="first">An option that is passed on to the reader.</param>
        /// <param name="second">Another such option, on when not 0.</param>
        /// <returns>1, or 0 when a page could not be fetched, which adds TAVLYN_ERR_COMMAND and leaves the record
        /// partly filled.</returns>
        public static uint GetQueuedID(ushort first, short second)
        {
            Loading.Require();
            return Native.GetQueuedID(first, second);
        }

        /// <summary>Returns a part of the record that GetQueuedID() has fetched.</summary>
        /// <param name="index">0 to 35: 0 to 31 a byte of the ID, 32 a word (sign-extended from 16 bits), 33 a word,
        /// 34 and 35 a byte.</param>
        /// <returns>That part.</returns>
        public static uint GetQueuedID_index(short index)
        {
            Loading.Require();
            return Native.GetQueuedID_index(index);
        }

        /// <summary>Stores a byte of the raw command, or sends it and fetches the reply.</summary>
        /// <param name="index">0 to 9: 1 to 8 are the bytes of the command.</param>
        /// <param name="value">The byte, 0 to 255.</param>
        /// <returns>For an index that only stores, 1.</returns>
        public static uint SetRawPayload_index(short index, byte value)
        {
            Loading.Require();
            return Native.SetRawPayload_index(index, value);
        }

        /// <summary>Returns a byte of the raw reply.</summary>
        /// <param name="index">Position of the byte, 0 to 9.</param>
        /// <returns>The byte.</returns>
        public static byte GetRawPayload_index(ushort index)
        {
            Loading.Require();
            return Native.GetRawPayload_index(index);
        }

        /// <summary>Sends eight bytes as positions 1 to 8 of the raw command and returns the reply as text.</summary>
        /// <param name="c0">Byte at position 1, 0 to 255.</param>
        /// <param name="c1">Byte at position 2, 0 to 255.</param>
        /// <param name="c2">Byte at position 3, 0 to 255.</param>
        /// <param name="c3">Byte at position 4, 0 to 255.</param>
        /// <param name="c4">Byte at position 5, 0 to 255.</param>
        /// <param name="c5">Byte at position 6, 0 to 255.</param>
        /// <param name="c6">Byte at position 7, 0 to 255.</param>
        /// <param name="c7">Byte at position 8, 0 to 255.</param>
        /// <returns>Positions 1 to 8 of the reply, as in "01.00.31.74.00.00.00.00", valid until the next
        /// call.</returns>
        public static string SetRawPayload(byte c0, byte c1, byte c2, byte c3, byte c4, byte c5, byte c6, byte c7)
        {
            Loading.Require();
            return Handing.Text(Native.SetRawPayload(c0, c1, c2, c3, c4, c5, c6, c7));
        }
    }
}
