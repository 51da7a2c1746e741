/* Magnetic-stripe reader: tracks, user fields, counts. Unless a comment says otherwise each call returns
 * unsupported when the active device is no magnetic-stripe reader. The host keeps a mirror of the reader's
 * configuration: the settings here change the mirror alone and cause no traffic, but for sorbaneSetLED.
 *
 * Traffic. A command is a text in a packet of 24 bytes that ends in 0D, one feature report, and the reply,
 * fetched 2 ms later (202 ms after FW and FD), is a packet that begins with "R". Commands are given here as
 * texts; bytes travel as pairs of hexadecimal digits. A failed exchange leaves the error word alone, but for
 * 0x202, unless another is named. Over a serial link no reply is fetched, so that every exchange fails there.
 *
 * Of the general calls such a reader serves, beside those of identity.h:
 *
 * - ReadCfg: QRZ, once more after 25 ms if need be; QSV; Ga0 Ga1 GaC to Gk0 Gk1 GkC, the user fields; GS0;
 *   GL0. 0: error word 0x20000 (no part number), 0x20001 (the first two parts of a user field), none (the
 *   third part, the colours); what came is kept. Without a reply to QSV or GS0 the versions or the settings
 *   stay as they were.
 * - WriteCfg: the whole mirror, changed or not. FR; Sa0 Sa1 SaC to Sk0 Sk1 SkC; SS0; SL0; FW and 1100 ms. 0
 *   at the first failure, of which the reader is not told: error word 0x20001 (the first two parts of a user
 *   field) or none.
 * - ResetFactoryDflts: FD, 1100 ms, then ReadCfg. 0: error bit 0x80000, or the read failed.
 * - Ping: QRZ, once more after 25 ms if need be.
 * - BeepNow: BS and a digit from 1 to 5, or BL and 1 or 2; the count is brought into that range. 1: the
 *   reader answered.
 * - SetLEDCtrl: SL0; all five colours become off, red, green or amber, by the two states; with bAppCtrlsLED 0
 *   they become the reader's own again. 1: the reader answered. Null: 0.
 * - GetLEDCtrl: the two states of colour 0; the other words stay. 1. Null: 0.
 * - GetTimeParms, SetTimeParms: kept by the host, read or not, and never sent; the last word stays. The key
 *   times of accessors.h are others: milliseconds in the mirror that travel as bytes in steps of 4.
 * - GetActiveID: the piece of the last swipe that sorbaneSetActiveID has chosen, as text, in as many bytes of
 *   the buffer as length says; the result is the length of the text. The error word is cleared before CD0, so
 *   that a lost track shows in the text alone. Traffic: that of sorbaneGetTrackData, then CD0.
 * - GetActiveID32: the same for 32 bytes at most, but the buffer stays as it was. getActiveID, getActiveID32:
 *   the bytes are handed out by getActiveID_byte.
 * - GetQueuedID: the same for 32 bytes, kept for GetQueuedID_index, which gives the first of them for every
 *   index from 0 to 31. Index 32 asks for the count of the queue, GQ0, 0 for a failed exchange; 33 is the
 *   byte that came behind the count. Another index: unsupported, sign-extended from 16 bits.
 * - GetFirmwareVersion: index 0 the device ID word, 1 the second version word, otherwise 0.
 * - WriteDevCfgToFile: mirror and LUID as they stand, as a text file of "key: value" lines. No traffic.
 * - ReadDevCfgFmFile: such lines into mirror and LUID, numbers cut to their room and not tested. 0 for a file
 *   without the title in its first 257 bytes, with nothing changed. No traffic. */
#ifndef TAVLYN_API_MAGSTRIPE_H
#define TAVLYN_API_MAGSTRIPE_H

#include "types.h"

/* User fields: the reader's recipes for turning a piece of a swipe into keystrokes. field is 1 to 11; any
 * other number gives 0 and changes nothing. A set returns 1. Numbers are stored as they are given and cut to
 * their room by WriteCfg. */

