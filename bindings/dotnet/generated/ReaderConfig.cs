// Made by bindings/describe/describe; renew it with its option --renew.

namespace Tavlyn
{
    public sealed partial class ReaderConfig
    {
        /// <summary>Send the ID at a fixed length, with leading zeros as needed.</summary>
        public bool FixLength
        {
            get { return Get<tsCfgFlags>(Calls.GetFlags).bFixLenDsp != 0; }
            set
            {
                Set<tsCfgFlags>("the set of FixLength", Calls.GetFlags, Calls.SetFlags,
                    (ref tsCfgFlags record) => record.bFixLenDsp = Flag(value));
            }
        }

        /// <summary>Only an ID of exactly iTotalBitCnt bits is valid.</summary>
        public bool ExactBits
        {
            get { return Get<tsCfgFlags>(Calls.GetFlags).bFrcBitCntEx != 0; }
            set
            {
                Set<tsCfgFlags>("the set of ExactBits", Calls.GetFlags, Calls.SetFlags,
                    (ref tsCfgFlags record) => record.bFrcBitCntEx = Flag(value));
            }
        }

        /// <summary>Strip the facility code (FAC) from the ID; it is not discarded.</summary>
        public bool StripFac
        {
            get { return Get<tsCfgFlags>(Calls.GetFlags).bStripFac != 0; }
            set
            {
                Set<tsCfgFlags>("the set of StripFac", Calls.GetFlags, Calls.SetFlags,
                    (ref tsCfgFlags record) => record.bStripFac = Flag(value));
            }
        }

        /// <summary>Send the FAC, if it is stripped.</summary>
        public bool SendFac
        {
            get { return Get<tsCfgFlags>(Calls.GetFlags).bSndFac != 0; }
            set
            {
                Set<tsCfgFlags>("the set of SendFac", Calls.GetFlags, Calls.SetFlags,
                    (ref tsCfgFlags record) => record.bSndFac = Flag(value));
            }
        }

        /// <summary>Send a delimiter between FAC and ID.</summary>
        public bool DelimitFac
        {
            get { return Get<tsCfgFlags>(Calls.GetFlags).bUseDelFac2Id != 0; }
            set
            {
                Set<tsCfgFlags>("the set of DelimitFac", Calls.GetFlags, Calls.SetFlags,
                    (ref tsCfgFlags record) => record.bUseDelFac2Id = Flag(value));
            }
        }

        /// <summary>Send no end-of-line character (which is ENTER by default).</summary>
        public bool OmitEndOfLine
        {
            get { return Get<tsCfgFlags>(Calls.GetFlags).bNoUseELChar != 0; }
            set
            {
                Set<tsCfgFlags>("the set of OmitEndOfLine", Calls.GetFlags, Calls.SetFlags,
                    (ref tsCfgFlags record) => record.bNoUseELChar = Flag(value));
            }
        }

        /// <summary>Send a valid ID as soon as it is received; iIDLockOutTm is not used.</summary>
        public bool SendAtOnce
        {
            get { return Get<tsCfgFlags>(Calls.GetFlags).bSndOnRx != 0; }
            set
            {
                Set<tsCfgFlags>("the set of SendAtOnce", Calls.GetFlags, Calls.SetFlags,
                    (ref tsCfgFlags record) => record.bSndOnRx = Flag(value));
            }
        }

        /// <summary>Send no keys to USB: the mode for reading IDs through this library.</summary>
        public bool HaltKeystrokes
        {
            get { return Get<tsCfgFlags>(Calls.GetFlags).bHaltKBSnd != 0; }
            set
            {
                Set<tsCfgFlags>("the set of HaltKeystrokes", Calls.GetFlags, Calls.SetFlags,
                    (ref tsCfgFlags record) => record.bHaltKBSnd = Flag(value));
            }
        }

