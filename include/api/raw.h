/** @file
 * IDs that a device has queued, and raw commands, for which the library has no call of their own. The queued
 * ID, the raw command and the raw reply exist once in a process and survive a change of the active device.
 * None of these calls takes the library's lock. */
#ifndef TAVLYN_API_RAW_H
#define TAVLYN_API_RAW_H

#include "types.h"

/** Fetches an ID that was read while nobody polled, for GetQueuedID_index() to return. It clears the error
 * word first. The 32 bytes also become those that getActiveID_byte() returns; how many of them it returns
 * does not change.
 *
 * Traffic: 8C 02 i options with i = 0 to 4; over a serial link 0C 02 i options and 100 ms after each.
 * @param first an option that is passed on to the reader; it is on when not 0.
 * @param second another such option, on when not 0.
 * @return 1, or 0 when a page could not be fetched, which adds TAVLYN_ERR_COMMAND and leaves the record
 *   partly filled; unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetQueuedID(uint16_t first, int16_t second);

/** Returns a part of the record that GetQueuedID() has fetched. A fetch over a serial link that fails leaves
 * what the pages before it did not replace. There is no traffic.
 * @param index 0 to 35: 0 to 31 a byte of the ID, 32 a word (sign-extended from 16 bits), 33 a word, 34 and
 * 35 a byte.
 * @return That part; 0 for any other index; unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetQueuedID_index(int16_t index);

/** Stores a byte of the raw command, or sends it and fetches the reply. Over a serial link bytes 1 to 5 are
 * the whole header of a frame, from its class byte (FA) on, to which 8 bytes of data are expected.
 *
 * The error word is left alone, except for TAVLYN_ERR_WRITE_REPORT after a command that could not be sent.
 * @param index 0 to 9: 1 to 8 are the bytes of the command. 0 clears command and reply first; its value is
 * never sent. 9 is stored and not sent. An index of 8 or above, also one above 9 where nothing is stored,
 * sends the command and fetches the reply.
 * @param value the byte, 0 to 255.
 * @return For an index that only stores, 1; 0 for a negative index. For one that sends over reports: 1 when
 *   the reply came; 0 when it did not, but 1 for index 8 and 9 after a command that could not be sent. For
 *   one that sends over a serial link: 0 after a failure, and after a success 1 for index 8 and 9 and 0
 *   above. Unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL SetRawPayload_index(int16_t index, uint8_t value);

/** Returns a byte of the raw reply. Over reports position 0 is the report ID and positions 1 to 8 are b1 to
 * b8; over a serial link positions 0 to 7 are the data bytes. There is no traffic.
 * @param index position of the byte, 0 to 9.
 * @return The byte; 2 for an index above 9; the low byte of unsupported with no device. */
TAVLYN_API uint8_t TAVLYN_CALL GetRawPayload_index(uint16_t index);

/** Sends eight bytes as positions 1 to 8 of the raw command and returns the reply as text. Traffic: these
 * eight bytes.
 * @param c0 byte at position 1, 0 to 255.
 * @param c1 byte at position 2, 0 to 255.
 * @param c2 byte at position 3, 0 to 255.
 * @param c3 byte at position 4, 0 to 255.
 * @param c4 byte at position 5, 0 to 255.
 * @param c5 byte at position 6, 0 to 255.
 * @param c6 byte at position 7, 0 to 255.
 * @param c7 byte at position 8, 0 to 255.
 * @return Positions 1 to 8 of the reply, as in "01.00.31.74.00.00.00.00", valid until the next call. After a
 *   failed exchange they are zeros, with no device the low byte of unsupported. */
TAVLYN_API const char* TAVLYN_CALL SetRawPayload(uint8_t c0, uint8_t c1, uint8_t c2, uint8_t c3, uint8_t c4,
                                                 uint8_t c5, uint8_t c6, uint8_t c7);

#endif
