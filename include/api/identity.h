/* Which device is which, which one is active, and devices that come and go. Only InstalledHardware and
 * SupportedHardware cause traffic. */
#ifndef TAVLYN_API_IDENTITY_H
#define TAVLYN_API_IDENTITY_H

#include "types.h"

/* Number of devices in the table, and index of the active one. */
TAVLYN_API int16_t TAVLYN_CALL GetDevCnt(void);
TAVLYN_API int16_t TAVLYN_CALL GetActDev(void);

/* Makes the device at an index active, 0 to GetDevCnt() - 1. 0: no such device, nothing changes (an empty
 * table sets the index to 0). */
TAVLYN_API uint32_t TAVLYN_CALL SetActDev(int16_t index);

/* Index of the first device from start on whose LUID is luid; 0xFFFFFFFF for none or a negative start. */
TAVLYN_API uint32_t TAVLYN_CALL GetDevByLUID(uint16_t luid, int16_t start);

/* Copies the path or name of the active device to name, which has room for 511 characters: at most 510 and a
 * terminator. Returns 999. For a serial link all 511 are copied, with no terminator guaranteed, and the port
 * number is returned. No device: unsupported, and name, which may be null, is left alone. */
TAVLYN_API uint32_t TAVLYN_CALL GetDevName(char* name);
TAVLYN_API uint32_t TAVLYN_CALL orv_GetDevName(char* name);

/* Character of that name, index 0 to 511; 0 for no device or another index. */
TAVLYN_API uint8_t TAVLYN_CALL getDevName_char(int16_t index);

/* Link of the active device: 0 feature reports, 1 serial. Untested: with no device, that of entry 0. */
TAVLYN_API uint16_t TAVLYN_CALL GetDevType(void);
TAVLYN_API uint16_t TAVLYN_CALL orv_GetDevType(void);

/* Product of the active device: 1 card reader, 2 magstripe reader, 4 sonar sensor; 0 with an empty table. */
TAVLYN_API uint32_t TAVLYN_CALL GetProduct(void);

/* Device ID word, logical unit ID and serial word of the active device. Untested: with no device, those of
 * entry 0. SetLUID reaches the reader with the next configuration write; it returns 1. */
TAVLYN_API uint32_t TAVLYN_CALL GetDID(void);
TAVLYN_API uint32_t TAVLYN_CALL GetLUID(void);
TAVLYN_API uint32_t TAVLYN_CALL SetLUID(uint16_t luid);
TAVLYN_API uint32_t TAVLYN_CALL GetSN(void);

/* Eight flags of 0 or 1, one for each bit of the reader's mask of hardware that it has, or could have; null
 * when the active device is no card reader. All 0 when the reader did not answer. The caller owns the memory,
 * from calloc; the library never frees it. Clears the error word of any active device; a failed exchange sets
 * no bit of its own. Traffic: 89 05; over a serial link 09 05 00 00. */
TAVLYN_API uint8_t* TAVLYN_CALL InstalledHardware(void);
TAVLYN_API uint8_t* TAVLYN_CALL SupportedHardware(void);

/* For an arrival notification: opens the device at a path (at most 511 characters) and appends it to the
 * table, if it is one of the active device's product. 1; 0 when it is none, could not be opened or the table
 * is full; unsupported with no device. What was added counts as no product until the next connect. The path
 * must name the product's pair: begin with \\?\HID#Vid_7a31&Pid_3bfa (18c8, 2bfa for a sonar sensor) in
 * either case, or on Linux be listed with it. With a magstripe reader active it must name the pair of a card
 * reader and lead to a device that tells a magstripe reader's own: no system gives out such a path, so that
 * those are found by a connect. A sonar sensor takes the place of device 0, and a blank device is appended.
 * Whenever a device was to be added, device 0 is active afterwards, and one serial or Ethernet device drops
 * out of the table. */
TAVLYN_API uint32_t TAVLYN_CALL ChkAddArrival(const char* path);

/* For a removal notification: when the table holds a device of that path, whose case does not matter, closes
 * the first open device of the table, which need not be that one, and removes it. 1; 0 for no such path or no
 * open device. Device 0 is active afterwards, and one serial or Ethernet device may drop out of the table.
 * Programs that can reconnect should do that instead. */
TAVLYN_API uint32_t TAVLYN_CALL ChkDelRemoval(const char* path);

/* The same for callers that can pass only characters. Index 0 clears the path and stores character there, 1
 * to 254 store; both return 1. Index 255 runs the check. Any other index: 0. */
TAVLYN_API uint32_t TAVLYN_CALL chkAddArrival_char(int16_t index, uint8_t character);
TAVLYN_API uint32_t TAVLYN_CALL chkDelRemoval_char(int16_t index, uint8_t character);

/* Copies the 16 bytes of an interface class to guid, which may be null. Despite the name it is the class of
 * keyboards. Always 1. */
TAVLYN_API uint32_t TAVLYN_CALL GetHIDGuid(uint8_t* guid);

/* Version of the library: 7, 9, 2. Each pointer may be null. Always 1. */
TAVLYN_API uint32_t TAVLYN_CALL GetLibVersion(uint16_t* major, uint16_t* minor, uint16_t* build);
TAVLYN_API uint16_t TAVLYN_CALL getLibraryVersion_Major(void);
TAVLYN_API uint16_t TAVLYN_CALL getLibraryVersion_Minor(void);
TAVLYN_API uint16_t TAVLYN_CALL getLibraryVersion_Build(void);
TAVLYN_API const char* TAVLYN_CALL getLibraryVersion_Beta(void); /* an empty text */

#endif
