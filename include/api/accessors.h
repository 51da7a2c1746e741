/** @file
 * The words of the configuration records one by one, for callers that cannot pass records. Nothing is scaled.
 *
 * A getter calls the record's get and returns the word; when that get did not return 1, it returns what the
 * get returned, so that a failed read and a word of that value look alike. A setter calls the record's get,
 * changes the one word and calls the record's set; it returns 1 when both did, else what the first that
 * failed returned. Error words and marks are those of the record calls in records.h: TAVLYN_ERR_GET_UNREAD
 * when the configuration was not read, and the word named at a setter for a value out of range, with nothing
 * stored. WriteCfg() sends what has changed. With no device every call returns unsupported.
 *
 * There is no traffic, except for a set of tsLEDCtrl or tsBprRlyCtrl whose bVolatile is not 0, and for any
 * set of tsLEDCtrl on a magstripe reader. */
#ifndef TAVLYN_API_ACCESSORS_H
#define TAVLYN_API_ACCESSORS_H

#include "types.h"

/** @name Words of tsIDBitCnts
 * By way of GetIDBitCnts() and SetIDBitCnts().
 * @{ */

/** @return The word iLeadParityBitCnt. Leading Wiegand parity bits to strip: at most 15 (142 where bit 7 of
 *   ExFeatures01 is set). */
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iLeadParityBitCnt(void);
/** @param value The word iLeadParityBitCnt. Leading Wiegand parity bits to strip: at most 15 (142 where bit 7
 *   of ExFeatures01 is set). Out of range gives 0 and TAVLYN_ERR_ID_BIT_CNTS.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iLeadParityBitCnt(int16_t value);

/** @return The word iTrailParityBitCnt. Trailing Wiegand parity bits to strip: at most 15 (142 where bit 7 of
 *   ExFeatures01 is set). */
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iTrailParityBitCnt(void);
/** @param value The word iTrailParityBitCnt. Trailing Wiegand parity bits to strip: at most 15 (142 where bit
 *   7 of ExFeatures01 is set). Out of range gives 0 and TAVLYN_ERR_ID_BIT_CNTS + 1.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iTrailParityBitCnt(int16_t value);

/** @return The word iIDBitCnt. With bStripFac, bits of the ID; the rest is FAC: 1 to 255. */
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iIDBitCnt(void);
/** @param value The word iIDBitCnt. With bStripFac, bits of the ID; the rest is FAC: 1 to 255. Out of range
 *   gives 0 and TAVLYN_ERR_ID_BIT_CNTS + 2.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iIDBitCnt(int16_t value);

/** @return The word iTotalBitCnt. With bFrcBitCntEx, bits of a valid read including parity: 26 to 255. */
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iTotalBitCnt(void);
/** @param value The word iTotalBitCnt. With bFrcBitCntEx, bits of a valid read including parity: 26 to 255.
 *   Out of range gives 0 and TAVLYN_ERR_ID_BIT_CNTS + 3.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iTotalBitCnt(int16_t value);

/** @return The word iPad4 of tsIDBitCnts, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iPad4(void);
/** @param value iPad4 of tsIDBitCnts, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iPad4(int16_t value);

/** @return The word iPad5 of tsIDBitCnts, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iPad5(void);
/** @param value iPad5 of tsIDBitCnts, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iPad5(int16_t value);

/** @return The word iPad6 of tsIDBitCnts, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iPad6(void);
/** @param value iPad6 of tsIDBitCnts, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iPad6(int16_t value);

/** @return The word iPad7 of tsIDBitCnts, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getIDBitCnts_iPad7(void);
/** @param value iPad7 of tsIDBitCnts, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDBitCnts_iPad7(int16_t value);

/** @} */

/** @name Words of tsCfgFlags
 * By way of GetFlags() and SetFlags().
 * @{ */

