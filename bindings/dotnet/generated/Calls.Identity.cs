// Made by bindings/describe/describe; renew it with its option --renew.
using System;

namespace Tavlyn
{
    public static partial class Calls
    {
        /// <summary>Returns the number of devices in the table.</summary>
        /// <returns>0 for an empty table.</returns>
        public static short GetDevCnt()
        {
            Loading.Require();
            return Native.GetDevCnt();
        }

        /// <summary>Returns the index of the active device, the one on which nearly every call works.</summary>
        /// <returns>The index.</returns>
        public static short GetActDev()
        {
            Loading.Require();
            return Native.GetActDev();
        }

        /// <summary>Makes the device at an index active.</summary>
        /// <param name="index">0 to GetDevCnt() - 1.</param>
        /// <returns>1, or 0 when there is no such device, which changes nothing.</returns>
        public static uint SetActDev(short index)
        {
            Loading.Require();
            return Native.SetActDev(index);
        }

        /// <summary>Finds a device by its logical unit ID.</summary>
        /// <param name="luid">The logical unit ID, 0 to 65535.</param>
        /// <param name="start">Index of the first device to look at, from 0.</param>
        /// <returns>Index of the first such device.</returns>
        public static uint GetDevByLUID(ushort luid, short start)
        {
            Loading.Require();
            return Native.GetDevByLUID(luid, start);
        }

        /// <summary>Copies the path or name of the active device.</summary>
        /// <param name="name">Room for 511 characters, or null.</param>
        /// <returns>The number of the COM port for a serial link, 999 for any other, unsupported with no
        /// device.</returns>
        public static uint GetDevName(byte[] name)
        {
            Loading.Require();
            Handing.CheckRoom(name, 511, "name");
            return Native.GetDevName(name);
        }

        /// <summary>The same as GetDevName(), under an older name.</summary>
        /// <param name="name">Room for 511 characters, or null.</param>
        /// <returns>What GetDevName() returns.</returns>
        public static uint orv_GetDevName(byte[] name)
        {
            Loading.Require();
            Handing.CheckRoom(name, 511, "name");
            return Native.orv_GetDevName(name);
        }

        /// <summary>Returns one character of the path or name of the active device.</summary>
        /// <param name="index">Position of the character, 0 to 511.</param>
        /// <returns>The character.</returns>
        public static byte getDevName_char(short index)
        {
            Loading.Require();
            return Native.getDevName_char(index);
        }

        /// <summary>Returns the link of the active device.</summary>
        /// <returns>0 for feature reports, 1 for a serial link.</returns>
        public static ushort GetDevType()
        {
            Loading.Require();
            return Native.GetDevType();
        }

        /// <summary>The same as GetDevType(), under an older name.</summary>
        /// <returns>What GetDevType() returns.</returns>
        public static ushort orv_GetDevType()
        {
            Loading.Require();
            return Native.orv_GetDevType();
        }

        /// <summary>Returns the product of the active device.</summary>
        /// <returns>1 for a card reader, 2 for a magstripe reader, 4 for a sonar sensor.</returns>
        public static uint GetProduct()
        {
            Loading.Require();
            return Native.GetProduct();
        }

        /// <summary>Returns the device ID word of the active device.</summary>
        /// <returns>0 to 65535.</returns>
        public static uint GetDID()
        {
            Loading.Require();
            return Native.GetDID();
        }

        /// <summary>Returns the logical unit ID of the active device.</summary>
        /// <returns>0 to 65535.</returns>
        public static uint GetLUID()
        {
            Loading.Require();
            return Native.GetLUID();
        }

        /// <summary>Sets the logical unit ID of the active device, or of entry 0 with no device.</summary>
        /// <param name="luid">0 to 65535.</param>
        /// <returns>Always 1.</returns>
        public static uint SetLUID(ushort luid)
        {
            Loading.Require();
            return Native.SetLUID(luid);
        }

        /// <summary>Returns the serial word of the active device.</summary>
        /// <returns>The serial word.</returns>
        public static uint GetSN()
        {
            Loading.Require();
            return Native.GetSN();
        }

        /// <summary>Asks the active reader which hardware it has.</summary>
        /// <returns>Eight flags of 0 or 1, one for each bit of the reader's mask.</returns>
        public static byte[] InstalledHardware()
        {
            Loading.Require();
            return Handing.OwnBytes(Native.InstalledHardware(), 8);
        }

        /// <summary>Asks the active reader which hardware it could have.</summary>
        /// <returns>As for InstalledHardware().</returns>
        public static byte[] SupportedHardware()
        {
            Loading.Require();
            return Handing.OwnBytes(Native.SupportedHardware(), 8);
        }

