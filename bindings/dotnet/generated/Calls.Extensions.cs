// Made by bindings/describe/describe; renew it with its option --renew.
using System;

namespace Tavlyn
{
    public static partial class Calls
    {
        /// <summary>Asks for the status of the analyzer, and for the count of its records, which GetCardCount() and
        /// GetCardAnalyzerData() use.</summary>
        /// <returns>The reader's status, 0 to 255.</returns>
        public static uint GetCardAnalyzerStatus()
        {
            Loading.Require();
            return Native.GetCardAnalyzerStatus();
        }

        /// <summary>Returns the number of records that the last good GetCardAnalyzerStatus() reported, whichever
        /// device is active now.</summary>
        /// <returns>Number of records.</returns>
        public static uint GetCardCount()
        {
            Loading.Require();
            return Native.GetCardCount();
        }

        /// <summary>Switches the analyzer.</summary>
        /// <param name="state">Passed on to the reader unchanged, 0 to 255.</param>
        /// <returns>1 when the reader confirms.</returns>
        public static uint SetCardAnalyzerControlState(uint state)
        {
            Loading.Require();
            return Native.SetCardAnalyzerControlState(state);
        }

        /// <summary>Reads the records, GetCardCount() of them: the count is not asked for again.</summary>
        /// <returns>An array from malloc that belongs to the caller, who releases it with free.</returns>
        public static CardAnalyzerRecord[] GetCardAnalyzerData()
        {
            Loading.Require();
            return Handing.OwnRecords<CardAnalyzerRecord>(Native.GetCardAnalyzerData(), Native.GetCardCount());
        }

        /// <summary>Asks whether a module is on.</summary>
        /// <param name="module">Number of the module, 0 to 255.</param>
        /// <param name="state">Receives 1 for on and 0 for anything else, also when the reader does not
        /// confirm.</param>
        /// <returns>1 when the reader confirms.</returns>
        public static byte GetModuleState(ushort module, out ushort state)
        {
            Loading.Require();
            return Native.GetModuleState(module, out state);
        }

        /// <summary>Asks whether a module is on.</summary>
        /// <param name="module">Number of the module, 0 to 255.</param>
        /// <param name="state">Receives 1 for on and 0 for anything else, also when the reader does not
        /// confirm.</param>
        /// <returns>1 when the reader confirms.</returns>
        public static byte GetModuleState(ushort module, IntPtr state)
        {
            Loading.Require();
            return Native.GetModuleState(module, state);
        }

        /// <summary>Switches a module.</summary>
        /// <param name="module">Number of the module, 0 to 255.</param>
        /// <param name="state">0 for off, any other value for on.</param>
        /// <returns>1 when the reader confirms.</returns>
        public static byte SetModuleState(ushort module, ushort state)
        {
            Loading.Require();
            return Native.SetModuleState(module, state);
        }

        /// <summary>Asks whether transparent mode is on.</summary>
        /// <returns>1 for on, 0 for off, 2 when the reader does not know the mode.</returns>
        public static ushort CheckTransparentMode()
        {
            Loading.Require();
            return Native.CheckTransparentMode();
        }

        /// <summary>Switches transparent mode on.</summary>
        /// <param name="commit">Exactly 1 for a change that outlasts a power cycle.</param>
        /// <returns>1 when the reader has switched, 0 when it has not, 2 when it does not know the mode.</returns>
        public static ushort EnableTransparentMode(uint commit)
        {
            Loading.Require();
            return Native.EnableTransparentMode(commit);
        }

        /// <summary>Switches transparent mode off.</summary>
        /// <param name="commit">Exactly 1 for a change that outlasts a power cycle.</param>
        /// <returns>As for EnableTransparentMode().</returns>
        public static ushort DisableTransparentMode(uint commit)
        {
            Loading.Require();
            return Native.DisableTransparentMode(commit);
        }

        /// <summary>Asks whether the radio is there.</summary>
        /// <returns>1 when it is.</returns>
        public static ushort IsBTLEPresent()
        {
            Loading.Require();
            return Native.IsBTLEPresent();
        }

        /// <summary>Asks in which way the radio works with the card radio.</summary>
        /// <returns>0 to 3.</returns>
        public static ushort GetBTLEConfiguration()
        {
            Loading.Require();
            return Native.GetBTLEConfiguration();
        }

        /// <summary>Chooses in which way the radio works with the card radio.</summary>
        /// <param name="configuration">Passed on to the reader unchanged, 0 to 255.</param>
        /// <returns>1 when the reader answered, whatever it answered, so that a refusal does not show.</returns>
        public static ushort SetBTLEConfiguration(byte configuration)
        {
            Loading.Require();
            return Native.SetBTLEConfiguration(configuration);
        }
    }
}