/* The field is in use; it is skipped, for branching on a bad LRC; separators and sentinels are shown; the LRC
 * is shown in hexadecimal; an incorrect LRC is ignored. A set stores 1 for any value but 0. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldEnable(uint16_t field);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldEnable(uint16_t field, int16_t on);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldSkip(uint16_t field);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldSkip(uint16_t field, int16_t on);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldShowSepSen(uint16_t field);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldShowSepSen(uint16_t field, int16_t on);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldShowLRC(uint16_t field);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldShowLRC(uint16_t field, int16_t on);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldIgnoreLRC(uint16_t field);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldIgnoreLRC(uint16_t field, int16_t on);

/* The track, 1 to 3; the magnetic field on it; the offset within that, in characters; the length in
 * characters; the byte on which the field stops. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldTrack(uint16_t field);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldTrack(uint16_t field, uint8_t track);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldMagField(uint16_t field);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldMagField(uint16_t field, uint8_t magField);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldOffset(uint16_t field);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldOffset(uint16_t field, uint8_t offset);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldLength(uint16_t field);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldLength(uint16_t field, uint8_t length);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldTerm(uint16_t field);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldTerm(uint16_t field, uint8_t term);

/* The keys sent behind the field: how many of the key bytes are in use, and key byte index, 0 to 15 (0 for an
 * index beyond). Over USB even ones are scan codes and odd ones shift modifiers; over a serial line each is a
 * character. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldKeyCount(uint16_t field);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldKeyCount(uint16_t field, uint8_t count);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetFieldKeydata(uint16_t field, uint16_t index);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetFieldKeydata(uint16_t field, uint16_t index, uint8_t key);

/* Tracks 1 to 3 are read: bits 0 to 2; other bits are dropped. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetTrackEnables(void);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetTrackEnables(uint8_t tracks);

/* Beeps of a good read (which 2) or a bad one (3): bits 0 to 2 the count, bit 7 long ones. A set takes a
 * count of 0 to 4. Any other which or count: 0, and nothing changes. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetBeeper(uint16_t which);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetBeeper(uint16_t which, int16_t count, int16_t longBeep);

/* Colour index 0 to 4 of the LEDs: 0 off, 1 red, 2 green, 3 amber. A set shows all five at once and returns 1
 * when the reader answered. Any other index or colour: 0. Traffic of a set: SL0 and two bytes. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetLED(uint16_t index);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetLED(uint16_t index, uint16_t color);

/* What GetActiveID, GetActiveID32 and GetQueuedID take of a swipe: track 1 to 3, magnetic field 1 to 50,
 * offset up to 100, and the byte on which it stops; out of range: 0, and nothing changes. Clears the error
 * word. The selection is the host's; neither WriteCfg nor a file carries it. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneSetActiveID(uint16_t track, uint16_t field, uint16_t offset,
                                                   uint16_t term);

/* 0 to 7, not 0: a swipe waits to be read. 0 too for a failed exchange. Traffic: QS0. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneIsDataAvailable(void);

/* Forgets the swipe that waits. GetActiveID and GetQueuedID do so too. 1: the reader answered. Traffic: CD0.
 */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneClearDataAvailable(void);

/* Clears the reader's overrun state. 1: the reader answered. The device is not looked at: any active entry is
 * spoken to, with no device entry 0 (error word 0x202). Traffic: CQ. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneClearOverrun(void);

/* The reader's uptime in units of its own, and the cards it has read; 0 for a failed exchange. Traffic: QUP.
 */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetSystemUptime(void);
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetSystemCardsRead(void);

/* Internal count index, 0 to 3, of 16 bits; 0 for a failed exchange or, without traffic, another index.
 * Traffic: QDD. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetSystemInternalCount(uint32_t index);

/* 257 bytes of track 1, 2 or 3 of the last swipe: a header (bits 0 to 6 the number of characters), the
 * characters from byte 1 on, zeros. With convert not 0 they are text, else raw: six bits on track 1, four on
 * tracks 2 and 3, as ISO/IEC 7811 codes them. All zeros for another track or when any exchange failed; null
 * when the active device is no magnetic-stripe reader. The bytes hold until the next track or field is
 * fetched. Traffic: G track block 00, as many blocks of ten bytes as the header says, at most 9, 5 and 11. */
TAVLYN_API const uint8_t* TAVLYN_CALL sorbaneGetTrackData(uint16_t track, uint16_t convert);

/* The same for callers that cannot use a pointer: index 0 fetches and gives the header, 1 to 254 give the
 * bytes behind it without traffic, any other index 0. */
TAVLYN_API uint32_t TAVLYN_CALL sorbaneGetTrackData_BYTE(uint16_t track, uint16_t convert, uint16_t index);

/* 257 bytes of a piece of a track: from character offset of magnetic field number field on, up to the byte
 * term or the end of the field. What comes is as many bytes as the piece has, but taken from the place where
 * it ends; a length of 0 gives nothing, any other is not looked at. With convert not 0 all 257 bytes are
 * text, the zeros too. All zeros before the conversion when there is no such piece; null when the active
 * device is no magnetic-stripe reader. Traffic: as sorbaneGetTrackData. */
TAVLYN_API const uint8_t* TAVLYN_CALL sorbaneGetTrackFieldOffset(uint16_t track, uint16_t field,
                                                                 uint16_t offset, uint16_t length,
                                                                 uint16_t term, uint16_t convert);

#endif
