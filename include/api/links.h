/** @file
 * Serial ports and Ethernet adapters. */
#ifndef TAVLYN_API_LINKS_H
#define TAVLYN_API_LINKS_H

#include "types.h"

/** Empties the table, searches the serial ports of SetComSrchRange() alone for the readers and magstripe
 * readers of SetConnectProduct(), then reads the configuration of each device. The search itself leaves no
 * error word; a read leaves that of ReadCfg().
 *
 * Traffic on each port that opens: FA 04 ED ED 04, twice when nothing answers, about 553 ms each; for
 * magstripe readers two carriage returns and QRZ.
 * @param pDID receives the device ID word of entry 0, on success only; it may be null.
 * @return 1 when something was found and read. 0 when nothing was found, or a configuration could not be
 *   read; the table then keeps what was found. */
TAVLYN_API uint32_t TAVLYN_CALL ComConnect(uint32_t* pDID);

/** ComConnect() on one port, whatever the range. It does not empty the table: it needs an empty one.
 * Magstripe readers are looked for only when no reader was found.
 * @param port 1 to 256.
 * @param pDID receives the device ID word of entry 0, on success only; it may be null.
 * @return As for ComConnect(); also 0 for port 0 and when the table is not empty, with nothing opened. */
TAVLYN_API uint32_t TAVLYN_CALL ComConnectPort(uint16_t port, uint32_t* pDID);

/** Searches the ports again for the kind of device that is active, without reading a configuration. A search
 * for readers empties the table first. The error word is left alone. Traffic: that of the search of
 * ComConnect().
 * @return 1 when something was found and the number of devices changed, else 0; unsupported with no device
 *   or a sonar sensor. */
TAVLYN_API uint32_t TAVLYN_CALL comConnect(void);

/** Searches one port for the kind of device that is active. It never finds anything, because it needs both an
 * active device and an empty table; there is no traffic.
 * @param port 1 to 256.
 * @return 0; unsupported with no device or a sonar sensor. */
TAVLYN_API uint32_t TAVLYN_CALL comConnectPort(uint16_t port);

/** Closes the link of the active device: serial port, TCP connection or bulk device. The device stays in the
 * table. There is no traffic, and the error word is left alone.
 * @return 1 when it was closed; 0 when it was closed before or is not a serial link; unsupported with no
 *   device or a sonar sensor. */
TAVLYN_API uint32_t TAVLYN_CALL ComDisconnect(void);

/** Reads raw bytes through the active device's port. On the COM port of a reader the read ends after 500 ms
 * and 3 ms for each byte, or after 750 ms of silence once a byte has come. The error word is left alone.
 * @param buffer receives the bytes.
 * @param length room in buffer, in bytes.
 * @return Number of bytes that were read; 0 for no open port, a null buffer or length 0; 0xFFFFFFFF after a
 *   failure of a socket. */
TAVLYN_API uint32_t TAVLYN_CALL ReadSerialPort(uint8_t* buffer, uint32_t length);

/** Reads raw bytes through the active device's port and waits less: on a COM port 10 ms and 1 ms for each
 * byte, or 100 ms of silence. It reads nothing from the bulk device. The error word is left alone.
 * @param buffer receives the bytes.
 * @param length room in buffer, in bytes.
 * @return As for ReadSerialPort(). */
TAVLYN_API uint32_t TAVLYN_CALL QuickReadSerialPort(uint8_t* buffer, uint32_t length);

/** Writes raw bytes through the active device's port. On a COM port it waits until everything is sent and
 * drops what has arrived. The error word is left alone.
 * @param buffer the bytes to write.
 * @param length their number.
 * @return Number of bytes that were written; 0 for no open port, a null buffer or length 0; 0xFFFFFFFF after
 *   a failure of a socket. */
TAVLYN_API uint32_t TAVLYN_CALL WriteSerialPort(const char* buffer, uint32_t length);

/** ReadSerialPort() for callers that cannot pass a buffer. The error word is left alone.
 * @param index -1 to 1023: -1 reads up to 1024 bytes; 0 to 1023 returns one of them.
 * @return What ReadSerialPort() returns for index -1; the byte, sign-extended to 32 bits, for 0 to 1023, or
 *   0 where nothing was read; 0 for any other index. */
TAVLYN_API uint32_t TAVLYN_CALL readSerialPort_char(int16_t index);

/** QuickReadSerialPort() for callers that cannot pass a buffer; its bytes are not those of
 * readSerialPort_char(). The error word is left alone.
 * @param index -1 to 1023: -1 reads up to 1024 bytes; 0 to 1023 returns one of them.
 * @return As for readSerialPort_char(), of what QuickReadSerialPort() reads. */
TAVLYN_API uint32_t TAVLYN_CALL quickReadSerialPort_char(int16_t index);

/** Gives the active device's port the time-outs of QuickReadSerialPort() for good, whatever the arguments
 * are. Without an open port it does nothing.
 * @param interval is ignored.
 * @param multiplier is ignored.
 * @param constant is ignored. */
TAVLYN_API void TAVLYN_CALL SetSerialTimeouts(uint32_t interval, uint32_t multiplier, uint32_t constant);

/** Sets the speed of the next serial search for readers, 9600 baud after load. No open port changes.
 * Magstripe readers are always searched for at 9600.
 * @param baud speed in baud, any that the port's driver supports; at any other, and at 0, no port opens. */
TAVLYN_API void TAVLYN_CALL SetBaudRate(uint32_t baud);

/** Looks for an Ethernet adapter at the addresses from a.b.c.first to a.b.c.last. Nothing is added to the
 * table: pass the result to SetIpPort(). An address that stays silent takes about half a second. A link that
 * is up is lost: it is no longer used, but not closed either.
 *
 * Traffic over UDP: RFIDDISC 01 00 to port 11000, 00 00 00 F6 to port 30718.
 * @param a first octet, 0 to 255; its low byte counts.
 * @param b second octet, 0 to 255; its low byte counts.
 * @param c third octet, 0 to 255; its low byte counts.
 * @param first first value of the fourth octet, 0 to 255; its low byte counts.
 * @param last last value of the fourth octet, 0 to 255; its low byte counts.
 * @return The fourth octet of the address that answered, or 0. */
TAVLYN_API uint32_t TAVLYN_CALL FindXport(int16_t a, int16_t b, int16_t c, int16_t first, int16_t last);

/** Returns the host's first address.
 * @return The address with its first octet in the low byte; 0 on failure. */
TAVLYN_API uint32_t TAVLYN_CALL GetMyIpAddress(void);

#endif