        /// <summary>Leading Wiegand parity bits to strip: at most 15 (142, see ExFeatures01).</summary>
        public int LeadParityBits
        {
            get { return Get<tsIDBitCnts>(Calls.GetIDBitCnts).iLeadParityBitCnt; }
            set
            {
                string what = Ranges.Set(value, 0, 32767, "LeadParityBits", "0 to 15 bits");
                Set<tsIDBitCnts>(what, Calls.GetIDBitCnts, Calls.SetIDBitCnts,
                    (ref tsIDBitCnts record) => record.iLeadParityBitCnt = (short)value);
            }
        }

        /// <summary>Trailing Wiegand parity bits to strip: at most 15 (142 likewise).</summary>
        public int TrailParityBits
        {
            get { return Get<tsIDBitCnts>(Calls.GetIDBitCnts).iTrailParityBitCnt; }
            set
            {
                string what = Ranges.Set(value, 0, 32767, "TrailParityBits", "0 to 15 bits");
                Set<tsIDBitCnts>(what, Calls.GetIDBitCnts, Calls.SetIDBitCnts,
                    (ref tsIDBitCnts record) => record.iTrailParityBitCnt = (short)value);
            }
        }

        /// <summary>With bStripFac, bits of the ID; the rest is FAC: 1 to 255.</summary>
        public int IdBits
        {
            get { return Get<tsIDBitCnts>(Calls.GetIDBitCnts).iIDBitCnt; }
            set
            {
                string what = Ranges.Set(value, -32768, 32767, "IdBits", "1 to 255 bits");
                Set<tsIDBitCnts>(what, Calls.GetIDBitCnts, Calls.SetIDBitCnts,
                    (ref tsIDBitCnts record) => record.iIDBitCnt = (short)value);
            }
        }

        /// <summary>With bFrcBitCntEx, bits of a valid read including parity: 26 to 255.</summary>
        public int TotalBits
        {
            get { return Get<tsIDBitCnts>(Calls.GetIDBitCnts).iTotalBitCnt; }
            set
            {
                string what = Ranges.Set(value, -32768, 32767, "TotalBits", "26 to 255 bits");
                Set<tsIDBitCnts>(what, Calls.GetIDBitCnts, Calls.SetIDBitCnts,
                    (ref tsIDBitCnts record) => record.iTotalBitCnt = (short)value);
            }
        }

        /// <summary>Character between FAC and ID: at most 255.</summary>
        public int FacDelimiter
        {
            get { return Get<tsIDDispParms>(Calls.GetIDDispParms).iFACIDDelim; }
            set
            {
                string what = Ranges.Set(value, 0, 32767, "FacDelimiter", "0 to 255");
                Set<tsIDDispParms>(what, Calls.GetIDDispParms, Calls.SetIDDispParms,
                    (ref tsIDDispParms record) => record.iFACIDDelim = (short)value);
            }
        }

        /// <summary>Character at the end of the ID, unless bNoUseELChar is set: at most 255.</summary>
        public int EndOfLine
        {
            get { return Get<tsIDDispParms>(Calls.GetIDDispParms).iELDelim; }
            set
            {
                string what = Ranges.Set(value, 0, 32767, "EndOfLine", "0 to 255");
                Set<tsIDDispParms>(what, Calls.GetIDDispParms, Calls.SetIDDispParms,
                    (ref tsIDDispParms record) => record.iELDelim = (short)value);
            }
        }

        /// <summary>With bFixLenDsp, length to which the ID is padded with zeros: at most 25.</summary>
        public int IdLength
        {
            get { return Get<tsIDDispParms>(Calls.GetIDDispParms).iIDDispLen; }
            set
            {
                string what = Ranges.Set(value, 0, 32767, "IdLength", "0 to 25");
                Set<tsIDDispParms>(what, Calls.GetIDDispParms, Calls.SetIDDispParms,
                    (ref tsIDDispParms record) => record.iIDDispLen = (short)value);
            }
        }

