// Made by bindings/describe/describe; renew it with its option --renew.
using System;

namespace Tavlyn
{
    public static partial class Calls
    {
        /// <summary>Reads every configuration of the active device into the mirror.</summary>
        /// <returns>1, or 0 when at least one could not be read, which adds TAVLYN_ERR_CONFIG_READ, and with no
        /// device.</returns>
        public static uint ReadCfg()
        {
            Loading.Require();
            return Native.ReadCfg();
        }

        /// <summary>Sends what has changed in the mirror and commits it, for every configuration of a plus reader
        /// from the highest down.</summary>
        /// <returns>1, or 0 after a failure and with no device.</returns>
        public static uint WriteCfg()
        {
            Loading.Require();
            return Native.WriteCfg();
        }

        /// <summary>Makes the device load its factory configuration and reads it back.</summary>
        /// <returns>1, or 0 when the command could not be sent, which adds TAVLYN_ERR_RESET, or the configuration
        /// could not be read, see ReadCfg(), or, on some sonar sensors, written back without idle flags, which adds
        /// TAVLYN_ERR_CONFIG_WRITE.</returns>
        public static uint ResetFactoryDflts()
        {
            Loading.Require();
            return Native.ResetFactoryDflts();
        }

        /// <summary>Returns the highest configuration index of the active plus reader.</summary>
        /// <returns>0 to 10.</returns>
        public static ushort GetMaxConfig()
        {
            Loading.Require();
            return Native.GetMaxConfig();
        }

        /// <summary>Returns the index of the configuration that the record calls act on.</summary>
        /// <returns>0 to GetMaxConfig().</returns>
        public static ushort GetActConfig()
        {
            Loading.Require();
            return Native.GetActConfig();
        }

        /// <summary>Chooses the configuration that the record calls act on.</summary>
        /// <param name="index">0 to GetMaxConfig().</param>
        /// <returns>1, or 0 when there is no such configuration or the device is not a plus reader.</returns>
        public static uint SetActConfig(byte index)
        {
            Loading.Require();
            return Native.SetActConfig(index);
        }

        /// <summary>Returns the card type of the active configuration.</summary>
        /// <returns>Code of the type, 0 to 65535.</returns>
        public static int GetCardType()
        {
            Loading.Require();
            return Native.GetCardType();
        }

        /// <summary>Returns the priority of the card type of the active configuration.</summary>
        /// <returns>0 for low, 1 for high.</returns>
        public static int GetCardPriority()
        {
            Loading.Require();
            return Native.GetCardPriority();
        }

        /// <summary>Sets card type and priority of the active configuration.</summary>
        /// <param name="type">Code of the type, 0 to 65535.</param>
        /// <param name="priority">0 for low, any other value for high.</param>
        /// <returns>1, or 0 when the device is not a plus reader.</returns>
        public static uint SetCardTypePriority(ushort type, short priority)
        {
            Loading.Require();
            return Native.SetCardTypePriority(type, priority);
        }

        /// <summary>Tells whether the reader knows a card type, according to the list that came with the
        /// configuration.</summary>
        /// <param name="type">Code of the type.</param>
        /// <returns>1 when it is known.</returns>
        public static uint IsCardTypeInList(short type)
        {
            Loading.Require();
            return Native.IsCardTypeInList(type);
        }

        /// <summary>Returns the full firmware version that came with the configuration.</summary>
        /// <returns>A text of at most 24 characters.</returns>
        public static string GetFullFWVersion()
        {
            Loading.Require();
            return Handing.Text(Native.GetFullFWVersion());
        }

        /// <summary>Returns the firmware file name that came with the configuration.</summary>
        /// <returns>A text of at most 64 characters.</returns>
        public static string GetFWFilename()
        {
            Loading.Require();
            return Handing.Text(Native.GetFWFilename());
        }

        /// <summary>Returns the part number that came with the configuration.</summary>
        /// <returns>A text of at most 24 characters.</returns>
        public static string getPartNumberString()
        {
            Loading.Require();
            return Handing.Text(Native.getPartNumberString());
        }

        /// <summary>Returns one character of the part number.</summary>
        /// <param name="index">Position of the character, from 0: 0 takes a copy of the part number and returns its
        /// first character.</param>
        /// <returns>The character.</returns>
        public static byte getPartNumberString_char(short index)
        {
            Loading.Require();
            return Native.getPartNumberString_char(index);
        }

        /// <summary>Asks the reader for its serial number.</summary>
        /// <returns>A text in a buffer that all five calls share.</returns>
        public static string GetSerialNumber()
        {
            Loading.Require();
            return Handing.Text(Native.GetSerialNumber());
        }

        /// <summary>Asks the reader for the type of its platform.</summary>
        /// <returns>As for GetSerialNumber().</returns>
        public static string GetPlatformType()
        {
            Loading.Require();
            return Handing.Text(Native.GetPlatformType());
        }

