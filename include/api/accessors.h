/* The words of the configuration records one by one, for callers that cannot pass records. Meaning, units and
 * ranges are those of the record types in types.h; nothing is scaled.
 *
 * A getter returns the word, or what the record get returned when that was not 1: a failed read and a word of
 * that value look alike. A setter reads the record, changes the one word and sets the record, and returns
 * what the first of the two that was not 1 returned, or 1. Error words and marks are those of the record
 * calls; WriteCfg sends what has changed. No traffic, but for a set of LEDCtrl or BprRlyCtrl whose bVolatile
 * is not 0, and for any set of LEDCtrl on a magstripe reader. Unsupported with no device.
 */
#ifndef TAVLYN_API_ACCESSORS_H
#define TAVLYN_API_ACCESSORS_H

#include "types.h"

/* tsIDBitCnts */
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iLeadParityBitCnt(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iLeadParityBitCnt(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iTrailParityBitCnt(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iTrailParityBitCnt(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iIDBitCnt(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iIDBitCnt(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iTotalBitCnt(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iTotalBitCnt(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iPad4(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iPad4(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iPad5(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iPad5(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iPad6(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iPad6(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iPad7(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iPad7(int16_t value);

/* tsCfgFlags */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bFixLenDsp(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bFixLenDsp(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bFrcBitCntEx(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bFrcBitCntEx(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bStripFac(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bStripFac(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bSndFac(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bSndFac(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bUseDelFac2Id(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bUseDelFac2Id(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bNoUseELChar(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bNoUseELChar(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bSndOnRx(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bSndOnRx(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bHaltKBSnd(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bHaltKBSnd(int16_t value);

/* tsIDDispParms */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iFACIDDelim(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iFACIDDelim(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iELDelim(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iELDelim(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iIDDispLen(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iIDDispLen(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iFACDispLen(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iFACDispLen(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iExOutputFormat(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iExOutputFormat(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iPad5(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iPad5(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iPad6(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iPad6(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iPad7(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iPad7(int16_t value);

/* tsTimeParms. The two key times of a magstripe reader are its own, outside the record: they are read and
 * written directly, without a range, and the setter returns 1. Devices that are neither card nor magstripe
 * readers have none: unsupported. setTimeParms_ExFeatures01 does nothing and returns unsupported: that word
 * is written through SetTimeParms only. */
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_iBitStrmTO(void);
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_iBitStrmTO(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_iIDHoldTO(void);
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_iIDHoldTO(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_iIDLockOutTm(void);
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_iIDLockOutTm(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_iUSBKeyPrsTm(void);
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_iUSBKeyPrsTm(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_iUSBKeyRlsTm(void);
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_iUSBKeyRlsTm(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_ExFeatures01(void);
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_ExFeatures01(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_iPad6(void);
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_iPad6(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_iTPCfgFlg3(void);
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_iTPCfgFlg3(int16_t value);

/* tsCfgFlags2 */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_bUseLeadChrs(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_bUseLeadChrs(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_bDspHex(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_bDspHex(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_bWiegInvData(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_bWiegInvData(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_bUseInvDataF(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_bUseInvDataF(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_bRevWiegBits(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_bRevWiegBits(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_bBeepID(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_bBeepID(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_bRevBytes(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_bRevBytes(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_isASCIIpresent(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_isASCIIpresent(int16_t value);

/* tsCfgFlags3. Both calls for bNotBootDev do nothing and return unsupported: that word is reached through
 * GetFlags3 and SetFlags3 only. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bUseNumKP(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bUseNumKP(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bSndSFON(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bSndSFON(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bSndSFFC(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bSndSFFC(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bSndSFID(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bSndSFID(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bPrxProEm(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bPrxProEm(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bUse64Bit(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bUse64Bit(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bNotBootDev(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bNotBootDev(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bLowerCaseHex(void);
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bLowerCaseHex(int16_t value);

/* tsIDDispParms2 */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iLeadChrCnt(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iLeadChrCnt(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iLeadChr0(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iLeadChr0(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iLeadChr1(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iLeadChr1(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iLeadChr2(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iLeadChr2(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iCrdGnChr0(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iCrdGnChr0(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iCrdGnChr1(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iCrdGnChr1(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iPad6(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iPad6(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iPad7(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iPad7(int16_t value);

/* tsIDDispParms3 */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iTrailChrCnt(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iTrailChrCnt(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iTrailChr0(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iTrailChr0(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iTrailChr1(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iTrailChr1(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iTrailChr2(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iTrailChr2(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iPad4(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iPad4(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iPad5(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iPad5(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iPad6(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iPad6(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iPad7(void);
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iPad7(int16_t value);

/* tsLEDCtrl */
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_bAppCtrlsLED(void);
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_bAppCtrlsLED(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_iRedLEDState(void);
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_iRedLEDState(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_iGrnLEDState(void);
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_iGrnLEDState(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_iPad3(void);
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_iPad3(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_iPad4(void);
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_iPad4(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_iPad5(void);
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_iPad5(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_iPad6(void);
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_iPad6(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_bVolatile(void);
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_bVolatile(int16_t value);

/* tsBprRlyCtrl */
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_iPad0(void);
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_iPad0(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_iBeeperState(void);
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_iBeeperState(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_iRelayState(void);
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_iRelayState(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_iPad3(void);
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_iPad3(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_iPad4(void);
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_iPad4(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_iPad5(void);
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_iPad5(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_iPad6(void);
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_iPad6(int16_t value);
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_bVolatile(void);
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_bVolatile(int16_t value);

#endif