/** @return The flag bFixLenDsp. Send the ID at a fixed length, with leading zeros as needed. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bFixLenDsp(void);
/** @param value The flag bFixLenDsp. Send the ID at a fixed length, with leading zeros as needed.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bFixLenDsp(int16_t value);

/** @return The flag bFrcBitCntEx. Only an ID of exactly iTotalBitCnt bits is valid. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bFrcBitCntEx(void);
/** @param value The flag bFrcBitCntEx. Only an ID of exactly iTotalBitCnt bits is valid.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bFrcBitCntEx(int16_t value);

/** @return The flag bStripFac. Strip the facility code (FAC) from the ID; it is not discarded. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bStripFac(void);
/** @param value The flag bStripFac. Strip the facility code (FAC) from the ID; it is not discarded.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bStripFac(int16_t value);

/** @return The flag bSndFac. Send the FAC, if it is stripped. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bSndFac(void);
/** @param value The flag bSndFac. Send the FAC, if it is stripped.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bSndFac(int16_t value);

/** @return The flag bUseDelFac2Id. Send a delimiter between FAC and ID. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bUseDelFac2Id(void);
/** @param value The flag bUseDelFac2Id. Send a delimiter between FAC and ID.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bUseDelFac2Id(int16_t value);

/** @return The flag bNoUseELChar. Send no end-of-line character (which is ENTER by default). */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bNoUseELChar(void);
/** @param value The flag bNoUseELChar. Send no end-of-line character (which is ENTER by default).
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bNoUseELChar(int16_t value);

/** @return The flag bSndOnRx. Send a valid ID as soon as it is received; iIDLockOutTm is not used. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bSndOnRx(void);
/** @param value The flag bSndOnRx. Send a valid ID as soon as it is received; iIDLockOutTm is not used.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bSndOnRx(int16_t value);

/** @return The flag bHaltKBSnd. Send no keys to USB: the mode for reading IDs through this library. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags_bHaltKBSnd(void);
/** @param value The flag bHaltKBSnd. Send no keys to USB: the mode for reading IDs through this library.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags_bHaltKBSnd(int16_t value);

/** @} */

/** @name Words of tsIDDispParms
 * By way of GetIDDispParms() and SetIDDispParms().
 * @{ */

/** @return The word iFACIDDelim. Character between FAC and ID: at most 255. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iFACIDDelim(void);
/** @param value The word iFACIDDelim. Character between FAC and ID: at most 255. Out of range gives 0 and
 *   TAVLYN_ERR_ID_DISP_PARMS.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iFACIDDelim(int16_t value);

/** @return The word iELDelim. Character at the end of the ID, unless bNoUseELChar is set: at most 255. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iELDelim(void);
/** @param value The word iELDelim. Character at the end of the ID, unless bNoUseELChar is set: at most 255.
 *   Out of range gives 0 and TAVLYN_ERR_ID_DISP_PARMS + 1.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iELDelim(int16_t value);

/** @return The word iIDDispLen. With bFixLenDsp, length to which the ID is padded with zeros: at most 25. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iIDDispLen(void);
/** @param value The word iIDDispLen. With bFixLenDsp, length to which the ID is padded with zeros: at
 *   most 25. Out of range gives 0 and TAVLYN_ERR_ID_DISP_PARMS + 2.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iIDDispLen(int16_t value);

/** @return The word iFACDispLen. With bFixLenDsp, length to which the FAC is padded with zeros: at most 25.
 */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iFACDispLen(void);
/** @param value The word iFACDispLen. With bFixLenDsp, length to which the FAC is padded with zeros: at
 *   most 25. Out of range gives 0 and TAVLYN_ERR_ID_DISP_PARMS + 3.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iFACDispLen(int16_t value);

/** @return The word iExOutputFormat. 0 = data format mode, 1 = extended mode. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iExOutputFormat(void);
/** @param value The word iExOutputFormat. 0 = data format mode, 1 = extended mode.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iExOutputFormat(int16_t value);

/** @return The word iPad5 of tsIDDispParms, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iPad5(void);
/** @param value iPad5 of tsIDDispParms, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iPad5(int16_t value);

/** @return The word iPad6 of tsIDDispParms, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iPad6(void);
/** @param value iPad6 of tsIDDispParms, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iPad6(int16_t value);

/** @return The word iPad7 of tsIDDispParms, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms_iPad7(void);
/** @param value iPad7 of tsIDDispParms, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms_iPad7(int16_t value);

/** @} */

