# Made by bindings/describe/describe; renew it with its option --renew.
"""The calls of the library, each under its own name. Results and error words are those of its headers."""
from ctypes import c_char_p, c_int16, c_int32, c_uint8, c_uint16, c_uint32, c_uint64
from typing import List, Optional

from . import passing
from .library import call
from .passing import Data, Marker, Path, Words16, Words32
from .records import (
    CardAnalyzerRecord,
    tsBprRlyCtrl,
    tsCfgFlags,
    tsCfgFlags2,
    tsCfgFlags3,
    tsIDBitCnts,
    tsIDDispParms,
    tsIDDispParms2,
    tsIDDispParms3,
    tsIdleParms,
    tsLEDCtrl,
    tsSonarParms,
    tsTimeParms,
    tsWalkAwayParms,
    tsWalkUpParms,
)


def getIDBitCnts_iLeadParityBitCnt() -> int:
    """Returns the word iLeadParityBitCnt."""
    return int(call("getIDBitCnts_iLeadParityBitCnt", c_int16))


def setIDBitCnts_iLeadParityBitCnt(value: int) -> int:
    """Sets the word iLeadParityBitCnt."""
    return int(call("setIDBitCnts_iLeadParityBitCnt", c_uint16, passing.number(c_int16, value)))


def getIDBitCnts_iTrailParityBitCnt() -> int:
    """Returns the word iTrailParityBitCnt."""
    return int(call("getIDBitCnts_iTrailParityBitCnt", c_int16))


def setIDBitCnts_iTrailParityBitCnt(value: int) -> int:
    """Sets the word iTrailParityBitCnt."""
    return int(call("setIDBitCnts_iTrailParityBitCnt", c_uint16, passing.number(c_int16, value)))


def getIDBitCnts_iIDBitCnt() -> int:
    """Returns the word iIDBitCnt."""
    return int(call("getIDBitCnts_iIDBitCnt", c_int16))


def setIDBitCnts_iIDBitCnt(value: int) -> int:
    """Sets the word iIDBitCnt."""
    return int(call("setIDBitCnts_iIDBitCnt", c_uint16, passing.number(c_int16, value)))


def getIDBitCnts_iTotalBitCnt() -> int:
    """Returns the word iTotalBitCnt."""
    return int(call("getIDBitCnts_iTotalBitCnt", c_int16))


def setIDBitCnts_iTotalBitCnt(value: int) -> int:
    """Sets the word iTotalBitCnt."""
    return int(call("setIDBitCnts_iTotalBitCnt", c_uint16, passing.number(c_int16, value)))


def getIDBitCnts_iPad4() -> int:
    """Returns the word iPad4 of tsIDBitCnts, which is unused."""
    return int(call("getIDBitCnts_iPad4", c_int16))


def setIDBitCnts_iPad4(value: int) -> int:
    """Sets iPad4 of tsIDBitCnts, which is stored but unused."""
    return int(call("setIDBitCnts_iPad4", c_uint16, passing.number(c_int16, value)))


def getIDBitCnts_iPad5() -> int:
    """Returns the word iPad5 of tsIDBitCnts, which is unused."""
    return int(call("getIDBitCnts_iPad5", c_int16))


def setIDBitCnts_iPad5(value: int) -> int:
    """Sets iPad5 of tsIDBitCnts, which is stored but unused."""
    return int(call("setIDBitCnts_iPad5", c_uint16, passing.number(c_int16, value)))


def getIDBitCnts_iPad6() -> int:
    """Returns the word iPad6 of tsIDBitCnts, which is unused."""
    return int(call("getIDBitCnts_iPad6", c_int16))


def setIDBitCnts_iPad6(value: int) -> int:
    """Sets iPad6 of tsIDBitCnts, which is stored but unused."""
    return int(call("setIDBitCnts_iPad6", c_uint16, passing.number(c_int16, value)))


def getIDBitCnts_iPad7() -> int:
    """Returns the word iPad7 of tsIDBitCnts, which is unused."""
    return int(call("getIDBitCnts_iPad7", c_int16))


def setIDBitCnts_iPad7(value: int) -> int:
    """Sets iPad7 of tsIDBitCnts, which is stored but unused."""
    return int(call("setIDBitCnts_iPad7", c_uint16, passing.number(c_int16, value)))


def getCfgFlags_bFixLenDsp() -> int:
    """Returns the flag bFixLenDsp."""
    return int(call("getCfgFlags_bFixLenDsp", c_int16))


def setCfgFlags_bFixLenDsp(value: int) -> int:
    """Sets the flag bFixLenDsp."""
    return int(call("setCfgFlags_bFixLenDsp", c_uint16, passing.number(c_int16, value)))


def getCfgFlags_bFrcBitCntEx() -> int:
    """Returns the flag bFrcBitCntEx."""
    return int(call("getCfgFlags_bFrcBitCntEx", c_int16))


def setCfgFlags_bFrcBitCntEx(value: int) -> int:
    """Sets the flag bFrcBitCntEx."""
    return int(call("setCfgFlags_bFrcBitCntEx", c_uint16, passing.number(c_int16, value)))


def getCfgFlags_bStripFac() -> int:
    """Returns the flag bStripFac."""
    return int(call("getCfgFlags_bStripFac", c_int16))


def setCfgFlags_bStripFac(value: int) -> int:
    """Sets the flag bStripFac."""
    return int(call("setCfgFlags_bStripFac", c_uint16, passing.number(c_int16, value)))


def getCfgFlags_bSndFac() -> int:
    """Returns the flag bSndFac."""
    return int(call("getCfgFlags_bSndFac", c_int16))


def setCfgFlags_bSndFac(value: int) -> int:
    """Sets the flag bSndFac."""
    return int(call("setCfgFlags_bSndFac", c_uint16, passing.number(c_int16, value)))


def getCfgFlags_bUseDelFac2Id() -> int:
    """Returns the flag bUseDelFac2Id."""
    return int(call("getCfgFlags_bUseDelFac2Id", c_int16))


def setCfgFlags_bUseDelFac2Id(value: int) -> int:
    """Sets the flag bUseDelFac2Id."""
    return int(call("setCfgFlags_bUseDelFac2Id", c_uint16, passing.number(c_int16, value)))


def getCfgFlags_bNoUseELChar() -> int:
    """Returns the flag bNoUseELChar."""
    return int(call("getCfgFlags_bNoUseELChar", c_int16))


def setCfgFlags_bNoUseELChar(value: int) -> int:
    """Sets the flag bNoUseELChar."""
    return int(call("setCfgFlags_bNoUseELChar", c_uint16, passing.number(c_int16, value)))


def getCfgFlags_bSndOnRx() -> int:
    """Returns the flag bSndOnRx."""
    return int(call("getCfgFlags_bSndOnRx", c_int16))


def setCfgFlags_bSndOnRx(value: int) -> int:
    """Sets the flag bSndOnRx."""
    return int(call("setCfgFlags_bSndOnRx", c_uint16, passing.number(c_int16, value)))


def getCfgFlags_bHaltKBSnd() -> int:
    """Returns the flag bHaltKBSnd."""
    return int(call("getCfgFlags_bHaltKBSnd", c_int16))


def setCfgFlags_bHaltKBSnd(value: int) -> int:
    """Sets the flag bHaltKBSnd."""
    return int(call("setCfgFlags_bHaltKBSnd", c_uint16, passing.number(c_int16, value)))


def getIDDispParms_iFACIDDelim() -> int:
    """Returns the word iFACIDDelim."""
    return int(call("getIDDispParms_iFACIDDelim", c_int16))


def setIDDispParms_iFACIDDelim(value: int) -> int:
    """Sets the word iFACIDDelim."""
    return int(call("setIDDispParms_iFACIDDelim", c_uint16, passing.number(c_int16, value)))


def getIDDispParms_iELDelim() -> int:
    """Returns the word iELDelim."""
    return int(call("getIDDispParms_iELDelim", c_int16))


def setIDDispParms_iELDelim(value: int) -> int:
    """Sets the word iELDelim."""
    return int(call("setIDDispParms_iELDelim", c_uint16, passing.number(c_int16, value)))


def getIDDispParms_iIDDispLen() -> int:
    """Returns the word iIDDispLen."""
    return int(call("getIDDispParms_iIDDispLen", c_int16))


def setIDDispParms_iIDDispLen(value: int) -> int:
    """Sets the word iIDDispLen."""
    return int(call("setIDDispParms_iIDDispLen", c_uint16, passing.number(c_int16, value)))


def getIDDispParms_iFACDispLen() -> int:
    """Returns the word iFACDispLen."""
    return int(call("getIDDispParms_iFACDispLen", c_int16))


def setIDDispParms_iFACDispLen(value: int) -> int:
    """Sets the word iFACDispLen."""
    return int(call("setIDDispParms_iFACDispLen", c_uint16, passing.number(c_int16, value)))


def getIDDispParms_iExOutputFormat() -> int:
    """Returns the word iExOutputFormat."""
    return int(call("getIDDispParms_iExOutputFormat", c_int16))


def setIDDispParms_iExOutputFormat(value: int) -> int:
    """Sets the word iExOutputFormat."""
    return int(call("setIDDispParms_iExOutputFormat", c_uint16, passing.number(c_int16, value)))


def getIDDispParms_iPad5() -> int:
    """Returns the word iPad5 of tsIDDispParms, which is unused."""
    return int(call("getIDDispParms_iPad5", c_int16))


def setIDDispParms_iPad5(value: int) -> int:
    """Sets iPad5 of tsIDDispParms, which is stored but unused."""
    return int(call("setIDDispParms_iPad5", c_uint16, passing.number(c_int16, value)))


def getIDDispParms_iPad6() -> int:
    """Returns the word iPad6 of tsIDDispParms, which is unused."""
    return int(call("getIDDispParms_iPad6", c_int16))


def setIDDispParms_iPad6(value: int) -> int:
    """Sets iPad6 of tsIDDispParms, which is stored but unused."""
    return int(call("setIDDispParms_iPad6", c_uint16, passing.number(c_int16, value)))


def getIDDispParms_iPad7() -> int:
    """Returns the word iPad7 of tsIDDispParms, which is unused."""
    return int(call("getIDDispParms_iPad7", c_int16))


