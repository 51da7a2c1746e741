/* Keys and other items in the protected memory of a card reader, and files that hold them. The library moves
 * the bytes and does not look into them.
 *
 * An item has a header of four bytes, of which the third is the length of its payload, 0 to 255; the others
 * select it and are the reader's affair. Payloads travel in blocks of four bytes; the last one is filled up
 * with zeros. n counts blocks from 1.
 *
 * No call here locks the library. Another thread's traffic on the same device breaks a transfer. The reader
 * is not told to drop an item that was lost half-way: it lacks its end and its commit. */
#ifndef TAVLYN_API_SECURE_H
#define TAVLYN_API_SECURE_H

#include "types.h"

/* Writes one item: length counts the header and the payload that item points to. 1 when the reader was told
 * to keep it; it may still lack blocks, of which a single one that came through is enough, and the header.
 * 0: length and header disagree (nothing is sent, the error word stays); no payload (only the header is
 * sent); no block came through, or the end was not answered or repeated (no bits of the error word); a block,
 * the end or the commit could not be sent (0x81000000, traced); a null pointer; no card reader is active.
 * Traffic: 89 90 00 00 and the header, 89 90 00 n and four bytes for each block, 89 90 00 FF, two reports
 * each; after 500 ms a lone 90. */
TAVLYN_API uint32_t TAVLYN_CALL WriteSecureData(const uint8_t* item, uint32_t length);

/* Reads the payload of the item that the four bytes at header select to out, which must hold their length
 * rounded up to a multiple of four. 1 as soon as the reader has repeated the header, whatever came behind it:
 * blocks that fail are left out, those behind them move up and zeros stand at the end. 0: the reader did not
 * answer (error word 0) or repeat the header (the same, traced); it could not be sent (0x81000000, traced); a
 * null pointer; no card reader is active. A report that cannot be sent later ends the read and leaves the
 * same bits. Traffic: 89 10 00 00 and the header, 89 10 00 n for each block, two reports each. */
TAVLYN_API uint32_t TAVLYN_CALL ReadSecureData(const uint8_t* header, uint8_t* out);

/* Tests a key-load ini file (see CheckTamperedFile, kind 2: its trailer finds accidents and no intent) and
 * writes its items, each as WriteSecureData does; one that fails does not stop the others. 1 when the last
 * item was written. 0: the file does not pass (0x91000000, nothing is sent); a line is out of place, and the
 * items before it are written; the last item failed, or its bytes do not add up; the file has no items; no
 * card reader is active.
 *
 * An item is three lines: "[Blob" any digits "]", "hdr=" and its header, "data=" and its payload, bytes in
 * hexadecimal between blanks. A line ends in CR LF, has at most 255 characters with them, and none stands
 * between two items. Behind the last item stand "[EOF]" and "iEndOfIniFile=" with the CRC-32 of all that
 * stands above "[EOF]", eight digits in upper case ("0" for a sum of 0). */
TAVLYN_API uint32_t TAVLYN_CALL LoadIniFile(const char* path);

/* Stores length bytes, at most 512, as a reference to an EV1 file, or to a key of the secure element in a
 * slot. The length travels as its low byte. 1; 0 for a failed exchange or a packet that was not repeated
 * (0x80000000; without these bits when the header was not sent or not repeated), a null pointer, or no
 * device. Any product is asked. Traffic: a plus reader is told its active configuration (89 81 n); then as
 * WriteSecureData with the header 02 01 length 00, or 01 slot length 00, and without the wait. */
TAVLYN_API uint32_t TAVLYN_CALL WriteEV1FileRefrence(const uint8_t* data, uint32_t length);
TAVLYN_API uint32_t TAVLYN_CALL WriteSEKeyRefrence(const uint8_t* data, uint32_t length, uint8_t slot);

/* Keeps 32 bytes, two hash keys of 16, for the active configuration. They reach the reader with its next
 * WriteCfg, and only a reader with extended separated fields: each key that does not begin with 0, or both
 * while security is enhanced. 1; 0 for a null pointer; unsupported when no card reader is active. From then
 * on, until the library is unloaded, a saved configuration can hold bytes of them (see files.h): save it
 * before. */
TAVLYN_API uint32_t TAVLYN_CALL SetHashKeyData(const uint8_t* data);

/* Enhanced security: 0x80 or 0; unsupported, sign-extended, when no card reader is active. The flag belongs
 * to configuration 0 and reaches the reader with its next WriteCfg; on is any value but 0. A set leaves the
 * error word alone. */
TAVLYN_API uint32_t TAVLYN_CALL GetEnhanceSecurityFlag(void);
TAVLYN_API void TAVLYN_CALL SetEnhanceSecurityFlag(uint32_t on);

/* Save what the reader keeps for its BLE radio, 384 bytes of data or 128 bytes of key, as a text file with a
 * trailer (see files.h: anybody can compute one). 1, also when no card reader is active and nothing was
 * saved, and when the disk was full; unsupported when the file could not be opened, or its trailer not be
 * added (0x30000000). A read that fails is told by the same bits of the error word alone: the file is then
 * whole, passes its test, and holds zeros for what did not come. A file that cannot be read back is signed
 * 00000000. The file is in the clear; on Linux a new one is its owner's alone. Traffic for each 128 bytes, of
 * data 0 to 2 and of key 10: 30 ms, 89 10 00 00 10 01 00 part, 30 ms, 89 10 00 00 10 01 00 80 (90 for the
 * key), 32 times 89 10 00 n; two reports each. */
TAVLYN_API uint32_t TAVLYN_CALL WriteBLEDataToFile(const char* path);
TAVLYN_API uint32_t TAVLYN_CALL WriteBLEKeyToFile(const char* path);

/* Load such a file into the reader. 1, also when no card reader is active and nothing was loaded.
 * Unsupported: the file does not pass its test (0x91000000, with no device too; nothing is sent); it is of
 * the other kind or malformed (0x30000001, nothing is sent); an exchange failed (0x30000001; parts before it
 * stay). Bytes that the file does not hold are written as zeros. Traffic for each 128 bytes: 89 90 00 00 11
 * 01 80 part, 32 times 89 90 00 n and four bytes, 89 90 00 FF 00 00 00 part, 100 ms (not for the key), the
 * same with part + 80; two reports each. The reports of the key are one byte longer than usual: where the
 * system passes only those of the length that the device tells, nothing of the key is sent (0x30000203). */
TAVLYN_API uint32_t TAVLYN_CALL WriteBLEDataToReader(const char* path);
TAVLYN_API uint32_t TAVLYN_CALL WriteBLEKeyToReader(const char* path);

#endif
