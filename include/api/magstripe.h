/** @file
 * Magnetic-stripe reader: tracks, user fields, counts. Every call returns unsupported when the active device
 * is not a magnetic-stripe reader, unless its comment says otherwise. docs/products.md says what the general
 * calls do with such a reader.
 *
 * The host keeps a mirror of the reader's configuration. The settings here change the mirror alone, for the
 * next WriteCfg(), and cause no traffic, except for sorbaneSetLED().
 *
 * @par Traffic
 * A command is a text in a packet of 24 bytes that ends in 0D, one feature report; the reply, fetched 2 ms
 * later (202 ms after FW and FD), is a packet that begins with "R". Commands are given here as texts; bytes
 * are sent as pairs of hexadecimal digits. A failed exchange leaves the error word alone, except for
 * TAVLYN_ERR_WRITE_REPORT, unless another word is named. Over a serial link no reply is fetched, so that
 * every exchange fails there. */
#ifndef TAVLYN_API_MAGSTRIPE_H
#define TAVLYN_API_MAGSTRIPE_H

#include "types.h"

/** @name User fields
 * The reader's recipes for turning a piece of a swipe into keystrokes, numbered from 1 to 11. Numbers are
 * stored as given, and WriteCfg() cuts them to their width. The error word is left alone.
 * @{ */

/** Tells whether a user field is in use.
 * @param field number of the user field, 1 to 11.
 * @return 0 or 1; 0 for any other field; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldEnable(uint16_t field);

/** Chooses whether a user field is in use.
 * @param field number of the user field, 1 to 11.
 * @param on 0 for no; any other value is stored as 1.
 * @return 1; 0 for any other field, which changes nothing; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldEnable(uint16_t field, int16_t on);

/** Tells whether a user field is skipped, for branching on a bad LRC.
 * @param field number of the user field, 1 to 11.
 * @return 0 or 1; 0 for any other field; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldSkip(uint16_t field);

/** Chooses whether a user field is skipped, for branching on a bad LRC.
 * @param field number of the user field, 1 to 11.
 * @param on 0 for no; any other value is stored as 1.
 * @return 1; 0 for any other field, which changes nothing; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldSkip(uint16_t field, int16_t on);

/** Tells whether separators and sentinels of a user field are shown.
 * @param field number of the user field, 1 to 11.
 * @return 0 or 1; 0 for any other field; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldShowSepSen(uint16_t field);

/** Chooses whether separators and sentinels of a user field are shown.
 * @param field number of the user field, 1 to 11.
 * @param on 0 for no; any other value is stored as 1.
 * @return 1; 0 for any other field, which changes nothing; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldShowSepSen(uint16_t field, int16_t on);

/** Tells whether the LRC of a user field is shown, in hexadecimal.
 * @param field number of the user field, 1 to 11.
 * @return 0 or 1; 0 for any other field; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldShowLRC(uint16_t field);

/** Chooses whether the LRC of a user field is shown, in hexadecimal.
 * @param field number of the user field, 1 to 11.
 * @param on 0 for no; any other value is stored as 1.
 * @return 1; 0 for any other field, which changes nothing; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldShowLRC(uint16_t field, int16_t on);

/** Tells whether an incorrect LRC of a user field is ignored.
 * @param field number of the user field, 1 to 11.
 * @return 0 or 1; 0 for any other field; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldIgnoreLRC(uint16_t field);

/** Chooses whether an incorrect LRC of a user field is ignored.
 * @param field number of the user field, 1 to 11.
 * @param on 0 for no; any other value is stored as 1.
 * @return 1; 0 for any other field, which changes nothing; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldIgnoreLRC(uint16_t field, int16_t on);

/** Returns the track of a user field.
 * @param field number of the user field, 1 to 11.
 * @return The track, 1 to 3; 0 for any other field; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldTrack(uint16_t field);

/** Sets the track of a user field.
 * @param field number of the user field, 1 to 11.
 * @param track the track, 1 to 3.
 * @return 1; 0 for any other field, which changes nothing; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldTrack(uint16_t field, uint8_t track);

/** Returns the magnetic field on the track of a user field.
 * @param field number of the user field, 1 to 11.
 * @return The magnetic field, 0 to 255; 0 for any other field; unsupported without a magnetic-stripe reader.
 */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldMagField(uint16_t field);

