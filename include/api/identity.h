/** @file
 * Which device is which, which one is active, and devices that come and go. Only InstalledHardware() and
 * SupportedHardware() cause traffic. */
#ifndef TAVLYN_API_IDENTITY_H
#define TAVLYN_API_IDENTITY_H

#include "types.h"

/** Returns the number of devices in the table.
 * @return 0 for an empty table. */
TAVLYN_API int16_t TAVLYN_CALL GetDevCnt(void);

/** Returns the index of the active device, the one on which nearly every call works.
 * @return The index; 0 also for an empty table. */
TAVLYN_API int16_t TAVLYN_CALL GetActDev(void);

/** Makes the device at an index active. No error word is touched.
 * @param index 0 to GetDevCnt() - 1.
 * @return 1, or 0 when there is no such device, which changes nothing; only an empty table sets the index
 *   to 0. */
TAVLYN_API uint32_t TAVLYN_CALL SetActDev(int16_t index);

/** Finds a device by its logical unit ID.
 * @param luid the logical unit ID, 0 to 65535.
 * @param start index of the first device to look at, from 0.
 * @return Index of the first such device; 0xFFFFFFFF when there is none or start is negative. */
TAVLYN_API uint32_t TAVLYN_CALL GetDevByLUID(uint16_t luid, int16_t start);

/** Copies the path or name of the active device.
 * @param name room for 511 characters, or null. It receives at most 510 and a terminator; of a serial link
 *   up to 511, without a terminator if all are needed. With no device it is left alone.
 * @return The number of the COM port for a serial link, 999 for any other, unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetDevName(char* name);

/** The same as GetDevName(), under an older name.
 * @param name as for GetDevName().
 * @return What GetDevName() returns. */
TAVLYN_API uint32_t TAVLYN_CALL orv_GetDevName(char* name);

/** Returns one character of the path or name of the active device.
 * @param index position of the character, 0 to 511.
 * @return The character; 0 after the end, for any other index, and with no device. */
TAVLYN_API uint8_t TAVLYN_CALL getDevName_char(int16_t index);

/** Returns the link of the active device. With no device it is that of entry 0, unchecked.
 * @return 0 for feature reports, 1 for a serial link. */
TAVLYN_API uint16_t TAVLYN_CALL GetDevType(void);

/** The same as GetDevType(), under an older name.
 * @return What GetDevType() returns. */
TAVLYN_API uint16_t TAVLYN_CALL orv_GetDevType(void);

/** Returns the product of the active device.
 * @return 1 for a card reader, 2 for a magstripe reader, 4 for a sonar sensor; 0 for an empty table, and for
 *   a device that ChkAddArrival() has added. */
TAVLYN_API uint32_t TAVLYN_CALL GetProduct(void);

/** Returns the device ID word of the active device. With no device it is that of entry 0, unchecked.
 * @return 0 to 65535. */
TAVLYN_API uint32_t TAVLYN_CALL GetDID(void);

/** Returns the logical unit ID of the active device. With no device it is that of entry 0, unchecked.
 * @return 0 to 65535. */
TAVLYN_API uint32_t TAVLYN_CALL GetLUID(void);

/** Sets the logical unit ID of the active device, or of entry 0 with no device. It reaches the device with
 * the next configuration write.
 * @param luid 0 to 65535.
 * @return Always 1. */
TAVLYN_API uint32_t TAVLYN_CALL SetLUID(uint16_t luid);

/** Returns the serial word of the active device. With no device it is that of entry 0, unchecked.
 * @return The serial word. */
TAVLYN_API uint32_t TAVLYN_CALL GetSN(void);

/** Asks the active reader which hardware it has. Clears the error word of any active device; a failed
 * exchange adds no bit of its own.
 *
 * Traffic: 89 05; over a serial link 09 05 00 00.
 * @return Eight flags of 0 or 1, one for each bit of the reader's mask; all 0 when the reader did not
 *   answer; null when the active device is not a card reader, or without memory. The caller owns the array,
 *   which comes from calloc; the library never frees it. */
