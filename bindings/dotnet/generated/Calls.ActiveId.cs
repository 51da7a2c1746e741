// Made by bindings/describe/describe; renew it with its option --renew.
using System;

namespace Tavlyn
{
    public static partial class Calls
    {
        /// <summary>Reads the ID of the card, up to 8 bytes of it.</summary>
        /// <param name="buffer">Receives the ID, lowest bits first.</param>
        /// <param name="length">Room in buffer in bytes, of which up to 32 are used.</param>
        /// <returns>Number of bits of the ID.</returns>
        public static ushort GetActiveID(byte[] buffer, short length)
        {
            Loading.Require();
            Handing.CheckRoom(buffer, length, "buffer");
            return Native.GetActiveID(buffer, length);
        }

        /// <summary>Reads the ID of the card, up to 32 bytes of it.</summary>
        /// <param name="buffer">Receives the ID, lowest bits first.</param>
        /// <param name="length">Room in buffer in bytes, of which up to 32 are used.</param>
        /// <returns>As for GetActiveID().</returns>
        public static ushort GetActiveID32(byte[] buffer, short length)
        {
            Loading.Require();
            Handing.CheckRoom(buffer, length, "buffer");
            return Native.GetActiveID32(buffer, length);
        }

        /// <summary>GetActiveID() for callers that cannot pass a buffer: getActiveID_byte() returns the
        /// bytes.</summary>
        /// <param name="bytes">How many bytes to fetch, 0 to 32.</param>
        /// <returns>What GetActiveID() returns.</returns>
        public static ushort getActiveID(ushort bytes)
        {
            Loading.Require();
            return Native.getActiveID(bytes);
        }

        /// <summary>GetActiveID32() for callers that cannot pass a buffer: getActiveID_byte() returns the
        /// bytes.</summary>
        /// <param name="bytes">How many bytes to fetch, 0 to 32.</param>
        /// <returns>What GetActiveID32() returns.</returns>
        public static ushort getActiveID32(ushort bytes)
        {
            Loading.Require();
            return Native.getActiveID32(bytes);
        }

        /// <summary>Returns one byte of the ID that was read last, on whichever device.</summary>
        /// <param name="index">Position of the byte, 0 to 31.</param>
        /// <returns>The byte.</returns>
        public static byte getActiveID_byte(short index)
        {
            Loading.Require();
            return Native.getActiveID_byte(index);
        }

        /// <summary>Fetches forty bytes of data of the card on the reader, for getActiveCardData_byte() to
        /// return.</summary>
        /// <returns>1, or 0 with TAVLYN_ERR_COMMAND added to the error word after a failed exchange.</returns>
        public static uint getActiveCardData()
        {
            Loading.Require();
            return Native.getActiveCardData();
        }

        /// <summary>Returns one byte of the data that getActiveCardData() fetched last.</summary>
        /// <param name="index">Position of the byte, 0 to 255.</param>
        /// <returns>The byte.</returns>
        public static uint getActiveCardData_byte(ushort index)
        {
            Loading.Require();
            return Native.getActiveCardData_byte(index);
        }
    }
}
