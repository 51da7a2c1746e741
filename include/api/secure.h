/** @file
 * Keys and other items in the protected memory of a card reader, and files that hold them. The library moves
 * the bytes and does not interpret them.
 *
 * An item has a header of four bytes, of which the third is the length of its payload, 0 to 255; the others
 * select it and mean something to the reader alone. Payloads travel in blocks of four bytes; the last one is
 * filled up with zeros. In the traffic below n counts blocks from 1, and each command travels as two reports.
 *
 * No call here locks the library. Another thread's traffic on the same device breaks a transfer. An item
 * whose transfer breaks off is not withdrawn; the reader gets neither its end nor its commit. */
#ifndef TAVLYN_API_SECURE_H
#define TAVLYN_API_SECURE_H

#include "types.h"

/** Writes one item. Traffic: 89 90 00 00 and the header, 89 90 00 n and four bytes for each block, 89 90 00
 * FF; after 500 ms a lone 90.
 * @param item header and payload.
 * @param length number of bytes of both, 4 to 259.
 * @return 1 when the reader was told to keep the item; it may still lack its header and blocks, since a
 *   single block that came through is enough. 0 when length and header disagree, in which case nothing is
 *   sent and the error word stays; without a payload, in which case only the header is sent; when no block
 *   came through, or the end was not answered or repeated, with no bits in the error word; when a block, the
 *   end or the commit could not be sent, which adds TAVLYN_ERR_SECURE and is traced; for a null pointer; and
 *   when no card reader is active. */
TAVLYN_API uint32_t TAVLYN_CALL WriteSecureData(const uint8_t* item, uint32_t length);

/** Reads the payload of an item. Blocks that fail are left out: those after them move up, and zeros come at
 * the end. A block that cannot be sent ends the read and adds TAVLYN_ERR_SECURE. Traffic: 89 10 00 00 and
 * the header, 89 10 00 n for each block.
 * @param header the four bytes that select the item.
 * @param out receives the payload; it needs room for its length, rounded up to a multiple of four;
 *   room for 256 bytes is always enough.
 * @return 1 as soon as the reader has repeated the header, whatever came after it. 0 when the reader did not
 *   answer, with error word 0; when it did not repeat the header, with error word 0 and a trace; when the
 *   header could not be sent, which adds TAVLYN_ERR_SECURE and is traced; for a null pointer; and when no
 *   card reader is active. */
TAVLYN_API uint32_t TAVLYN_CALL ReadSecureData(const uint8_t* header, uint8_t* out);

/** Tests a key-load ini file as CheckTamperedFile() of kind 2 does (which finds accidents, not intent), and
 * writes its items as WriteSecureData() does. One that fails does not stop the others.
 *
 * An item is three lines: "[Blob" any digits "]", "hdr=" and its header, "data=" and its payload, bytes in
 * hexadecimal between blanks. A line ends in CR LF, has at most 255 characters with them, and there is no
 * line between two items. The last item is followed by "[EOF]" and "iEndOfIniFile=" with the CRC-32 of
 * everything above "[EOF]", eight digits in upper case ("0" for a sum of 0).
 * @param path path of the file.
 * @return 1 when the last item was written. 0 when the file does not pass, which adds TAVLYN_ERR_INTEGRITY
 *   and sends nothing; when a line is out of place, in which case the items before it are written; when the
 *   last item failed, or its bytes do not add up; when the file has no items; and when no card reader is
 *   active. */
TAVLYN_API uint32_t TAVLYN_CALL LoadIniFile(const char* path);

/** Stores bytes as a reference to an EV1 file. Any product is asked. On a plus reader the
 * active configuration is selected first. Traffic: 89 81 n on a plus reader; then as WriteSecureData() with
 * the header 02 01 length 00, and without the wait.
 * @param data the bytes.
 * @param length their number, at most 512. Only its low byte is sent.
 * @return 1. 0 after a failed exchange or a packet that was not repeated, which adds TAVLYN_ERR_REFERENCE
 *   unless it was the header; for a null pointer; and with no device. */
TAVLYN_API uint32_t TAVLYN_CALL WriteEV1FileRefrence(const uint8_t* data, uint32_t length);

/** Stores bytes as a reference to a key of the secure element. Any product is asked. On a plus reader the
 * active configuration is selected first. Traffic: 89 81 n on a plus reader; then as WriteSecureData() with
 * the header 01 slot length 00, and without the wait.
 * @param data the bytes.
 * @param length their number, at most 512. Only its low byte is sent.
 * @param slot number of the slot, 0 to 255.
 * @return As for WriteEV1FileRefrence(). */
