/** @file
 * Connect and disconnect, what a connect searches for, the trace and the error word. */
#ifndef TAVLYN_API_CONNECT_H
#define TAVLYN_API_CONNECT_H

#include "types.h"

/** Finds devices and opens them.
 *
 * Empties the table, searches for devices as SetConnectProduct() and SetDevTypeSrch() allow, and reads the
 * configuration and the firmware words of each one found. Handles of an earlier connect are not closed: call
 * USBDisconnect() first. On Windows a reader 7A31:3BFB is opened for this program alone. A second connect
 * without a disconnect finds it but cannot talk to it, and nor can any later one until the library is
 * unloaded. While another program reads its input, a connect finds it but cannot talk to it either.
 *
 * Neither a disconnect nor a connect clears the mirror in an entry. It is still that of the device that had
 * the entry before: records, marks of what is not written yet, hash keys, and the configuration in use. A
 * read overwrites it, except for the hash keys, which the next write of separated fields sends, and the mark
 * of LEDs, beeper and relay. Where the connect has not read (a read that failed, and of a plus reader at
 * index 1 or above every configuration but one), gets return the words of the earlier device, and WriteCfg()
 * sends them to this one. Call ReadCfg() for each such device first, and go on only when it returns 1.
 *
 * Nothing proves that a device is the maker's. A HID device is accepted when its VID/PID pair is one of the
 * makers' or in the VID/PID table, and with product ID 0104 whatever its vendor is. A search with the
 * settings as they are after load also opens COM1 to COM8 and writes frames to whatever is connected there;
 * SetDevTypeSrch() and SetComSrchRange() narrow it. Over Ethernet everything, keys included, travels in the
 * clear, and whoever answers at the address is trusted.
 *
 * Traffic for a plain reader: 89 01, then for each configuration the reports of ReadCfg(). A plus reader adds
 * its firmware words, 89 03 cpu index.
 * @param pDID receives the device ID word of entry 0, on success only; it may be null.
 * @return 1 when a device was found and every configuration was read. 0 when nothing was found, in which case
 *   GetDevCnt() is 0 and only the trace says more; or when a configuration could not be read, in which case
 *   the table keeps what was found and the error word of that device (SetActDev(), then GetLastLibErr()) says
 *   why, usually with TAVLYN_ERR_CONFIG_READ. */
TAVLYN_API uint32_t TAVLYN_CALL USBConnect(uint32_t* pDID);

/** USBConnect() for callers that cannot pass a pointer. GetDID() returns the device ID word.
 * @return What USBConnect() returns. */
TAVLYN_API uint32_t TAVLYN_CALL usbConnect(void);

/** Closes every device and empties the table. The settings below stay, and so does the mirror of each entry,
 * see USBConnect(). There is no traffic.
 * @return Always 1. */
TAVLYN_API uint32_t TAVLYN_CALL USBDisconnect(void);

/** Chooses the products that a connect searches for. After load it is all of them.
 * @param mask 0 to 7: bit 0 card readers, bit 1 magstripe readers, bit 2 sonar sensors; other bits mean
 * nothing.
 * @return Always 1. */
TAVLYN_API uint32_t TAVLYN_CALL SetConnectProduct(uint32_t mask);

/** Chooses the links on which a connect searches.
 * @param link -1 to 2: -1 all (as after load), 0 USB HID, 1 serial ports, 2 Ethernet.
 * @return 1, or 0 for any other value, which changes nothing. */
TAVLYN_API uint32_t TAVLYN_CALL SetDevTypeSrch(int16_t link);

/** Sets the COM ports of the serial search, from the smaller to the larger of the two numbers.
 * @param a one end of the range, 1 to 256; 1 after load.
 * @param b the other end of the range, 1 to 256; 8 after load.
 * @return 1, or 0 when a number is out of range, which changes nothing. */
TAVLYN_API uint32_t TAVLYN_CALL SetComSrchRange(uint16_t a, uint16_t b);

/** Chooses whether a search for magstripe readers also visits the maker's virtual COM ports and PCMCIA cards
 * outside the range of SetComSrchRange(). Two zeros switch that off. A range switches it on, as after load,
 * for all such ports, whatever its two numbers are.
 * @param a 0 to 256: low end of the range, from 1 and below b, or 0. The low 16 bits count.
 * @param b 0 to 256: high end of the range, or 0. The low 16 bits count.
 * @return 1, or 0 for any other pair, which changes nothing. */
TAVLYN_API uint32_t TAVLYN_CALL VirtualComSearchRange(uint32_t a, uint32_t b);

