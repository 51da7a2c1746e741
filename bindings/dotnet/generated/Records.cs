// Made by bindings/describe/describe; renew it with its option --renew.
using System;
using System.Runtime.InteropServices;

namespace Tavlyn
{
    /// <summary>A card that the reader has seen.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct CardAnalyzerRecord
    {
        /// <summary>Type of the record as the reader reports it, 16 bits.</summary>
        public uint RecType;

        /// <summary>Number of bits of the card.</summary>
        public uint BitCount;

        /// <summary>The bits in reverse: the reader's first byte is the last one here, zeros come first.</summary>
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 32)]
        public byte[] CardBits;
    }

    /// <summary>How the sensor measures.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct tsSonarParms
    {
        /// <summary>Bits: 0 red on, 1 LED for the application, 2 green on; 7 bits are sent.</summary>
        public ushort LEDFlags;

        /// <summary>Milliseconds between pings: 200 to 1020, steps of 4, rounded down.</summary>
        public ushort PingRate;

        /// <summary>Count of 40 kHz cycles; read only.</summary>
        public ushort Reserved1;

        /// <summary>Nearest distance that counts, in inches: 1 to 59.</summary>
        public ushort MinDist;

        /// <summary>Farthest distance that counts, in inches: 15 to 72.</summary>
        public ushort MaxDist;

        /// <summary>Debounce time when out of range.</summary>
        public ushort ORDBTm;

        /// <summary>Debounce time when in range.</summary>
        public ushort IRDBTm;

        /// <summary>Seconds after a cold start before the sensor joins USB.</summary>
        public ushort StartDly;
    }

    /// <summary>Keys sent when somebody walks away.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct tsWalkAwayParms
    {
        /// <summary>Number of keys: at most 6, compared signed; 4 bits are sent.</summary>
        public ushort KeyCount;

        /// <summary>Milliseconds between keys: 64 to 16320, steps of 64, rounded down.</summary>
        public ushort InterKeyDelay;

        /// <summary>Modifiers of key 1.</summary>
        public ushort Key1Mods;

        /// <summary>Modifiers of key 2.</summary>
        public ushort Key2Mods;

        /// <summary>Modifiers of key 3.</summary>
        public ushort Key3Mods;

        /// <summary>Modifiers of key 4.</summary>
        public ushort Key4Mods;

        /// <summary>Modifiers of key 5.</summary>
        public ushort Key5Mods;

        /// <summary>Modifiers of key 6.</summary>
        public ushort Key6Mods;

        /// <summary>For the sensor alone; 4 bits are sent.</summary>
        public ushort Flags0;

        /// <summary>For the sensor alone.</summary>
        public ushort MinFltRepRate;

        /// <summary>Code of key 1.</summary>
        public ushort Key1Code;

        /// <summary>Code of key 2.</summary>
        public ushort Key2Code;

        /// <summary>Code of key 3.</summary>
        public ushort Key3Code;

        /// <summary>Code of key 4.</summary>
        public ushort Key4Code;

        /// <summary>Code of key 5.</summary>
        public ushort Key5Code;

        /// <summary>Code of key 6.</summary>
        public ushort Key6Code;
    }

    /// <summary>Keys sent when somebody walks up.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct tsWalkUpParms
    {
        /// <summary>Number of keys: at most 6, compared signed; 4 bits are sent.</summary>
        public ushort KeyCount;

        /// <summary>Milliseconds between keys: 64 to 16320, steps of 64, rounded down.</summary>
        public ushort InterKeyDelay;

        /// <summary>Modifiers of key 1.</summary>
        public ushort Key1Mods;

        /// <summary>Modifiers of key 2.</summary>
        public ushort Key2Mods;

        /// <summary>Modifiers of key 3.</summary>
        public ushort Key3Mods;

        /// <summary>Modifiers of key 4.</summary>
        public ushort Key4Mods;

        /// <summary>Modifiers of key 5.</summary>
        public ushort Key5Mods;

        /// <summary>Modifiers of key 6.</summary>
        public ushort Key6Mods;

        /// <summary>For the sensor alone; 4 bits are sent.</summary>
        public ushort Flags0;

        /// <summary>A write sends what the last read returned, not this word.</summary>
        public ushort Reserved2;

        /// <summary>Code of key 1.</summary>
        public ushort Key1Code;

        /// <summary>Code of key 2.</summary>
        public ushort Key2Code;

        /// <summary>Code of key 3.</summary>
        public ushort Key3Code;

        /// <summary>Code of key 4.</summary>
        public ushort Key4Code;

        /// <summary>Code of key 5.</summary>
        public ushort Key5Code;

        /// <summary>Code of key 6.</summary>
        public ushort Key6Code;
    }

    /// <summary>A key pressed while somebody stays idle.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct tsIdleParms
    {
        /// <summary>A write sends 4 bits of what the last read returned, not this word.</summary>
        public ushort Reserved1;

        /// <summary>Seconds between presses; 0 for none.</summary>
        public ushort PressRate;

        /// <summary>Modifiers of the key.</summary>
        public ushort Key1Mods;

        /// <summary>Code of the key.</summary>
        public ushort Key1Code;

        /// <summary>For the sensor alone.</summary>
        public ushort Flags;

        /// <summary>Dead man: a change of distance that counts, in units of 1/3.472 inch.</summary>
        public ushort DMTODelta;

        /// <summary>Dead man: seconds without such a change.</summary>
        public ushort DMTOTm;

        /// <summary>Blanking time of the drive, in units of 43 microseconds.</summary>
        public ushort SNBlankTm;
    }

    /// <summary>What the reader does with an ID.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct tsCfgFlags
    {
        /// <summary>Send the ID at a fixed length, with leading zeros as needed.</summary>
        public short bFixLenDsp;

        /// <summary>Only an ID of exactly iTotalBitCnt bits is valid.</summary>
        public short bFrcBitCntEx;

        /// <summary>Strip the facility code (FAC) from the ID; it is not discarded.</summary>
        public short bStripFac;

        /// <summary>Send the FAC, if it is stripped.</summary>
        public short bSndFac;

        /// <summary>Send a delimiter between FAC and ID.</summary>
        public short bUseDelFac2Id;

        /// <summary>Send no end-of-line character (which is ENTER by default).</summary>
        public short bNoUseELChar;

        /// <summary>Send a valid ID as soon as it is received; iIDLockOutTm is not used.</summary>
        public short bSndOnRx;

        /// <summary>Send no keys to USB: the mode for reading IDs through this library.</summary>
        public short bHaltKBSnd;
    }

    /// <summary>How the bits of a read are counted and set apart.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct tsIDBitCnts
    {
        /// <summary>Leading Wiegand parity bits to strip: at most 15 (142, see ExFeatures01).</summary>
        public short iLeadParityBitCnt;

        /// <summary>Trailing Wiegand parity bits to strip: at most 15 (142 likewise).</summary>
        public short iTrailParityBitCnt;

        /// <summary>With bStripFac, bits of the ID; the rest is FAC: 1 to 255.</summary>
        public short iIDBitCnt;

        /// <summary>With bFrcBitCntEx, bits of a valid read including parity: 26 to 255.</summary>
        public short iTotalBitCnt;

        /// <summary>Unused.</summary>
        public short iPad4;

        /// <summary>Unused.</summary>
        public short iPad5;

        /// <summary>Unused.</summary>
        public short iPad6;

        /// <summary>Unused.</summary>
        public short iPad7;
    }

    /// <summary>How an ID is shown.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct tsIDDispParms
    {
        /// <summary>Character between FAC and ID: at most 255.</summary>
        public short iFACIDDelim;

        /// <summary>Character at the end of the ID, unless bNoUseELChar is set: at most 255.</summary>
        public short iELDelim;

        /// <summary>With bFixLenDsp, length to which the ID is padded with zeros: at most 25.</summary>
        public short iIDDispLen;

        /// <summary>With bFixLenDsp, length to which the FAC is padded with zeros: at most 25.</summary>
        public short iFACDispLen;

        /// <summary>0 = data format mode, 1 = extended mode.</summary>
        public short iExOutputFormat;

        /// <summary>Unused.</summary>
        public short iPad5;

        /// <summary>Unused.</summary>
        public short iPad6;

        /// <summary>Unused.</summary>
        public short iPad7;
    }

    /// <summary>Times in milliseconds, and the features of the reader.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct tsTimeParms
    {
        /// <summary>A Wiegand read times out after this time: at most 1020, steps of 4.</summary>
        public short iBitStrmTO;

        /// <summary>A card ID remains valid for this time: at most 12750, steps of 50.</summary>
        public short iIDHoldTO;

        /// <summary>Repeated reports are suppressed for this time: at most 12750, steps of 50.</summary>
        public short iIDLockOutTm;

        /// <summary>How long a USB key stays pressed: at most 1020, steps of 4.</summary>
        public short iUSBKeyPrsTm;

        /// <summary>How long a USB key stays released: at most 1020, steps of 4.</summary>
        public short iUSBKeyRlsTm;

        /// <summary>Features that the reader reports, see above.</summary>
        public short ExFeatures01;

        /// <summary>Unused.</summary>
        public short iPad6;

        /// <summary>Read only: tsCfgFlags3 as one byte. The library keeps it.</summary>
        public short iTPCfgFlg3;
    }

    /// <summary>More of what the reader does with an ID.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct tsCfgFlags2
    {
        /// <summary>Use the lead characters when keys are sent.</summary>
        public short bUseLeadChrs;

        /// <summary>Show the ID in hexadecimal, not in decimal digits.</summary>
        public short bDspHex;

        /// <summary>The Wiegand data on the pins is inverted.</summary>
        public short bWiegInvData;

        /// <summary>Use bWiegInvData in place of the hardware setting.</summary>
        public short bUseInvDataF;

        /// <summary>Reverse the order of the Wiegand bits that are received.</summary>
        public short bRevWiegBits;

        /// <summary>Beep when an ID is received.</summary>
        public short bBeepID;

        /// <summary>Reverse the byte order (CSN reader).</summary>
        public short bRevBytes;

        /// <summary>The reader has the ASCII conversion type. Read only: it is never sent.</summary>
        public short isASCIIpresent;
    }

    /// <summary>Still more of what the reader does with an ID.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct tsCfgFlags3
    {
        /// <summary>Euro keyboard.</summary>
        public short bUseNumKP;

        /// <summary>1 = split format, 0 = the old combined scheme.</summary>
        public short bSndSFON;

        /// <summary>0 = FAC in decimal, 1 = FAC in hexadecimal.</summary>
        public short bSndSFFC;

        /// <summary>0 = ID in decimal, 1 = ID in hexadecimal.</summary>
        public short bSndSFID;

        /// <summary>ProxPro emulation.</summary>
        public short bPrxProEm;

        /// <summary>Arithmetic of the display: 0 = 32 bits, 1 = 64 bits.</summary>
        public short bUse64Bit;

        /// <summary>How the reader appears on USB: 0 = boot device, 1 = not a boot device.</summary>
        public short bNotBootDev;

        /// <summary>Hexadecimal digits: 0 = upper case, 1 = lower case.</summary>
        public short bLowerCaseHex;
    }

    /// <summary>Characters sent before an ID, and when it becomes invalid.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct tsIDDispParms2
    {
        /// <summary>With bUseLeadChrs, number of lead characters: at most 3.</summary>
        public short iLeadChrCnt;

        /// <summary>First lead character.</summary>
        public short iLeadChr0;

        /// <summary>Second lead character.</summary>
        public short iLeadChr1;

        /// <summary>Third lead character.</summary>
        public short iLeadChr2;

        /// <summary>Unless 0, sent when the ID becomes invalid.</summary>
        public short iCrdGnChr0;

        /// <summary>Unless this or iCrdGnChr0 is 0, sent when the ID becomes invalid.</summary>
        public short iCrdGnChr1;

        /// <summary>Unused.</summary>
        public short iPad6;

        /// <summary>Unused.</summary>
        public short iPad7;
    }

    /// <summary>Characters sent after an ID.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct tsIDDispParms3
    {
        /// <summary>Number of trail characters: at most 3.</summary>
        public short iTrailChrCnt;

        /// <summary>First trail character.</summary>
        public short iTrailChr0;

        /// <summary>Second trail character.</summary>
        public short iTrailChr1;

        /// <summary>Third trail character.</summary>
        public short iTrailChr2;

        /// <summary>Unused.</summary>
        public short iPad4;

        /// <summary>Unused.</summary>
        public short iPad5;

        /// <summary>Unused.</summary>
        public short iPad6;

        /// <summary>Unused.</summary>
        public short iPad7;
    }

    /// <summary>State of the LEDs.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct tsLEDCtrl
    {
        /// <summary>The LEDs are controlled through this library.</summary>
        public short bAppCtrlsLED;

        /// <summary>0 = off, 1 = on.</summary>
        public short iRedLEDState;

        /// <summary>0 = off, 1 = on.</summary>
        public short iGrnLEDState;

        /// <summary>Unused.</summary>
        public short iPad3;

        /// <summary>Unused.</summary>
        public short iPad4;

        /// <summary>Unused.</summary>
        public short iPad5;

        /// <summary>Unused.</summary>
        public short iPad6;

        /// <summary>0 = stored by the next WriteCfg(), 1 = set now and not stored.</summary>
        public short bVolatile;
    }

    /// <summary>State of beeper and relay.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct tsBprRlyCtrl
    {
        /// <summary>Unused.</summary>
        public short iPad0;

        /// <summary>0 = off, 1 = on.</summary>
        public short iBeeperState;

        /// <summary>0 = off, 1 = on.</summary>
        public short iRelayState;

        /// <summary>Unused.</summary>
        public short iPad3;

        /// <summary>Unused.</summary>
        public short iPad4;

        /// <summary>Unused.</summary>
        public short iPad5;

        /// <summary>Unused.</summary>
        public short iPad6;

        /// <summary>0 = stored by the next WriteCfg(), 1 = set now and not stored.</summary>
        public short bVolatile;
    }

    /// <summary>Receives one line of the trace.</summary>
    /// <param name="line">The finished line, which ends in a line feed and a terminator.</param>
    /// <param name="length">Its length in bytes, without the terminator.</param>
    [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
    public delegate void tavlyn_marker_function(IntPtr line, ulong length);
}