TAVLYN_API uint32_t TAVLYN_CALL WriteSEKeyRefrence(const uint8_t* data, uint32_t length, uint8_t slot);

/** Stores two hash keys for the active configuration. They reach the reader with its next WriteCfg(), and
 * only a reader with extended separated fields: each key that does not begin with 0, or both while security
 * is enhanced. From then on, until the library is unloaded, a saved configuration can hold bytes of them (see
 * files.h): save it before.
 * @param data 32 bytes, two keys of 16.
 * @return 1; 0 for a null pointer; unsupported when no card reader is active. */
TAVLYN_API uint32_t TAVLYN_CALL SetHashKeyData(const uint8_t* data);

/** Tells whether security is enhanced. There is no traffic.
 * @return 0x80 when it is, 0 when it is not; unsupported, sign-extended from 16 bits, when no card reader is
 *   active. */
TAVLYN_API uint32_t TAVLYN_CALL GetEnhanceSecurityFlag(void);

/** Chooses whether security is enhanced. The flag belongs to configuration 0 and reaches the reader with its
 * next WriteCfg(). The error word is left alone. Without an active card reader it does nothing.
 * @param on 0 for off, any other value for on. */
TAVLYN_API void TAVLYN_CALL SetEnhanceSecurityFlag(uint32_t on);

/** @name Memory of the BLE radio as a file
 * The file is in the clear; on Linux a new one is accessible to its owner alone. It has a trailer, see
 * files.h: anybody can compute one.
 * @{ */

/** Saves the 384 bytes of data that the reader keeps for its BLE radio as a text file. A read that fails
 * shows in the error word alone: the file is then whole, passes its test, and holds zeros for what did not
 * arrive. A file that cannot be read back is signed 00000000.
 *
 * Traffic for each 128 bytes, parts 0 to 2: 30 ms, 89 10 00 00 10 01 00 part, 30 ms, 89 10 00 00 10 01 00 80,
 * 32 times 89 10 00 n.
 * @param path path of the file.
 * @return 1, also when no card reader is active and nothing was saved, and when the disk was full or a read
 *   failed, which adds TAVLYN_ERR_BLE_READ. Unsupported when the file could not be opened, or its trailer
 *   could not be added, with TAVLYN_ERR_BLE_READ. */
TAVLYN_API uint32_t TAVLYN_CALL WriteBLEDataToFile(const char* path);

/** Saves the 128 bytes of key that the reader keeps for its BLE radio, as WriteBLEDataToFile() does the data.
 * Traffic: 30 ms, 89 10 00 00 10 01 00 10, 30 ms, 89 10 00 00 10 01 00 90, 32 times 89 10 00 n.
 * @param path path of the file.
 * @return As for WriteBLEDataToFile(). */
TAVLYN_API uint32_t TAVLYN_CALL WriteBLEKeyToFile(const char* path);

/** Loads a file of WriteBLEDataToFile() into the reader. Bytes that the file does not hold are written as
 * zeros.
 *
 * Traffic for each 128 bytes, parts 0 to 2: 89 90 00 00 11 01 80 part, 32 times 89 90 00 n and four bytes,
 * 89 90 00 FF 00 00 00 part, 100 ms, the same with part + 80.
 * @param path path of the file.
 * @return 1, also when no card reader is active and nothing was loaded. Unsupported when the file does not
 *   pass its test, which adds TAVLYN_ERR_INTEGRITY, with no device too, and sends nothing; when it is of the
 *   other kind or malformed, which adds TAVLYN_ERR_BLE_WRITE and sends nothing; and after a failed exchange,
 *   which adds TAVLYN_ERR_BLE_WRITE and leaves the parts before it in the reader. */
TAVLYN_API uint32_t TAVLYN_CALL WriteBLEDataToReader(const char* path);

/** Loads a file of WriteBLEKeyToFile() into the reader, as WriteBLEDataToReader() does the data; part is 10,
 * and there is no wait of 100 ms. The reports are one byte longer than usual: where the system passes only
 * reports of the length that the device declares, nothing of the key is sent, and the error word has
 * TAVLYN_ERR_BLE_WRITE and TAVLYN_ERR_WRITE_REPORT.
 * @param path path of the file.
 * @return As for WriteBLEDataToReader(). */
TAVLYN_API uint32_t TAVLYN_CALL WriteBLEKeyToReader(const char* path);

/** @} */

#endif