        /// <summary>With bFixLenDsp, length to which the FAC is padded with zeros: at most 25.</summary>
        public int FacLength
        {
            get { return Get<tsIDDispParms>(Calls.GetIDDispParms).iFACDispLen; }
            set
            {
                string what = Ranges.Set(value, 0, 32767, "FacLength", "0 to 25");
                Set<tsIDDispParms>(what, Calls.GetIDDispParms, Calls.SetIDDispParms,
                    (ref tsIDDispParms record) => record.iFACDispLen = (short)value);
            }
        }

        /// <summary>0 = data format mode, 1 = extended mode.</summary>
        public int OutputMode
        {
            get { return Get<tsIDDispParms>(Calls.GetIDDispParms).iExOutputFormat; }
            set
            {
                string what = Ranges.Set(value, -32768, 32767, "OutputMode", "-32768 to 32767");
                Set<tsIDDispParms>(what, Calls.GetIDDispParms, Calls.SetIDDispParms,
                    (ref tsIDDispParms record) => record.iExOutputFormat = (short)value);
            }
        }

        /// <summary>A Wiegand read times out after this time: at most 1020, steps of 4.</summary>
        public int BitStreamMs
        {
            get { return Get<tsTimeParms>(Calls.GetTimeParms).iBitStrmTO; }
            set
            {
                string what = Ranges.Set(value, 0, 32767, "BitStreamMs", "0 to 1020 ms");
                Set<tsTimeParms>(what, Calls.GetTimeParms, Calls.SetTimeParms,
                    (ref tsTimeParms record) => record.iBitStrmTO = (short)value);
            }
        }

        /// <summary>A card ID remains valid for this time: at most 12750, steps of 50.</summary>
        public int IdHoldMs
        {
            get { return Get<tsTimeParms>(Calls.GetTimeParms).iIDHoldTO; }
            set
            {
                string what = Ranges.Set(value, 0, 32767, "IdHoldMs", "0 to 12750 ms");
                Set<tsTimeParms>(what, Calls.GetTimeParms, Calls.SetTimeParms,
                    (ref tsTimeParms record) => record.iIDHoldTO = (short)value);
            }
        }

        /// <summary>Repeated reports are suppressed for this time: at most 12750, steps of 50.</summary>
        public int LockOutMs
        {
            get { return Get<tsTimeParms>(Calls.GetTimeParms).iIDLockOutTm; }
            set
            {
                string what = Ranges.Set(value, 0, 32767, "LockOutMs", "0 to 12750 ms");
                Set<tsTimeParms>(what, Calls.GetTimeParms, Calls.SetTimeParms,
                    (ref tsTimeParms record) => record.iIDLockOutTm = (short)value);
            }
        }

        /// <summary>How long a USB key stays pressed: at most 1020, steps of 4.</summary>
        public int KeyPressMs
        {
            get { return Get<tsTimeParms>(Calls.GetTimeParms).iUSBKeyPrsTm; }
            set
            {
                string what = Ranges.Set(value, 0, 32767, "KeyPressMs", "0 to 1020 ms");
                Set<tsTimeParms>(what, Calls.GetTimeParms, Calls.SetTimeParms,
                    (ref tsTimeParms record) => record.iUSBKeyPrsTm = (short)value);
            }
        }

        /// <summary>How long a USB key stays released: at most 1020, steps of 4.</summary>
        public int KeyReleaseMs
        {
            get { return Get<tsTimeParms>(Calls.GetTimeParms).iUSBKeyRlsTm; }
            set
            {
                string what = Ranges.Set(value, 0, 32767, "KeyReleaseMs", "0 to 1020 ms");
                Set<tsTimeParms>(what, Calls.GetTimeParms, Calls.SetTimeParms,
                    (ref tsTimeParms record) => record.iUSBKeyRlsTm = (short)value);
            }
        }

        /// <summary>Features that the reader reports, see above.</summary>
        public int Features
        {
            get { return Get<tsTimeParms>(Calls.GetTimeParms).ExFeatures01; }
        }

        /// <summary>Read only: tsCfgFlags3 as one byte. The library keeps it.</summary>
        public int Flags3Byte
        {
            get { return Get<tsTimeParms>(Calls.GetTimeParms).iTPCfgFlg3; }
        }

