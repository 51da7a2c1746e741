/** @file
 * The host's mirror of a reader's configuration, record by record.
 *
 * A get copies a record out of the mirror. A set changes the mirror and marks the record for the next
 * WriteCfg(). Neither causes traffic, except for a set of outputs whose bVolatile is not 0. All of them work
 * on the active configuration of the active device, see SetActConfig(), and a success clears the error word.
 *
 * A get needs a configuration that has been read. A connect does not clear that state: until the
 * configuration of this device has been read, the words are those of the device that had its place in the
 * table before, see USBConnect(). Of a plus reader at index 1 or above a connect reads only the configuration
 * that the reader has in use; the others need ReadCfg(). */
#ifndef TAVLYN_API_RECORDS_H
#define TAVLYN_API_RECORDS_H

#include "types.h"

/** Copies tsCfgFlags out of the mirror: what the reader does with an ID. There is no traffic.
 * @param record receives the eight words.
 * @return 1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
 *   configuration was not read); unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetFlags(tsCfgFlags* record);

/** Changes tsCfgFlags in the mirror, for the next WriteCfg(): what the reader does with an ID.
 * @param record the eight words, see tsCfgFlags.
 * @return 1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer); unsupported
 *   with no device. */
TAVLYN_API uint32_t TAVLYN_CALL SetFlags(const tsCfgFlags* record);

/** Copies tsCfgFlags2 out of the mirror: more of what the reader does with an ID. There is no traffic.
 * @param record receives the eight words.
 * @return 1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
 *   configuration was not read); unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetFlags2(tsCfgFlags2* record);

/** Changes tsCfgFlags2 in the mirror, for the next WriteCfg(): more of what the reader does with an ID.
 * @param record the eight words, see tsCfgFlags2.
 * @return 1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer); unsupported
 *   with no device. */
TAVLYN_API uint32_t TAVLYN_CALL SetFlags2(const tsCfgFlags2* record);

/** Copies tsCfgFlags3 out of the mirror: still more of what the reader does with an ID. There is no traffic.
 * @param record receives the eight words.
 * @return 1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
 *   configuration was not read); unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetFlags3(tsCfgFlags3* record);

/** Changes tsCfgFlags3 in the mirror, for the next WriteCfg(): still more of what the reader does with an ID.
 * bNotBootDev alone does not mark the block that it is sent in: it reaches the reader only together with a
 * change of tsCfgFlags2, tsIDDispParms2, tsIDDispParms3, LEDs, beeper or relay.
 * @param record the eight words, see tsCfgFlags3.
 * @return 1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer); unsupported with
 *   no device. */
TAVLYN_API uint32_t TAVLYN_CALL SetFlags3(const tsCfgFlags3* record);

/** Copies tsIDBitCnts out of the mirror: how the bits of a read are counted. There is no traffic.
 * @param record receives the eight words.
 * @return 1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
 *   configuration was not read); unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetIDBitCnts(tsIDBitCnts* record);

/** Changes tsIDBitCnts in the mirror, for the next WriteCfg(): how the bits of a read are counted. No range
 * is checked while the ASCII dialect is on.
 * @param record the eight words, in the ranges of tsIDBitCnts.
 * @return 1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
 *   TAVLYN_ERR_ID_BIT_CNTS (iLeadParityBitCnt above 15, or 142), the same + 1 (iTrailParityBitCnt
 *   likewise), + 2 (iIDBitCnt not 1 to 255) or + 3 (iTotalBitCnt not 26 to 255); unsupported with no
 *   device. */
TAVLYN_API uint32_t TAVLYN_CALL SetIDBitCnts(const tsIDBitCnts* record);