        /// <summary>Asks the reader for the date of its firmware.</summary>
        /// <returns>As for GetSerialNumber().</returns>
        public static string GetBuildDate()
        {
            Loading.Require();
            return Handing.Text(Native.GetBuildDate());
        }

        /// <summary>Asks the reader for its copyright notice.</summary>
        /// <returns>As for GetSerialNumber().</returns>
        public static string GetCopyrightInfo()
        {
            Loading.Require();
            return Handing.Text(Native.GetCopyrightInfo());
        }

        /// <summary>Asks the reader for its processor.</summary>
        /// <returns>As for GetSerialNumber().</returns>
        public static string GetCPUInfo()
        {
            Loading.Require();
            return Handing.Text(Native.GetCPUInfo());
        }

        /// <summary>Asks the reader for its electronic serial number.</summary>
        /// <returns>The 32 bytes, valid until the next call.</returns>
        public static byte[] getESN()
        {
            Loading.Require();
            return Handing.Bytes(Native.getESN(), 32);
        }

        /// <summary>Returns a firmware word as it was read at connect.</summary>
        /// <param name="cpu">Processor, 0 to 2.</param>
        /// <param name="index">Word, 0 to 4.</param>
        /// <returns>The word.</returns>
        public static uint GetFirmwareVersion(ushort cpu, ushort index)
        {
            Loading.Require();
            return Native.GetFirmwareVersion(cpu, index);
        }

        /// <summary>Reads the firmware words of every device again.</summary>
        public static void SendGetFWVersion()
        {
            Loading.Require();
            Native.SendGetFWVersion();
        }

        /// <summary>Measures how long the device takes to answer.</summary>
        /// <returns>Milliseconds, 1 to 65535.</returns>
        public static uint Ping()
        {
            Loading.Require();
            return Native.Ping();
        }

        /// <summary>Copies one stored bank of a plus reader to another: 1 is the working set, 2 the user defaults, 3
        /// the plus defaults.</summary>
        /// <param name="from">Bank that is copied, 1 to 3.</param>
        /// <param name="to">Bank that it is copied to, 1 to 3.</param>
        /// <returns>1, or 0 when the device is not a plus reader or the exchange failed, which adds
        /// TAVLYN_ERR_COMMAND for a lost reply.</returns>
        public static uint PlusBlockMove(short from, short to)
        {
            Loading.Require();
            return Native.PlusBlockMove(from, to);
        }

        /// <summary>Copies the user defaults to the working set.</summary>
        /// <returns>What PlusBlockMove() returns.</returns>
        public static uint ResetUserDflts()
        {
            Loading.Require();
            return Native.ResetUserDflts();
        }

        /// <summary>Copies the working set to the user defaults.</summary>
        /// <returns>What PlusBlockMove() returns.</returns>
        public static uint SaveUserDflts()
        {
            Loading.Require();
            return Native.SaveUserDflts();
        }

        /// <summary>Copies the plus defaults to the user defaults and to the working set.</summary>
        /// <returns>What the second PlusBlockMove() returns.</returns>
        public static uint tavlynPlusDefaults()
        {
            Loading.Require();
            return Native.tavlynPlusDefaults();
        }

        /// <summary>Writes every readable report of the active reader to a text file.</summary>
        /// <param name="path">Path of the file, see files.h.</param>
        /// <returns>1.</returns>
        public static uint DumpRawFeatureReports(string path)
        {
            Loading.Require();
            return Native.DumpRawFeatureReports(path);
        }

        /// <summary>Writes every readable report of the active reader to a text file.</summary>
        /// <param name="path">Path of the file, see files.h.</param>
        /// <returns>1.</returns>
        public static uint DumpRawFeatureReports(byte[] path)
        {
            Loading.Require();
            Handing.CheckTerminated(path, "path");
            return Native.DumpRawFeatureReports(path);
        }

        /// <summary>Asks a serial reader for the baud code that it keeps.</summary>
        /// <returns>The code, 0 to 255.</returns>
        public static uint ReadBaudRate()
        {
            Loading.Require();
            return Native.ReadBaudRate();
        }

        /// <summary>Sets the baud code that a serial reader keeps.</summary>
        /// <param name="code">0 to 255.</param>
        /// <returns>1.</returns>
        public static uint WriteBaudRate(ushort code)
        {
            Loading.Require();
            return Native.WriteBaudRate(code);
        }

        /// <summary>Chooses whether all serial readers are spoken to in the ASCII dialect, until the library is
        /// unloaded.</summary>
        /// <param name="on">0 for frames, any other value for the ASCII dialect.</param>
        /// <returns>1.</returns>
        public static uint UseAsciiCommandProtocol(ushort on)
        {
            Loading.Require();
            return Native.UseAsciiCommandProtocol(on);
        }
    }
}