        /// <summary>Use the lead characters when keys are sent.</summary>
        public bool SendLeadCharacters
        {
            get { return Get<tsCfgFlags2>(Calls.GetFlags2).bUseLeadChrs != 0; }
            set
            {
                Set<tsCfgFlags2>("the set of SendLeadCharacters", Calls.GetFlags2, Calls.SetFlags2,
                    (ref tsCfgFlags2 record) => record.bUseLeadChrs = Flag(value));
            }
        }

        /// <summary>Show the ID in hexadecimal, not in decimal digits.</summary>
        public bool ShowHex
        {
            get { return Get<tsCfgFlags2>(Calls.GetFlags2).bDspHex != 0; }
            set
            {
                Set<tsCfgFlags2>("the set of ShowHex", Calls.GetFlags2, Calls.SetFlags2,
                    (ref tsCfgFlags2 record) => record.bDspHex = Flag(value));
            }
        }

        /// <summary>The Wiegand data on the pins is inverted.</summary>
        public bool WiegandInverted
        {
            get { return Get<tsCfgFlags2>(Calls.GetFlags2).bWiegInvData != 0; }
            set
            {
                Set<tsCfgFlags2>("the set of WiegandInverted", Calls.GetFlags2, Calls.SetFlags2,
                    (ref tsCfgFlags2 record) => record.bWiegInvData = Flag(value));
            }
        }

        /// <summary>Use bWiegInvData in place of the hardware setting.</summary>
        public bool UseWiegandInverted
        {
            get { return Get<tsCfgFlags2>(Calls.GetFlags2).bUseInvDataF != 0; }
            set
            {
                Set<tsCfgFlags2>("the set of UseWiegandInverted", Calls.GetFlags2, Calls.SetFlags2,
                    (ref tsCfgFlags2 record) => record.bUseInvDataF = Flag(value));
            }
        }

        /// <summary>Reverse the order of the Wiegand bits that are received.</summary>
        public bool ReverseBits
        {
            get { return Get<tsCfgFlags2>(Calls.GetFlags2).bRevWiegBits != 0; }
            set
            {
                Set<tsCfgFlags2>("the set of ReverseBits", Calls.GetFlags2, Calls.SetFlags2,
                    (ref tsCfgFlags2 record) => record.bRevWiegBits = Flag(value));
            }
        }

        /// <summary>Beep when an ID is received.</summary>
        public bool BeepOnId
        {
            get { return Get<tsCfgFlags2>(Calls.GetFlags2).bBeepID != 0; }
            set
            {
                Set<tsCfgFlags2>("the set of BeepOnId", Calls.GetFlags2, Calls.SetFlags2,
                    (ref tsCfgFlags2 record) => record.bBeepID = Flag(value));
            }
        }

        /// <summary>Reverse the byte order (CSN reader).</summary>
        public bool ReverseBytes
        {
            get { return Get<tsCfgFlags2>(Calls.GetFlags2).bRevBytes != 0; }
            set
            {
                Set<tsCfgFlags2>("the set of ReverseBytes", Calls.GetFlags2, Calls.SetFlags2,
                    (ref tsCfgFlags2 record) => record.bRevBytes = Flag(value));
            }
        }

        /// <summary>The reader has the ASCII conversion type. Read only: it is never sent.</summary>
        public bool HasAscii
        {
            get { return Get<tsCfgFlags2>(Calls.GetFlags2).isASCIIpresent != 0; }
        }

        /// <summary>Euro keyboard.</summary>
        public bool EuropeanKeyboard
        {
            get { return Get<tsCfgFlags3>(Calls.GetFlags3).bUseNumKP != 0; }
            set
            {
                Set<tsCfgFlags3>("the set of EuropeanKeyboard", Calls.GetFlags3, Calls.SetFlags3,
                    (ref tsCfgFlags3 record) => record.bUseNumKP = Flag(value));
            }
        }

