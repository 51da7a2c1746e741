using System;
using System.Collections.Generic;

namespace Tavlyn
{
    // The library has one table of devices and one active device for the process: whoever calls it holds Gate, makes
    // a device active, and only then calls. Devices of one search are in the table together.
    internal static class Session
    {
        internal static readonly object Gate = new object();

        private static readonly List<int> Ready = new List<int>();  // indices whose configuration was read
        private static string scope;
        private static bool allRead;
        private static int open;

        // Index in the library's table; Close gives it back.
        internal static int Open(Search search, Product product)
        {
            search.Check();
            lock (Gate)
            {
                if (open == 0) Connect(search, product);
                else if (scope != search.Scope(product))
                    throw new InvalidOperationException("this process has devices of another product or link open");
                try
                {
                    int index = Choose(search, product);
                    RequireRead(index);
                    ++open;
                    return index;
                }
                finally
                {
                    if (open == 0) Calls.USBDisconnect();
                }
            }
        }

        internal static void Close()
        {
            lock (Gate)
            {
                if (--open == 0) Calls.USBDisconnect();
            }
        }

        private static void Connect(Search search, Product product)
        {
            Ready.Clear();
            scope = search.Scope(product);
            Calls.USBDisconnect();  // the program may have connected by itself
            Calls.SetConnectProduct((uint)product);
            if (search.ComPort != null)
            {
                Calls.SetBaudRate((uint)search.Baud);
                Calls.SetComSrchRange((ushort)search.ComPort.Value, (ushort)search.ComPort.Value);
                allRead = Calls.ComConnect(IntPtr.Zero) == 1;
                return;
            }
            Calls.SetDevTypeSrch((short)(search.Address == null ? 0 : 2));
            if (search.Address != null)
            {
                byte[] octets = search.Octets();
                Calls.SetIpPort(octets[0], octets[1], octets[2], octets[3], (ushort)search.TcpPort);
            }
            allRead = Calls.USBConnect(IntPtr.Zero) == 1;
        }

        private static int Choose(Search search, Product product)
        {
            var all = new List<int>();
            for (short index = 0; Calls.SetActDev(index) == 1; ++index)
            {
                if (Calls.GetProduct() == (uint)product) all.Add(index);
            }
            if (all.Count == 0) throw new NoDeviceException(Missing(search, product));
            if (search.Index != null)
                all = Those(all, index => all.IndexOf(index) == search.Index, product, "index");
            if (search.Luid != null) all = Those(all, index => Luid(index) == search.Luid, product, "LUID");
            if (search.SerialNumber != null)
                all = Those(all, index => SerialNumber(index) == search.SerialNumber, product, "serial number");
            bool named = search.Luid != null || search.SerialNumber != null;
            if (all.Count == 1 || !named) return all[0];
            throw new SeveralDevicesException("there are " + all.Count + " such devices, choose one: "
                + string.Join(", ", all.ConvertAll(Describe).ToArray()));
        }

        private static List<int> Those(List<int> all, Predicate<int> which, Product product, string name)
        {
            List<int> meant = all.FindAll(which);
            if (meant.Count == 0) throw new NoDeviceException("no " + Name(product) + " has this " + name);
            return meant;
        }

        // Of the active device; null for those that have none.
        internal static string SerialNumber()
        {
            if (Calls.GetProduct() != (uint)Product.Reader) return null;
            string text = Calls.GetSerialNumber();
            return string.IsNullOrEmpty(text) ? null : text;
        }

        private static string SerialNumber(int index)
        {
            Calls.SetActDev((short)index);
            return SerialNumber();
        }

        private static uint Luid(int index)
        {
            Calls.SetActDev((short)index);
            return Calls.GetLUID();
        }

        private static string Describe(int index)
        {
            return SerialNumber(index) ?? "LUID " + Luid(index);
        }

        // A connect does not clear the mirror of the device that had the entry before, and reads only one
        // configuration of a plus reader at index 1 or above.
        private static void RequireRead(int index)
        {
            if (Ready.Contains(index)) return;
            Calls.SetActDev((short)index);
            bool read = allRead && (index == 0 || Calls.GetCardType() < 0);
            if (!read && Calls.ReadCfg() != 1)
                throw new TavlynException("the configuration could not be read", Calls.GetLastLibErr());
            Ready.Add(index);
        }

        private static string Missing(Search search, Product product)
        {
            bool usb = search.ComPort == null && search.Address == null;
            return "no " + Name(product) + (usb ? " is plugged in" : " answers " + search.Where);
        }

        private static string Name(Product product)
        {
            switch (product)
            {
                case Product.Magstripe: return "magstripe reader";
                case Product.Sonar: return "sonar sensor";
                default: return "reader";
            }
        }
    }
}
