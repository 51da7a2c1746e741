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
TAVLYN_API int16_t getIDBitCnts_iLeadParityBitCnt(void);
TAVLYN_API uint16_t setIDBitCnts_iLeadParityBitCnt(int16_t value);
TAVLYN_API int16_t getIDBitCnts_iTrailParityBitCnt(void);
TAVLYN_API uint16_t setIDBitCnts_iTrailParityBitCnt(int16_t value);
TAVLYN_API int16_t getIDBitCnts_iIDBitCnt(void);
TAVLYN_API uint16_t setIDBitCnts_iIDBitCnt(int16_t value);
TAVLYN_API int16_t getIDBitCnts_iTotalBitCnt(void);
TAVLYN_API uint16_t setIDBitCnts_iTotalBitCnt(int16_t value);
TAVLYN_API int16_t getIDBitCnts_iPad4(void);
TAVLYN_API uint16_t setIDBitCnts_iPad4(int16_t value);
TAVLYN_API int16_t getIDBitCnts_iPad5(void);
TAVLYN_API uint16_t setIDBitCnts_iPad5(int16_t value);
TAVLYN_API int16_t getIDBitCnts_iPad6(void);
TAVLYN_API uint16_t setIDBitCnts_iPad6(int16_t value);
TAVLYN_API int16_t getIDBitCnts_iPad7(void);
TAVLYN_API uint16_t setIDBitCnts_iPad7(int16_t value);

/* tsCfgFlags */
TAVLYN_API int16_t getCfgFlags_bFixLenDsp(void);
TAVLYN_API uint16_t setCfgFlags_bFixLenDsp(int16_t value);
TAVLYN_API int16_t getCfgFlags_bFrcBitCntEx(void);
TAVLYN_API uint16_t setCfgFlags_bFrcBitCntEx(int16_t value);
TAVLYN_API int16_t getCfgFlags_bStripFac(void);
TAVLYN_API uint16_t setCfgFlags_bStripFac(int16_t value);
TAVLYN_API int16_t getCfgFlags_bSndFac(void);
TAVLYN_API uint16_t setCfgFlags_bSndFac(int16_t value);
TAVLYN_API int16_t getCfgFlags_bUseDelFac2Id(void);
TAVLYN_API uint16_t setCfgFlags_bUseDelFac2Id(int16_t value);
TAVLYN_API int16_t getCfgFlags_bNoUseELChar(void);
TAVLYN_API uint16_t setCfgFlags_bNoUseELChar(int16_t value);
TAVLYN_API int16_t getCfgFlags_bSndOnRx(void);
TAVLYN_API uint16_t setCfgFlags_bSndOnRx(int16_t value);
TAVLYN_API int16_t getCfgFlags_bHaltKBSnd(void);
TAVLYN_API uint16_t setCfgFlags_bHaltKBSnd(int16_t value);

/* tsIDDispParms */
TAVLYN_API int16_t getIDDispParms_iFACIDDelim(void);
TAVLYN_API uint16_t setIDDispParms_iFACIDDelim(int16_t value);
TAVLYN_API int16_t getIDDispParms_iELDelim(void);
TAVLYN_API uint16_t setIDDispParms_iELDelim(int16_t value);
TAVLYN_API int16_t getIDDispParms_iIDDispLen(void);
TAVLYN_API uint16_t setIDDispParms_iIDDispLen(int16_t value);
TAVLYN_API int16_t getIDDispParms_iFACDispLen(void);
TAVLYN_API uint16_t setIDDispParms_iFACDispLen(int16_t value);
TAVLYN_API int16_t getIDDispParms_iExOutputFormat(void);
TAVLYN_API uint16_t setIDDispParms_iExOutputFormat(int16_t value);
TAVLYN_API int16_t getIDDispParms_iPad5(void);
TAVLYN_API uint16_t setIDDispParms_iPad5(int16_t value);
TAVLYN_API int16_t getIDDispParms_iPad6(void);
TAVLYN_API uint16_t setIDDispParms_iPad6(int16_t value);
TAVLYN_API int16_t getIDDispParms_iPad7(void);
TAVLYN_API uint16_t setIDDispParms_iPad7(int16_t value);

/* tsTimeParms. The two key times of a magstripe reader are its own, outside the record: they are read and
 * written directly, without a range, and the setter returns 1. Devices that are neither card nor magstripe
 * readers have none: unsupported. setTimeParms_ExFeatures01 does nothing and returns unsupported: that word
 * is written through SetTimeParms only. */