def setIDDispParms_iPad7(value: int) -> int:
    """Sets iPad7 of tsIDDispParms, which is stored but unused."""
    return int(call("setIDDispParms_iPad7", c_uint16, passing.number(c_int16, value)))


def getTimeParms_iBitStrmTO() -> int:
    """Returns the word iBitStrmTO."""
    return int(call("getTimeParms_iBitStrmTO", c_int16))


def setTimeParms_iBitStrmTO(value: int) -> int:
    """Sets the word iBitStrmTO."""
    return int(call("setTimeParms_iBitStrmTO", c_uint16, passing.number(c_int16, value)))


def getTimeParms_iIDHoldTO() -> int:
    """Returns the word iIDHoldTO."""
    return int(call("getTimeParms_iIDHoldTO", c_int16))


def setTimeParms_iIDHoldTO(value: int) -> int:
    """Sets the word iIDHoldTO."""
    return int(call("setTimeParms_iIDHoldTO", c_uint16, passing.number(c_int16, value)))


def getTimeParms_iIDLockOutTm() -> int:
    """Returns the word iIDLockOutTm."""
    return int(call("getTimeParms_iIDLockOutTm", c_int16))


def setTimeParms_iIDLockOutTm(value: int) -> int:
    """Sets the word iIDLockOutTm."""
    return int(call("setTimeParms_iIDLockOutTm", c_uint16, passing.number(c_int16, value)))


def getTimeParms_iUSBKeyPrsTm() -> int:
    """Returns the word iUSBKeyPrsTm."""
    return int(call("getTimeParms_iUSBKeyPrsTm", c_int16))


def setTimeParms_iUSBKeyPrsTm(value: int) -> int:
    """Sets the word iUSBKeyPrsTm."""
    return int(call("setTimeParms_iUSBKeyPrsTm", c_uint16, passing.number(c_int16, value)))


def getTimeParms_iUSBKeyRlsTm() -> int:
    """Returns the word iUSBKeyRlsTm."""
    return int(call("getTimeParms_iUSBKeyRlsTm", c_int16))


def setTimeParms_iUSBKeyRlsTm(value: int) -> int:
    """Sets the word iUSBKeyRlsTm."""
    return int(call("setTimeParms_iUSBKeyRlsTm", c_uint16, passing.number(c_int16, value)))


def getTimeParms_ExFeatures01() -> int:
    """Returns the word ExFeatures01."""
    return int(call("getTimeParms_ExFeatures01", c_int16))


def setTimeParms_ExFeatures01(value: int) -> int:
    """Does nothing: that word is written through SetTimeParms() only."""
    return int(call("setTimeParms_ExFeatures01", c_uint16, passing.number(c_int16, value)))


def getTimeParms_iPad6() -> int:
    """Returns the word iPad6 of tsTimeParms, which is unused."""
    return int(call("getTimeParms_iPad6", c_int16))


def setTimeParms_iPad6(value: int) -> int:
    """Sets iPad6 of tsTimeParms, which is stored but unused."""
    return int(call("setTimeParms_iPad6", c_uint16, passing.number(c_int16, value)))


def getTimeParms_iTPCfgFlg3() -> int:
    """Returns the word iTPCfgFlg3."""
    return int(call("getTimeParms_iTPCfgFlg3", c_int16))


def setTimeParms_iTPCfgFlg3(value: int) -> int:
    """Makes a record get and a record set, which leaves this word as it is."""
    return int(call("setTimeParms_iTPCfgFlg3", c_uint16, passing.number(c_int16, value)))


def getCfgFlags2_bUseLeadChrs() -> int:
    """Returns the flag bUseLeadChrs."""
    return int(call("getCfgFlags2_bUseLeadChrs", c_int16))


def setCfgFlags2_bUseLeadChrs(value: int) -> int:
    """Sets the flag bUseLeadChrs."""
    return int(call("setCfgFlags2_bUseLeadChrs", c_uint16, passing.number(c_int16, value)))


def getCfgFlags2_bDspHex() -> int:
    """Returns the flag bDspHex."""
    return int(call("getCfgFlags2_bDspHex", c_int16))


def setCfgFlags2_bDspHex(value: int) -> int:
    """Sets the flag bDspHex."""
    return int(call("setCfgFlags2_bDspHex", c_uint16, passing.number(c_int16, value)))


def getCfgFlags2_bWiegInvData() -> int:
    """Returns the flag bWiegInvData."""
    return int(call("getCfgFlags2_bWiegInvData", c_int16))


def setCfgFlags2_bWiegInvData(value: int) -> int:
    """Sets the flag bWiegInvData."""
    return int(call("setCfgFlags2_bWiegInvData", c_uint16, passing.number(c_int16, value)))


def getCfgFlags2_bUseInvDataF() -> int:
    """Returns the flag bUseInvDataF."""
    return int(call("getCfgFlags2_bUseInvDataF", c_int16))


def setCfgFlags2_bUseInvDataF(value: int) -> int:
    """Sets the flag bUseInvDataF."""
    return int(call("setCfgFlags2_bUseInvDataF", c_uint16, passing.number(c_int16, value)))


def getCfgFlags2_bRevWiegBits() -> int:
    """Returns the flag bRevWiegBits."""
    return int(call("getCfgFlags2_bRevWiegBits", c_int16))


def setCfgFlags2_bRevWiegBits(value: int) -> int:
    """Sets the flag bRevWiegBits."""
    return int(call("setCfgFlags2_bRevWiegBits", c_uint16, passing.number(c_int16, value)))


def getCfgFlags2_bBeepID() -> int:
    """Returns the flag bBeepID."""
    return int(call("getCfgFlags2_bBeepID", c_int16))


def setCfgFlags2_bBeepID(value: int) -> int:
    """Sets the flag bBeepID."""
    return int(call("setCfgFlags2_bBeepID", c_uint16, passing.number(c_int16, value)))


def getCfgFlags2_bRevBytes() -> int:
    """Returns the flag bRevBytes."""
    return int(call("getCfgFlags2_bRevBytes", c_int16))


def setCfgFlags2_bRevBytes(value: int) -> int:
    """Sets the flag bRevBytes."""
    return int(call("setCfgFlags2_bRevBytes", c_uint16, passing.number(c_int16, value)))


def getCfgFlags2_isASCIIpresent() -> int:
    """Returns the flag isASCIIpresent."""
    return int(call("getCfgFlags2_isASCIIpresent", c_int16))


def setCfgFlags2_isASCIIpresent(value: int) -> int:
    """Sets the flag isASCIIpresent."""
    return int(call("setCfgFlags2_isASCIIpresent", c_uint16, passing.number(c_int16, value)))


def getCfgFlags3_bUseNumKP() -> int:
    """Returns the flag bUseNumKP."""
    return int(call("getCfgFlags3_bUseNumKP", c_int16))


def setCfgFlags3_bUseNumKP(value: int) -> int:
    """Sets the flag bUseNumKP."""
    return int(call("setCfgFlags3_bUseNumKP", c_uint16, passing.number(c_int16, value)))


def getCfgFlags3_bSndSFON() -> int:
    """Returns the flag bSndSFON."""
    return int(call("getCfgFlags3_bSndSFON", c_int16))


def setCfgFlags3_bSndSFON(value: int) -> int:
    """Sets the flag bSndSFON."""
    return int(call("setCfgFlags3_bSndSFON", c_uint16, passing.number(c_int16, value)))


def getCfgFlags3_bSndSFFC() -> int:
    """Returns the flag bSndSFFC."""
    return int(call("getCfgFlags3_bSndSFFC", c_int16))


def setCfgFlags3_bSndSFFC(value: int) -> int:
    """Sets the flag bSndSFFC."""
    return int(call("setCfgFlags3_bSndSFFC", c_uint16, passing.number(c_int16, value)))


def getCfgFlags3_bSndSFID() -> int:
    """Returns the flag bSndSFID."""
    return int(call("getCfgFlags3_bSndSFID", c_int16))


def setCfgFlags3_bSndSFID(value: int) -> int:
    """Sets the flag bSndSFID."""
    return int(call("setCfgFlags3_bSndSFID", c_uint16, passing.number(c_int16, value)))


def getCfgFlags3_bPrxProEm() -> int:
    """Returns the flag bPrxProEm."""
    return int(call("getCfgFlags3_bPrxProEm", c_int16))


def setCfgFlags3_bPrxProEm(value: int) -> int:
    """Sets the flag bPrxProEm."""
    return int(call("setCfgFlags3_bPrxProEm", c_uint16, passing.number(c_int16, value)))


def getCfgFlags3_bUse64Bit() -> int:
    """Returns the flag bUse64Bit."""
    return int(call("getCfgFlags3_bUse64Bit", c_int16))


def setCfgFlags3_bUse64Bit(value: int) -> int:
    """Sets the flag bUse64Bit."""
    return int(call("setCfgFlags3_bUse64Bit", c_uint16, passing.number(c_int16, value)))


def getCfgFlags3_bNotBootDev() -> int:
    """Does nothing: bNotBootDev is reached through GetFlags3() and SetFlags3() only."""
    return int(call("getCfgFlags3_bNotBootDev", c_int16))


def setCfgFlags3_bNotBootDev(value: int) -> int:
    """Does nothing: bNotBootDev is reached through GetFlags3() and SetFlags3() only."""
    return int(call("setCfgFlags3_bNotBootDev", c_uint16, passing.number(c_int16, value)))


def getCfgFlags3_bLowerCaseHex() -> int:
    """Returns the flag bLowerCaseHex."""
    return int(call("getCfgFlags3_bLowerCaseHex", c_int16))


def setCfgFlags3_bLowerCaseHex(value: int) -> int:
    """Sets the flag bLowerCaseHex."""
    return int(call("setCfgFlags3_bLowerCaseHex", c_uint16, passing.number(c_int16, value)))


def getIDDispParms2_iLeadChrCnt() -> int:
    """Returns the word iLeadChrCnt."""
    return int(call("getIDDispParms2_iLeadChrCnt", c_int16))


def setIDDispParms2_iLeadChrCnt(value: int) -> int:
    """Sets the word iLeadChrCnt."""
    return int(call("setIDDispParms2_iLeadChrCnt", c_uint16, passing.number(c_int16, value)))