/** @name Words of tsTimeParms
 * By way of GetTimeParms() and SetTimeParms().
 * @{ */

/** @return The word iBitStrmTO. A Wiegand read times out after this time: at most 1020 milliseconds, steps
 *   of 4. */
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_iBitStrmTO(void);
/** @param value The word iBitStrmTO. A Wiegand read times out after this time: at most 1020 milliseconds,
 *   steps of 4. Out of range gives 0 and TAVLYN_ERR_TIME_PARMS.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_iBitStrmTO(int16_t value);

/** @return The word iIDHoldTO. A card ID remains valid for this time: at most 12750 milliseconds, steps
 *   of 50. */
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_iIDHoldTO(void);
/** @param value The word iIDHoldTO. A card ID remains valid for this time: at most 12750 milliseconds, steps
 *   of 50. Out of range gives 0 and TAVLYN_ERR_TIME_PARMS + 1.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_iIDHoldTO(int16_t value);

/** @return The word iIDLockOutTm. Repeated reports are suppressed for this time: at most 12750 milliseconds,
 *   steps of 50. */
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_iIDLockOutTm(void);
/** @param value The word iIDLockOutTm. Repeated reports are suppressed for this time: at most 12750
 *   milliseconds, steps of 50. Out of range gives 0 and TAVLYN_ERR_TIME_PARMS + 2.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_iIDLockOutTm(int16_t value);

/** @return The word iUSBKeyPrsTm. How long a USB key stays pressed: at most 1020 milliseconds, steps of 4. Of
 *   a magstripe reader it is a word of its own, outside the record; of a sonar sensor unsupported. */
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_iUSBKeyPrsTm(void);
/** @param value The word iUSBKeyPrsTm. How long a USB key stays pressed: at most 1020 milliseconds, steps
 *   of 4. Out of range gives 0 and TAVLYN_ERR_TIME_PARMS + 3. Of a magstripe reader it is a word of its own,
 *   outside the record and without a range; of a sonar sensor unsupported.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_iUSBKeyPrsTm(int16_t value);

/** @return The word iUSBKeyRlsTm. How long a USB key stays released: at most 1020 milliseconds, steps of 4.
 *   Of a magstripe reader it is a word of its own, outside the record; of a sonar sensor unsupported. */
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_iUSBKeyRlsTm(void);
/** @param value The word iUSBKeyRlsTm. How long a USB key stays released: at most 1020 milliseconds, steps
 *   of 4. Out of range gives 0 and TAVLYN_ERR_TIME_PARMS + 4. Of a magstripe reader it is a word of its own,
 *   outside the record and without a range; of a sonar sensor unsupported.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_iUSBKeyRlsTm(int16_t value);

/** @return The word ExFeatures01. Features that the reader reports: bits 5 to 7, see tsTimeParms. */
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_ExFeatures01(void);
/** Does nothing: that word is written through SetTimeParms() only.
 * @param value is ignored.
 * @return Unsupported. */
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_ExFeatures01(int16_t value);

/** @return The word iPad6 of tsTimeParms, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_iPad6(void);
/** @param value iPad6 of tsTimeParms, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_iPad6(int16_t value);

/** @return The word iTPCfgFlg3. tsCfgFlags3 as one byte. The library keeps it; a set leaves it alone. */
TAVLYN_API int16_t TAVLYN_CALL getTimeParms_iTPCfgFlg3(void);
/** Makes a record get and a record set, which leaves this word as it is.
 * @param value is not stored.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setTimeParms_iTPCfgFlg3(int16_t value);

/** @} */

