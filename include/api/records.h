/* The host's mirror of a reader's configuration. A get copies a record out of the mirror, a set changes the
 * mirror and marks it for the next configuration write; neither causes traffic, but for a set whose bVolatile
 * is not 0. All work on the active configuration of the active device; with no device, or one that is no card
 * reader, they return unsupported, but for the few that magstripe.h and sonar.h tell of.
 *
 * Every record get: 1, or 0 with error word 0x100001 (null pointer) or 0x100002 (the configuration was not
 * read). Every record set: 1, or 0 with 0x200001 (null pointer) or the number of the first range test that
 * failed, with nothing stored. Success clears the error word.
 *
 * "Read" is a mark of the mirror's that a connect does not clear: until this device's configuration has been
 * read, the words are those of the device that had its place in the table before. See USBConnect. Of a plus
 * reader at index 1 or above a connect reads one configuration alone, the one that the reader has in use: the
 * others need ReadCfg. */
#ifndef TAVLYN_API_RECORDS_H
#define TAVLYN_API_RECORDS_H

#include "types.h"

TAVLYN_API uint32_t TAVLYN_CALL GetFlags(tsCfgFlags* record);
TAVLYN_API uint32_t TAVLYN_CALL SetFlags(const tsCfgFlags* record);

TAVLYN_API uint32_t TAVLYN_CALL GetFlags2(tsCfgFlags2* record);
TAVLYN_API uint32_t TAVLYN_CALL SetFlags2(const tsCfgFlags2* record);

/* bNotBootDev alone does not mark the block it travels in: it reaches the reader together with some change of
 * tsCfgFlags2, tsIDDispParms2, tsIDDispParms3, LEDs, beeper or relay. */
TAVLYN_API uint32_t TAVLYN_CALL GetFlags3(tsCfgFlags3* record);
TAVLYN_API uint32_t TAVLYN_CALL SetFlags3(const tsCfgFlags3* record);

/* Errors 0x201010 (lead above 15, or 142), 0x201011 (trail), 0x201012 (iIDBitCnt 0 or above 255), 0x201013
 * (iTotalBitCnt below 26 or above 255). No test is made while the ASCII dialect is on. */
TAVLYN_API uint32_t TAVLYN_CALL GetIDBitCnts(tsIDBitCnts* record);
TAVLYN_API uint32_t TAVLYN_CALL SetIDBitCnts(const tsIDBitCnts* record);

/* Errors 0x201020, 0x201021 (a delimiter above 255), 0x201022, 0x201023 (a length above 25). */
TAVLYN_API uint32_t TAVLYN_CALL GetIDDispParms(tsIDDispParms* record);
TAVLYN_API uint32_t TAVLYN_CALL SetIDDispParms(const tsIDDispParms* record);

/* Error 0x201050: a count above 3. */
TAVLYN_API uint32_t TAVLYN_CALL GetIDDispParms2(tsIDDispParms2* record);
TAVLYN_API uint32_t TAVLYN_CALL SetIDDispParms2(const tsIDDispParms2* record);
TAVLYN_API uint32_t TAVLYN_CALL GetIDDispParms3(tsIDDispParms3* record);
TAVLYN_API uint32_t TAVLYN_CALL SetIDDispParms3(const tsIDDispParms3* record);

/* Errors 0x201030 to 0x201034: words 0 to 4 above 1020, 12750, 12750, 1020, 1020. */
TAVLYN_API uint32_t TAVLYN_CALL GetTimeParms(tsTimeParms* record);
TAVLYN_API uint32_t TAVLYN_CALL SetTimeParms(const tsTimeParms* record);

/* With bVolatile not 0 the set also sends block 2 as a whole, without a commit: 82 and a data report. The
 * result does not tell whether that arrived. */
TAVLYN_API uint32_t TAVLYN_CALL GetLEDCtrl(tsLEDCtrl* record);
TAVLYN_API uint32_t TAVLYN_CALL SetLEDCtrl(const tsLEDCtrl* record);
TAVLYN_API uint32_t TAVLYN_CALL GetBprRlyCtrl(tsBprRlyCtrl* record);
TAVLYN_API uint32_t TAVLYN_CALL SetBprRlyCtrl(const tsBprRlyCtrl* record);

/* The 128 bytes of field and separator definitions. length must be at least 128, else 0. A null buffer gives
 * 0 and ors 1 into the error word; a get of a configuration not read gives 0 and ors 2. */
TAVLYN_API uint32_t TAVLYN_CALL GetSepFldData(uint8_t* buffer, uint16_t length);
TAVLYN_API uint32_t TAVLYN_CALL SetSepFldData(const uint8_t* buffer, uint16_t length);

/* Single words, 0 off and 1 on. A get returns the low 16 bits of what was set, sign-extended; a set
 * returns 1. The last three live on the host alone. Get64BytesInPackets and Set64BytesInPackets return 0, not
 * unsupported, when the device is no card reader. */
TAVLYN_API uint32_t TAVLYN_CALL GetAZERTYShiftLock(void);
TAVLYN_API uint32_t TAVLYN_CALL SetAZERTYShiftLock(int16_t on);
TAVLYN_API uint32_t TAVLYN_CALL GetExtendedPrecisionMath(void);
TAVLYN_API uint32_t TAVLYN_CALL SetExtendedPrecisionMath(int16_t on);
TAVLYN_API uint32_t TAVLYN_CALL Get64BytesInPackets(void);
TAVLYN_API uint32_t TAVLYN_CALL Set64BytesInPackets(uint32_t on);
TAVLYN_API uint32_t TAVLYN_CALL GetEasyReadMode(void);
TAVLYN_API uint32_t TAVLYN_CALL SetEasyReadMode(uint32_t on);
TAVLYN_API uint32_t TAVLYN_CALL GetPrependCSN(void);
TAVLYN_API uint32_t TAVLYN_CALL SetPrependCSN(uint32_t on);

#endif