/** Sets the magnetic field on the track of a user field.
 * @param field number of the user field, 1 to 11.
 * @param magField the magnetic field, 0 to 255.
 * @return 1; 0 for any other field, which changes nothing; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldMagField(uint16_t field, uint8_t magField);

/** Returns the offset within the magnetic field of a user field.
 * @param field number of the user field, 1 to 11.
 * @return The offset in characters, 0 to 255; 0 for any other field; unsupported without a magnetic-stripe
 *   reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldOffset(uint16_t field);

/** Sets the offset within the magnetic field of a user field.
 * @param field number of the user field, 1 to 11.
 * @param offset the offset in characters, 0 to 255.
 * @return 1; 0 for any other field, which changes nothing; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldOffset(uint16_t field, uint8_t offset);

/** Returns the length of a user field.
 * @param field number of the user field, 1 to 11.
 * @return The length in characters, 0 to 255; 0 for any other field; unsupported without a magnetic-stripe
 *   reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldLength(uint16_t field);

/** Sets the length of a user field.
 * @param field number of the user field, 1 to 11.
 * @param length the length in characters, 0 to 255.
 * @return 1; 0 for any other field, which changes nothing; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldLength(uint16_t field, uint8_t length);

/** Returns the byte at which a user field stops.
 * @param field number of the user field, 1 to 11.
 * @return The byte, 0 to 255; 0 for any other field; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldTerm(uint16_t field);

/** Sets the byte at which a user field stops.
 * @param field number of the user field, 1 to 11.
 * @param term the byte, 0 to 255.
 * @return 1; 0 for any other field, which changes nothing; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldTerm(uint16_t field, uint8_t term);

/** Returns how many of the key bytes of a user field are in use; their keys are sent after it.
 * @param field number of the user field, 1 to 11.
 * @return The number of key bytes in use, 0 to 16; 0 for any other field; unsupported without a
 *   magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldKeyCount(uint16_t field);

/** Sets how many of the key bytes of a user field are in use; their keys are sent after it.
 * @param field number of the user field, 1 to 11.
 * @param count the number of key bytes in use, 0 to 16.
 * @return 1; 0 for any other field, which changes nothing; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldKeyCount(uint16_t field, uint8_t count);

/** Returns one of the key bytes of a user field. Over USB even ones are scan codes and odd ones shift
 * modifiers; over a serial line each is a character.
 * @param field number of the user field, 1 to 11.
 * @param index number of the key byte, 0 to 15.
 * @return The byte; 0 for any other field or index; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldKeydata(uint16_t field, uint16_t index);

/** Sets one of the key bytes of a user field. Over USB even ones are scan codes and odd ones shift modifiers;
 * over a serial line each is a character.
 * @param field number of the user field, 1 to 11.
 * @param index number of the key byte, 0 to 15.
 * @param key the byte, 0 to 255.
 * @return 1; 0 for any other field or index, which changes nothing; unsupported without a magnetic-stripe
 *   reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldKeydata(uint16_t field, uint16_t index, uint8_t key);

/** @} */

/** Tells which tracks are read.
 * @return Bits 0 to 2 for tracks 1 to 3; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetTrackEnables(void);

/** Chooses which tracks are read.
 * @param tracks 0 to 7: bits 0 to 2 for tracks 1 to 3; other bits are dropped.
 * @return 1; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetTrackEnables(uint8_t tracks);

/** Tells how the reader beeps after a read.
 * @param which 2 for a good read, 3 for a bad one.
 * @return Bits 0 to 2 the number of beeps, bit 7 set for long ones; 0 for any other which; unsupported
 *   without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetBeeper(uint16_t which);

/** Chooses how the reader beeps after a read.
 * @param which 2 for a good read, 3 for a bad one.
 * @param count number of beeps, 0 to 4.
 * @param longBeep not 0 for long beeps.
 * @return 1; 0 for any other which or count, which changes nothing; unsupported without a magnetic-stripe
 *   reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetBeeper(uint16_t which, int16_t count, int16_t longBeep);

/** Returns one of the five colours of the LEDs from the mirror.
 * @param index number of the colour, 0 to 4.
 * @return 0 for off, 1 for red, 2 for green, 3 for amber; 0 for any other index; unsupported without a
 *   magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetLED(uint16_t index);

/** Sets one of the five colours of the LEDs and shows all five at once. Traffic: SL0 and two bytes.
 * @param index number of the colour, 0 to 4.
 * @param color 0 to 3: 0 off, 1 red, 2 green, 3 amber.
 * @return 1 when the reader answered, else 0, with the colour kept in the mirror; 0 for any other index or
 *   colour, which changes nothing; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetLED(uint16_t index, uint16_t color);

/** Chooses what GetActiveID(), GetActiveID32() and GetQueuedID() take from a swipe. It clears the error word.
 * The choice exists on the host only: neither WriteCfg() nor a file includes it.
 * @param track the track, 1 to 3.
 * @param field the magnetic field on it, 1 to 50.
 * @param offset offset within that in characters, 0 to 100.
 * @param term the byte at which it stops.
 * @return 1; 0 for a value out of range, which changes nothing; unsupported without a magnetic-stripe reader.
 */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetActiveID(uint16_t track, uint16_t field, uint16_t offset,
                                                   uint16_t term);