        /// <summary>For an arrival notification: opens the device at a path and appends it to the table, if it is one
        /// of the active device's product.</summary>
        /// <param name="path">Path of at most 511 characters.</param>
        /// <returns>1 when it was added.</returns>
        public static uint ChkAddArrival(string path)
        {
            Loading.Require();
            return Native.ChkAddArrival(path);
        }

        /// <summary>For an arrival notification: opens the device at a path and appends it to the table, if it is one
        /// of the active device's product.</summary>
        /// <param name="path">Path of at most 511 characters.</param>
        /// <returns>1 when it was added.</returns>
        public static uint ChkAddArrival(byte[] path)
        {
            Loading.Require();
            Handing.CheckTerminated(path, "path");
            return Native.ChkAddArrival(path);
        }

        /// <summary>For a removal notification: when the table holds a device of that path, closes the first open
        /// device of the table, which need not be that one, and removes it.</summary>
        /// <param name="path">Path of at most 511 characters, in either case.</param>
        /// <returns>1, or 0 for a path that is not in the table and when no device is open.</returns>
        public static uint ChkDelRemoval(string path)
        {
            Loading.Require();
            return Native.ChkDelRemoval(path);
        }

        /// <summary>For a removal notification: when the table holds a device of that path, closes the first open
        /// device of the table, which need not be that one, and removes it.</summary>
        /// <param name="path">Path of at most 511 characters, in either case.</param>
        /// <returns>1, or 0 for a path that is not in the table and when no device is open.</returns>
        public static uint ChkDelRemoval(byte[] path)
        {
            Loading.Require();
            Handing.CheckTerminated(path, "path");
            return Native.ChkDelRemoval(path);
        }

        /// <summary>ChkAddArrival() for callers that can pass only characters.</summary>
        /// <param name="index">0 to 255: 0 clears the path and stores the character there, 1 to 254 store it, 255
        /// runs the check.</param>
        /// <param name="character">The character, 0 to 255.</param>
        /// <returns>1 for a character that was stored.</returns>
        public static uint chkAddArrival_char(short index, byte character)
        {
            Loading.Require();
            return Native.chkAddArrival_char(index, character);
        }

        /// <summary>ChkDelRemoval() for callers that can pass only characters.</summary>
        /// <param name="index">0 to 255: 0 clears the path and stores the character there, 1 to 254 store it, 255
        /// runs the check.</param>
        /// <param name="character">The character, 0 to 255.</param>
        /// <returns>1 for a character that was stored.</returns>
        public static uint chkDelRemoval_char(short index, byte character)
        {
            Loading.Require();
            return Native.chkDelRemoval_char(index, character);
        }

        /// <summary>Copies the 16 bytes of an interface class.</summary>
        /// <param name="guid">Room for 16 bytes, or null.</param>
        /// <returns>Always 1.</returns>
        public static uint GetHIDGuid(byte[] guid)
        {
            Loading.Require();
            Handing.CheckRoom(guid, 16, "guid");
            return Native.GetHIDGuid(guid);
        }

        /// <summary>Returns the version of the library: 7, 9, 2.</summary>
        /// <param name="major">Receives the first number.</param>
        /// <param name="minor">Receives the second number.</param>
        /// <param name="build">Receives the third number.</param>
        /// <returns>Always 1.</returns>
        public static uint GetLibVersion(out ushort major, out ushort minor, out ushort build)
        {
            Loading.Require();
            return Native.GetLibVersion(out major, out minor, out build);
        }

        /// <summary>Returns the version of the library: 7, 9, 2.</summary>
        /// <param name="major">Receives the first number.</param>
        /// <param name="minor">Receives the second number.</param>
        /// <param name="build">Receives the third number.</param>
        /// <returns>Always 1.</returns>
        public static uint GetLibVersion(IntPtr major, IntPtr minor, IntPtr build)
        {
            Loading.Require();
            return Native.GetLibVersion(major, minor, build);
        }

        /// <summary>Returns the first number of the library's version.</summary>
        /// <returns>7.</returns>
        public static ushort getLibraryVersion_Major()
        {
            Loading.Require();
            return Native.getLibraryVersion_Major();
        }

        /// <summary>Returns the second number of the library's version.</summary>
        /// <returns>9.</returns>
        public static ushort getLibraryVersion_Minor()
        {
            Loading.Require();
            return Native.getLibraryVersion_Minor();
        }

        /// <summary>Returns the third number of the library's version.</summary>
        /// <returns>2.</returns>
        public static ushort getLibraryVersion_Build()
        {
            Loading.Require();
            return Native.getLibraryVersion_Build();
        }

        /// <summary>Returns what is added to the version of a preliminary release.</summary>
        /// <returns>An empty text.</returns>
        public static string getLibraryVersion_Beta()
        {
            Loading.Require();
            return Handing.Text(Native.getLibraryVersion_Beta());
        }
    }
}