        /// <summary>1 = split format, 0 = the old combined scheme.</summary>
        public bool SplitFormat
        {
            get { return Get<tsCfgFlags3>(Calls.GetFlags3).bSndSFON != 0; }
            set
            {
                Set<tsCfgFlags3>("the set of SplitFormat", Calls.GetFlags3, Calls.SetFlags3,
                    (ref tsCfgFlags3 record) => record.bSndSFON = Flag(value));
            }
        }

        /// <summary>0 = FAC in decimal, 1 = FAC in hexadecimal.</summary>
        public bool FacHex
        {
            get { return Get<tsCfgFlags3>(Calls.GetFlags3).bSndSFFC != 0; }
            set
            {
                Set<tsCfgFlags3>("the set of FacHex", Calls.GetFlags3, Calls.SetFlags3,
                    (ref tsCfgFlags3 record) => record.bSndSFFC = Flag(value));
            }
        }

        /// <summary>0 = ID in decimal, 1 = ID in hexadecimal.</summary>
        public bool IdHex
        {
            get { return Get<tsCfgFlags3>(Calls.GetFlags3).bSndSFID != 0; }
            set
            {
                Set<tsCfgFlags3>("the set of IdHex", Calls.GetFlags3, Calls.SetFlags3,
                    (ref tsCfgFlags3 record) => record.bSndSFID = Flag(value));
            }
        }

        /// <summary>ProxPro emulation.</summary>
        public bool EmulateProxpro
        {
            get { return Get<tsCfgFlags3>(Calls.GetFlags3).bPrxProEm != 0; }
            set
            {
                Set<tsCfgFlags3>("the set of EmulateProxpro", Calls.GetFlags3, Calls.SetFlags3,
                    (ref tsCfgFlags3 record) => record.bPrxProEm = Flag(value));
            }
        }

        /// <summary>Arithmetic of the display: 0 = 32 bits, 1 = 64 bits.</summary>
        public bool Use64Bits
        {
            get { return Get<tsCfgFlags3>(Calls.GetFlags3).bUse64Bit != 0; }
            set
            {
                Set<tsCfgFlags3>("the set of Use64Bits", Calls.GetFlags3, Calls.SetFlags3,
                    (ref tsCfgFlags3 record) => record.bUse64Bit = Flag(value));
            }
        }

        /// <summary>How the reader appears on USB: 0 = boot device, 1 = not a boot device.</summary>
        public bool NotBootDevice
        {
            get { return Get<tsCfgFlags3>(Calls.GetFlags3).bNotBootDev != 0; }
            set
            {
                Set<tsCfgFlags3>("the set of NotBootDevice", Calls.GetFlags3, Calls.SetFlags3,
                    (ref tsCfgFlags3 record) => record.bNotBootDev = Flag(value));
            }
        }

        /// <summary>Hexadecimal digits: 0 = upper case, 1 = lower case.</summary>
        public bool LowerCaseHex
        {
            get { return Get<tsCfgFlags3>(Calls.GetFlags3).bLowerCaseHex != 0; }
            set
            {
                Set<tsCfgFlags3>("the set of LowerCaseHex", Calls.GetFlags3, Calls.SetFlags3,
                    (ref tsCfgFlags3 record) => record.bLowerCaseHex = Flag(value));
            }
        }

        /// <summary>With bUseLeadChrs, number of lead characters: at most 3.</summary>
        public int LeadCount
        {
            get { return Get<tsIDDispParms2>(Calls.GetIDDispParms2).iLeadChrCnt; }
            set
            {
                string what = Ranges.Set(value, 0, 32767, "LeadCount", "0 to 3");
                Set<tsIDDispParms2>(what, Calls.GetIDDispParms2, Calls.SetIDDispParms2,
                    (ref tsIDDispParms2 record) => record.iLeadChrCnt = (short)value);
            }
        }

        /// <summary>First lead character.</summary>
        public int LeadCharacter1
        {
            get { return Get<tsIDDispParms2>(Calls.GetIDDispParms2).iLeadChr0; }
            set
            {
                string what = Ranges.Set(value, -32768, 32767, "LeadCharacter1", "-32768 to 32767");
                Set<tsIDDispParms2>(what, Calls.GetIDDispParms2, Calls.SetIDDispParms2,
                    (ref tsIDDispParms2 record) => record.iLeadChr0 = (short)value);
            }
        }

