// What a save of DistinctReader() must contain, letter by letter.
#pragma once

namespace tavlyn::test {

inline constexpr const char* kTitleLine = "/--- Tavlyn and OEM Reader Configuration Template File ---\n";
// Both lines end in a blank.
inline constexpr const char* kVersionLines = ":Library Version: 7.9.2 \n:Device FW Version: 74.31 \n";

inline constexpr const char* kDistinctFields = R"(
/ AZERTYShiftLock
AZERTYShiftlock = 1     / 0= off, 1 = on

/ ExtendedPrecisionMath
ExtendedPrecisionMath = 1     / 0= off, 1 = on

/ tsIDBitCnts
iLeadParityBitCnt = 20     / Wiegand Leading Parity bit count to be stripped
iTrailParityBitCnt = 2     / Wiegand Trailing Parity bit count to be stripped
iIDBitCnt = 33     / if bStripFac, this determines bit count of ID and FAC
iTotalBitCnt = 200     / if bFrcBitCntEx, card read (including parity) must match this

/ tsCfgFlags
bFixLenDsp = 1     / Send as fixed length with leading zeros as needed
bFrcBitCntEx = 0     / Force Rx'd bit count to be exact to be valid
bStripFac = 1     / Strip the FAC from the ID (not discarded)
bSndFac = 0     / Send the FAC (if stripped from data)
bUseDelFac2Id = 0     / Put a delimiter between FAC and ID on send
bNoUseELChar = 1     / Don't use a EndLine char on send (default to ENTER)
bSndOnRx = 0     / Send valid ID as soon as it is received (iIDLockOutTm timer not used)
bHaltKBSnd = 1     / Don't Send keys to USB (Get ID mechanism)

/ tsIDDispParms
iFACIDDelim = 58     / if bStripFac & bSndFac & bUseDelFac2Id, this char sent between FAC & ID
iELDelim = 40     / if NOT bNoUseELChar, this char sent at end of ID
iIDDispLen = 9     / if bFixLenDsp, ID padded with zeros to this length
iFACDispLen = 7     / if bFixLenDsp, FAC padded with zeros to this length
iExOutputFormat = 1     / 0 = Data Format Mode, 1 = Extended Mode

/ tsTimeParms
iBitStrmTO = 100     / Wiegand read times out after this msec time (4msec gran.)
iIDHoldTO = 1000     / Card ID remains valid for this msec time (50msec gran.)
iIDLockOutTm = 2000     / Squelch repetitive reader reports (usually > 1000) in msec (50msec gran.)
iUSBKeyPrsTm = 12     / Sets USB inter-key 'Press' time in msecs (4msec gran.)
iUSBKeyRlsTm = 20     / Sets USB inter-key 'Release' time in msecs (4msec gran.)

/ tsCfgFlags2
bUseLeadChrs = 0     / Use leading chars in ID KB send
bDspHex = 1     / Display ID as ASCII Hex [not ASCII decimal]
bWiegInvData = 0     / Wiegand data on pins is inverted
bUseInvDataF = 0     / use the bWiegInvData flag over hardware setting
bRevWiegBits = 0     / Reverse the Wiegand Rx bits
bBeepID = 1     / Beep when ID received
bRevBytes = 1     / Reverse byte order (CSN reader)

/ tsCfgFlags3
bUseNumKP = 1     / Euro KB flag
bSndSFON = 0     / Split format ON = 1, old combined scheme = 0
bSndSFFC = 1     / 0 = FAC Decimal, 1 = FAC Hex
bSndSFID = 0     / 0 = ID Decimal, 1 = ID Hex
bPrxProEm = 0     / Use ProxPro emulation
bUse64Bit = 1     / 0 = 32-bit, 1 = 64-bit Display Math
bNotBootDev = 1     / USB Enum: 0=BootDevice, 1=NOTBootDevice
bLowerCaseHex = 1     / 0= Upper case , 1= Lower case

/ tsIDDispParms2
iLeadChrCnt = 1     / if bUseLeadChrs, this contains the lead char count (<=3)
iLeadChr0 = 65     / these lead characters are filled in (up to 3)
iLeadChr1 = 0     / 
iLeadChr2 = 0     / 
iCrdGnChr0 = 120     / if non-zero, sent when ID goes Invalid
iCrdGnChr1 = 121     / if this and Chr0 non-zero, sent when ID goes Invalid

/ tsIDDispParms3
iTrailChrCnt = 2     / this contains the trail char count (<=3)
iTrailChr0 = 66     / these trail characters are filled in (up to 3)
iTrailChr1 = 67     / NOTE: LeadChrCnt + TrailCheCnt <= 3
iTrailChr2 = 0     /       LeadChrs have priority

/ tsLEDCtrl
bAppCtrlsLED = 1     / Display LEDs are controlled by user thru this DLL
iRedLEDState = 1     / 0 == Off, 1 == On
iGrnLEDState = 0     / 0 == Off, 1 == On

/ tsBprRlyCtrl
iBeeperState = 0     / 0 == Off, 1 == On
iRelayState = 1     / 0 == Off, 1 == On
)";

inline constexpr const char* kSepNote = R"(
/ Note: DO NOT change the name "sFldSepData"!
/ Comment and Blank Lines between data bytes are optional.
/ ASCII Hex data bytes may be separated by Comma, Period, Space or Tab.
)";

inline constexpr const char* kDistinctSep = R"(
BEGIN sFldSepData

/ FldSepHdr[2] =
24.42.21.10

/ FldDefs[][4] =
04.05.06.07
08.09.0A.0B

/ SepDefs[][2] =
0C.0D

/ SepData[] =
0E.0F.10.11.12.13.14.15
16.17.18.19.1A.1B.1C.1D
1E.1F.20.21.22.23.24.25
26.27.28.29.2A.2B.2C.2D
2E.2F.30.31.32.33.34.35
36.37.38.39.3A.3B.3C.3D
3E.3F.40.41.42.43.44.45
46.47.48.49.4A.4B.4C.4D
4E.4F.50.51.52.53.54.55
56.57.58.59.5A.5B.5C.5D
5E.5F.60.61.62.63.64.65
66.67.68.69.6A.6B.6C.6D
6E.6F.70.71.72.73.74.75
76.77.78.79.7A.7B.7C.7D
7E.7F.

END sFldSepData
)";

}  // namespace tavlyn::test