/** Copies tsIDDispParms out of the mirror: how an ID is shown. There is no traffic.
 * @param record receives the eight words.
 * @return 1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
 *   configuration was not read); unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetIDDispParms(tsIDDispParms* record);

/** Changes tsIDDispParms in the mirror, for the next WriteCfg(): how an ID is shown.
 * @param record the eight words, in the ranges of tsIDDispParms.
 * @return 1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
 *   TAVLYN_ERR_ID_DISP_PARMS (iFACIDDelim above 255), the same + 1 (iELDelim above 255), + 2 (iIDDispLen
 *   above 25) or + 3 (iFACDispLen above 25); unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL SetIDDispParms(const tsIDDispParms* record);

/** Copies tsIDDispParms2 out of the mirror: the lead characters of an ID, and those sent when it becomes
 * invalid. There is no traffic.
 * @param record receives the eight words.
 * @return 1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
 *   configuration was not read); unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetIDDispParms2(tsIDDispParms2* record);

/** Changes tsIDDispParms2 in the mirror, for the next WriteCfg(): the lead characters of an ID, and those
 * sent when it becomes invalid.
 * @param record the eight words, in the ranges of tsIDDispParms2.
 * @return 1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer) or
 *   TAVLYN_ERR_CHR_CNT (iLeadChrCnt above 3); unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL SetIDDispParms2(const tsIDDispParms2* record);

/** Copies tsIDDispParms3 out of the mirror: the trail characters of an ID. There is no traffic.
 * @param record receives the eight words.
 * @return 1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
 *   configuration was not read); unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetIDDispParms3(tsIDDispParms3* record);

/** Changes tsIDDispParms3 in the mirror, for the next WriteCfg(): the trail characters of an ID.
 * @param record the eight words, in the ranges of tsIDDispParms3.
 * @return 1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer) or
 *   TAVLYN_ERR_CHR_CNT (iTrailChrCnt above 3); unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL SetIDDispParms3(const tsIDDispParms3* record);

/** Copies tsTimeParms out of the mirror: the times of the reader. There is no traffic.
 * @param record receives the eight words.
 * @return 1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
 *   configuration was not read); unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetTimeParms(tsTimeParms* record);

/** Changes tsTimeParms in the mirror, for the next WriteCfg(): the times of the reader. iTPCfgFlg3 is left as
 * it is.
 * @param record the eight words, in the ranges of tsTimeParms.
 * @return 1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
 *   TAVLYN_ERR_TIME_PARMS (iBitStrmTO above 1020), the same + 1 (iIDHoldTO above 12750), + 2 (iIDLockOutTm
 *   above 12750), + 3 (iUSBKeyPrsTm above 1020) or + 4 (iUSBKeyRlsTm above 1020); unsupported with no
 *   device. */
TAVLYN_API uint32_t TAVLYN_CALL SetTimeParms(const tsTimeParms* record);

/** Copies tsLEDCtrl out of the mirror: the LEDs. There is no traffic.
 * @param record receives the eight words.
 * @return 1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
 *   configuration was not read); unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetLEDCtrl(tsLEDCtrl* record);

/** Changes tsLEDCtrl in the mirror, for the next WriteCfg(): the LEDs. With bVolatile not 0 the record is not
 * marked: the set sends block 2 as a whole, without a commit, and its result does not say whether that
 * arrived. Traffic: 82 and a data report. While the ASCII dialect is on, such a set drops the record and
 * shows what the last set with bVolatile 0 has left.
 * @param record the eight words, see tsLEDCtrl.
 * @return 1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer); unsupported
 *   with no device. */
TAVLYN_API uint32_t TAVLYN_CALL SetLEDCtrl(const tsLEDCtrl* record);

/** Copies tsBprRlyCtrl out of the mirror: beeper and relay. There is no traffic.
 * @param record receives the eight words.
 * @return 1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
 *   configuration was not read); unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetBprRlyCtrl(tsBprRlyCtrl* record);

/** Changes tsBprRlyCtrl in the mirror, for the next WriteCfg(): beeper and relay. With bVolatile not 0 the
 * record is not marked: the set sends block 2 as a whole, without a commit, and its result does not say
 * whether that arrived. Traffic: 82 and a data report.
 * @param record the eight words, see tsBprRlyCtrl.
 * @return 1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer); unsupported
 *   with no device. */
TAVLYN_API uint32_t TAVLYN_CALL SetBprRlyCtrl(const tsBprRlyCtrl* record);