/** @name Words of tsCfgFlags2
 * By way of GetFlags2() and SetFlags2().
 * @{ */

/** @return The flag bUseLeadChrs. Use the lead characters when keys are sent. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_bUseLeadChrs(void);
/** @param value The flag bUseLeadChrs. Use the lead characters when keys are sent.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_bUseLeadChrs(int16_t value);

/** @return The flag bDspHex. Show the ID in hexadecimal, not in decimal digits. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_bDspHex(void);
/** @param value The flag bDspHex. Show the ID in hexadecimal, not in decimal digits.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_bDspHex(int16_t value);

/** @return The flag bWiegInvData. The Wiegand data on the pins is inverted. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_bWiegInvData(void);
/** @param value The flag bWiegInvData. The Wiegand data on the pins is inverted.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_bWiegInvData(int16_t value);

/** @return The flag bUseInvDataF. Use bWiegInvData in place of the hardware setting. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_bUseInvDataF(void);
/** @param value The flag bUseInvDataF. Use bWiegInvData in place of the hardware setting.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_bUseInvDataF(int16_t value);

/** @return The flag bRevWiegBits. Reverse the order of the Wiegand bits that are received. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_bRevWiegBits(void);
/** @param value The flag bRevWiegBits. Reverse the order of the Wiegand bits that are received.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_bRevWiegBits(int16_t value);

/** @return The flag bBeepID. Beep when an ID is received. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_bBeepID(void);
/** @param value The flag bBeepID. Beep when an ID is received.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_bBeepID(int16_t value);

/** @return The flag bRevBytes. Reverse the byte order (CSN reader). */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_bRevBytes(void);
/** @param value The flag bRevBytes. Reverse the byte order (CSN reader).
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_bRevBytes(int16_t value);

/** @return The flag isASCIIpresent. The reader has the ASCII conversion type. Read only: it is never sent. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags2_isASCIIpresent(void);
/** @param value The flag isASCIIpresent. The reader has the ASCII conversion type. Read only: it is never
 *   sent.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags2_isASCIIpresent(int16_t value);

/** @} */

/** @name Words of tsCfgFlags3
 * By way of GetFlags3() and SetFlags3().
 * @{ */

/** @return The flag bUseNumKP. Euro keyboard. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bUseNumKP(void);
/** @param value The flag bUseNumKP. Euro keyboard.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bUseNumKP(int16_t value);

/** @return The flag bSndSFON. 1 = split format, 0 = the old combined scheme. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bSndSFON(void);
/** @param value The flag bSndSFON. 1 = split format, 0 = the old combined scheme.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bSndSFON(int16_t value);

/** @return The flag bSndSFFC. 0 = FAC in decimal, 1 = FAC in hexadecimal. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bSndSFFC(void);
/** @param value The flag bSndSFFC. 0 = FAC in decimal, 1 = FAC in hexadecimal.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bSndSFFC(int16_t value);

/** @return The flag bSndSFID. 0 = ID in decimal, 1 = ID in hexadecimal. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bSndSFID(void);
/** @param value The flag bSndSFID. 0 = ID in decimal, 1 = ID in hexadecimal.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bSndSFID(int16_t value);

/** @return The flag bPrxProEm. ProxPro emulation. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bPrxProEm(void);
/** @param value The flag bPrxProEm. ProxPro emulation.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bPrxProEm(int16_t value);

/** @return The flag bUse64Bit. Arithmetic of the display: 0 = 32 bits, 1 = 64 bits. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bUse64Bit(void);
/** @param value The flag bUse64Bit. Arithmetic of the display: 0 = 32 bits, 1 = 64 bits.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bUse64Bit(int16_t value);

/** Does nothing: bNotBootDev is reached through GetFlags3() and SetFlags3() only.
 * @return Unsupported. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bNotBootDev(void);
/** Does nothing: bNotBootDev is reached through GetFlags3() and SetFlags3() only.
 * @param value is ignored.
 * @return Unsupported. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bNotBootDev(int16_t value);

/** @return The flag bLowerCaseHex. Hexadecimal digits: 0 = upper case, 1 = lower case. */
TAVLYN_API int16_t TAVLYN_CALL getCfgFlags3_bLowerCaseHex(void);
/** @param value The flag bLowerCaseHex. Hexadecimal digits: 0 = upper case, 1 = lower case.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setCfgFlags3_bLowerCaseHex(int16_t value);

/** @} */