TAVLYN_API int16_t getTimeParms_iBitStrmTO(void);
TAVLYN_API uint16_t setTimeParms_iBitStrmTO(int16_t value);
TAVLYN_API int16_t getTimeParms_iIDHoldTO(void);
TAVLYN_API uint16_t setTimeParms_iIDHoldTO(int16_t value);
TAVLYN_API int16_t getTimeParms_iIDLockOutTm(void);
TAVLYN_API uint16_t setTimeParms_iIDLockOutTm(int16_t value);
TAVLYN_API int16_t getTimeParms_iUSBKeyPrsTm(void);
TAVLYN_API uint16_t setTimeParms_iUSBKeyPrsTm(int16_t value);
TAVLYN_API int16_t getTimeParms_iUSBKeyRlsTm(void);
TAVLYN_API uint16_t setTimeParms_iUSBKeyRlsTm(int16_t value);
TAVLYN_API int16_t getTimeParms_ExFeatures01(void);
TAVLYN_API uint16_t setTimeParms_ExFeatures01(int16_t value);
TAVLYN_API int16_t getTimeParms_iPad6(void);
TAVLYN_API uint16_t setTimeParms_iPad6(int16_t value);
TAVLYN_API int16_t getTimeParms_iTPCfgFlg3(void);
TAVLYN_API uint16_t setTimeParms_iTPCfgFlg3(int16_t value);

/* tsCfgFlags2 */
TAVLYN_API int16_t getCfgFlags2_bUseLeadChrs(void);
TAVLYN_API uint16_t setCfgFlags2_bUseLeadChrs(int16_t value);
TAVLYN_API int16_t getCfgFlags2_bDspHex(void);
TAVLYN_API uint16_t setCfgFlags2_bDspHex(int16_t value);
TAVLYN_API int16_t getCfgFlags2_bWiegInvData(void);
TAVLYN_API uint16_t setCfgFlags2_bWiegInvData(int16_t value);
TAVLYN_API int16_t getCfgFlags2_bUseInvDataF(void);
TAVLYN_API uint16_t setCfgFlags2_bUseInvDataF(int16_t value);
TAVLYN_API int16_t getCfgFlags2_bRevWiegBits(void);
TAVLYN_API uint16_t setCfgFlags2_bRevWiegBits(int16_t value);
TAVLYN_API int16_t getCfgFlags2_bBeepID(void);
TAVLYN_API uint16_t setCfgFlags2_bBeepID(int16_t value);
TAVLYN_API int16_t getCfgFlags2_bRevBytes(void);
TAVLYN_API uint16_t setCfgFlags2_bRevBytes(int16_t value);
TAVLYN_API int16_t getCfgFlags2_isASCIIpresent(void);
TAVLYN_API uint16_t setCfgFlags2_isASCIIpresent(int16_t value);

/* tsCfgFlags3. Both calls for bNotBootDev do nothing and return unsupported: that word is reached through
 * GetFlags3 and SetFlags3 only. */
TAVLYN_API int16_t getCfgFlags3_bUseNumKP(void);
TAVLYN_API uint16_t setCfgFlags3_bUseNumKP(int16_t value);
TAVLYN_API int16_t getCfgFlags3_bSndSFON(void);
TAVLYN_API uint16_t setCfgFlags3_bSndSFON(int16_t value);
TAVLYN_API int16_t getCfgFlags3_bSndSFFC(void);
TAVLYN_API uint16_t setCfgFlags3_bSndSFFC(int16_t value);
TAVLYN_API int16_t getCfgFlags3_bSndSFID(void);
TAVLYN_API uint16_t setCfgFlags3_bSndSFID(int16_t value);
TAVLYN_API int16_t getCfgFlags3_bPrxProEm(void);
TAVLYN_API uint16_t setCfgFlags3_bPrxProEm(int16_t value);
TAVLYN_API int16_t getCfgFlags3_bUse64Bit(void);
TAVLYN_API uint16_t setCfgFlags3_bUse64Bit(int16_t value);
TAVLYN_API int16_t getCfgFlags3_bNotBootDev(void);
TAVLYN_API uint16_t setCfgFlags3_bNotBootDev(int16_t value);
TAVLYN_API int16_t getCfgFlags3_bLowerCaseHex(void);
TAVLYN_API uint16_t setCfgFlags3_bLowerCaseHex(int16_t value);

/* tsIDDispParms2 */
TAVLYN_API int16_t getIDDispParms2_iLeadChrCnt(void);
TAVLYN_API uint16_t setIDDispParms2_iLeadChrCnt(int16_t value);
TAVLYN_API int16_t getIDDispParms2_iLeadChr0(void);
TAVLYN_API uint16_t setIDDispParms2_iLeadChr0(int16_t value);
TAVLYN_API int16_t getIDDispParms2_iLeadChr1(void);
TAVLYN_API uint16_t setIDDispParms2_iLeadChr1(int16_t value);
TAVLYN_API int16_t getIDDispParms2_iLeadChr2(void);
TAVLYN_API uint16_t setIDDispParms2_iLeadChr2(int16_t value);
TAVLYN_API int16_t getIDDispParms2_iCrdGnChr0(void);
TAVLYN_API uint16_t setIDDispParms2_iCrdGnChr0(int16_t value);
TAVLYN_API int16_t getIDDispParms2_iCrdGnChr1(void);
TAVLYN_API uint16_t setIDDispParms2_iCrdGnChr1(int16_t value);
TAVLYN_API int16_t getIDDispParms2_iPad6(void);
TAVLYN_API uint16_t setIDDispParms2_iPad6(int16_t value);
TAVLYN_API int16_t getIDDispParms2_iPad7(void);
TAVLYN_API uint16_t setIDDispParms2_iPad7(int16_t value);

