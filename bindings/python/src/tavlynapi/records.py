# Made by bindings/describe/describe; renew it with its option --renew.
"""The records of the library, word by word."""
import ctypes
from ctypes import Structure, c_int16, c_uint16, c_uint32, c_uint8


class CardAnalyzerRecord(Structure):
    """A card that the reader has seen; 40 bytes."""

    RecType: int
    BitCount: int
    CardBits: ctypes.Array[c_uint8]
    _fields_ = [
        ("RecType", c_uint32),
        ("BitCount", c_uint32),
        ("CardBits", c_uint8 * 32),
    ]


class tsSonarParms(Structure):
    """How the sensor measures."""

    LEDFlags: int
    PingRate: int
    Reserved1: int
    MinDist: int
    MaxDist: int
    ORDBTm: int
    IRDBTm: int
    StartDly: int
    _fields_ = [
        ("LEDFlags", c_uint16),
        ("PingRate", c_uint16),
        ("Reserved1", c_uint16),
        ("MinDist", c_uint16),
        ("MaxDist", c_uint16),
        ("ORDBTm", c_uint16),
        ("IRDBTm", c_uint16),
        ("StartDly", c_uint16),
    ]


class tsWalkAwayParms(Structure):
    """Keys sent when somebody walks away."""

    KeyCount: int
    InterKeyDelay: int
    Key1Mods: int
    Key2Mods: int
    Key3Mods: int
    Key4Mods: int
    Key5Mods: int
    Key6Mods: int
    Flags0: int
    MinFltRepRate: int
    Key1Code: int
    Key2Code: int
    Key3Code: int
    Key4Code: int
    Key5Code: int
    Key6Code: int
    _fields_ = [
        ("KeyCount", c_uint16),
        ("InterKeyDelay", c_uint16),
        ("Key1Mods", c_uint16),
        ("Key2Mods", c_uint16),
        ("Key3Mods", c_uint16),
        ("Key4Mods", c_uint16),
        ("Key5Mods", c_uint16),
        ("Key6Mods", c_uint16),
        ("Flags0", c_uint16),
        ("MinFltRepRate", c_uint16),
        ("Key1Code", c_uint16),
        ("Key2Code", c_uint16),
        ("Key3Code", c_uint16),
        ("Key4Code", c_uint16),
        ("Key5Code", c_uint16),
        ("Key6Code", c_uint16),
    ]


class tsWalkUpParms(Structure):
    """Keys sent when somebody walks up."""

    KeyCount: int
    InterKeyDelay: int
    Key1Mods: int
    Key2Mods: int
    Key3Mods: int
    Key4Mods: int
    Key5Mods: int
    Key6Mods: int
    Flags0: int
    Reserved2: int
    Key1Code: int
    Key2Code: int
    Key3Code: int
    Key4Code: int
    Key5Code: int
    Key6Code: int
    _fields_ = [
        ("KeyCount", c_uint16),
        ("InterKeyDelay", c_uint16),
        ("Key1Mods", c_uint16),
        ("Key2Mods", c_uint16),
        ("Key3Mods", c_uint16),
        ("Key4Mods", c_uint16),
        ("Key5Mods", c_uint16),
        ("Key6Mods", c_uint16),
        ("Flags0", c_uint16),
        ("Reserved2", c_uint16),
        ("Key1Code", c_uint16),
        ("Key2Code", c_uint16),
        ("Key3Code", c_uint16),
        ("Key4Code", c_uint16),
        ("Key5Code", c_uint16),
        ("Key6Code", c_uint16),
    ]


class tsIdleParms(Structure):
    """A key pressed while somebody stays idle."""

    Reserved1: int
    PressRate: int
    Key1Mods: int
    Key1Code: int
    Flags: int
    DMTODelta: int
    DMTOTm: int
    SNBlankTm: int
    _fields_ = [
        ("Reserved1", c_uint16),
        ("PressRate", c_uint16),
        ("Key1Mods", c_uint16),
        ("Key1Code", c_uint16),
        ("Flags", c_uint16),
        ("DMTODelta", c_uint16),
        ("DMTOTm", c_uint16),
        ("SNBlankTm", c_uint16),
    ]


class tsCfgFlags(Structure):
    """What the reader does with an ID."""

    bFixLenDsp: int
    bFrcBitCntEx: int
    bStripFac: int
    bSndFac: int
    bUseDelFac2Id: int
    bNoUseELChar: int
    bSndOnRx: int
    bHaltKBSnd: int
    _fields_ = [
        ("bFixLenDsp", c_int16),
        ("bFrcBitCntEx", c_int16),
        ("bStripFac", c_int16),
        ("bSndFac", c_int16),
        ("bUseDelFac2Id", c_int16),
        ("bNoUseELChar", c_int16),
        ("bSndOnRx", c_int16),
        ("bHaltKBSnd", c_int16),
    ]


class tsIDBitCnts(Structure):
    """How the bits of a read are counted and set apart."""

    iLeadParityBitCnt: int
    iTrailParityBitCnt: int
    iIDBitCnt: int
    iTotalBitCnt: int
    iPad4: int
    iPad5: int
    iPad6: int
    iPad7: int
    _fields_ = [
        ("iLeadParityBitCnt", c_int16),
        ("iTrailParityBitCnt", c_int16),
        ("iIDBitCnt", c_int16),
        ("iTotalBitCnt", c_int16),
        ("iPad4", c_int16),
        ("iPad5", c_int16),
        ("iPad6", c_int16),
        ("iPad7", c_int16),
    ]


