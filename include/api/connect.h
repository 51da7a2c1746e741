/* Connect and disconnect, what a connect searches for, the trace. */
#ifndef TAVLYN_API_CONNECT_H
#define TAVLYN_API_CONNECT_H

#include "types.h"

/* Empties the table, searches for devices as SetConnectProduct and SetDevTypeSrch allow, and reads the
 * configuration and firmware words of each one found. pDID, which may be null, receives the device ID word of
 * entry 0 on success only. 1: a device was found and every configuration was read. 0: nothing was found, or a
 * configuration read failed; the table then keeps what was found (GetDevCnt). Handles of an earlier connect
 * are not closed: call USBDisconnect first. On Windows a reader 7A31:3BFB is opened for this program alone: a
 * second connect without a disconnect finds it and cannot talk to it (0), nor can any other until the library
 * is unloaded; while another program reads its input, a connect finds it likewise.
 * The mirror of the device that stood in an entry before stays there, over a disconnect too: records, marks
 * of what is not written yet, hash keys, configuration in use. A read overwrites it, but for hash keys, which
 * the next write of separated fields sends, and the mark of LEDs, beeper and relay. Where the connect has not
 * read (a read that failed, and of a plus reader at index 1 or above every configuration but one) gets show
 * the earlier device's words, and WriteCfg sends them to this one: call ReadCfg for each such device first,
 * and go on only when it gives 1.
 * Nothing proves that a device is the maker's. Of HID devices those of the makers' pairs and of the VID/PID
 * table are taken, and every one of product 0104, whatever its vendor. A search with the settings as after
 * load also opens COM1 to COM8 and writes frames to whatever is connected there; SetDevTypeSrch and
 * SetComSrchRange narrow it. Over Ethernet everything passes in the clear, keys too, and whoever answers at
 * the address is believed.
 * Traffic for a plain reader: 89 01; per configuration the reports of ReadCfg. A plus reader adds its
 * firmware words, 89 03 cpu index. */
TAVLYN_API uint32_t TAVLYN_CALL USBConnect(uint32_t* pDID);

/* USBConnect for callers that cannot pass a pointer; the device ID word is lost. No argument. */
TAVLYN_API uint32_t TAVLYN_CALL usbConnect(void);

/* Closes every device and empties the table. The settings below stay, and so does each mirror (see
 * USBConnect). Always 1. No traffic. */
TAVLYN_API uint32_t TAVLYN_CALL USBDisconnect(void);

/* Which products a connect searches for: bit 0 readers, bit 1 magstripe readers, bit 2 sonar sensors; all are
 * searched after load. Other bits mean nothing. Always 1. */
TAVLYN_API uint32_t TAVLYN_CALL SetConnectProduct(uint32_t mask);

/* Which links a connect searches: -1 all (after load), 0 USB HID, 1 serial, 2 Ethernet; result 1. Any other
 * value is refused with 0. */
TAVLYN_API uint32_t TAVLYN_CALL SetDevTypeSrch(int16_t link);

/* The COM ports of the serial search, from the smaller to the larger of a and b, each 1 to 256 (1 and 8 after
 * load); result 1. Out of range: 0 and nothing changes. */
TAVLYN_API uint32_t TAVLYN_CALL SetComSrchRange(uint16_t a, uint16_t b);

/* Whether a search for magstripe readers also visits the maker's virtual COM ports and PCMCIA cards outside
 * the range of SetComSrchRange: 0 and 0 switch that off; a below b, each 1 to 256, switches it on (as after
 * load), for all such ports whatever the two numbers. Result 1. The low 16 bits of each count. Anything else:
 * 0 and nothing changes. */
TAVLYN_API uint32_t TAVLYN_CALL VirtualComSearchRange(uint32_t a, uint32_t b);

/* Address and TCP port of the Ethernet search, unchecked; with d = 0 all of a.b.c.1 to a.b.c.254 are tried.
 * After load 0.0.0.0 and 0, where nothing is. Always 1. The link is neither enciphered nor authenticated. */
TAVLYN_API uint32_t TAVLYN_CALL SetIpPort(uint8_t a, uint8_t b, uint8_t c, uint8_t d, uint16_t port);

/* The value returned for no device or no such operation; 0 after load. */
TAVLYN_API void TAVLYN_CALL SetUnsupportedProductErrorCode(uint16_t value);
TAVLYN_API uint32_t TAVLYN_CALL GetUnsupportedProductErrorCode(void);

/* Both do nothing and return 0; they are kept for programs that call them. */
TAVLYN_API uint32_t TAVLYN_CALL SetComLinux(uint64_t value);
TAVLYN_API uint16_t TAVLYN_CALL GetRawRepDataI(uint8_t* buffer, uint16_t length);

/* Receives one finished trace line, which ends in a line feed, and its length without the terminator. */
typedef void(TAVLYN_CALL* tavlyn_marker_function)(const char* line, uint64_t length);

/* Sends the trace to the function instead of the trace file; null switches the trace off. Works only while
 * the environment variable TAVLYNAPI_LOGGING is set (its value does not matter): else 0 and nothing changes.
 * The function is called on the thread that made the traced call, at times under the library's lock. An
 * exception that leaves it ends there, on Windows an access violation too, and the traced call goes on. */
TAVLYN_API uint32_t TAVLYN_CALL SetMarkerFunction(tavlyn_marker_function function);

/* The error word of the active device, see TAVLYN_ERR_; it is not cleared. With no device: unsupported,
 * sign-extended from 16 bits. A call with no device leaves no word either, but for those that use entry 0
 * untested: loads of a file that does not pass its test (LoadIniFile, ReadDevCfgFromSecureFile,
 * WriteBLEDataToReader and WriteBLEKeyToReader: bits 0x91000000), the texts from GetSerialNumber to
 * GetCPUInfo (0x20202) and sorbaneClearOverrun (0x202). That word is seen as soon as entry 0 holds a device,
 * until a call clears it; the configuration read of a connect does. */
TAVLYN_API uint32_t TAVLYN_CALL GetLastLibErr(void);

/* Filters of the row of the VID/PID table that matched the active reader. Index 1: the row's FILTER1 value,
 * or the table's DEFAULT1 value when the device has no row, is no reader or none is active. Index 0: always
 * 0. Any other index: 0. */
TAVLYN_API uint32_t TAVLYN_CALL GetVidPidFilterMask(int32_t index);
TAVLYN_API uint32_t TAVLYN_CALL GetVidPidFilterCompare(int32_t index);

/* Name of the vendor under which the active reader was found; "7A31:3BFA Orvantis" for the main pair or no
 * device, empty for other products and for serial and Ethernet links. */
TAVLYN_API const char* TAVLYN_CALL GetVidPidVendorName(void);

/* Character of that text, 0 at and behind its end and for a negative index. */
TAVLYN_API uint8_t TAVLYN_CALL getVidPidVendorName_char(int16_t index);

#endif
