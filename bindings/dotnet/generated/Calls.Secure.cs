// Made by bindings/describe/describe; renew it with its option --renew.
using System;

namespace Tavlyn
{
    public static partial class Calls
    {
        /// <summary>Writes one item.</summary>
        /// <param name="item">Header and payload.</param>
        /// <param name="length">Number of bytes of both, 4 to 259.</param>
        /// <returns>1 when the reader was told to keep the item.</returns>
        public static uint WriteSecureData(byte[] item, uint length)
        {
            Loading.Require();
            Handing.CheckRoom(item, length, "item");
            return Native.WriteSecureData(item, length);
        }

        /// <summary>Reads the payload of an item.</summary>
        /// <param name="header">The four bytes that select the item.</param>
        /// <param name="out">Receives the payload.</param>
        /// <returns>1 as soon as the reader has repeated the header, whatever came after it.</returns>
        public static uint ReadSecureData(byte[] header, byte[] @out)
        {
            Loading.Require();
            Handing.CheckRoom(header, 4, "header");
            Handing.CheckRoom(@out, 256, "out");
            return Native.ReadSecureData(header, @out);
        }

        /// <summary>Tests a key-load ini file as CheckTamperedFile() of kind 2 does (which finds accidents, not
        /// intent), and writes its items as WriteSecureData() does.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>1 when the last item was written.</returns>
        public static uint LoadIniFile(string path)
        {
            Loading.Require();
            return Native.LoadIniFile(path);
        }

        /// <summary>Tests a key-load ini file as CheckTamperedFile() of kind 2 does (which finds accidents, not
        /// intent), and writes its items as WriteSecureData() does.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>1 when the last item was written.</returns>
        public static uint LoadIniFile(byte[] path)
        {
            Loading.Require();
            Handing.CheckTerminated(path, "path");
            return Native.LoadIniFile(path);
        }

        /// <summary>Stores bytes as a reference to an EV1 file.</summary>
        /// <param name="data">The bytes.</param>
        /// <param name="length">Their number, at most 512.</param>
        /// <returns>1.</returns>
        public static uint WriteEV1FileRefrence(byte[] data, uint length)
        {
            Loading.Require();
            Handing.CheckRoom(data, length, "data");
            return Native.WriteEV1FileRefrence(data, length);
        }

        /// <summary>Stores bytes as a reference to a key of the secure element.</summary>
        /// <param name="data">The bytes.</param>
        /// <param name="length">Their number, at most 512.</param>
        /// <param name="slot">Number of the slot, 0 to 255.</param>
        /// <returns>As for WriteEV1FileRefrence().</returns>
        public static uint WriteSEKeyRefrence(byte[] data, uint length, byte slot)
        {
            Loading.Require();
            Handing.CheckRoom(data, length, "data");
            return Native.WriteSEKeyRefrence(data, length, slot);
        }

        /// <summary>Stores two hash keys for the active configuration.</summary>
        /// <param name="data">32 bytes, two keys of 16.</param>
        /// <returns>1.</returns>
        public static uint SetHashKeyData(byte[] data)
        {
            Loading.Require();
            Handing.CheckRoom(data, 32, "data");
            return Native.SetHashKeyData(data);
        }

        /// <summary>Tells whether security is enhanced.</summary>
        /// <returns>0x80 when it is, 0 when it is not.</returns>
        public static uint GetEnhanceSecurityFlag()
        {
            Loading.Require();
            return Native.GetEnhanceSecurityFlag();
        }

        /// <summary>Chooses whether security is enhanced.</summary>
        /// <param name="on">0 for off, any other value for on.</param>
        public static void SetEnhanceSecurityFlag(uint on)
        {
            Loading.Require();
            Native.SetEnhanceSecurityFlag(on);
        }

        /// <summary>Saves the 384 bytes of data that the reader keeps for its BLE radio as a text file.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>1, also when no card reader is active and nothing was saved, and when the disk was full or a read
        /// failed, which adds TAVLYN_ERR_BLE_READ.</returns>
        public static uint WriteBLEDataToFile(string path)
        {
            Loading.Require();
            return Native.WriteBLEDataToFile(path);
        }

        /// <summary>Saves the 384 bytes of data that the reader keeps for its BLE radio as a text file.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>1, also when no card reader is active and nothing was saved, and when the disk was full or a read
        /// failed, which adds TAVLYN_ERR_BLE_READ.</returns>
        public static uint WriteBLEDataToFile(byte[] path)
        {
            Loading.Require();
            Handing.CheckTerminated(path, "path");
            return Native.WriteBLEDataToFile(path);
        }

        /// <summary>Saves the 128 bytes of key that the reader keeps for its BLE radio, as WriteBLEDataToFile() does
        /// the data.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>As for WriteBLEDataToFile().</returns>
        public static uint WriteBLEKeyToFile(string path)
        {
            Loading.Require();
            return Native.WriteBLEKeyToFile(path);
        }

        /// <summary>Saves the 128 bytes of key that the reader keeps for its BLE radio, as WriteBLEDataToFile() does
        /// the data.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>As for WriteBLEDataToFile().</returns>
        public static uint WriteBLEKeyToFile(byte[] path)
        {
            Loading.Require();
            Handing.CheckTerminated(path, "path");
            return Native.WriteBLEKeyToFile(path);
        }

        /// <summary>Loads a file of WriteBLEDataToFile() into the reader.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>1, also when no card reader is active and nothing was loaded.</returns>
        public static uint WriteBLEDataToReader(string path)
        {
            Loading.Require();
            return Native.WriteBLEDataToReader(path);
        }

        /// <summary>Loads a file of WriteBLEDataToFile() into the reader.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>1, also when no card reader is active and nothing was loaded.</returns>
        public static uint WriteBLEDataToReader(byte[] path)
        {
            Loading.Require();
            Handing.CheckTerminated(path, "path");
            return Native.WriteBLEDataToReader(path);
        }

        /// <summary>Loads a file of WriteBLEKeyToFile() into the reader, as WriteBLEDataToReader() does the
        /// data.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>As for WriteBLEDataToReader().</returns>
        public static uint WriteBLEKeyToReader(string path)
        {
            Loading.Require();
            return Native.WriteBLEKeyToReader(path);
        }

        /// <summary>Loads a file of WriteBLEKeyToFile() into the reader, as WriteBLEDataToReader() does the
        /// data.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>As for WriteBLEDataToReader().</returns>
        public static uint WriteBLEKeyToReader(byte[] path)
        {
            Loading.Require();
            Handing.CheckTerminated(path, "path");
            return Native.WriteBLEKeyToReader(path);
        }
    }
}
