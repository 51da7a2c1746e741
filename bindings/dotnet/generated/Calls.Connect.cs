// Made by bindings/describe/describe; renew it with its option --renew.
using System;

namespace Tavlyn
{
    public static partial class Calls
    {
        /// <summary>Finds devices and opens them.</summary>
        /// <param name="pDID">Receives the device ID word of entry 0, on success only.</param>
        /// <returns>1 when a device was found and every configuration was read.</returns>
        public static uint USBConnect(out uint pDID)
        {
            Loading.Require();
            return Native.USBConnect(out pDID);
        }

        /// <summary>Finds devices and opens them.</summary>
        /// <param name="pDID">Receives the device ID word of entry 0, on success only.</param>
        /// <returns>1 when a device was found and every configuration was read.</returns>
        public static uint USBConnect(IntPtr pDID)
        {
            Loading.Require();
            return Native.USBConnect(pDID);
        }

        /// <summary>USBConnect() for callers that cannot pass a pointer.</summary>
        /// <returns>What USBConnect() returns.</returns>
        public static uint usbConnect()
        {
            Loading.Require();
            return Native.usbConnect();
        }

        /// <summary>Closes every device and empties the table.</summary>
        /// <returns>Always 1.</returns>
        public static uint USBDisconnect()
        {
            Loading.Require();
            return Native.USBDisconnect();
        }

        /// <summary>Chooses the products that a connect searches for.</summary>
        /// <param name="mask">0 to 7: bit 0 card readers, bit 1 magstripe readers, bit 2 sonar sensors.</param>
        /// <returns>Always 1.</returns>
        public static uint SetConnectProduct(uint mask)
        {
            Loading.Require();
            return Native.SetConnectProduct(mask);
        }

        /// <summary>Chooses the links on which a connect searches.</summary>
        /// <param name="link">-1 to 2: -1 all (as after load), 0 USB HID, 1 serial ports, 2 Ethernet.</param>
        /// <returns>1, or 0 for any other value, which changes nothing.</returns>
        public static uint SetDevTypeSrch(short link)
        {
            Loading.Require();
            return Native.SetDevTypeSrch(link);
        }

        /// <summary>Sets the COM ports of the serial search, from the smaller to the larger of the two
        /// numbers.</summary>
        /// <param name="a">One end of the range, 1 to 256.</param>
        /// <param name="b">The other end of the range, 1 to 256.</param>
        /// <returns>1, or 0 when a number is out of range, which changes nothing.</returns>
        public static uint SetComSrchRange(ushort a, ushort b)
        {
            Loading.Require();
            return Native.SetComSrchRange(a, b);
        }

        /// <summary>Chooses whether a search for magstripe readers also visits the maker's virtual COM ports and
        /// PCMCIA cards outside the range of SetComSrchRange().</summary>
        /// <param name="a">0 to 256: low end of the range, from 1 and below b, or 0.</param>
        /// <param name="b">0 to 256: high end of the range, or 0.</param>
        /// <returns>1, or 0 for any other pair, which changes nothing.</returns>
        public static uint VirtualComSearchRange(uint a, uint b)
        {
            Loading.Require();
            return Native.VirtualComSearchRange(a, b);
        }

        /// <summary>Sets the address a.b.c.d and the TCP port of the Ethernet search, unchecked.</summary>
        /// <param name="a">First octet, 0 to 255.</param>
        /// <param name="b">Second octet, 0 to 255.</param>
        /// <param name="c">Third octet, 0 to 255.</param>
        /// <param name="d">Fourth octet, 0 to 255.</param>
        /// <param name="port">TCP port, 0 to 65535.</param>
        /// <returns>Always 1.</returns>
        public static uint SetIpPort(byte a, byte b, byte c, byte d, ushort port)
        {
            Loading.Require();
            return Native.SetIpPort(a, b, c, d, port);
        }

        /// <summary>Sets what calls return when no device is active or the active one has no such operation, 0 after
        /// load.</summary>
        /// <param name="value">0 to 65535.</param>
        public static void SetUnsupportedProductErrorCode(ushort value)
        {
            Loading.Require();
            Native.SetUnsupportedProductErrorCode(value);
        }

        /// <summary>Returns what SetUnsupportedProductErrorCode() has set.</summary>
        /// <returns>0 to 65535.</returns>
        public static uint GetUnsupportedProductErrorCode()
        {
            Loading.Require();
            return Native.GetUnsupportedProductErrorCode();
        }

        /// <summary>Does nothing.</summary>
        /// <param name="value">Is ignored.</param>
        /// <returns>Always 0.</returns>
        public static uint SetComLinux(ulong value)
        {
            Loading.Require();
            return Native.SetComLinux(value);
        }

        /// <summary>Does nothing.</summary>
        /// <param name="buffer">Is not touched and may be null.</param>
        /// <param name="length">Is ignored.</param>
        /// <returns>Always 0.</returns>
        public static ushort GetRawRepDataI(byte[] buffer, ushort length)
        {
            Loading.Require();
            Handing.CheckRoom(buffer, length, "buffer");
            return Native.GetRawRepDataI(buffer, length);
        }

        /// <summary>Sends the trace to a function instead of the trace file.</summary>
        /// <param name="function">The function, or null to switch the trace off.</param>
        /// <returns>1, or 0 without that variable, which changes nothing.</returns>
        public static uint SetMarkerFunction(tavlyn_marker_function function)
        {
            Loading.Require();
            Kept.Add(function);
            return Native.SetMarkerFunction(function);
        }

        /// <summary>Returns the error word of the active device and does not clear it.</summary>
        /// <returns>TAVLYN_ERR_ words of types.h.</returns>
        public static uint GetLastLibErr()
        {
            Loading.Require();
            return Native.GetLastLibErr();
        }

        /// <summary>Returns the mask of a filter in the row of the VID/PID table that matched the active
        /// reader.</summary>
        /// <param name="index">0 or 1: 1 for the row's FILTER1, or the table's DEFAULT1 when the device has no row,
        /// is not a card reader, or none is active.</param>
        /// <returns>The mask.</returns>
        public static uint GetVidPidFilterMask(int index)
        {
            Loading.Require();
            return Native.GetVidPidFilterMask(index);
        }

        /// <summary>Returns the value that goes with the mask of GetVidPidFilterMask().</summary>
        /// <param name="index">0 or 1: 1 for the row's FILTER1, or the table's DEFAULT1 when the device has no row,
        /// is not a card reader, or none is active.</param>
        /// <returns>The value to compare with.</returns>
        public static uint GetVidPidFilterCompare(int index)
        {
            Loading.Require();
            return Native.GetVidPidFilterCompare(index);
        }

        /// <summary>Returns the name of the vendor under which the active reader was found.</summary>
        /// <returns>A text that the library owns: "7A31:3BFA Orvantis" for the main pair or with no device.</returns>
        public static string GetVidPidVendorName()
        {
            Loading.Require();
            return Handing.Text(Native.GetVidPidVendorName());
        }

        /// <summary>Returns one character of the text of GetVidPidVendorName().</summary>
        /// <param name="index">Position of the character, from 0.</param>
        /// <returns>The character.</returns>
        public static byte getVidPidVendorName_char(short index)
        {
            Loading.Require();
            return Native.getVidPidVendorName_char(index);
        }
    }
}