/** Sets the address a.b.c.d and the TCP port of the Ethernet search, unchecked. After load they are 0.0.0.0
 * and 0, where nothing answers. The link is neither encrypted nor authenticated.
 * @param a first octet, 0 to 255.
 * @param b second octet, 0 to 255.
 * @param c third octet, 0 to 255.
 * @param d fourth octet, 0 to 255; with 0 all of a.b.c.1 to a.b.c.254 are tried.
 * @param port TCP port, 0 to 65535.
 * @return Always 1. */
TAVLYN_API uint32_t TAVLYN_CALL SetIpPort(uint8_t a, uint8_t b, uint8_t c, uint8_t d, uint16_t port);

/** Sets what calls return when no device is active or the active one has no such operation, 0 after load; the
 * comments call that value "unsupported". Results narrower than 16 bits are its low bits. Wider ones are
 * zero-extended, but sign-extended for GetLastLibErr(), GetFirmwareVersion(), GetEnhanceSecurityFlag(),
 * GetQueuedID_index() on a magstripe reader, and every call of sonar.h.
 * @param value 0 to 65535. */
TAVLYN_API void TAVLYN_CALL SetUnsupportedProductErrorCode(uint16_t value);

/** Returns what SetUnsupportedProductErrorCode() has set.
 * @return 0 to 65535; 0 after load. */
TAVLYN_API uint32_t TAVLYN_CALL GetUnsupportedProductErrorCode(void);

/** Does nothing; it is kept for programs that call it.
 * @param value is ignored.
 * @return Always 0. */
TAVLYN_API uint32_t TAVLYN_CALL SetComLinux(uint64_t value);

/** Does nothing; it is kept for programs that call it.
 * @param buffer is not touched and may be null.
 * @param length is ignored.
 * @return Always 0. */
TAVLYN_API uint16_t TAVLYN_CALL GetRawRepDataI(uint8_t* buffer, uint16_t length);

/** Receives one line of the trace. It is called on the thread that made the traced call, at times under the
 * library's lock. An exception that it throws, on Windows also an access violation, ends there, and the
 * traced call goes on.
 * @param line the finished line, which ends in a line feed and a terminator; it is valid during the call
 *   only.
 * @param length its length in bytes, without the terminator. */
typedef void(TAVLYN_CALL* tavlyn_marker_function)(const char* line, uint64_t length);

/** Sends the trace to a function instead of the trace file. This works only while the environment variable
 * TAVLYNAPI_LOGGING is set; its value does not matter.
 * @param function the function, or null to switch the trace off.
 * @return 1, or 0 without that variable, which changes nothing. */
TAVLYN_API uint32_t TAVLYN_CALL SetMarkerFunction(tavlyn_marker_function function);

/** Returns the error word of the active device and does not clear it.
 *
 * With no device a call sets no word, except for those that use entry 0 unchecked: loads of a file that does
 * not pass its test (LoadIniFile(), ReadDevCfgFromSecureFile(), WriteBLEDataToReader() and
 * WriteBLEKeyToReader(): TAVLYN_ERR_INTEGRITY), the texts from GetSerialNumber() to GetCPUInfo()
 * (TAVLYN_ERR_CONFIG_READ and TAVLYN_ERR_WRITE_REPORT) and sorbaneClearOverrun() (TAVLYN_ERR_WRITE_REPORT).
 * Such a word shows as soon as entry 0 holds a device, until a call clears it, as the configuration read of a
 * connect does.
 * @return TAVLYN_ERR_ words of types.h; 0 for none; unsupported, sign-extended from 16 bits, with no device.
 */
TAVLYN_API uint32_t TAVLYN_CALL GetLastLibErr(void);

/** Returns the mask of a filter in the row of the VID/PID table that matched the active reader.
 * @param index 0 or 1: 1 for the row's FILTER1, or the table's DEFAULT1 when the device has no row, is not a
 * card reader, or none is active. 0 for a filter that is always 0.
 * @return The mask; 0 for index 0 and for any other index. */
TAVLYN_API uint32_t TAVLYN_CALL GetVidPidFilterMask(int32_t index);

/** Returns the value that goes with the mask of GetVidPidFilterMask().
 * @param index as for GetVidPidFilterMask().
 * @return The value to compare with; 0 for index 0 and for any other index. */
TAVLYN_API uint32_t TAVLYN_CALL GetVidPidFilterCompare(int32_t index);

/** Returns the name of the vendor under which the active reader was found.
 * @return A text that the library owns: "7A31:3BFA Orvantis" for the main pair or with no device; empty for
 *   other products and for serial and Ethernet links. */
TAVLYN_API const char* TAVLYN_CALL GetVidPidVendorName(void);

/** Returns one character of the text of GetVidPidVendorName().
 * @param index position of the character, from 0.
 * @return The character; 0 at the end of the text, after it, and for a negative index. */
TAVLYN_API uint8_t TAVLYN_CALL getVidPidVendorName_char(int16_t index);

#endif
