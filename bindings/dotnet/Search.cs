using System;

namespace Tavlyn
{
    /// <summary>The products.</summary>
    public enum Product
    {
        /// <summary>Card reader.</summary>
        Reader = 1,

        /// <summary>Magnetic-stripe reader.</summary>
        Magstripe = 2,

        /// <summary>Sonar sensor.</summary>
        Sonar = 4
    }

    /// <summary>Where a device is looked for and which one is meant. As it is made: the first on USB.</summary>
    public sealed class Search
    {
        /// <summary>Serial number of a card reader.</summary>
        public string SerialNumber { get; set; }

        /// <summary>Logical unit ID, 0 to 65535.</summary>
        public int? Luid { get; set; }

        /// <summary>Position among the devices of the product, from 0.</summary>
        public int? Index { get; set; }

        /// <summary>COM port in place of USB, 1 to 256.</summary>
        public int? ComPort { get; set; }

        /// <summary>Speed of the COM port in baud; 9600 as it is made.</summary>
        public int Baud { get; set; } = 9600;

        /// <summary>IPv4 address of an Ethernet adapter, in place of USB: "10.0.0.5".</summary>
        public string Address { get; set; }

        /// <summary>TCP port of the adapter.</summary>
        public int TcpPort { get; set; } = 10001;

        internal string Where
        {
            get
            {
                if (ComPort != null) return "on COM" + ComPort;
                return Address != null ? "at " + Address + ":" + TcpPort : "on USB";
            }
        }

        // What decides which devices a connect finds.
        internal string Scope(Product product)
        {
            return product + " " + Where + " " + Baud;
        }

        internal byte[] Octets()
        {
            string[] parts = Address.Split('.');
            var octets = new byte[4];
            bool good = parts.Length == octets.Length;
            for (int at = 0; good && at < octets.Length; ++at) good = byte.TryParse(parts[at], out octets[at]);
            if (!good) throw new ArgumentException("\"" + Address + "\" is not an IPv4 address");
            return octets;
        }

        internal void Check()
        {
            if (ComPort != null && Address != null) throw new ArgumentException("a COM port or an address, not both");
            Ranges.Check(Luid ?? 0, 0, ushort.MaxValue, "Luid");
            Ranges.Check(Index ?? 0, 0, short.MaxValue, "Index");
            Ranges.Check(ComPort ?? 1, 1, 256, "ComPort");
            Ranges.Check(Baud, 1, int.MaxValue, "Baud");
            Ranges.Check(TcpPort, 1, ushort.MaxValue, "TcpPort");
            if (Address != null) Octets();
        }
    }

    internal static class Ranges
    {
        internal static void Check(int value, int least, int most, string name)
        {
            if (value < least || value > most)
                throw new ArgumentOutOfRangeException(name, value, least + " to " + most);
        }

        // What failed, if the set does. The word holds least to most; of the range judges the library, because some
        // readers take more than others.
        internal static string Set(int value, int least, int most, string name, string range)
        {
            string what = name + " is " + range;
            if (value < least || value > most) throw new ArgumentOutOfRangeException(name, value, what);
            return what + ": the set to " + value;
        }
    }
}
