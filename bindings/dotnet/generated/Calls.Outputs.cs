// Made by bindings/describe/describe; renew it with its option --renew.
using System;

namespace Tavlyn
{
    public static partial class Calls
    {
        /// <summary>Beeps now.</summary>
        /// <param name="count">1 to 5.</param>
        /// <param name="longBeep">Not 0 for long beeps.</param>
        /// <returns>1, or 0 with no device or after a failed exchange, which adds TAVLYN_ERR_COMMAND.</returns>
        public static uint BeepNow(byte count, short longBeep)
        {
            Loading.Require();
            return Native.BeepNow(count, longBeep);
        }

        /// <summary>Asks for the volume of the beeper.</summary>
        /// <returns>0 to 255.</returns>
        public static uint GetBeeperVolume()
        {
            Loading.Require();
            return Native.GetBeeperVolume();
        }

        /// <summary>Sets the volume of the beeper.</summary>
        /// <param name="volume">0 to 255.</param>
        /// <returns>1.</returns>
        public static uint SetBeeperVolume(ushort volume)
        {
            Loading.Require();
            return Native.SetBeeperVolume(volume);
        }
    }
}