        /// <summary>Second lead character.</summary>
        public int LeadCharacter2
        {
            get { return Get<tsIDDispParms2>(Calls.GetIDDispParms2).iLeadChr1; }
            set
            {
                string what = Ranges.Set(value, -32768, 32767, "LeadCharacter2", "-32768 to 32767");
                Set<tsIDDispParms2>(what, Calls.GetIDDispParms2, Calls.SetIDDispParms2,
                    (ref tsIDDispParms2 record) => record.iLeadChr1 = (short)value);
            }
        }

        /// <summary>Third lead character.</summary>
        public int LeadCharacter3
        {
            get { return Get<tsIDDispParms2>(Calls.GetIDDispParms2).iLeadChr2; }
            set
            {
                string what = Ranges.Set(value, -32768, 32767, "LeadCharacter3", "-32768 to 32767");
                Set<tsIDDispParms2>(what, Calls.GetIDDispParms2, Calls.SetIDDispParms2,
                    (ref tsIDDispParms2 record) => record.iLeadChr2 = (short)value);
            }
        }

        /// <summary>Unless 0, sent when the ID becomes invalid.</summary>
        public int GoneCharacter1
        {
            get { return Get<tsIDDispParms2>(Calls.GetIDDispParms2).iCrdGnChr0; }
            set
            {
                string what = Ranges.Set(value, -32768, 32767, "GoneCharacter1", "-32768 to 32767");
                Set<tsIDDispParms2>(what, Calls.GetIDDispParms2, Calls.SetIDDispParms2,
                    (ref tsIDDispParms2 record) => record.iCrdGnChr0 = (short)value);
            }
        }

        /// <summary>Unless this or iCrdGnChr0 is 0, sent when the ID becomes invalid.</summary>
        public int GoneCharacter2
        {
            get { return Get<tsIDDispParms2>(Calls.GetIDDispParms2).iCrdGnChr1; }
            set
            {
                string what = Ranges.Set(value, -32768, 32767, "GoneCharacter2", "-32768 to 32767");
                Set<tsIDDispParms2>(what, Calls.GetIDDispParms2, Calls.SetIDDispParms2,
                    (ref tsIDDispParms2 record) => record.iCrdGnChr1 = (short)value);
            }
        }

        /// <summary>Number of trail characters: at most 3.</summary>
        public int TrailCount
        {
            get { return Get<tsIDDispParms3>(Calls.GetIDDispParms3).iTrailChrCnt; }
            set
            {
                string what = Ranges.Set(value, 0, 32767, "TrailCount", "0 to 3");
                Set<tsIDDispParms3>(what, Calls.GetIDDispParms3, Calls.SetIDDispParms3,
                    (ref tsIDDispParms3 record) => record.iTrailChrCnt = (short)value);
            }
        }

        /// <summary>First trail character.</summary>
        public int TrailCharacter1
        {
            get { return Get<tsIDDispParms3>(Calls.GetIDDispParms3).iTrailChr0; }
            set
            {
                string what = Ranges.Set(value, -32768, 32767, "TrailCharacter1", "-32768 to 32767");
                Set<tsIDDispParms3>(what, Calls.GetIDDispParms3, Calls.SetIDDispParms3,
                    (ref tsIDDispParms3 record) => record.iTrailChr0 = (short)value);
            }
        }

        /// <summary>Second trail character.</summary>
        public int TrailCharacter2
        {
            get { return Get<tsIDDispParms3>(Calls.GetIDDispParms3).iTrailChr1; }
            set
            {
                string what = Ranges.Set(value, -32768, 32767, "TrailCharacter2", "-32768 to 32767");
                Set<tsIDDispParms3>(what, Calls.GetIDDispParms3, Calls.SetIDDispParms3,
                    (ref tsIDDispParms3 record) => record.iTrailChr1 = (short)value);
            }
        }