class tsIDDispParms(Structure):
    """How an ID is shown."""

    iFACIDDelim: int
    iELDelim: int
    iIDDispLen: int
    iFACDispLen: int
    iExOutputFormat: int
    iPad5: int
    iPad6: int
    iPad7: int
    _fields_ = [
        ("iFACIDDelim", c_int16),
        ("iELDelim", c_int16),
        ("iIDDispLen", c_int16),
        ("iFACDispLen", c_int16),
        ("iExOutputFormat", c_int16),
        ("iPad5", c_int16),
        ("iPad6", c_int16),
        ("iPad7", c_int16),
    ]


class tsTimeParms(Structure):
    """Times in milliseconds, and the features of the reader."""

    iBitStrmTO: int
    iIDHoldTO: int
    iIDLockOutTm: int
    iUSBKeyPrsTm: int
    iUSBKeyRlsTm: int
    ExFeatures01: int
    iPad6: int
    iTPCfgFlg3: int
    _fields_ = [
        ("iBitStrmTO", c_int16),
        ("iIDHoldTO", c_int16),
        ("iIDLockOutTm", c_int16),
        ("iUSBKeyPrsTm", c_int16),
        ("iUSBKeyRlsTm", c_int16),
        ("ExFeatures01", c_int16),
        ("iPad6", c_int16),
        ("iTPCfgFlg3", c_int16),
    ]


class tsCfgFlags2(Structure):
    """More of what the reader does with an ID."""

    bUseLeadChrs: int
    bDspHex: int
    bWiegInvData: int
    bUseInvDataF: int
    bRevWiegBits: int
    bBeepID: int
    bRevBytes: int
    isASCIIpresent: int
    _fields_ = [
        ("bUseLeadChrs", c_int16),
        ("bDspHex", c_int16),
        ("bWiegInvData", c_int16),
        ("bUseInvDataF", c_int16),
        ("bRevWiegBits", c_int16),
        ("bBeepID", c_int16),
        ("bRevBytes", c_int16),
        ("isASCIIpresent", c_int16),
    ]


class tsCfgFlags3(Structure):
    """Still more of what the reader does with an ID."""

    bUseNumKP: int
    bSndSFON: int
    bSndSFFC: int
    bSndSFID: int
    bPrxProEm: int
    bUse64Bit: int
    bNotBootDev: int
    bLowerCaseHex: int
    _fields_ = [
        ("bUseNumKP", c_int16),
        ("bSndSFON", c_int16),
        ("bSndSFFC", c_int16),
        ("bSndSFID", c_int16),
        ("bPrxProEm", c_int16),
        ("bUse64Bit", c_int16),
        ("bNotBootDev", c_int16),
        ("bLowerCaseHex", c_int16),
    ]


class tsIDDispParms2(Structure):
    """Characters sent before an ID, and when it becomes invalid."""

    iLeadChrCnt: int
    iLeadChr0: int
    iLeadChr1: int
    iLeadChr2: int
    iCrdGnChr0: int
    iCrdGnChr1: int
    iPad6: int
    iPad7: int
    _fields_ = [
        ("iLeadChrCnt", c_int16),
        ("iLeadChr0", c_int16),
        ("iLeadChr1", c_int16),
        ("iLeadChr2", c_int16),
        ("iCrdGnChr0", c_int16),
        ("iCrdGnChr1", c_int16),
        ("iPad6", c_int16),
        ("iPad7", c_int16),
    ]


class tsIDDispParms3(Structure):
    """Characters sent after an ID."""

    iTrailChrCnt: int
    iTrailChr0: int
    iTrailChr1: int
    iTrailChr2: int
    iPad4: int
    iPad5: int
    iPad6: int
    iPad7: int
    _fields_ = [
        ("iTrailChrCnt", c_int16),
        ("iTrailChr0", c_int16),
        ("iTrailChr1", c_int16),
        ("iTrailChr2", c_int16),
        ("iPad4", c_int16),
        ("iPad5", c_int16),
        ("iPad6", c_int16),
        ("iPad7", c_int16),
    ]


class tsLEDCtrl(Structure):
    """State of the LEDs."""

    bAppCtrlsLED: int
    iRedLEDState: int
    iGrnLEDState: int
    iPad3: int
    iPad4: int
    iPad5: int
    iPad6: int
    bVolatile: int
    _fields_ = [
        ("bAppCtrlsLED", c_int16),
        ("iRedLEDState", c_int16),
        ("iGrnLEDState", c_int16),
        ("iPad3", c_int16),
        ("iPad4", c_int16),
        ("iPad5", c_int16),
        ("iPad6", c_int16),
        ("bVolatile", c_int16),
    ]


class tsBprRlyCtrl(Structure):
    """State of beeper and relay."""

    iPad0: int
    iBeeperState: int
    iRelayState: int
    iPad3: int
    iPad4: int
    iPad5: int
    iPad6: int
    bVolatile: int
    _fields_ = [
        ("iPad0", c_int16),
        ("iBeeperState", c_int16),
        ("iRelayState", c_int16),
        ("iPad3", c_int16),
        ("iPad4", c_int16),
        ("iPad5", c_int16),
        ("iPad6", c_int16),
        ("bVolatile", c_int16),
    ]
