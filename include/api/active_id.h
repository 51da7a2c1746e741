/* The card on the reader. What magstripe readers and sonar sensors give stands in magstripe.h and sonar.h. */
#ifndef TAVLYN_API_ACTIVE_ID_H
#define TAVLYN_API_ACTIVE_ID_H

#include "types.h"

/* Bit count of the card's ID, and the ID in buffer, lowest bits first; 0 for no card or a failed read, which
 * the error word tells apart (0 or 0x1000000). GetActiveID fetches 8 bytes, GetActiveID32 fetches 32.
 * length is the room in buffer: 0 to 32 over reports; over a serial link a buffer shorter than the ID gets
 * nothing. A null buffer or a negative length counts as no room. No device: unsupported.
 * A reader spoken to less than 235 ms ago is left alone: the last ID is given again while it is younger than
 * iIDHoldTO, then 0. Traffic otherwise: 8F and 8E, or 8D i with i = 0 to 3 and 8E. */
TAVLYN_API uint16_t TAVLYN_CALL GetActiveID(uint8_t* buffer, int16_t length);
TAVLYN_API uint16_t TAVLYN_CALL GetActiveID32(uint8_t* buffer, int16_t length);

/* The same for callers that cannot pass a buffer: bytes, at most 32, says how many to fetch, and
 * getActiveID_byte hands them out (0 for an index that is negative, above the bytes asked for, or above 31).
 */
TAVLYN_API uint16_t TAVLYN_CALL getActiveID(uint16_t bytes);
TAVLYN_API uint16_t TAVLYN_CALL getActiveID32(uint16_t bytes);
TAVLYN_API uint8_t TAVLYN_CALL getActiveID_byte(int16_t index);

/* Fetches forty bytes of data of the card on the reader; over a serial link 0, with the bytes cleared. Error
 * bit 0x1000000. Traffic: 88 01 i with i = 0 to 4. getActiveCardData_byte hands them out, index 0 to 255, 0
 * beyond. Both: unsupported when the active device is no card reader. */
TAVLYN_API uint32_t TAVLYN_CALL getActiveCardData(void);
TAVLYN_API uint32_t TAVLYN_CALL getActiveCardData_byte(uint16_t index);

#endif