        /// <summary>Third trail character.</summary>
        public int TrailCharacter3
        {
            get { return Get<tsIDDispParms3>(Calls.GetIDDispParms3).iTrailChr2; }
            set
            {
                string what = Ranges.Set(value, -32768, 32767, "TrailCharacter3", "-32768 to 32767");
                Set<tsIDDispParms3>(what, Calls.GetIDDispParms3, Calls.SetIDDispParms3,
                    (ref tsIDDispParms3 record) => record.iTrailChr2 = (short)value);
            }
        }

        /// <summary>The LEDs are controlled through this library.</summary>
        public bool ControlLeds
        {
            get { return Get<tsLEDCtrl>(Calls.GetLEDCtrl).bAppCtrlsLED != 0; }
            set
            {
                Set<tsLEDCtrl>("the set of ControlLeds", Calls.GetLEDCtrl, Calls.SetLEDCtrl,
                    (ref tsLEDCtrl record) => record.bAppCtrlsLED = Flag(value));
            }
        }

        /// <summary>0 = off, 1 = on.</summary>
        public bool RedLedOn
        {
            get { return Get<tsLEDCtrl>(Calls.GetLEDCtrl).iRedLEDState != 0; }
            set
            {
                Set<tsLEDCtrl>("the set of RedLedOn", Calls.GetLEDCtrl, Calls.SetLEDCtrl,
                    (ref tsLEDCtrl record) => record.iRedLEDState = Flag(value));
            }
        }

        /// <summary>0 = off, 1 = on.</summary>
        public bool GreenLedOn
        {
            get { return Get<tsLEDCtrl>(Calls.GetLEDCtrl).iGrnLEDState != 0; }
            set
            {
                Set<tsLEDCtrl>("the set of GreenLedOn", Calls.GetLEDCtrl, Calls.SetLEDCtrl,
                    (ref tsLEDCtrl record) => record.iGrnLEDState = Flag(value));
            }
        }

        /// <summary>0 = stored by the next WriteCfg(), 1 = set now and not stored.</summary>
        public bool LedsVolatile
        {
            get { return Get<tsLEDCtrl>(Calls.GetLEDCtrl).bVolatile != 0; }
            set
            {
                Set<tsLEDCtrl>("the set of LedsVolatile", Calls.GetLEDCtrl, Calls.SetLEDCtrl,
                    (ref tsLEDCtrl record) => record.bVolatile = Flag(value));
            }
        }

        /// <summary>0 = off, 1 = on.</summary>
        public bool BeeperOn
        {
            get { return Get<tsBprRlyCtrl>(Calls.GetBprRlyCtrl).iBeeperState != 0; }
            set
            {
                Set<tsBprRlyCtrl>("the set of BeeperOn", Calls.GetBprRlyCtrl, Calls.SetBprRlyCtrl,
                    (ref tsBprRlyCtrl record) => record.iBeeperState = Flag(value));
            }
        }

        /// <summary>0 = off, 1 = on.</summary>
        public bool RelayOn
        {
            get { return Get<tsBprRlyCtrl>(Calls.GetBprRlyCtrl).iRelayState != 0; }
            set
            {
                Set<tsBprRlyCtrl>("the set of RelayOn", Calls.GetBprRlyCtrl, Calls.SetBprRlyCtrl,
                    (ref tsBprRlyCtrl record) => record.iRelayState = Flag(value));
            }
        }

        /// <summary>0 = stored by the next WriteCfg(), 1 = set now and not stored.</summary>
        public bool OutputsVolatile
        {
            get { return Get<tsBprRlyCtrl>(Calls.GetBprRlyCtrl).bVolatile != 0; }
            set
            {
                Set<tsBprRlyCtrl>("the set of OutputsVolatile", Calls.GetBprRlyCtrl, Calls.SetBprRlyCtrl,
                    (ref tsBprRlyCtrl record) => record.bVolatile = Flag(value));
            }
        }
    }
}