/** @name Words of tsIDDispParms2
 * By way of GetIDDispParms2() and SetIDDispParms2().
 * @{ */

/** @return The word iLeadChrCnt. With bUseLeadChrs, number of lead characters: at most 3. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iLeadChrCnt(void);
/** @param value The word iLeadChrCnt. With bUseLeadChrs, number of lead characters: at most 3. Out of range
 *   gives 0 and TAVLYN_ERR_CHR_CNT.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iLeadChrCnt(int16_t value);

/** @return The word iLeadChr0. First lead character. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iLeadChr0(void);
/** @param value The word iLeadChr0. First lead character.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iLeadChr0(int16_t value);

/** @return The word iLeadChr1. Second lead character. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iLeadChr1(void);
/** @param value The word iLeadChr1. Second lead character.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iLeadChr1(int16_t value);

/** @return The word iLeadChr2. Third lead character. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iLeadChr2(void);
/** @param value The word iLeadChr2. Third lead character.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iLeadChr2(int16_t value);

/** @return The word iCrdGnChr0. Unless 0, sent when the ID goes invalid. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iCrdGnChr0(void);
/** @param value The word iCrdGnChr0. Unless 0, sent when the ID goes invalid.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iCrdGnChr0(int16_t value);

/** @return The word iCrdGnChr1. Unless this or iCrdGnChr0 is 0, sent when the ID goes invalid. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iCrdGnChr1(void);
/** @param value The word iCrdGnChr1. Unless this or iCrdGnChr0 is 0, sent when the ID goes invalid.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iCrdGnChr1(int16_t value);

/** @return The word iPad6 of tsIDDispParms2, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iPad6(void);
/** @param value iPad6 of tsIDDispParms2, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iPad6(int16_t value);

/** @return The word iPad7 of tsIDDispParms2, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms2_iPad7(void);
/** @param value iPad7 of tsIDDispParms2, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms2_iPad7(int16_t value);

/** @} */

/** @name Words of tsIDDispParms3
 * By way of GetIDDispParms3() and SetIDDispParms3().
 * @{ */

/** @return The word iTrailChrCnt. Number of trail characters: at most 3. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iTrailChrCnt(void);
/** @param value The word iTrailChrCnt. Number of trail characters: at most 3. Out of range gives 0 and
 *   TAVLYN_ERR_CHR_CNT.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iTrailChrCnt(int16_t value);

/** @return The word iTrailChr0. First trail character. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iTrailChr0(void);
/** @param value The word iTrailChr0. First trail character.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iTrailChr0(int16_t value);

/** @return The word iTrailChr1. Second trail character. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iTrailChr1(void);
/** @param value The word iTrailChr1. Second trail character.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iTrailChr1(int16_t value);

/** @return The word iTrailChr2. Third trail character. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iTrailChr2(void);
/** @param value The word iTrailChr2. Third trail character.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iTrailChr2(int16_t value);

/** @return The word iPad4 of tsIDDispParms3, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iPad4(void);
/** @param value iPad4 of tsIDDispParms3, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iPad4(int16_t value);

/** @return The word iPad5 of tsIDDispParms3, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iPad5(void);
/** @param value iPad5 of tsIDDispParms3, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iPad5(int16_t value);

/** @return The word iPad6 of tsIDDispParms3, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iPad6(void);
/** @param value iPad6 of tsIDDispParms3, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iPad6(int16_t value);

/** @return The word iPad7 of tsIDDispParms3, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getIDDispParms3_iPad7(void);
/** @param value iPad7 of tsIDDispParms3, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setIDDispParms3_iPad7(int16_t value);

/** @} */