def getIDDispParms2_iLeadChr0() -> int:
    """Returns the word iLeadChr0."""
    return int(call("getIDDispParms2_iLeadChr0", c_int16))


def setIDDispParms2_iLeadChr0(value: int) -> int:
    """Sets the word iLeadChr0."""
    return int(call("setIDDispParms2_iLeadChr0", c_uint16, passing.number(c_int16, value)))


def getIDDispParms2_iLeadChr1() -> int:
    """Returns the word iLeadChr1."""
    return int(call("getIDDispParms2_iLeadChr1", c_int16))


def setIDDispParms2_iLeadChr1(value: int) -> int:
    """Sets the word iLeadChr1."""
    return int(call("setIDDispParms2_iLeadChr1", c_uint16, passing.number(c_int16, value)))


def getIDDispParms2_iLeadChr2() -> int:
    """Returns the word iLeadChr2."""
    return int(call("getIDDispParms2_iLeadChr2", c_int16))


def setIDDispParms2_iLeadChr2(value: int) -> int:
    """Sets the word iLeadChr2."""
    return int(call("setIDDispParms2_iLeadChr2", c_uint16, passing.number(c_int16, value)))


def getIDDispParms2_iCrdGnChr0() -> int:
    """Returns the word iCrdGnChr0."""
    return int(call("getIDDispParms2_iCrdGnChr0", c_int16))


def setIDDispParms2_iCrdGnChr0(value: int) -> int:
    """Sets the word iCrdGnChr0."""
    return int(call("setIDDispParms2_iCrdGnChr0", c_uint16, passing.number(c_int16, value)))


def getIDDispParms2_iCrdGnChr1() -> int:
    """Returns the word iCrdGnChr1."""
    return int(call("getIDDispParms2_iCrdGnChr1", c_int16))


def setIDDispParms2_iCrdGnChr1(value: int) -> int:
    """Sets the word iCrdGnChr1."""
    return int(call("setIDDispParms2_iCrdGnChr1", c_uint16, passing.number(c_int16, value)))


def getIDDispParms2_iPad6() -> int:
    """Returns the word iPad6 of tsIDDispParms2, which is unused."""
    return int(call("getIDDispParms2_iPad6", c_int16))


def setIDDispParms2_iPad6(value: int) -> int:
    """Sets iPad6 of tsIDDispParms2, which is stored but unused."""
    return int(call("setIDDispParms2_iPad6", c_uint16, passing.number(c_int16, value)))


def getIDDispParms2_iPad7() -> int:
    """Returns the word iPad7 of tsIDDispParms2, which is unused."""
    return int(call("getIDDispParms2_iPad7", c_int16))


def setIDDispParms2_iPad7(value: int) -> int:
    """Sets iPad7 of tsIDDispParms2, which is stored but unused."""
    return int(call("setIDDispParms2_iPad7", c_uint16, passing.number(c_int16, value)))


def getIDDispParms3_iTrailChrCnt() -> int:
    """Returns the word iTrailChrCnt."""
    return int(call("getIDDispParms3_iTrailChrCnt", c_int16))


def setIDDispParms3_iTrailChrCnt(value: int) -> int:
    """Sets the word iTrailChrCnt."""
    return int(call("setIDDispParms3_iTrailChrCnt", c_uint16, passing.number(c_int16, value)))


def getIDDispParms3_iTrailChr0() -> int:
    """Returns the word iTrailChr0."""
    return int(call("getIDDispParms3_iTrailChr0", c_int16))


def setIDDispParms3_iTrailChr0(value: int) -> int:
    """Sets the word iTrailChr0."""
    return int(call("setIDDispParms3_iTrailChr0", c_uint16, passing.number(c_int16, value)))


def getIDDispParms3_iTrailChr1() -> int:
    """Returns the word iTrailChr1."""
    return int(call("getIDDispParms3_iTrailChr1", c_int16))


def setIDDispParms3_iTrailChr1(value: int) -> int:
    """Sets the word iTrailChr1."""
    return int(call("setIDDispParms3_iTrailChr1", c_uint16, passing.number(c_int16, value)))


def getIDDispParms3_iTrailChr2() -> int:
    """Returns the word iTrailChr2."""
    return int(call("getIDDispParms3_iTrailChr2", c_int16))


def setIDDispParms3_iTrailChr2(value: int) -> int:
    """Sets the word iTrailChr2."""
    return int(call("setIDDispParms3_iTrailChr2", c_uint16, passing.number(c_int16, value)))


def getIDDispParms3_iPad4() -> int:
    """Returns the word iPad4 of tsIDDispParms3, which is unused."""
    return int(call("getIDDispParms3_iPad4", c_int16))


def setIDDispParms3_iPad4(value: int) -> int:
    """Sets iPad4 of tsIDDispParms3, which is stored but unused."""
    return int(call("setIDDispParms3_iPad4", c_uint16, passing.number(c_int16, value)))


def getIDDispParms3_iPad5() -> int:
    """Returns the word iPad5 of tsIDDispParms3, which is unused."""
    return int(call("getIDDispParms3_iPad5", c_int16))


def setIDDispParms3_iPad5(value: int) -> int:
    """Sets iPad5 of tsIDDispParms3, which is stored but unused."""
    return int(call("setIDDispParms3_iPad5", c_uint16, passing.number(c_int16, value)))


def getIDDispParms3_iPad6() -> int:
    """Returns the word iPad6 of tsIDDispParms3, which is unused."""
    return int(call("getIDDispParms3_iPad6", c_int16))


def setIDDispParms3_iPad6(value: int) -> int:
    """Sets iPad6 of tsIDDispParms3, which is stored but unused."""
    return int(call("setIDDispParms3_iPad6", c_uint16, passing.number(c_int16, value)))


def getIDDispParms3_iPad7() -> int:
    """Returns the word iPad7 of tsIDDispParms3, which is unused."""
    return int(call("getIDDispParms3_iPad7", c_int16))


def setIDDispParms3_iPad7(value: int) -> int:
    """Sets iPad7 of tsIDDispParms3, which is stored but unused."""
    return int(call("setIDDispParms3_iPad7", c_uint16, passing.number(c_int16, value)))


def getLEDCtrl_bAppCtrlsLED() -> int:
    """Returns the flag bAppCtrlsLED."""
    return int(call("getLEDCtrl_bAppCtrlsLED", c_int16))


def setLEDCtrl_bAppCtrlsLED(value: int) -> int:
    """Sets the flag bAppCtrlsLED."""
    return int(call("setLEDCtrl_bAppCtrlsLED", c_uint16, passing.number(c_int16, value)))


def getLEDCtrl_iRedLEDState() -> int:
    """Returns the word iRedLEDState."""
    return int(call("getLEDCtrl_iRedLEDState", c_int16))


def setLEDCtrl_iRedLEDState(value: int) -> int:
    """Sets the word iRedLEDState."""
    return int(call("setLEDCtrl_iRedLEDState", c_uint16, passing.number(c_int16, value)))


def getLEDCtrl_iGrnLEDState() -> int:
    """Returns the word iGrnLEDState."""
    return int(call("getLEDCtrl_iGrnLEDState", c_int16))


def setLEDCtrl_iGrnLEDState(value: int) -> int:
    """Sets the word iGrnLEDState."""
    return int(call("setLEDCtrl_iGrnLEDState", c_uint16, passing.number(c_int16, value)))


def getLEDCtrl_iPad3() -> int:
    """Returns the word iPad3 of tsLEDCtrl, which is unused."""
    return int(call("getLEDCtrl_iPad3", c_int16))


def setLEDCtrl_iPad3(value: int) -> int:
    """Sets iPad3 of tsLEDCtrl, which is stored but unused."""
    return int(call("setLEDCtrl_iPad3", c_uint16, passing.number(c_int16, value)))


def getLEDCtrl_iPad4() -> int:
    """Returns the word iPad4 of tsLEDCtrl, which is unused."""
    return int(call("getLEDCtrl_iPad4", c_int16))


def setLEDCtrl_iPad4(value: int) -> int:
    """Sets iPad4 of tsLEDCtrl, which is stored but unused."""
    return int(call("setLEDCtrl_iPad4", c_uint16, passing.number(c_int16, value)))


def getLEDCtrl_iPad5() -> int:
    """Returns the word iPad5 of tsLEDCtrl, which is unused."""
    return int(call("getLEDCtrl_iPad5", c_int16))


def setLEDCtrl_iPad5(value: int) -> int:
    """Sets iPad5 of tsLEDCtrl, which is stored but unused."""
    return int(call("setLEDCtrl_iPad5", c_uint16, passing.number(c_int16, value)))


def getLEDCtrl_iPad6() -> int:
    """Returns the word iPad6 of tsLEDCtrl, which is unused."""
    return int(call("getLEDCtrl_iPad6", c_int16))


def setLEDCtrl_iPad6(value: int) -> int:
    """Sets iPad6 of tsLEDCtrl, which is stored but unused."""
    return int(call("setLEDCtrl_iPad6", c_uint16, passing.number(c_int16, value)))


def getLEDCtrl_bVolatile() -> int:
    """Returns the flag bVolatile."""
    return int(call("getLEDCtrl_bVolatile", c_int16))


def setLEDCtrl_bVolatile(value: int) -> int:
    """Sets the flag bVolatile."""
    return int(call("setLEDCtrl_bVolatile", c_uint16, passing.number(c_int16, value)))


def getBprRlyCtrl_iPad0() -> int:
    """Returns the word iPad0 of tsBprRlyCtrl, which is unused."""
    return int(call("getBprRlyCtrl_iPad0", c_int16))


def setBprRlyCtrl_iPad0(value: int) -> int:
    """Sets iPad0 of tsBprRlyCtrl, which is stored but unused."""
    return int(call("setBprRlyCtrl_iPad0", c_uint16, passing.number(c_int16, value)))


def getBprRlyCtrl_iBeeperState() -> int:
    """Returns the word iBeeperState."""
    return int(call("getBprRlyCtrl_iBeeperState", c_int16))


def setBprRlyCtrl_iBeeperState(value: int) -> int:
    """Sets the word iBeeperState."""
    return int(call("setBprRlyCtrl_iBeeperState", c_uint16, passing.number(c_int16, value)))