/** Copies the field and separator definitions out of the mirror.
 * @param buffer receives 128 bytes.
 * @param length room in buffer, at least 128 bytes.
 * @return 1. 0 for a length below 128, which leaves the error word alone; for a null buffer, which adds
 *   TAVLYN_ERR_SEP_NULL; and when the configuration was not read, which adds TAVLYN_ERR_SEP_UNREAD.
 *   Unsupported when the active device is not a card reader. */
TAVLYN_API uint32_t TAVLYN_CALL GetSepFldData(uint8_t* buffer, uint16_t length);

/** Changes the field and separator definitions in the mirror for the next WriteCfg().
 * @param buffer the 128 bytes.
 * @param length bytes in buffer, at least 128; the first 128 are taken.
 * @return 1. 0 for a length below 128, which leaves the error word alone, and for a null buffer, which adds
 *   TAVLYN_ERR_SEP_NULL. Unsupported when the active device is not a card reader. */
TAVLYN_API uint32_t TAVLYN_CALL SetSepFldData(const uint8_t* buffer, uint16_t length);

/** @name Single words
 * The error word is left alone.
 * @{ */

/** Tells whether the AZERTY shift lock is on in the mirror.
 * @return 0 for off, 1 for on, or the low 16 bits of what was set, sign-extended; unsupported when the
 *   active device is not a card reader. */
TAVLYN_API uint32_t TAVLYN_CALL GetAZERTYShiftLock(void);

/** Switches the AZERTY shift lock in the mirror, for the next WriteCfg().
 * @param on 0 for off; any other value is on.
 * @return 1; unsupported when the active device is not a card reader. */
TAVLYN_API uint32_t TAVLYN_CALL SetAZERTYShiftLock(int16_t on);

/** Tells whether arithmetic of extended precision is on in the mirror.
 * @return As for GetAZERTYShiftLock(). */
TAVLYN_API uint32_t TAVLYN_CALL GetExtendedPrecisionMath(void);

/** Switches arithmetic of extended precision in the mirror, for the next WriteCfg().
 * @param on 0 for off; any other value is on.
 * @return 1; unsupported when the active device is not a card reader. */
TAVLYN_API uint32_t TAVLYN_CALL SetExtendedPrecisionMath(int16_t on);

/** Returns a word for packets of 64 bytes that exists on the host only.
 * @return The low 16 bits of what was set, sign-extended; 0 when the active device is not a card reader. */
TAVLYN_API uint32_t TAVLYN_CALL Get64BytesInPackets(void);

/** Sets a word for packets of 64 bytes. It exists on the host only; the next WriteCfg() only sends block 83
 * again.
 * @param on 0 for off, 1 for on.
 * @return 1; 0 when the active device is not a card reader. */
TAVLYN_API uint32_t TAVLYN_CALL Set64BytesInPackets(uint32_t on);

/** Returns a word for easy reads that exists on the host only.
 * @return The low 16 bits of what was set, sign-extended; unsupported when the active device is not a card
 *   reader. */
TAVLYN_API uint32_t TAVLYN_CALL GetEasyReadMode(void);

/** Sets a word for easy reads. It exists on the host only; the next WriteCfg() only sends block 83 again.
 * @param on 0 for off, 1 for on.
 * @return 1; unsupported when the active device is not a card reader. */
TAVLYN_API uint32_t TAVLYN_CALL SetEasyReadMode(uint32_t on);

/** Returns a word for CSNs in front of IDs that exists on the host only.
 * @return The low 16 bits of what was set, sign-extended; unsupported when the active device is not a card
 *   reader. */
TAVLYN_API uint32_t TAVLYN_CALL GetPrependCSN(void);

/** Sets a word for CSNs in front of IDs. It exists on the host only; the next WriteCfg() only sends block 83
 * again.
 * @param on 0 for off, 1 for on.
 * @return 1; unsupported when the active device is not a card reader. */
TAVLYN_API uint32_t TAVLYN_CALL SetPrependCSN(uint32_t on);

/** @} */

#endif
