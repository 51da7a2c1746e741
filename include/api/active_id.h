/** @file
 * The card on the reader. */
#ifndef TAVLYN_API_ACTIVE_ID_H
#define TAVLYN_API_ACTIVE_ID_H

#include "types.h"

/** Reads the ID of the card, up to 8 bytes of it. A device that was accessed less than 235 ms ago is left
 * alone: the call then returns the last ID while that is younger than iIDHoldTO, and 0 after that.
 *
 * Traffic otherwise: 8F and 8E.
 * @param buffer receives the ID, lowest bits first; null counts as no room.
 * @param length room in buffer in bytes, of which up to 32 are used; a negative length counts as 0. Over a
 *   serial link a buffer that is shorter than the ID gets nothing.
 * @return Number of bits of the ID. 0 for no card (error word 0) or a failed read (TAVLYN_ERR_COMMAND; in the
 *   ASCII dialect TAVLYN_ERR_ASCII_LENGTH, TAVLYN_ERR_ASCII_PORT or TAVLYN_ERR_ASCII_ANSWER). Unsupported
 *   with no device. */
TAVLYN_API uint16_t TAVLYN_CALL GetActiveID(uint8_t* buffer, int16_t length);

/** Reads the ID of the card, up to 32 bytes of it; otherwise the same as GetActiveID().
 *
 * Traffic, unless the device is left alone: 8D i with i = 0 to 3, and 8E.
 * @param buffer receives the ID, lowest bits first; null counts as no room.
 * @param length room in buffer in bytes, of which up to 32 are used; a negative length counts as 0. Over a
 *   serial link a buffer that is shorter than the ID gets nothing.
 * @return As for GetActiveID(). */
TAVLYN_API uint16_t TAVLYN_CALL GetActiveID32(uint8_t* buffer, int16_t length);

/** GetActiveID() for callers that cannot pass a buffer: getActiveID_byte() returns the bytes.
 * @param bytes how many bytes to fetch, 0 to 32; more count as 32.
 * @return What GetActiveID() returns. */
TAVLYN_API uint16_t TAVLYN_CALL getActiveID(uint16_t bytes);

/** GetActiveID32() for callers that cannot pass a buffer: getActiveID_byte() returns the bytes.
 * @param bytes how many bytes to fetch, 0 to 32; more count as 32.
 * @return What GetActiveID32() returns. */
TAVLYN_API uint16_t TAVLYN_CALL getActiveID32(uint16_t bytes);

/** Returns one byte of the ID that was read last, on whichever device. There is no traffic, and the error
 * word is left alone.
 * @param index position of the byte, 0 to 31.
 * @return The byte; 0 when index is negative, above the number of bytes asked for, or above 31. */
TAVLYN_API uint8_t TAVLYN_CALL getActiveID_byte(int16_t index);

/** Fetches forty bytes of data of the card on the reader, for getActiveCardData_byte() to return. Over a
 * serial link it returns 0, with the bytes cleared.
 *
 * Traffic: 88 01 i with i = 0 to 4.
 * @return 1, or 0 with TAVLYN_ERR_COMMAND added to the error word after a failed exchange; unsupported when
 *   the active device is not a card reader. */
TAVLYN_API uint32_t TAVLYN_CALL getActiveCardData(void);

/** Returns one byte of the data that getActiveCardData() fetched last. There is no traffic.
 * @param index position of the byte, 0 to 255.
 * @return The byte; 0 beyond 255; unsupported when the active device is not a card reader. */
TAVLYN_API uint32_t TAVLYN_CALL getActiveCardData_byte(uint16_t index);

#endif