def getBprRlyCtrl_iRelayState() -> int:
    """Returns the word iRelayState."""
    return int(call("getBprRlyCtrl_iRelayState", c_int16))


def setBprRlyCtrl_iRelayState(value: int) -> int:
    """Sets the word iRelayState."""
    return int(call("setBprRlyCtrl_iRelayState", c_uint16, passing.number(c_int16, value)))


def getBprRlyCtrl_iPad3() -> int:
    """Returns the word iPad3 of tsBprRlyCtrl, which is unused."""
    return int(call("getBprRlyCtrl_iPad3", c_int16))


def setBprRlyCtrl_iPad3(value: int) -> int:
    """Sets iPad3 of tsBprRlyCtrl, which is stored but unused."""
    return int(call("setBprRlyCtrl_iPad3", c_uint16, passing.number(c_int16, value)))


def getBprRlyCtrl_iPad4() -> int:
    """Returns the word iPad4 of tsBprRlyCtrl, which is unused."""
    return int(call("getBprRlyCtrl_iPad4", c_int16))


def setBprRlyCtrl_iPad4(value: int) -> int:
    """Sets iPad4 of tsBprRlyCtrl, which is stored but unused."""
    return int(call("setBprRlyCtrl_iPad4", c_uint16, passing.number(c_int16, value)))


def getBprRlyCtrl_iPad5() -> int:
    """Returns the word iPad5 of tsBprRlyCtrl, which is unused."""
    return int(call("getBprRlyCtrl_iPad5", c_int16))


def setBprRlyCtrl_iPad5(value: int) -> int:
    """Sets iPad5 of tsBprRlyCtrl, which is stored but unused."""
    return int(call("setBprRlyCtrl_iPad5", c_uint16, passing.number(c_int16, value)))


def getBprRlyCtrl_iPad6() -> int:
    """Returns the word iPad6 of tsBprRlyCtrl, which is unused."""
    return int(call("getBprRlyCtrl_iPad6", c_int16))


def setBprRlyCtrl_iPad6(value: int) -> int:
    """Sets iPad6 of tsBprRlyCtrl, which is stored but unused."""
    return int(call("setBprRlyCtrl_iPad6", c_uint16, passing.number(c_int16, value)))


def getBprRlyCtrl_bVolatile() -> int:
    """Returns the flag bVolatile."""
    return int(call("getBprRlyCtrl_bVolatile", c_int16))


def setBprRlyCtrl_bVolatile(value: int) -> int:
    """Sets the flag bVolatile."""
    return int(call("setBprRlyCtrl_bVolatile", c_uint16, passing.number(c_int16, value)))


def GetActiveID(buffer: Optional[bytearray], length: int) -> int:
    """Reads the ID of the card, up to 8 bytes of it."""
    return int(call("GetActiveID", c_uint16, passing.room(buffer, length), passing.number(c_int16, length)))


def GetActiveID32(buffer: Optional[bytearray], length: int) -> int:
    """Reads the ID of the card, up to 32 bytes of it; otherwise the same as GetActiveID()."""
    return int(call("GetActiveID32", c_uint16, passing.room(buffer, length), passing.number(c_int16, length)))


def getActiveID(bytes: int) -> int:
    """GetActiveID() for callers that cannot pass a buffer: getActiveID_byte() returns the bytes."""
    return int(call("getActiveID", c_uint16, passing.number(c_uint16, bytes)))


def getActiveID32(bytes: int) -> int:
    """GetActiveID32() for callers that cannot pass a buffer: getActiveID_byte() returns the bytes."""
    return int(call("getActiveID32", c_uint16, passing.number(c_uint16, bytes)))


def getActiveID_byte(index: int) -> int:
    """Returns one byte of the ID that was read last, on whichever device."""
    return int(call("getActiveID_byte", c_uint8, passing.number(c_int16, index)))


def getActiveCardData() -> int:
    """Fetches forty bytes of data of the card on the reader, for getActiveCardData_byte() to return."""
    return int(call("getActiveCardData", c_uint32))


def getActiveCardData_byte(index: int) -> int:
    """Returns one byte of the data that getActiveCardData() fetched last."""
    return int(call("getActiveCardData_byte", c_uint32, passing.number(c_uint16, index)))


def USBConnect(pDID: Optional[Words32]) -> int:
    """Finds devices and opens them."""
    return int(call("USBConnect", c_uint32, passing.words(pDID, c_uint32, 4)))


def usbConnect() -> int:
    """USBConnect() for callers that cannot pass a pointer."""
    return int(call("usbConnect", c_uint32))


def USBDisconnect() -> int:
    """Closes every device and empties the table."""
    return int(call("USBDisconnect", c_uint32))


def SetConnectProduct(mask: int) -> int:
    """Chooses the products that a connect searches for."""
    return int(call("SetConnectProduct", c_uint32, passing.number(c_uint32, mask)))


def SetDevTypeSrch(link: int) -> int:
    """Chooses the links on which a connect searches."""
    return int(call("SetDevTypeSrch", c_uint32, passing.number(c_int16, link)))


def SetComSrchRange(a: int, b: int) -> int:
    """Sets the COM ports of the serial search, from the smaller to the larger of the two numbers."""
    return int(call("SetComSrchRange", c_uint32, passing.number(c_uint16, a), passing.number(c_uint16, b)))


def VirtualComSearchRange(a: int, b: int) -> int:
    """Chooses whether a search for magstripe readers also visits the maker's virtual COM ports and PCMCIA cards outside
    the range of SetComSrchRange().
    """
    return int(call("VirtualComSearchRange", c_uint32, passing.number(c_uint32, a), passing.number(c_uint32, b)))


def SetIpPort(a: int, b: int, c: int, d: int, port: int) -> int:
    """Sets the address a.b.c.d and the TCP port of the Ethernet search, unchecked."""
    return int(call(
        "SetIpPort",
        c_uint32,
        passing.number(c_uint8, a),
        passing.number(c_uint8, b),
        passing.number(c_uint8, c),
        passing.number(c_uint8, d),
        passing.number(c_uint16, port),
    ))


def SetUnsupportedProductErrorCode(value: int) -> None:
    """Sets what calls return when no device is active or the active one has no such operation, 0 after load; the
    comments call that value "unsupported".
    """
    call("SetUnsupportedProductErrorCode", None, passing.number(c_uint16, value))


def GetUnsupportedProductErrorCode() -> int:
    """Returns what SetUnsupportedProductErrorCode() has set."""
    return int(call("GetUnsupportedProductErrorCode", c_uint32))


def SetComLinux(value: int) -> int:
    """Does nothing; it is kept for programs that call it."""
    return int(call("SetComLinux", c_uint32, passing.number(c_uint64, value)))


def GetRawRepDataI(buffer: Optional[bytearray], length: int) -> int:
    """Does nothing; it is kept for programs that call it."""
    return int(call("GetRawRepDataI", c_uint16, passing.room(buffer, length), passing.number(c_uint16, length)))


def SetMarkerFunction(function: Optional[Marker]) -> int:
    """Sends the trace to a function instead of the trace file."""
    return int(call("SetMarkerFunction", c_uint32, passing.marker(function)))


def GetLastLibErr() -> int:
    """Returns the error word of the active device and does not clear it."""
    return int(call("GetLastLibErr", c_uint32))


def GetVidPidFilterMask(index: int) -> int:
    """Returns the mask of a filter in the row of the VID/PID table that matched the active reader."""
    return int(call("GetVidPidFilterMask", c_uint32, passing.number(c_int32, index)))


def GetVidPidFilterCompare(index: int) -> int:
    """Returns the value that goes with the mask of GetVidPidFilterMask()."""
    return int(call("GetVidPidFilterCompare", c_uint32, passing.number(c_int32, index)))


def GetVidPidVendorName() -> Optional[str]:
    """Returns the name of the vendor under which the active reader was found."""
    return passing.text(call("GetVidPidVendorName", c_char_p))


def getVidPidVendorName_char(index: int) -> int:
    """Returns one character of the text of GetVidPidVendorName()."""
    return int(call("getVidPidVendorName_char", c_uint8, passing.number(c_int16, index)))


def GetCardAnalyzerStatus() -> int:
    """Asks for the status of the analyzer, and for the count of its records, which GetCardCount() and
    GetCardAnalyzerData() use.
    """
    return int(call("GetCardAnalyzerStatus", c_uint32))


def GetCardCount() -> int:
    """Returns the number of records that the last good GetCardAnalyzerStatus() reported, whichever device is active
    now.
    """
    return int(call("GetCardCount", c_uint32))


def SetCardAnalyzerControlState(state: int) -> int:
    """Switches the analyzer."""
    return int(call("SetCardAnalyzerControlState", c_uint32, passing.number(c_uint32, state)))


def GetCardAnalyzerData() -> Optional[List[CardAnalyzerRecord]]:
    """Reads the records, GetCardCount() of them: the count is not asked for again."""
    return passing.call_for_records("GetCardAnalyzerData", CardAnalyzerRecord, GetCardCount)


def GetModuleState(module: int, state: Optional[Words16]) -> int:
    """Asks whether a module is on."""
    return int(call("GetModuleState", c_uint8, passing.number(c_uint16, module), passing.words(state, c_uint16, 2)))


def SetModuleState(module: int, state: int) -> int:
    """Switches a module."""
    return int(call("SetModuleState", c_uint8, passing.number(c_uint16, module), passing.number(c_uint16, state)))


def CheckTransparentMode() -> int:
    """Asks whether transparent mode is on."""
    return int(call("CheckTransparentMode", c_uint16))


def EnableTransparentMode(commit: int) -> int:
    """Switches transparent mode on."""
    return int(call("EnableTransparentMode", c_uint16, passing.number(c_uint32, commit)))


def DisableTransparentMode(commit: int) -> int:
    """Switches transparent mode off."""
    return int(call("DisableTransparentMode", c_uint16, passing.number(c_uint32, commit)))


def IsBTLEPresent() -> int:
    """Asks whether the radio is there."""
    return int(call("IsBTLEPresent", c_uint16))


def GetBTLEConfiguration() -> int:
    """Asks in which way the radio works with the card radio."""
    return int(call("GetBTLEConfiguration", c_uint16))


