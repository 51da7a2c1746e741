// Made by bindings/describe/describe; renew it with its option --renew.
using System;

namespace Tavlyn
{
    public static partial class Calls
    {
        /// <summary>Reads every configuration from the device and saves it as a template file, replacing what was
        /// there.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>1, also when the disk was full and the file is cut.</returns>
        public static uint WriteDevCfgToFile(string path)
        {
            Loading.Require();
            return Native.WriteDevCfgToFile(path);
        }

        /// <summary>Reads every configuration from the device and saves it as a template file, replacing what was
        /// there.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>1, also when the disk was full and the file is cut.</returns>
        public static uint WriteDevCfgToFile(byte[] path)
        {
            Loading.Require();
            Handing.CheckTerminated(path, "path");
            return Native.WriteDevCfgToFile(path);
        }

        /// <summary>Loads a template file: records that differ go through the record sets, then WriteCfg() sends
        /// them.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>What WriteCfg() returned, with the error word that it left.</returns>
        public static uint ReadDevCfgFmFile(string path)
        {
            Loading.Require();
            return Native.ReadDevCfgFmFile(path);
        }

        /// <summary>Loads a template file: records that differ go through the record sets, then WriteCfg() sends
        /// them.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>What WriteCfg() returned, with the error word that it left.</returns>
        public static uint ReadDevCfgFmFile(byte[] path)
        {
            Loading.Require();
            Handing.CheckTerminated(path, "path");
            return Native.ReadDevCfgFmFile(path);
        }

        /// <summary>WriteDevCfgToFile() for callers that can pass only characters.</summary>
        /// <param name="index">0 to 255: 0 clears the path and stores the character there, 1 to 254 store it, 255
        /// saves.</param>
        /// <param name="character">The character, 0 to 255.</param>
        /// <returns>1 for a character that was stored.</returns>
        public static uint writeDevCfgToFile_char(short index, byte character)
        {
            Loading.Require();
            return Native.writeDevCfgToFile_char(index, character);
        }

        /// <summary>ReadDevCfgFmFile() for callers that can pass only characters.</summary>
        /// <param name="index">0 to 255: 0 clears the path and stores the character there, 1 to 254 store it, 255
        /// loads.</param>
        /// <param name="character">The character, 0 to 255.</param>
        /// <returns>1 for a character that was stored.</returns>
        public static uint readDevCfgFmFile_char(short index, byte character)
        {
            Loading.Require();
            return Native.readDevCfgFmFile_char(index, character);
        }

        /// <summary>Tells which link the configuration file of a magstripe reader names.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>0 for USB, 1 for serial, 65535 when the file names none or could not be opened.</returns>
        public static uint ReadDevTypeFromFile(string path)
        {
            Loading.Require();
            return Native.ReadDevTypeFromFile(path);
        }

        /// <summary>Tells which link the configuration file of a magstripe reader names.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>0 for USB, 1 for serial, 65535 when the file names none or could not be opened.</returns>
        public static uint ReadDevTypeFromFile(byte[] path)
        {
            Loading.Require();
            Handing.CheckTerminated(path, "path");
            return Native.ReadDevTypeFromFile(path);
        }

        /// <summary>Tests whether a file's trailer matches what it covers.</summary>
        /// <param name="path">Path of the file.</param>
        /// <param name="kind">0 for configuration and BLE files, any other value for key-load ini files.</param>
        /// <returns>1 when it matches.</returns>
        public static uint CheckTamperedFile(string path, uint kind)
        {
            Loading.Require();
            return Native.CheckTamperedFile(path, kind);
        }

        /// <summary>Tests whether a file's trailer matches what it covers.</summary>
        /// <param name="path">Path of the file.</param>
        /// <param name="kind">0 for configuration and BLE files, any other value for key-load ini files.</param>
        /// <returns>1 when it matches.</returns>
        public static uint CheckTamperedFile(byte[] path, uint kind)
        {
            Loading.Require();
            Handing.CheckTerminated(path, "path");
            return Native.CheckTamperedFile(path, kind);
        }

        /// <summary>WriteDevCfgToFile() with a trailer at the end of the file.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>1, also when no card reader is active and nothing was saved, when no configuration could be read,
        /// when the disk was full, and when the trailer could not be added.</returns>
        public static uint WriteDevCfgToSecureFile(string path)
        {
            Loading.Require();
            return Native.WriteDevCfgToSecureFile(path);
        }

        /// <summary>WriteDevCfgToFile() with a trailer at the end of the file.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>1, also when no card reader is active and nothing was saved, when no configuration could be read,
        /// when the disk was full, and when the trailer could not be added.</returns>
        public static uint WriteDevCfgToSecureFile(byte[] path)
        {
            Loading.Require();
            Handing.CheckTerminated(path, "path");
            return Native.WriteDevCfgToSecureFile(path);
        }

        /// <summary>ReadDevCfgFmFile() of a file whose trailer matches.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>1, also when no card reader is active and nothing was loaded.</returns>
        public static uint ReadDevCfgFromSecureFile(string path)
        {
            Loading.Require();
            return Native.ReadDevCfgFromSecureFile(path);
        }

        /// <summary>ReadDevCfgFmFile() of a file whose trailer matches.</summary>
        /// <param name="path">Path of the file.</param>
        /// <returns>1, also when no card reader is active and nothing was loaded.</returns>
        public static uint ReadDevCfgFromSecureFile(byte[] path)
        {
            Loading.Require();
            Handing.CheckTerminated(path, "path");
            return Native.ReadDevCfgFromSecureFile(path);
        }
    }
}