/** @name Words of tsLEDCtrl
 * By way of GetLEDCtrl() and SetLEDCtrl().
 * @{ */

/** @return The flag bAppCtrlsLED. The LEDs are controlled through this library. */
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_bAppCtrlsLED(void);
/** @param value The flag bAppCtrlsLED. The LEDs are controlled through this library.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_bAppCtrlsLED(int16_t value);

/** @return The word iRedLEDState. 0 = off, 1 = on. */
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_iRedLEDState(void);
/** @param value The word iRedLEDState. 0 = off, 1 = on.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_iRedLEDState(int16_t value);

/** @return The word iGrnLEDState. 0 = off, 1 = on. */
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_iGrnLEDState(void);
/** @param value The word iGrnLEDState. 0 = off, 1 = on.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_iGrnLEDState(int16_t value);

/** @return The word iPad3 of tsLEDCtrl, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_iPad3(void);
/** @param value iPad3 of tsLEDCtrl, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_iPad3(int16_t value);

/** @return The word iPad4 of tsLEDCtrl, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_iPad4(void);
/** @param value iPad4 of tsLEDCtrl, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_iPad4(int16_t value);

/** @return The word iPad5 of tsLEDCtrl, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_iPad5(void);
/** @param value iPad5 of tsLEDCtrl, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_iPad5(int16_t value);

/** @return The word iPad6 of tsLEDCtrl, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_iPad6(void);
/** @param value iPad6 of tsLEDCtrl, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_iPad6(int16_t value);

/** @return The flag bVolatile. 0 = for the reader's storage, 1 = now and not stored. */
TAVLYN_API int16_t TAVLYN_CALL getLEDCtrl_bVolatile(void);
/** @param value The flag bVolatile. 0 = for the reader's storage, 1 = now and not stored.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setLEDCtrl_bVolatile(int16_t value);

/** @} */

/** @name Words of tsBprRlyCtrl
 * By way of GetBprRlyCtrl() and SetBprRlyCtrl().
 * @{ */

/** @return The word iPad0 of tsBprRlyCtrl, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_iPad0(void);
/** @param value iPad0 of tsBprRlyCtrl, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_iPad0(int16_t value);

/** @return The word iBeeperState. 0 = off, 1 = on. */
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_iBeeperState(void);
/** @param value The word iBeeperState. 0 = off, 1 = on.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_iBeeperState(int16_t value);

/** @return The word iRelayState. 0 = off, 1 = on. */
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_iRelayState(void);
/** @param value The word iRelayState. 0 = off, 1 = on.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_iRelayState(int16_t value);

/** @return The word iPad3 of tsBprRlyCtrl, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_iPad3(void);
/** @param value iPad3 of tsBprRlyCtrl, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_iPad3(int16_t value);

/** @return The word iPad4 of tsBprRlyCtrl, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_iPad4(void);
/** @param value iPad4 of tsBprRlyCtrl, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_iPad4(int16_t value);

/** @return The word iPad5 of tsBprRlyCtrl, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_iPad5(void);
/** @param value iPad5 of tsBprRlyCtrl, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_iPad5(int16_t value);

/** @return The word iPad6 of tsBprRlyCtrl, which is unused. */
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_iPad6(void);
/** @param value iPad6 of tsBprRlyCtrl, which is stored but unused.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_iPad6(int16_t value);

/** @return The flag bVolatile. 0 = for the reader's storage, 1 = now and not stored. */
TAVLYN_API int16_t TAVLYN_CALL getBprRlyCtrl_bVolatile(void);
/** @param value The flag bVolatile. 0 = for the reader's storage, 1 = now and not stored.
 * @return 1, or what the record call that failed returned. */
TAVLYN_API uint16_t TAVLYN_CALL setBprRlyCtrl_bVolatile(int16_t value);

/** @} */

#endif