def SetBTLEConfiguration(configuration: int) -> int:
    """Chooses in which way the radio works with the card radio."""
    return int(call("SetBTLEConfiguration", c_uint16, passing.number(c_uint8, configuration)))


def WriteDevCfgToFile(path: Optional[Path]) -> int:
    """Reads every configuration from the device and saves it as a template file, replacing what was there."""
    return int(call("WriteDevCfgToFile", c_uint32, passing.path(path)))


def ReadDevCfgFmFile(path: Optional[Path]) -> int:
    """Loads a template file: records that differ go through the record sets, then WriteCfg() sends them."""
    return int(call("ReadDevCfgFmFile", c_uint32, passing.path(path)))


def writeDevCfgToFile_char(index: int, character: int) -> int:
    """WriteDevCfgToFile() for callers that can pass only characters."""
    return int(call(
        "writeDevCfgToFile_char",
        c_uint32,
        passing.number(c_int16, index),
        passing.number(c_uint8, character),
    ))


def readDevCfgFmFile_char(index: int, character: int) -> int:
    """ReadDevCfgFmFile() for callers that can pass only characters."""
    return int(call(
        "readDevCfgFmFile_char",
        c_uint32,
        passing.number(c_int16, index),
        passing.number(c_uint8, character),
    ))


def ReadDevTypeFromFile(path: Optional[Path]) -> int:
    """Tells which link the configuration file of a magstripe reader names."""
    return int(call("ReadDevTypeFromFile", c_uint32, passing.path(path)))


def CheckTamperedFile(path: Optional[Path], kind: int) -> int:
    """Tests whether a file's trailer matches what it covers; see above for what that proves."""
    return int(call("CheckTamperedFile", c_uint32, passing.path(path), passing.number(c_uint32, kind)))


def WriteDevCfgToSecureFile(path: Optional[Path]) -> int:
    """WriteDevCfgToFile() with a trailer at the end of the file."""
    return int(call("WriteDevCfgToSecureFile", c_uint32, passing.path(path)))


def ReadDevCfgFromSecureFile(path: Optional[Path]) -> int:
    """ReadDevCfgFmFile() of a file whose trailer matches."""
    return int(call("ReadDevCfgFromSecureFile", c_uint32, passing.path(path)))


def GetDevCnt() -> int:
    """Returns the number of devices in the table."""
    return int(call("GetDevCnt", c_int16))


def GetActDev() -> int:
    """Returns the index of the active device, the one on which nearly every call works."""
    return int(call("GetActDev", c_int16))


def SetActDev(index: int) -> int:
    """Makes the device at an index active."""
    return int(call("SetActDev", c_uint32, passing.number(c_int16, index)))


def GetDevByLUID(luid: int, start: int) -> int:
    """Finds a device by its logical unit ID."""
    return int(call("GetDevByLUID", c_uint32, passing.number(c_uint16, luid), passing.number(c_int16, start)))


def GetDevName(name: Optional[bytearray]) -> int:
    """Copies the path or name of the active device."""
    return int(call("GetDevName", c_uint32, passing.room(name, 511)))


def orv_GetDevName(name: Optional[bytearray]) -> int:
    """The same as GetDevName(), under an older name."""
    return int(call("orv_GetDevName", c_uint32, passing.room(name, 511)))


def getDevName_char(index: int) -> int:
    """Returns one character of the path or name of the active device."""
    return int(call("getDevName_char", c_uint8, passing.number(c_int16, index)))


def GetDevType() -> int:
    """Returns the link of the active device."""
    return int(call("GetDevType", c_uint16))


def orv_GetDevType() -> int:
    """The same as GetDevType(), under an older name."""
    return int(call("orv_GetDevType", c_uint16))


def GetProduct() -> int:
    """Returns the product of the active device."""
    return int(call("GetProduct", c_uint32))


def GetDID() -> int:
    """Returns the device ID word of the active device."""
    return int(call("GetDID", c_uint32))


def GetLUID() -> int:
    """Returns the logical unit ID of the active device."""
    return int(call("GetLUID", c_uint32))


def SetLUID(luid: int) -> int:
    """Sets the logical unit ID of the active device, or of entry 0 with no device."""
    return int(call("SetLUID", c_uint32, passing.number(c_uint16, luid)))


def GetSN() -> int:
    """Returns the serial word of the active device."""
    return int(call("GetSN", c_uint32))


def InstalledHardware() -> Optional[bytes]:
    """Asks the active reader which hardware it has."""
    return passing.call_for_bytes("InstalledHardware", 8, True)


def SupportedHardware() -> Optional[bytes]:
    """Asks the active reader which hardware it could have."""
    return passing.call_for_bytes("SupportedHardware", 8, True)


def ChkAddArrival(path: Optional[Path]) -> int:
    """For an arrival notification: opens the device at a path and appends it to the table, if it is one of the active
    device's product.
    """
    return int(call("ChkAddArrival", c_uint32, passing.path(path)))


def ChkDelRemoval(path: Optional[Path]) -> int:
    """For a removal notification: when the table holds a device of that path, closes the first open device of the
    table, which need not be that one, and removes it.
    """
    return int(call("ChkDelRemoval", c_uint32, passing.path(path)))


def chkAddArrival_char(index: int, character: int) -> int:
    """ChkAddArrival() for callers that can pass only characters."""
    return int(call("chkAddArrival_char", c_uint32, passing.number(c_int16, index), passing.number(c_uint8, character)))


def chkDelRemoval_char(index: int, character: int) -> int:
    """ChkDelRemoval() for callers that can pass only characters."""
    return int(call("chkDelRemoval_char", c_uint32, passing.number(c_int16, index), passing.number(c_uint8, character)))


def GetHIDGuid(guid: Optional[bytearray]) -> int:
    """Copies the 16 bytes of an interface class."""
    return int(call("GetHIDGuid", c_uint32, passing.room(guid, 16)))


def GetLibVersion(major: Optional[Words16], minor: Optional[Words16], build: Optional[Words16]) -> int:
    """Returns the version of the library: 7, 9, 2."""
    return int(call(
        "GetLibVersion",
        c_uint32,
        passing.words(major, c_uint16, 2),
        passing.words(minor, c_uint16, 2),
        passing.words(build, c_uint16, 2),
    ))


def getLibraryVersion_Major() -> int:
    """Returns the first number of the library's version."""
    return int(call("getLibraryVersion_Major", c_uint16))


def getLibraryVersion_Minor() -> int:
    """Returns the second number of the library's version."""
    return int(call("getLibraryVersion_Minor", c_uint16))


def getLibraryVersion_Build() -> int:
    """Returns the third number of the library's version."""
    return int(call("getLibraryVersion_Build", c_uint16))


def getLibraryVersion_Beta() -> Optional[str]:
    """Returns what is added to the version of a preliminary release."""
    return passing.text(call("getLibraryVersion_Beta", c_char_p))


def ComConnect(pDID: Optional[Words32]) -> int:
    """Empties the table, searches the serial ports of SetComSrchRange() alone for the readers and magstripe readers of
    SetConnectProduct(), then reads the configuration of each device.
    """
    return int(call("ComConnect", c_uint32, passing.words(pDID, c_uint32, 4)))


def ComConnectPort(port: int, pDID: Optional[Words32]) -> int:
    """ComConnect() on one port, whatever the range."""
    return int(call("ComConnectPort", c_uint32, passing.number(c_uint16, port), passing.words(pDID, c_uint32, 4)))


def comConnect() -> int:
    """Searches the ports again for the kind of device that is active, without reading a configuration."""
    return int(call("comConnect", c_uint32))


def comConnectPort(port: int) -> int:
    """Searches one port for the kind of device that is active."""
    return int(call("comConnectPort", c_uint32, passing.number(c_uint16, port)))


def ComDisconnect() -> int:
    """Closes the link of the active device: serial port, TCP connection or bulk device."""
    return int(call("ComDisconnect", c_uint32))


def ReadSerialPort(buffer: Optional[bytearray], length: int) -> int:
    """Reads raw bytes through the active device's port."""
    return int(call("ReadSerialPort", c_uint32, passing.room(buffer, length), passing.number(c_uint32, length)))


def QuickReadSerialPort(buffer: Optional[bytearray], length: int) -> int:
    """Reads raw bytes through the active device's port and waits less: on a COM port 10 ms and 1 ms for each byte, or
    100 ms of silence.
    """
    return int(call("QuickReadSerialPort", c_uint32, passing.room(buffer, length), passing.number(c_uint32, length)))


def WriteSerialPort(buffer: Optional[Data], length: int) -> int:
    """Writes raw bytes through the active device's port."""
    return int(call("WriteSerialPort", c_uint32, passing.data(buffer, length), passing.number(c_uint32, length)))


def readSerialPort_char(index: int) -> int:
    """ReadSerialPort() for callers that cannot pass a buffer."""
    return int(call("readSerialPort_char", c_uint32, passing.number(c_int16, index)))


def quickReadSerialPort_char(index: int) -> int:
    """QuickReadSerialPort() for callers that cannot pass a buffer; its bytes are not those of readSerialPort_char()."""
    return int(call("quickReadSerialPort_char", c_uint32, passing.number(c_int16, index)))


def SetSerialTimeouts(interval: int, multiplier: int, constant: int) -> None:
    """Gives the active device's port the time-outs of QuickReadSerialPort() for good, whatever the arguments are."""
    call(
        "SetSerialTimeouts",
        None,
        passing.number(c_uint32, interval),
        passing.number(c_uint32, multiplier),
        passing.number(c_uint32, constant),
    )


def SetBaudRate(baud: int) -> None:
    """Sets the speed of the next serial search for readers, 9600 baud after load."""
    call("SetBaudRate", None, passing.number(c_uint32, baud))


def FindXport(a: int, b: int, c: int, first: int, last: int) -> int:
    """Looks for an Ethernet adapter at the addresses from a.b.c.first to a.b.c.last."""
    return int(call(
        "FindXport",
        c_uint32,
        passing.number(c_int16, a),
        passing.number(c_int16, b),
        passing.number(c_int16, c),
        passing.number(c_int16, first),
        passing.number(c_int16, last),
    ))


def GetMyIpAddress() -> int:
    """Returns the host's first address."""
    return int(call("GetMyIpAddress", c_uint32))


