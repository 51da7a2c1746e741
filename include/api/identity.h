/* Which device is which, and which one is active. No call here causes traffic. */
#ifndef TAVLYN_API_IDENTITY_H
#define TAVLYN_API_IDENTITY_H

#include "types.h"

/* Number of devices in the table, and index of the active one. */
TAVLYN_API int16_t GetDevCnt(void);
TAVLYN_API int16_t GetActDev(void);

/* Makes the device at an index active, 0 to GetDevCnt() - 1. 0: no such device, nothing changes (an empty
 * table sets the index to 0). */
TAVLYN_API uint32_t SetActDev(int16_t index);

/* Index of the first device from start on whose LUID is luid; 0xFFFFFFFF for none or a negative start. */
TAVLYN_API uint32_t GetDevByLUID(uint16_t luid, int16_t start);

/* Copies the path or name of the active device to name, which has room for 511 characters, and returns 999;
 * for a serial link all 511 are copied, with no terminator guaranteed, and the port number is returned. No
 * device: unsupported, and name is left alone. */
TAVLYN_API uint32_t GetDevName(char* name);
TAVLYN_API uint32_t orv_GetDevName(char* name);

/* Character of that name, index 0 to 511; 0 for no device or another index. */
TAVLYN_API uint8_t getDevName_char(int16_t index);

/* Link of the active device: 0 feature reports, 1 serial. Untested: with no device, that of entry 0. */
TAVLYN_API uint16_t GetDevType(void);
TAVLYN_API uint16_t orv_GetDevType(void);

/* Product of the active device: 1 card reader, 2 magstripe reader, 4 sonar sensor; 0 with an empty table. */
TAVLYN_API uint32_t GetProduct(void);

/* Device ID word, logical unit ID and serial word of the active device. Untested: with no device, those of
 * entry 0. SetLUID reaches the reader with the next configuration write; it returns 1. */
TAVLYN_API uint32_t GetDID(void);
TAVLYN_API uint32_t GetLUID(void);
TAVLYN_API uint32_t SetLUID(uint16_t luid);
TAVLYN_API uint32_t GetSN(void);

/* Version of the library: 7, 9, 2. Each pointer may be null. Always 1. */
TAVLYN_API uint32_t GetLibVersion(uint16_t* major, uint16_t* minor, uint16_t* build);
TAVLYN_API uint16_t getLibraryVersion_Major(void);
TAVLYN_API uint16_t getLibraryVersion_Minor(void);
TAVLYN_API uint16_t getLibraryVersion_Build(void);
TAVLYN_API const char* getLibraryVersion_Beta(void); /* an empty text */

#endif