/** Asks whether a swipe waits to be read. Traffic: QS0.
 * @return 1 to 7 when one does; 0 when none does, or after a failed exchange; unsupported without a
 *   magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneIsDataAvailable(void);

/** Forgets the swipe that waits. GetActiveID() and GetQueuedID() do so too. Traffic: CD0.
 * @return 1 when the reader answered, else 0; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneClearDataAvailable(void);

/** Clears the reader's overrun state. The product is not checked: any active device is asked, and with none
 * entry 0, which leaves TAVLYN_ERR_WRITE_REPORT. Traffic: CQ.
 * @return 1 when the reader answered, else 0. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneClearOverrun(void);

/** Asks for the reader's uptime. Traffic: QUP.
 * @return The uptime in the reader's own units; 0 after a failed exchange; unsupported without a
 *   magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetSystemUptime(void);

/** Asks how many cards the reader has read. Traffic: QUP.
 * @return Number of cards; 0 after a failed exchange; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetSystemCardsRead(void);

/** Asks for one of the reader's internal counts. Traffic: QDD.
 * @param index number of the count, 0 to 3.
 * @return The count, 0 to 65535; 0 after a failed exchange or, without traffic, for any other index;
 *   unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetSystemInternalCount(uint32_t index);

/** Fetches a track of the last swipe. Traffic: G track block 00, as many blocks of ten bytes as the header
 * says, at most 9, 5 and 11 for the three tracks.
 * @param track 1 to 3.
 * @param convert 0 for raw characters, six bits on track 1 and four on tracks 2 and 3, as ISO/IEC 7811 codes
 *   them; any other value for text.
 * @return 257 bytes: a header (bits 0 to 6 the number of characters), the characters from byte 1 on, zeros.
 *   All zeros for any other track and when an exchange failed; null without a magnetic-stripe reader. The
 *   bytes are valid until the next track or field is fetched. */
TAVLYN_API const uint8_t* TAVLYN_CALL sorbaneGetTrackData(uint16_t track, uint16_t convert);

/** sorbaneGetTrackData() for callers that cannot use a pointer.
 * @param track 1 to 3.
 * @param convert as for sorbaneGetTrackData().
 * @param index 0 to 254: 0 fetches the track and returns its header; 1 to 254 return the bytes that follow
 * it, without traffic.
 * @return The byte; 0 for any other index; unsupported without a magnetic-stripe reader. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetTrackData_BYTE(uint16_t track, uint16_t convert, uint16_t index);

/** Fetches a piece of a track, from a character of a magnetic field up to a byte or the end of the field. As
 * many bytes are returned as the piece has, but from the place where it ends onward. Traffic: that of
 * sorbaneGetTrackData().
 * @param track 1 to 3.
 * @param field number of the magnetic field.
 * @param offset offset of the piece within the field, in characters.
 * @param length 0 returns nothing; any other value is ignored.
 * @param term the byte at which the piece stops.
 * @param convert not 0 to convert all 257 bytes to text, the zeros too.
 * @return 257 bytes, all zeros before the conversion when there is no such piece; null without a
 *   magnetic-stripe reader. The bytes are valid until the next track or field is fetched. */
TAVLYN_API const uint8_t* TAVLYN_CALL sorbaneGetTrackFieldOffset(uint16_t track, uint16_t field,
                                                                 uint16_t offset, uint16_t length,
                                                                 uint16_t term, uint16_t convert);

#endif