def sorbaneGetFieldEnable(field: int) -> int:
    """Tells whether a user field is in use."""
    return int(call("sorbaneGetFieldEnable", c_uint32, passing.number(c_uint16, field)))


def sorbaneSetFieldEnable(field: int, on: int) -> int:
    """Chooses whether a user field is in use."""
    return int(call("sorbaneSetFieldEnable", c_uint32, passing.number(c_uint16, field), passing.number(c_int16, on)))


def sorbaneGetFieldSkip(field: int) -> int:
    """Tells whether a user field is skipped, for branching on a bad LRC."""
    return int(call("sorbaneGetFieldSkip", c_uint32, passing.number(c_uint16, field)))


def sorbaneSetFieldSkip(field: int, on: int) -> int:
    """Chooses whether a user field is skipped, for branching on a bad LRC."""
    return int(call("sorbaneSetFieldSkip", c_uint32, passing.number(c_uint16, field), passing.number(c_int16, on)))


def sorbaneGetFieldShowSepSen(field: int) -> int:
    """Tells whether separators and sentinels of a user field are shown."""
    return int(call("sorbaneGetFieldShowSepSen", c_uint32, passing.number(c_uint16, field)))


def sorbaneSetFieldShowSepSen(field: int, on: int) -> int:
    """Chooses whether separators and sentinels of a user field are shown."""
    return int(call(
        "sorbaneSetFieldShowSepSen",
        c_uint32,
        passing.number(c_uint16, field),
        passing.number(c_int16, on),
    ))


def sorbaneGetFieldShowLRC(field: int) -> int:
    """Tells whether the LRC of a user field is shown, in hexadecimal."""
    return int(call("sorbaneGetFieldShowLRC", c_uint32, passing.number(c_uint16, field)))


def sorbaneSetFieldShowLRC(field: int, on: int) -> int:
    """Chooses whether the LRC of a user field is shown, in hexadecimal."""
    return int(call("sorbaneSetFieldShowLRC", c_uint32, passing.number(c_uint16, field), passing.number(c_int16, on)))


def sorbaneGetFieldIgnoreLRC(field: int) -> int:
    """Tells whether an incorrect LRC of a user field is ignored."""
    return int(call("sorbaneGetFieldIgnoreLRC", c_uint32, passing.number(c_uint16, field)))


def sorbaneSetFieldIgnoreLRC(field: int, on: int) -> int:
    """Chooses whether an incorrect LRC of a user field is ignored."""
    return int(call("sorbaneSetFieldIgnoreLRC", c_uint32, passing.number(c_uint16, field), passing.number(c_int16, on)))


def sorbaneGetFieldTrack(field: int) -> int:
    """Returns the track of a user field."""
    return int(call("sorbaneGetFieldTrack", c_uint32, passing.number(c_uint16, field)))


def sorbaneSetFieldTrack(field: int, track: int) -> int:
    """Sets the track of a user field."""
    return int(call("sorbaneSetFieldTrack", c_uint32, passing.number(c_uint16, field), passing.number(c_uint8, track)))


def sorbaneGetFieldMagField(field: int) -> int:
    """Returns the magnetic field on the track of a user field."""
    return int(call("sorbaneGetFieldMagField", c_uint32, passing.number(c_uint16, field)))


def sorbaneSetFieldMagField(field: int, magField: int) -> int:
    """Sets the magnetic field on the track of a user field."""
    return int(call(
        "sorbaneSetFieldMagField",
        c_uint32,
        passing.number(c_uint16, field),
        passing.number(c_uint8, magField),
    ))


def sorbaneGetFieldOffset(field: int) -> int:
    """Returns the offset within the magnetic field of a user field."""
    return int(call("sorbaneGetFieldOffset", c_uint32, passing.number(c_uint16, field)))


def sorbaneSetFieldOffset(field: int, offset: int) -> int:
    """Sets the offset within the magnetic field of a user field."""
    return int(call(
        "sorbaneSetFieldOffset",
        c_uint32,
        passing.number(c_uint16, field),
        passing.number(c_uint8, offset),
    ))


def sorbaneGetFieldLength(field: int) -> int:
    """Returns the length of a user field."""
    return int(call("sorbaneGetFieldLength", c_uint32, passing.number(c_uint16, field)))


def sorbaneSetFieldLength(field: int, length: int) -> int:
    """Sets the length of a user field."""
    return int(call(
        "sorbaneSetFieldLength",
        c_uint32,
        passing.number(c_uint16, field),
        passing.number(c_uint8, length),
    ))


def sorbaneGetFieldTerm(field: int) -> int:
    """Returns the byte at which a user field stops."""
    return int(call("sorbaneGetFieldTerm", c_uint32, passing.number(c_uint16, field)))


def sorbaneSetFieldTerm(field: int, term: int) -> int:
    """Sets the byte at which a user field stops."""
    return int(call("sorbaneSetFieldTerm", c_uint32, passing.number(c_uint16, field), passing.number(c_uint8, term)))


def sorbaneGetFieldKeyCount(field: int) -> int:
    """Returns how many of the key bytes of a user field are in use; their keys are sent after it."""
    return int(call("sorbaneGetFieldKeyCount", c_uint32, passing.number(c_uint16, field)))


def sorbaneSetFieldKeyCount(field: int, count: int) -> int:
    """Sets how many of the key bytes of a user field are in use; their keys are sent after it."""
    return int(call(
        "sorbaneSetFieldKeyCount",
        c_uint32,
        passing.number(c_uint16, field),
        passing.number(c_uint8, count),
    ))


def sorbaneGetFieldKeydata(field: int, index: int) -> int:
    """Returns one of the key bytes of a user field."""
    return int(call(
        "sorbaneGetFieldKeydata",
        c_uint32,
        passing.number(c_uint16, field),
        passing.number(c_uint16, index),
    ))


def sorbaneSetFieldKeydata(field: int, index: int, key: int) -> int:
    """Sets one of the key bytes of a user field."""
    return int(call(
        "sorbaneSetFieldKeydata",
        c_uint32,
        passing.number(c_uint16, field),
        passing.number(c_uint16, index),
        passing.number(c_uint8, key),
    ))


def sorbaneGetTrackEnables() -> int:
    """Tells which tracks are read."""
    return int(call("sorbaneGetTrackEnables", c_uint32))


def sorbaneSetTrackEnables(tracks: int) -> int:
    """Chooses which tracks are read."""
    return int(call("sorbaneSetTrackEnables", c_uint32, passing.number(c_uint8, tracks)))


def sorbaneGetBeeper(which: int) -> int:
    """Tells how the reader beeps after a read."""
    return int(call("sorbaneGetBeeper", c_uint32, passing.number(c_uint16, which)))


def sorbaneSetBeeper(which: int, count: int, longBeep: int) -> int:
    """Chooses how the reader beeps after a read."""
    return int(call(
        "sorbaneSetBeeper",
        c_uint32,
        passing.number(c_uint16, which),
        passing.number(c_int16, count),
        passing.number(c_int16, longBeep),
    ))


def sorbaneGetLED(index: int) -> int:
    """Returns one of the five colours of the LEDs from the mirror."""
    return int(call("sorbaneGetLED", c_uint32, passing.number(c_uint16, index)))


def sorbaneSetLED(index: int, color: int) -> int:
    """Sets one of the five colours of the LEDs and shows all five at once."""
    return int(call("sorbaneSetLED", c_uint32, passing.number(c_uint16, index), passing.number(c_uint16, color)))


def sorbaneSetActiveID(track: int, field: int, offset: int, term: int) -> int:
    """Chooses what GetActiveID(), GetActiveID32() and GetQueuedID() take from a swipe."""
    return int(call(
        "sorbaneSetActiveID",
        c_uint32,
        passing.number(c_uint16, track),
        passing.number(c_uint16, field),
        passing.number(c_uint16, offset),
        passing.number(c_uint16, term),
    ))


def sorbaneIsDataAvailable() -> int:
    """Asks whether a swipe waits to be read."""
    return int(call("sorbaneIsDataAvailable", c_uint32))


def sorbaneClearDataAvailable() -> int:
    """Forgets the swipe that waits."""
    return int(call("sorbaneClearDataAvailable", c_uint32))


def sorbaneClearOverrun() -> int:
    """Clears the reader's overrun state."""
    return int(call("sorbaneClearOverrun", c_uint32))


def sorbaneGetSystemUptime() -> int:
    """Asks for the reader's uptime."""
    return int(call("sorbaneGetSystemUptime", c_uint32))


def sorbaneGetSystemCardsRead() -> int:
    """Asks how many cards the reader has read."""
    return int(call("sorbaneGetSystemCardsRead", c_uint32))


def sorbaneGetSystemInternalCount(index: int) -> int:
    """Asks for one of the reader's internal counts."""
    return int(call("sorbaneGetSystemInternalCount", c_uint32, passing.number(c_uint32, index)))


def sorbaneGetTrackData(track: int, convert: int) -> Optional[bytes]:
    """Fetches a track of the last swipe."""
    return passing.call_for_bytes(
        "sorbaneGetTrackData",
        257,
        False,
        passing.number(c_uint16, track),
        passing.number(c_uint16, convert),
    )


def sorbaneGetTrackData_BYTE(track: int, convert: int, index: int) -> int:
    """sorbaneGetTrackData() for callers that cannot use a pointer."""
    return int(call(
        "sorbaneGetTrackData_BYTE",
        c_uint32,
        passing.number(c_uint16, track),
        passing.number(c_uint16, convert),
        passing.number(c_uint16, index),
    ))


def sorbaneGetTrackFieldOffset(
    track: int,
    field: int,
    offset: int,
    length: int,
    term: int,
    convert: int,
) -> Optional[bytes]:
    """Fetches a piece of a track, from a character of a magnetic field up to a byte or the end of the field."""
    return passing.call_for_bytes(
        "sorbaneGetTrackFieldOffset",
        257,
        False,
        passing.number(c_uint16, track),
        passing.number(c_uint16, field),
        passing.number(c_uint16, offset),
        passing.number(c_uint16, length),
        passing.number(c_uint16, term),
        passing.number(c_uint16, convert),
    )


def BeepNow(count: int, longBeep: int) -> int:
    """Beeps now."""
    return int(call("BeepNow", c_uint32, passing.number(c_uint8, count), passing.number(c_int16, longBeep)))


