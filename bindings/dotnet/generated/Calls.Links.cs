// Made by bindings/describe/describe; renew it with its option --renew.
using System;

namespace Tavlyn
{
    public static partial class Calls
    {
        /// <summary>Empties the table, searches the serial ports of SetComSrchRange() alone for the readers and
        /// magstripe readers of SetConnectProduct(), then reads the configuration of each device.</summary>
        /// <param name="pDID">Receives the device ID word of entry 0, on success only.</param>
        /// <returns>1 when something was found and read.</returns>
        public static uint ComConnect(out uint pDID)
        {
            Loading.Require();
            return Native.ComConnect(out pDID);
        }

        /// <summary>Empties the table, searches the serial ports of SetComSrchRange() alone for the readers and
        /// magstripe readers of SetConnectProduct(), then reads the configuration of each device.</summary>
        /// <param name="pDID">Receives the device ID word of entry 0, on success only.</param>
        /// <returns>1 when something was found and read.</returns>
        public static uint ComConnect(IntPtr pDID)
        {
            Loading.Require();
            return Native.ComConnect(pDID);
        }

        /// <summary>ComConnect() on one port, whatever the range.</summary>
        /// <param name="port">1 to 256.</param>
        /// <param name="pDID">Receives the device ID word of entry 0, on success only.</param>
        /// <returns>As for ComConnect().</returns>
        public static uint ComConnectPort(ushort port, out uint pDID)
        {
            Loading.Require();
            return Native.ComConnectPort(port, out pDID);
        }

        /// <summary>ComConnect() on one port, whatever the range.</summary>
        /// <param name="port">1 to 256.</param>
        /// <param name="pDID">Receives the device ID word of entry 0, on success only.</param>
        /// <returns>As for ComConnect().</returns>
        public static uint ComConnectPort(ushort port, IntPtr pDID)
        {
            Loading.Require();
            return Native.ComConnectPort(port, pDID);
        }

        /// <summary>Searches the ports again for the kind of device that is active, without reading a
        /// configuration.</summary>
        /// <returns>1 when something was found and the number of devices changed, else 0.</returns>
        public static uint comConnect()
        {
            Loading.Require();
            return Native.comConnect();
        }

        /// <summary>Searches one port for the kind of device that is active.</summary>
        /// <param name="port">1 to 256.</param>
        /// <returns>0.</returns>
        public static uint comConnectPort(ushort port)
        {
            Loading.Require();
            return Native.comConnectPort(port);
        }

        /// <summary>Closes the link of the active device: serial port, TCP connection or bulk device.</summary>
        /// <returns>1 when it was closed.</returns>
        public static uint ComDisconnect()
        {
            Loading.Require();
            return Native.ComDisconnect();
        }

        /// <summary>Reads raw bytes through the active device's port.</summary>
        /// <param name="buffer">Receives the bytes.</param>
        /// <param name="length">Room in buffer, in bytes.</param>
        /// <returns>Number of bytes that were read.</returns>
        public static uint ReadSerialPort(byte[] buffer, uint length)
        {
            Loading.Require();
            Handing.CheckRoom(buffer, length, "buffer");
            return Native.ReadSerialPort(buffer, length);
        }

        /// <summary>Reads raw bytes through the active device's port and waits less: on a COM port 10 ms and 1 ms for
        /// each byte, or 100 ms of silence.</summary>
        /// <param name="buffer">Receives the bytes.</param>
        /// <param name="length">Room in buffer, in bytes.</param>
        /// <returns>As for ReadSerialPort().</returns>
        public static uint QuickReadSerialPort(byte[] buffer, uint length)
        {
            Loading.Require();
            Handing.CheckRoom(buffer, length, "buffer");
            return Native.QuickReadSerialPort(buffer, length);
        }

        /// <summary>Writes raw bytes through the active device's port.</summary>
        /// <param name="buffer">The bytes to write.</param>
        /// <param name="length">Their number.</param>
        /// <returns>Number of bytes that were written.</returns>
        public static uint WriteSerialPort(byte[] buffer, uint length)
        {
            Loading.Require();
            Handing.CheckRoom(buffer, length, "buffer");
            return Native.WriteSerialPort(buffer, length);
        }

        /// <summary>ReadSerialPort() for callers that cannot pass a buffer.</summary>
        /// <param name="index">-1 to 1023: -1 reads up to 1024 bytes.</param>
        /// <returns>What ReadSerialPort() returns for index -1.</returns>
        public static uint readSerialPort_char(short index)
        {
            Loading.Require();
            return Native.readSerialPort_char(index);
        }

        /// <summary>QuickReadSerialPort() for callers that cannot pass a buffer.</summary>
        /// <param name="index">-1 to 1023: -1 reads up to 1024 bytes.</param>
        /// <returns>As for readSerialPort_char(), of what QuickReadSerialPort() reads.</returns>
        public static uint quickReadSerialPort_char(short index)
        {
            Loading.Require();
            return Native.quickReadSerialPort_char(index);
        }

        /// <summary>Gives the active device's port the time-outs of QuickReadSerialPort() for good, whatever the
        /// arguments are.</summary>
        /// <param name="interval">Is ignored.</param>
        /// <param name="multiplier">Is ignored.</param>
        /// <param name="constant">Is ignored.</param>
        public static void SetSerialTimeouts(uint interval, uint multiplier, uint constant)
        {
            Loading.Require();
            Native.SetSerialTimeouts(interval, multiplier, constant);
        }

        /// <summary>Sets the speed of the next serial search for readers, 9600 baud after load.</summary>
        /// <param name="baud">Speed in baud, any that the port's driver supports.</param>
        public static void SetBaudRate(uint baud)
        {
            Loading.Require();
            Native.SetBaudRate(baud);
        }

        /// <summary>Looks for an Ethernet adapter at the addresses from a.b.c.first to a.b.c.last.</summary>
        /// <param name="a">First octet, 0 to 255.</param>
        /// <param name="b">Second octet, 0 to 255.</param>
        /// <param name="c">Third octet, 0 to 255.</param>
        /// <param name="first">First value of the fourth octet, 0 to 255.</param>
        /// <param name="last">Last value of the fourth octet, 0 to 255.</param>
        /// <returns>The fourth octet of the address that answered, or 0.</returns>
        public static uint FindXport(short a, short b, short c, short first, short last)
        {
            Loading.Require();
            return Native.FindXport(a, b, c, first, last);
        }

        /// <summary>Returns the host's first address.</summary>
        /// <returns>The address with its first octet in the low byte.</returns>
        public static uint GetMyIpAddress()
        {
            Loading.Require();
            return Native.GetMyIpAddress();
        }
    }
}
