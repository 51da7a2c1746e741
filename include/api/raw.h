/* IDs that a device queued, and raw commands: what an application needs that the library has no name for.
 * QueuedID, the raw command and the raw reply are one each for the process, and outlive a change of the
 * active device. None of these calls takes the library's lock. */
#ifndef TAVLYN_API_RAW_H
#define TAVLYN_API_RAW_H

#include "types.h"

/* Fetches an ID that was read while nobody polled, for GetQueuedID_index to hand out. first and second (not
 * 0) are two options that are passed on to the reader. 1; 0 with error bit 0x1000000 when a page could not be
 * fetched, and the record is then partly filled. Clears the error word first. The 32 bytes also become those
 * that getActiveID_byte hands out; how many it hands out stays.
 * Magstripe reader: the arguments are ignored and the length of the text is returned. Sonar sensor: 0.
 * Another kind or no device: unsupported.
 * Traffic: 8C 02 i options with i = 0 to 4; over a serial link 0C 02 i options and 100 ms after each. */
TAVLYN_API uint32_t TAVLYN_CALL GetQueuedID(uint16_t first, int16_t second);

/* Part of the record: 0 to 31 byte of the ID, 32 a word (sign-extended from 16 bits), 33 a word, 34 and 35 a
 * byte; 0 for another index. A fetch over a serial link that fails leaves what the pages before it did not
 * replace. Magstripe reader: see magstripe.h. Sonar sensor: 0. Another kind or no device: unsupported. No
 * traffic with a card reader. */
TAVLYN_API uint32_t TAVLYN_CALL GetQueuedID_index(int16_t index);

/* Stores value at a position of the raw command: 1 to 8 are its bytes; 0 clears command and reply first, and
 * its value is never sent; 9 is stored and not sent. Index 8 or above, also one above 9 where nothing is
 * stored, sends the command and fetches the reply.
 * 1 for a stored value, 0 for a negative index. Of an index that sends: 1 when the reply came; 0 when it did
 * not, but after a command that could not be sent 1 for index 8 and 9. The error word is left alone, but for
 * 0x202 after a command that could not be sent.
 * Over a serial link bytes 1 to 5 are the whole header of a frame, from its class byte (FA) on, to which 8
 * bytes of data are expected; a failure gives 0, success 1 for index 8 and 9 and 0 above.
 * Magstripe reader: reports of 24 bytes, over reports alone; 0 below index 8. Sonar sensor: 0. Another kind
 * or no device: unsupported. */
TAVLYN_API uint32_t TAVLYN_CALL SetRawPayload_index(int16_t index, uint8_t value);

/* Byte of the raw reply. Over reports position 0 is the report ID and b1 to b8 stand at 1 to 8; over a serial
 * link the data bytes stand at 0 to 7. Index above 9: 2. Sonar sensor: 0. Another kind or no device: the low
 * byte of unsupported. No traffic. */
TAVLYN_API uint8_t TAVLYN_CALL GetRawPayload_index(uint16_t index);

/* Sends the eight bytes as positions 1 to 8 and gives positions 1 to 8 of the reply as text,
 * "01.00.31.74.00.00.00.00", valid until the next call. A failed exchange shows as zeros, no device as the
 * low byte of unsupported. */
TAVLYN_API const char* TAVLYN_CALL SetRawPayload(uint8_t c0, uint8_t c1, uint8_t c2, uint8_t c3, uint8_t c4,
                                                 uint8_t c5, uint8_t c6, uint8_t c7);

#endif