def GetBeeperVolume() -> int:
    """Asks for the volume of the beeper."""
    return int(call("GetBeeperVolume", c_uint32))


def SetBeeperVolume(volume: int) -> int:
    """Sets the volume of the beeper."""
    return int(call("SetBeeperVolume", c_uint32, passing.number(c_uint16, volume)))


def GetQueuedID(first: int, second: int) -> int:
    """Fetches an ID that was read while nobody polled, for GetQueuedID_index() to return."""
    return int(call("GetQueuedID", c_uint32, passing.number(c_uint16, first), passing.number(c_int16, second)))


def GetQueuedID_index(index: int) -> int:
    """Returns a part of the record that GetQueuedID() has fetched."""
    return int(call("GetQueuedID_index", c_uint32, passing.number(c_int16, index)))


def SetRawPayload_index(index: int, value: int) -> int:
    """Stores a byte of the raw command, or sends it and fetches the reply."""
    return int(call("SetRawPayload_index", c_uint32, passing.number(c_int16, index), passing.number(c_uint8, value)))


def GetRawPayload_index(index: int) -> int:
    """Returns a byte of the raw reply."""
    return int(call("GetRawPayload_index", c_uint8, passing.number(c_uint16, index)))


def SetRawPayload(c0: int, c1: int, c2: int, c3: int, c4: int, c5: int, c6: int, c7: int) -> Optional[str]:
    """Sends eight bytes as positions 1 to 8 of the raw command and returns the reply as text."""
    return passing.text(call(
        "SetRawPayload",
        c_char_p,
        passing.number(c_uint8, c0),
        passing.number(c_uint8, c1),
        passing.number(c_uint8, c2),
        passing.number(c_uint8, c3),
        passing.number(c_uint8, c4),
        passing.number(c_uint8, c5),
        passing.number(c_uint8, c6),
        passing.number(c_uint8, c7),
    ))


def ReadCfg() -> int:
    """Reads every configuration of the active device into the mirror."""
    return int(call("ReadCfg", c_uint32))


def WriteCfg() -> int:
    """Sends what has changed in the mirror and commits it, for every configuration of a plus reader from the highest
    down.
    """
    return int(call("WriteCfg", c_uint32))


def ResetFactoryDflts() -> int:
    """Makes the device load its factory configuration and reads it back."""
    return int(call("ResetFactoryDflts", c_uint32))


def GetMaxConfig() -> int:
    """Returns the highest configuration index of the active plus reader."""
    return int(call("GetMaxConfig", c_uint16))


def GetActConfig() -> int:
    """Returns the index of the configuration that the record calls act on."""
    return int(call("GetActConfig", c_uint16))


def SetActConfig(index: int) -> int:
    """Chooses the configuration that the record calls act on."""
    return int(call("SetActConfig", c_uint32, passing.number(c_uint8, index)))


def GetCardType() -> int:
    """Returns the card type of the active configuration."""
    return int(call("GetCardType", c_int32))


def GetCardPriority() -> int:
    """Returns the priority of the card type of the active configuration."""
    return int(call("GetCardPriority", c_int32))


def SetCardTypePriority(type: int, priority: int) -> int:
    """Sets card type and priority of the active configuration."""
    return int(call("SetCardTypePriority", c_uint32, passing.number(c_uint16, type), passing.number(c_int16, priority)))


def IsCardTypeInList(type: int) -> int:
    """Tells whether the reader knows a card type, according to the list that came with the configuration."""
    return int(call("IsCardTypeInList", c_uint32, passing.number(c_int16, type)))


def GetFullFWVersion() -> Optional[str]:
    """Returns the full firmware version that came with the configuration."""
    return passing.text(call("GetFullFWVersion", c_char_p))


def GetFWFilename() -> Optional[str]:
    """Returns the firmware file name that came with the configuration."""
    return passing.text(call("GetFWFilename", c_char_p))


def getPartNumberString() -> Optional[str]:
    """Returns the part number that came with the configuration."""
    return passing.text(call("getPartNumberString", c_char_p))


def getPartNumberString_char(index: int) -> int:
    """Returns one character of the part number."""
    return int(call("getPartNumberString_char", c_uint8, passing.number(c_int16, index)))


def GetSerialNumber() -> Optional[str]:
    """Asks the reader for its serial number."""
    return passing.text(call("GetSerialNumber", c_char_p))


def GetPlatformType() -> Optional[str]:
    """Asks the reader for the type of its platform."""
    return passing.text(call("GetPlatformType", c_char_p))


def GetBuildDate() -> Optional[str]:
    """Asks the reader for the date of its firmware."""
    return passing.text(call("GetBuildDate", c_char_p))


def GetCopyrightInfo() -> Optional[str]:
    """Asks the reader for its copyright notice."""
    return passing.text(call("GetCopyrightInfo", c_char_p))


def GetCPUInfo() -> Optional[str]:
    """Asks the reader for its processor."""
    return passing.text(call("GetCPUInfo", c_char_p))


def getESN() -> Optional[bytes]:
    """Asks the reader for its electronic serial number."""
    return passing.call_for_bytes("getESN", 32, False)


def GetFirmwareVersion(cpu: int, index: int) -> int:
    """Returns a firmware word as it was read at connect."""
    return int(call("GetFirmwareVersion", c_uint32, passing.number(c_uint16, cpu), passing.number(c_uint16, index)))


def SendGetFWVersion() -> None:
    """Reads the firmware words of every device again."""
    call("SendGetFWVersion", None)


def Ping() -> int:
    """Measures how long the device takes to answer."""
    return int(call("Ping", c_uint32))


def PlusBlockMove(from_: int, to: int) -> int:
    """Copies one stored bank of a plus reader to another: 1 is the working set, 2 the user defaults, 3 the plus
    defaults.
    """
    return int(call("PlusBlockMove", c_uint32, passing.number(c_int16, from_), passing.number(c_int16, to)))


def ResetUserDflts() -> int:
    """Copies the user defaults to the working set."""
    return int(call("ResetUserDflts", c_uint32))


def SaveUserDflts() -> int:
    """Copies the working set to the user defaults."""
    return int(call("SaveUserDflts", c_uint32))


def tavlynPlusDefaults() -> int:
    """Copies the plus defaults to the user defaults and to the working set."""
    return int(call("tavlynPlusDefaults", c_uint32))


def DumpRawFeatureReports(path: Optional[Path]) -> int:
    """Writes every readable report of the active reader to a text file."""
    return int(call("DumpRawFeatureReports", c_uint32, passing.path(path)))


def ReadBaudRate() -> int:
    """Asks a serial reader for the baud code that it keeps."""
    return int(call("ReadBaudRate", c_uint32))


def WriteBaudRate(code: int) -> int:
    """Sets the baud code that a serial reader keeps."""
    return int(call("WriteBaudRate", c_uint32, passing.number(c_uint16, code)))


def UseAsciiCommandProtocol(on: int) -> int:
    """Chooses whether all serial readers are spoken to in the ASCII dialect, until the library is unloaded."""
    return int(call("UseAsciiCommandProtocol", c_uint32, passing.number(c_uint16, on)))


def GetFlags(record: Optional[tsCfgFlags]) -> int:
    """Copies tsCfgFlags out of the mirror: what the reader does with an ID."""
    return int(call("GetFlags", c_uint32, passing.record(record, tsCfgFlags)))


def SetFlags(record: Optional[tsCfgFlags]) -> int:
    """Changes tsCfgFlags in the mirror, for the next WriteCfg(): what the reader does with an ID."""
    return int(call("SetFlags", c_uint32, passing.record(record, tsCfgFlags)))


def GetFlags2(record: Optional[tsCfgFlags2]) -> int:
    """Copies tsCfgFlags2 out of the mirror: more of what the reader does with an ID."""
    return int(call("GetFlags2", c_uint32, passing.record(record, tsCfgFlags2)))


def SetFlags2(record: Optional[tsCfgFlags2]) -> int:
    """Changes tsCfgFlags2 in the mirror, for the next WriteCfg(): more of what the reader does with an ID."""
    return int(call("SetFlags2", c_uint32, passing.record(record, tsCfgFlags2)))


def GetFlags3(record: Optional[tsCfgFlags3]) -> int:
    """Copies tsCfgFlags3 out of the mirror: still more of what the reader does with an ID."""
    return int(call("GetFlags3", c_uint32, passing.record(record, tsCfgFlags3)))


def SetFlags3(record: Optional[tsCfgFlags3]) -> int:
    """Changes tsCfgFlags3 in the mirror, for the next WriteCfg(): still more of what the reader does with an ID."""
    return int(call("SetFlags3", c_uint32, passing.record(record, tsCfgFlags3)))


def GetIDBitCnts(record: Optional[tsIDBitCnts]) -> int:
    """Copies tsIDBitCnts out of the mirror: how the bits of a read are counted."""
    return int(call("GetIDBitCnts", c_uint32, passing.record(record, tsIDBitCnts)))


def SetIDBitCnts(record: Optional[tsIDBitCnts]) -> int:
    """Changes tsIDBitCnts in the mirror, for the next WriteCfg(): how the bits of a read are counted."""
    return int(call("SetIDBitCnts", c_uint32, passing.record(record, tsIDBitCnts)))


def GetIDDispParms(record: Optional[tsIDDispParms]) -> int:
    """Copies tsIDDispParms out of the mirror: how an ID is shown."""
    return int(call("GetIDDispParms", c_uint32, passing.record(record, tsIDDispParms)))


def SetIDDispParms(record: Optional[tsIDDispParms]) -> int:
    """Changes tsIDDispParms in the mirror, for the next WriteCfg(): how an ID is shown."""
    return int(call("SetIDDispParms", c_uint32, passing.record(record, tsIDDispParms)))


def GetIDDispParms2(record: Optional[tsIDDispParms2]) -> int:
    """Copies tsIDDispParms2 out of the mirror: the lead characters of an ID, and those sent when it becomes invalid."""
    return int(call("GetIDDispParms2", c_uint32, passing.record(record, tsIDDispParms2)))