TAVLYN_API uint8_t* TAVLYN_CALL InstalledHardware(void);

/** Asks the active reader which hardware it could have. Clears the error word of any active device; a failed
 * exchange adds no bit of its own.
 *
 * Traffic: 89 05; over a serial link 09 05 00 00.
 * @return As for InstalledHardware(). */
TAVLYN_API uint8_t* TAVLYN_CALL SupportedHardware(void);

/** For an arrival notification: opens the device at a path and appends it to the table, if it is one of the
 * active device's product. A device added like this has no product until the next connect.
 *
 * The path must name the product's pair: begin with `\\?\HID#Vid_7a31&Pid_3bfa` (18c8 and 2bfa for a sonar
 * sensor) in either case, or on Linux be listed with it. With a magstripe reader active it must name the pair
 * of a card reader and lead to a device with a magstripe reader's own; no system has such a path, so that
 * only a connect finds those readers. A sonar sensor takes the place of device 0, and a blank device is
 * appended.
 *
 * Whenever a device was to be added, device 0 is active afterwards, and one serial or Ethernet device drops
 * out of the table.
 * @param path path of at most 511 characters.
 * @return 1 when it was added. 0 when it is not such a device, could not be opened, or the table is full.
 *   Unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL ChkAddArrival(const char* path);

/** For a removal notification: when the table holds a device of that path, closes the first open device of
 * the table, which need not be that one, and removes it. Device 0 is active afterwards, and one serial or
 * Ethernet device may drop out of the table. Programs that can connect again should do that instead.
 * @param path path of at most 511 characters, in either case.
 * @return 1, or 0 for a path that is not in the table and when no device is open. */
TAVLYN_API uint32_t TAVLYN_CALL ChkDelRemoval(const char* path);

/** ChkAddArrival() for callers that can pass only characters.
 * @param index 0 to 255: 0 clears the path and stores the character there, 1 to 254 store it, 255 runs the
 * check.
 * @param character the character, 0 to 255; ignored with index 255.
 * @return 1 for a character that was stored; what ChkAddArrival() returns for index 255; 0 for any other
 *   index. */
TAVLYN_API uint32_t TAVLYN_CALL chkAddArrival_char(int16_t index, uint8_t character);

/** ChkDelRemoval() for callers that can pass only characters.
 * @param index 0 to 255: 0 clears the path and stores the character there, 1 to 254 store it, 255 runs the
 * check.
 * @param character the character, 0 to 255; ignored with index 255.
 * @return 1 for a character that was stored; what ChkDelRemoval() returns for index 255; 0 for any other
 *   index. */
TAVLYN_API uint32_t TAVLYN_CALL chkDelRemoval_char(int16_t index, uint8_t character);

/** Copies the 16 bytes of an interface class. Despite the name it is the keyboard class.
 * @param guid room for 16 bytes, or null.
 * @return Always 1. */
TAVLYN_API uint32_t TAVLYN_CALL GetHIDGuid(uint8_t* guid);

/** Returns the version of the library: 7, 9, 2.
 * @param major receives the first number; it may be null.
 * @param minor receives the second number; it may be null.
 * @param build receives the third number; it may be null.
 * @return Always 1. */
TAVLYN_API uint32_t TAVLYN_CALL GetLibVersion(uint16_t* major, uint16_t* minor, uint16_t* build);

/** Returns the first number of the library's version.
 * @return 7 */
TAVLYN_API uint16_t TAVLYN_CALL getLibraryVersion_Major(void);

/** Returns the second number of the library's version.
 * @return 9 */
TAVLYN_API uint16_t TAVLYN_CALL getLibraryVersion_Minor(void);

/** Returns the third number of the library's version.
 * @return 2 */
TAVLYN_API uint16_t TAVLYN_CALL getLibraryVersion_Build(void);

/** Returns what is added to the version of a preliminary release.
 * @return An empty text. */
TAVLYN_API const char* TAVLYN_CALL getLibraryVersion_Beta(void);

#endif
