/* Serial ports and Ethernet adapters. */
#ifndef TAVLYN_API_LINKS_H
#define TAVLYN_API_LINKS_H

#include "types.h"

/* Empties the table, searches the serial ports of SetComSrchRange alone for the readers and magstripe readers
 * of SetConnectProduct, then reads each device's configuration. pDID, which may be null, receives the device
 * ID word of entry 0 on success only. 1: something was found and read. 0: nothing was found, or a
 * configuration read failed; the table then keeps what was found. No error word of its own. Traffic on each
 * port that opens: FA 04 ED ED 04, twice when nothing answers, about 553 ms each; for magstripe readers two
 * carriage returns and QRZ. */
TAVLYN_API uint32_t TAVLYN_CALL ComConnect(uint32_t* pDID);

/* The same for one port, 1 to 256, whatever the range; magstripe readers are looked for only when no reader
 * was found. 0 also for port 0 and when the table is not empty, with nothing opened. */
TAVLYN_API uint32_t TAVLYN_CALL ComConnectPort(uint16_t port, uint32_t* pDID);

/* Searches the ports again for the kind of device that is active, without a read: 1 when something was found
 * and the number of devices changed, else 0. A search for readers empties the table first. Unsupported with
 * no device or a sonar sensor. comConnectPort always finds nothing: it needs an active device and an empty
 * table. */
TAVLYN_API uint32_t TAVLYN_CALL comConnect(void);
TAVLYN_API uint32_t TAVLYN_CALL comConnectPort(uint16_t port);

/* Closes the link of the active device, serial port, TCP connection or bulk device, which stays in the table.
 * 1: closed. 0: it was closed before or is no serial link. Unsupported with no device or a sonar sensor. */
TAVLYN_API uint32_t TAVLYN_CALL ComDisconnect(void);

/* Raw bytes through the active device's port; the count moved, 0 for no open port, a null buffer or length 0.
 * A read of a reader's COM port ends after 500 ms and 3 ms for each byte, or 750 ms of silence behind a byte;
 * the quick form after 10 ms and 1 ms for each byte, or 100 ms of silence, and it reads nothing from the bulk
 * device. A write waits until a COM port has sent everything and drops what has arrived. A socket's failure
 * shows as 0xFFFFFFFF. No error words. */
TAVLYN_API uint32_t TAVLYN_CALL ReadSerialPort(uint8_t* buffer, uint32_t length);
TAVLYN_API uint32_t TAVLYN_CALL QuickReadSerialPort(uint8_t* buffer, uint32_t length);
TAVLYN_API uint32_t TAVLYN_CALL WriteSerialPort(const char* buffer, uint32_t length);

/* The same for callers that cannot pass a buffer: index -1 reads up to 1024 bytes and returns the count, 0 to
 * 1023 returns that byte, sign-extended; any other index 0. */
TAVLYN_API uint32_t TAVLYN_CALL readSerialPort_char(int16_t index);
TAVLYN_API uint32_t TAVLYN_CALL quickReadSerialPort_char(int16_t index);

/* Puts the time-outs of the quick read on the active device's port for good, whatever the arguments; nothing
 * without an open port. */
TAVLYN_API void TAVLYN_CALL SetSerialTimeouts(uint32_t interval, uint32_t multiplier, uint32_t constant);

/* Speed in baud of the next serial search for readers, 9600 after load; no open port changes. Any speed
 * goes that the port's driver takes; at one that it does not, and at 0, no port opens. Magstripe readers are
 * always searched at 9600. */
TAVLYN_API void TAVLYN_CALL SetBaudRate(uint32_t baud);

/* Looks for an Ethernet adapter from a.b.c.first to a.b.c.last, each octet by its low byte: the fourth octet
 * of the one that answered, or 0. Nothing goes into the table; give the result to SetIpPort. A silent address
 * takes about half a second. A link that is up is lost: it is not used any more and not closed either.
 * Traffic over UDP: RFIDDISC 01 00 to port 11000, 00 00 00 F6 to port 30718. */
TAVLYN_API uint32_t TAVLYN_CALL FindXport(int16_t a, int16_t b, int16_t c, int16_t first, int16_t last);

/* The host's first address, first octet in the low byte; 0 on failure. */
TAVLYN_API uint32_t TAVLYN_CALL GetMyIpAddress(void);

#endif