def SetIDDispParms2(record: Optional[tsIDDispParms2]) -> int:
    """Changes tsIDDispParms2 in the mirror, for the next WriteCfg(): the lead characters of an ID, and those sent when
    it becomes invalid.
    """
    return int(call("SetIDDispParms2", c_uint32, passing.record(record, tsIDDispParms2)))


def GetIDDispParms3(record: Optional[tsIDDispParms3]) -> int:
    """Copies tsIDDispParms3 out of the mirror: the trail characters of an ID."""
    return int(call("GetIDDispParms3", c_uint32, passing.record(record, tsIDDispParms3)))


def SetIDDispParms3(record: Optional[tsIDDispParms3]) -> int:
    """Changes tsIDDispParms3 in the mirror, for the next WriteCfg(): the trail characters of an ID."""
    return int(call("SetIDDispParms3", c_uint32, passing.record(record, tsIDDispParms3)))


def GetTimeParms(record: Optional[tsTimeParms]) -> int:
    """Copies tsTimeParms out of the mirror: the times of the reader."""
    return int(call("GetTimeParms", c_uint32, passing.record(record, tsTimeParms)))


def SetTimeParms(record: Optional[tsTimeParms]) -> int:
    """Changes tsTimeParms in the mirror, for the next WriteCfg(): the times of the reader."""
    return int(call("SetTimeParms", c_uint32, passing.record(record, tsTimeParms)))


def GetLEDCtrl(record: Optional[tsLEDCtrl]) -> int:
    """Copies tsLEDCtrl out of the mirror: the LEDs."""
    return int(call("GetLEDCtrl", c_uint32, passing.record(record, tsLEDCtrl)))


def SetLEDCtrl(record: Optional[tsLEDCtrl]) -> int:
    """Changes tsLEDCtrl in the mirror, for the next WriteCfg(): the LEDs."""
    return int(call("SetLEDCtrl", c_uint32, passing.record(record, tsLEDCtrl)))


def GetBprRlyCtrl(record: Optional[tsBprRlyCtrl]) -> int:
    """Copies tsBprRlyCtrl out of the mirror: beeper and relay."""
    return int(call("GetBprRlyCtrl", c_uint32, passing.record(record, tsBprRlyCtrl)))


def SetBprRlyCtrl(record: Optional[tsBprRlyCtrl]) -> int:
    """Changes tsBprRlyCtrl in the mirror, for the next WriteCfg(): beeper and relay."""
    return int(call("SetBprRlyCtrl", c_uint32, passing.record(record, tsBprRlyCtrl)))


def GetSepFldData(buffer: Optional[bytearray], length: int) -> int:
    """Copies the field and separator definitions out of the mirror."""
    return int(call("GetSepFldData", c_uint32, passing.room(buffer, length), passing.number(c_uint16, length)))


def SetSepFldData(buffer: Optional[Data], length: int) -> int:
    """Changes the field and separator definitions in the mirror for the next WriteCfg()."""
    return int(call("SetSepFldData", c_uint32, passing.data(buffer, length), passing.number(c_uint16, length)))


def GetAZERTYShiftLock() -> int:
    """Tells whether the AZERTY shift lock is on in the mirror."""
    return int(call("GetAZERTYShiftLock", c_uint32))


def SetAZERTYShiftLock(on: int) -> int:
    """Switches the AZERTY shift lock in the mirror, for the next WriteCfg()."""
    return int(call("SetAZERTYShiftLock", c_uint32, passing.number(c_int16, on)))


def GetExtendedPrecisionMath() -> int:
    """Tells whether arithmetic of extended precision is on in the mirror."""
    return int(call("GetExtendedPrecisionMath", c_uint32))


def SetExtendedPrecisionMath(on: int) -> int:
    """Switches arithmetic of extended precision in the mirror, for the next WriteCfg()."""
    return int(call("SetExtendedPrecisionMath", c_uint32, passing.number(c_int16, on)))


def Get64BytesInPackets() -> int:
    """Returns a word for packets of 64 bytes that exists on the host only."""
    return int(call("Get64BytesInPackets", c_uint32))


def Set64BytesInPackets(on: int) -> int:
    """Sets a word for packets of 64 bytes."""
    return int(call("Set64BytesInPackets", c_uint32, passing.number(c_uint32, on)))


def GetEasyReadMode() -> int:
    """Returns a word for easy reads that exists on the host only."""
    return int(call("GetEasyReadMode", c_uint32))


def SetEasyReadMode(on: int) -> int:
    """Sets a word for easy reads."""
    return int(call("SetEasyReadMode", c_uint32, passing.number(c_uint32, on)))


def GetPrependCSN() -> int:
    """Returns a word for CSNs in front of IDs that exists on the host only."""
    return int(call("GetPrependCSN", c_uint32))


def SetPrependCSN(on: int) -> int:
    """Sets a word for CSNs in front of IDs."""
    return int(call("SetPrependCSN", c_uint32, passing.number(c_uint32, on)))


def WriteSecureData(item: Optional[Data], length: int) -> int:
    """Writes one item."""
    return int(call("WriteSecureData", c_uint32, passing.data(item, length), passing.number(c_uint32, length)))


def ReadSecureData(header: Optional[Data], out: Optional[bytearray]) -> int:
    """Reads the payload of an item."""
    return int(call("ReadSecureData", c_uint32, passing.data(header, 4), passing.room(out, 256)))


def LoadIniFile(path: Optional[Path]) -> int:
    """Tests a key-load ini file as CheckTamperedFile() of kind 2 does (which finds accidents, not intent), and writes
    its items as WriteSecureData() does.
    """
    return int(call("LoadIniFile", c_uint32, passing.path(path)))


def WriteEV1FileRefrence(data: Optional[Data], length: int) -> int:
    """Stores bytes as a reference to an EV1 file."""
    return int(call("WriteEV1FileRefrence", c_uint32, passing.data(data, length), passing.number(c_uint32, length)))


def WriteSEKeyRefrence(data: Optional[Data], length: int, slot: int) -> int:
    """Stores bytes as a reference to a key of the secure element."""
    return int(call(
        "WriteSEKeyRefrence",
        c_uint32,
        passing.data(data, length),
        passing.number(c_uint32, length),
        passing.number(c_uint8, slot),
    ))


def SetHashKeyData(data: Optional[Data]) -> int:
    """Stores two hash keys for the active configuration."""
    return int(call("SetHashKeyData", c_uint32, passing.data(data, 32)))


def GetEnhanceSecurityFlag() -> int:
    """Tells whether security is enhanced."""
    return int(call("GetEnhanceSecurityFlag", c_uint32))


def SetEnhanceSecurityFlag(on: int) -> None:
    """Chooses whether security is enhanced."""
    call("SetEnhanceSecurityFlag", None, passing.number(c_uint32, on))


def WriteBLEDataToFile(path: Optional[Path]) -> int:
    """Saves the 384 bytes of data that the reader keeps for its BLE radio as a text file."""
    return int(call("WriteBLEDataToFile", c_uint32, passing.path(path)))


def WriteBLEKeyToFile(path: Optional[Path]) -> int:
    """Saves the 128 bytes of key that the reader keeps for its BLE radio, as WriteBLEDataToFile() does the data."""
    return int(call("WriteBLEKeyToFile", c_uint32, passing.path(path)))


def WriteBLEDataToReader(path: Optional[Path]) -> int:
    """Loads a file of WriteBLEDataToFile() into the reader."""
    return int(call("WriteBLEDataToReader", c_uint32, passing.path(path)))


def WriteBLEKeyToReader(path: Optional[Path]) -> int:
    """Loads a file of WriteBLEKeyToFile() into the reader, as WriteBLEDataToReader() does the data; part is 10, and
    there is no wait of 100 ms.
    """
    return int(call("WriteBLEKeyToReader", c_uint32, passing.path(path)))


def GetSonarParms(record: Optional[tsSonarParms]) -> int:
    """Copies tsSonarParms out of the mirror: how the sensor measures."""
    return int(call("GetSonarParms", c_uint32, passing.record(record, tsSonarParms)))


def SetSonarParms(record: Optional[tsSonarParms]) -> int:
    """Changes tsSonarParms in the mirror, for the next WriteCfg(): how the sensor measures."""
    return int(call("SetSonarParms", c_uint32, passing.record(record, tsSonarParms)))


def GetWalkAwayParms(record: Optional[tsWalkAwayParms]) -> int:
    """Copies tsWalkAwayParms out of the mirror: the keys sent when somebody walks away."""
    return int(call("GetWalkAwayParms", c_uint32, passing.record(record, tsWalkAwayParms)))


def SetWalkAwayParms(record: Optional[tsWalkAwayParms]) -> int:
    """Changes tsWalkAwayParms in the mirror, for the next WriteCfg(): the keys sent when somebody walks away."""
    return int(call("SetWalkAwayParms", c_uint32, passing.record(record, tsWalkAwayParms)))


def GetWalkUpParms(record: Optional[tsWalkUpParms]) -> int:
    """Copies tsWalkUpParms out of the mirror: the keys sent when somebody walks up."""
    return int(call("GetWalkUpParms", c_uint32, passing.record(record, tsWalkUpParms)))


def SetWalkUpParms(record: Optional[tsWalkUpParms]) -> int:
    """Changes tsWalkUpParms in the mirror, for the next WriteCfg(): the keys sent when somebody walks up."""
    return int(call("SetWalkUpParms", c_uint32, passing.record(record, tsWalkUpParms)))


def GetIdleParms(record: Optional[tsIdleParms]) -> int:
    """Copies tsIdleParms out of the mirror: the key pressed while somebody stays idle."""
    return int(call("GetIdleParms", c_uint32, passing.record(record, tsIdleParms)))


def SetIdleParms(record: Optional[tsIdleParms]) -> int:
    """Changes tsIdleParms in the mirror, for the next WriteCfg(): the key pressed while somebody stays idle."""
    return int(call("SetIdleParms", c_uint32, passing.record(record, tsIdleParms)))


def GetObjRangeInfo(words: Optional[Words16]) -> int:
    """Asks for the range of the nearest object."""
    return int(call("GetObjRangeInfo", c_uint32, passing.words(words, c_uint16, 10)))


def HaltKBSends(halt: int) -> int:
    """Halts the sensor's keystrokes or lets them go on."""
    return int(call("HaltKBSends", c_uint32, passing.number(c_uint32, halt)))
