/* Serial ports and Ethernet adapters. */
#ifndef TAVLYN_API_LINKS_H
#define TAVLYN_API_LINKS_H

#include "types.h"

/* Empties the table and searches the serial ports of SetComSrchRange alone; then reads each device's
 * configuration. pDID, which may be null, receives the device ID word of entry 0 on success. 0: nothing was
 * found, or a configuration read failed. Traffic on each port that opens: FA 04 ED ED 04, twice when nothing
 * answers; about 553 ms each. */
TAVLYN_API uint32_t ComConnect(uint32_t* pDID);

/* The same for one port, 1 to 256. 0 also when the table is not empty, with nothing opened. */
TAVLYN_API uint32_t ComConnectPort(uint16_t port, uint32_t* pDID);

/* Searches again for the kind of device that is active, without a read: 1 when the number of devices changed.
 * Unsupported with no device. comConnectPort always finds nothing: it needs an active device and an empty
 * table. */
TAVLYN_API uint32_t comConnect(void);
TAVLYN_API uint32_t comConnectPort(uint16_t port);

/* Closes the serial link of the active device, which stays in the table. 0: it was closed; unsupported with
 * no device. */
TAVLYN_API uint32_t ComDisconnect(void);

/* Raw bytes through the active device's port; the count moved, 0 for no open port. The quick form waits 10 ms
 * and 1 ms for each byte. A socket's failure shows as 0xFFFFFFFF. */
TAVLYN_API uint32_t ReadSerialPort(uint8_t* buffer, uint32_t length);
TAVLYN_API uint32_t QuickReadSerialPort(uint8_t* buffer, uint32_t length);
TAVLYN_API uint32_t WriteSerialPort(const char* buffer, uint32_t length);

/* The same for callers that cannot pass a buffer: index -1 reads up to 1024 bytes and returns the count, 0 to
 * 1023 returns that byte, sign-extended; any other index 0. */
TAVLYN_API uint32_t readSerialPort_char(int16_t index);
TAVLYN_API uint32_t quickReadSerialPort_char(int16_t index);

/* Puts the short time-outs (100, 1, 10 ms) on the active device's port for good, whatever the arguments. */
TAVLYN_API void SetSerialTimeouts(uint32_t interval, uint32_t multiplier, uint32_t constant);

/* Speed of the next serial search for readers, 9600 after load. */
TAVLYN_API void SetBaudRate(uint32_t baud);

/* Looks for an Ethernet adapter from a.b.c.first to a.b.c.last: the fourth octet of the one that answered, or
 * 0. A silent address takes about half a second. Closes a link that is up. */
TAVLYN_API uint32_t FindXport(int16_t a, int16_t b, int16_t c, int16_t first, int16_t last);

/* The host's first address, first octet in the low byte; 0 on failure. */
TAVLYN_API uint32_t GetMyIpAddress(void);

#endif