/* tsIDDispParms3 */
TAVLYN_API int16_t getIDDispParms3_iTrailChrCnt(void);
TAVLYN_API uint16_t setIDDispParms3_iTrailChrCnt(int16_t value);
TAVLYN_API int16_t getIDDispParms3_iTrailChr0(void);
TAVLYN_API uint16_t setIDDispParms3_iTrailChr0(int16_t value);
TAVLYN_API int16_t getIDDispParms3_iTrailChr1(void);
TAVLYN_API uint16_t setIDDispParms3_iTrailChr1(int16_t value);
TAVLYN_API int16_t getIDDispParms3_iTrailChr2(void);
TAVLYN_API uint16_t setIDDispParms3_iTrailChr2(int16_t value);
TAVLYN_API int16_t getIDDispParms3_iPad4(void);
TAVLYN_API uint16_t setIDDispParms3_iPad4(int16_t value);
TAVLYN_API int16_t getIDDispParms3_iPad5(void);
TAVLYN_API uint16_t setIDDispParms3_iPad5(int16_t value);
TAVLYN_API int16_t getIDDispParms3_iPad6(void);
TAVLYN_API uint16_t setIDDispParms3_iPad6(int16_t value);
TAVLYN_API int16_t getIDDispParms3_iPad7(void);
TAVLYN_API uint16_t setIDDispParms3_iPad7(int16_t value);

/* tsLEDCtrl */
TAVLYN_API int16_t getLEDCtrl_bAppCtrlsLED(void);
TAVLYN_API uint16_t setLEDCtrl_bAppCtrlsLED(int16_t value);
TAVLYN_API int16_t getLEDCtrl_iRedLEDState(void);
TAVLYN_API uint16_t setLEDCtrl_iRedLEDState(int16_t value);
TAVLYN_API int16_t getLEDCtrl_iGrnLEDState(void);
TAVLYN_API uint16_t setLEDCtrl_iGrnLEDState(int16_t value);
TAVLYN_API int16_t getLEDCtrl_iPad3(void);
TAVLYN_API uint16_t setLEDCtrl_iPad3(int16_t value);
TAVLYN_API int16_t getLEDCtrl_iPad4(void);
TAVLYN_API uint16_t setLEDCtrl_iPad4(int16_t value);
TAVLYN_API int16_t getLEDCtrl_iPad5(void);
TAVLYN_API uint16_t setLEDCtrl_iPad5(int16_t value);
TAVLYN_API int16_t getLEDCtrl_iPad6(void);
TAVLYN_API uint16_t setLEDCtrl_iPad6(int16_t value);
TAVLYN_API int16_t getLEDCtrl_bVolatile(void);
TAVLYN_API uint16_t setLEDCtrl_bVolatile(int16_t value);

/* tsBprRlyCtrl */
TAVLYN_API int16_t getBprRlyCtrl_iPad0(void);
TAVLYN_API uint16_t setBprRlyCtrl_iPad0(int16_t value);
TAVLYN_API int16_t getBprRlyCtrl_iBeeperState(void);
TAVLYN_API uint16_t setBprRlyCtrl_iBeeperState(int16_t value);
TAVLYN_API int16_t getBprRlyCtrl_iRelayState(void);
TAVLYN_API uint16_t setBprRlyCtrl_iRelayState(int16_t value);
TAVLYN_API int16_t getBprRlyCtrl_iPad3(void);
TAVLYN_API uint16_t setBprRlyCtrl_iPad3(int16_t value);
TAVLYN_API int16_t getBprRlyCtrl_iPad4(void);
TAVLYN_API uint16_t setBprRlyCtrl_iPad4(int16_t value);
TAVLYN_API int16_t getBprRlyCtrl_iPad5(void);
TAVLYN_API uint16_t setBprRlyCtrl_iPad5(int16_t value);
TAVLYN_API int16_t getBprRlyCtrl_iPad6(void);
TAVLYN_API uint16_t setBprRlyCtrl_iPad6(int16_t value);
TAVLYN_API int16_t getBprRlyCtrl_bVolatile(void);
TAVLYN_API uint16_t setBprRlyCtrl_bVolatile(int16_t value);

#endif
