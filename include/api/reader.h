/** @file
 * What a reader has besides IDs: its configuration, the configurations of a plus reader, texts, firmware. */
#ifndef TAVLYN_API_READER_H
#define TAVLYN_API_READER_H

#include "types.h"

/** Reads every configuration of the active device into the mirror.
 *
 * Traffic for each configuration of a plus reader: 89 81 n, 89 01, 84; then for every reader 8A, 80, 81, 82,
 * 83, 85 i 00 10 (1 to 18 times), 8C 04 07 i (8 times), 8C 04 04 i (3 times), 8C 01 i (3 times). A plus
 * reader ends with 89 81 n and its card type list, 89 04 i.
 * @return 1, or 0 when at least one could not be read, which adds TAVLYN_ERR_CONFIG_READ, and with no device.
 *   A text that could not be read does not fail the call: a result of 1 can come with TAVLYN_ERR_FW_FILENAME,
 *   TAVLYN_ERR_FULL_FW_VERSION and TAVLYN_ERR_CONFIG_READ. */
TAVLYN_API uint32_t TAVLYN_CALL ReadCfg(void);

/** Sends what has changed in the mirror and commits it, for every configuration of a plus reader from the
 * highest down. Changes that were made for an earlier device and not overwritten by a read are sent too, see
 * USBConnect(): call ReadCfg() first. It takes 20 ms for a configuration, or 1200 ms on a reader without the
 * volume command.
 *
 * Traffic for each configuration: on a plus reader 89 81 n and 84; then each of 8A, 80, 81, 82, 83 that has
 * changed and 85 i 00 10, each followed by a data report; 84 on a plus reader; 90 mask, where mask names the
 * blocks; 8C 06.
 * @return 1, or 0 after a failure and with no device. What was sent but not committed then lies in the
 *   reader's working memory only, and the next write sends it again. The error word does not show the
 *   failure. */
TAVLYN_API uint32_t TAVLYN_CALL WriteCfg(void);

/** Makes the device load its factory configuration and reads it back. It takes 1200 ms. Traffic: A0, then
 * that of ReadCfg().
 * @return 1, or 0 when the command could not be sent, which adds TAVLYN_ERR_RESET, or the configuration could
 *   not be read, see ReadCfg(), or, on some sonar sensors, written back without idle flags, which adds
 *   TAVLYN_ERR_CONFIG_WRITE; unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL ResetFactoryDflts(void);

/** Returns the highest configuration index of the active plus reader.
 * @return 0 to 10; 0 for any other device. */
TAVLYN_API uint16_t TAVLYN_CALL GetMaxConfig(void);

/** Returns the index of the configuration that the record calls act on.
 * @return 0 to GetMaxConfig(); 0 for a device that is not a plus reader. */
TAVLYN_API uint16_t TAVLYN_CALL GetActConfig(void);

/** Chooses the configuration that the record calls act on. Nothing is sent to the reader, and the error word
 * is left alone.
 * @param index 0 to GetMaxConfig().
 * @return 1, or 0 when there is no such configuration or the device is not a plus reader. */
TAVLYN_API uint32_t TAVLYN_CALL SetActConfig(uint8_t index);

/** Returns the card type of the active configuration.
 * @return Code of the type, 0 to 65535; -1 when the device is not a plus reader. */
TAVLYN_API int32_t TAVLYN_CALL GetCardType(void);

/** Returns the priority of the card type of the active configuration.
 * @return 0 for low, 1 for high; -1 when the device is not a plus reader. */
TAVLYN_API int32_t TAVLYN_CALL GetCardPriority(void);

/** Sets card type and priority of the active configuration. The next WriteCfg() sends them.
 * @param type code of the type, 0 to 65535.
 * @param priority 0 for low, any other value for high.
 * @return 1, or 0 when the device is not a plus reader. */
TAVLYN_API uint32_t TAVLYN_CALL SetCardTypePriority(uint16_t type, int16_t priority);

/** Tells whether the reader knows a card type, according to the list that came with the configuration.
 * Without a list every type counts as known.
 * @param type code of the type. Bits 4 to 7 do not count, and a type without other bits is always known, even
 *   with no device.
 * @return 1 when it is known; 0 when it is not, or no card reader is active. */
TAVLYN_API uint32_t TAVLYN_CALL IsCardTypeInList(int16_t type);

/** Returns the full firmware version that came with the configuration.
 * @return A text of at most 24 characters; null with no device. */
TAVLYN_API const char* TAVLYN_CALL GetFullFWVersion(void);

/** Returns the firmware file name that came with the configuration.
 * @return A text of at most 64 characters; null with no device. */
TAVLYN_API const char* TAVLYN_CALL GetFWFilename(void);

/** Returns the part number that came with the configuration.
 * @return A text of at most 24 characters; null with no device. */
TAVLYN_API const char* TAVLYN_CALL getPartNumberString(void);

/** Returns one character of the part number.
 * @param index position of the character, from 0: 0 takes a copy of the part number and returns its first
 *   character; others read that copy.
 * @return The character; 0 after the end of the text, and for any other index. */
TAVLYN_API uint8_t TAVLYN_CALL getPartNumberString_char(int16_t index);

/** @name Texts that are asked for at each call
 * Up to 24 characters. Neither product nor table is checked: with no device, entry 0 is asked in vain, which
 * takes 480 ms over reports, and its error word becomes TAVLYN_ERR_CONFIG_READ and TAVLYN_ERR_WRITE_REPORT.
 * The error word is not cleared first.
 * @{ */

/** Asks the reader for its serial number. Traffic: 8C 04 02 i with i = 0 to 2; over a serial link 0C 04 02 i.
 * @return A text in a buffer that all five calls share; empty on failure, which over reports adds
 *   TAVLYN_ERR_CONFIG_READ. */
TAVLYN_API const char* TAVLYN_CALL GetSerialNumber(void);

/** Asks the reader for the type of its platform. Traffic: 8C 04 03 i with i = 0 to 2; over a serial link 0C
 * 04 03 i.
 * @return As for GetSerialNumber(). */
TAVLYN_API const char* TAVLYN_CALL GetPlatformType(void);

/** Asks the reader for the date of its firmware. Traffic: 8C 04 05 i with i = 0 to 2; over a serial link 0C
 * 04 05 i.
 * @return As for GetSerialNumber(). */
TAVLYN_API const char* TAVLYN_CALL GetBuildDate(void);

/** Asks the reader for its copyright notice. Traffic: 8C 04 06 i with i = 0 to 2; over a serial link 0C 04 06
 * i.
 * @return As for GetSerialNumber(). */
TAVLYN_API const char* TAVLYN_CALL GetCopyrightInfo(void);

/** Asks the reader for its processor. Traffic: 8C 04 08 i with i = 0 to 2; over a serial link 0C 04 08 i.
 * @return As for GetSerialNumber(). */
TAVLYN_API const char* TAVLYN_CALL GetCPUInfo(void);

/** @} */

/** Asks the reader for its electronic serial number. Traffic: 8C 06, then 8C 05 i with i = 0 to 3.
 * @return The 32 bytes, valid until the next call; null when no card reader on feature reports is active,
 *   when it has no volume command (8C 06), and after a failed exchange, which adds TAVLYN_ERR_COMMAND. */
TAVLYN_API const uint8_t* TAVLYN_CALL getESN(void);

/** Returns a firmware word as it was read at connect. There is no traffic.
 * @param cpu processor, 0 to 2.
 * @param index word, 0 to 4.
 * @return The word; 0 for another processor or index, for a plain reader, and with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetFirmwareVersion(uint16_t cpu, uint16_t index);

/** Reads the firmware words of every device again. Afterwards device 0 is active, with configuration 0.
 * Traffic: 89 03 cpu index, for each processor up to its first 0. */
TAVLYN_API void TAVLYN_CALL SendGetFWVersion(void);

/** Measures how long the device takes to answer. The error word is not cleared. Traffic: 8A.
 * @return Milliseconds, 1 to 65535. With no device or no answer it is the host's tick count, which is
 *   implausibly large. */
TAVLYN_API uint32_t TAVLYN_CALL Ping(void);

/** Copies one stored bank of a plus reader to another: 1 is the working set, 2 the user defaults, 3 the plus
 * defaults. It takes 100 ms. The mirror is not read again. Traffic: 89 82 from to 00 FF.
 * @param from bank that is copied, 1 to 3; the low 3 bits count.
 * @param to bank that it is copied to, 1 to 3; the low 3 bits count.
 * @return 1, or 0 when the device is not a plus reader or the exchange failed, which adds TAVLYN_ERR_COMMAND
 *   for a lost reply. */
TAVLYN_API uint32_t TAVLYN_CALL PlusBlockMove(int16_t from, int16_t to);

/** Copies the user defaults to the working set. The mirror is not read again. Traffic: that of
 * PlusBlockMove().
 * @return What PlusBlockMove() returns; unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL ResetUserDflts(void);

/** Copies the working set to the user defaults. Traffic: that of PlusBlockMove().
 * @return What PlusBlockMove() returns; unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL SaveUserDflts(void);

/** Copies the plus defaults to the user defaults and to the working set. The mirror is not read again.
 * Traffic: twice that of PlusBlockMove().
 * @return What the second PlusBlockMove() returns; that of the first is lost. Unsupported when the active
 *   device is not a card reader. */
TAVLYN_API uint32_t TAVLYN_CALL tavlynPlusDefaults(void);

/** Writes every readable report of the active reader to a text file. Traffic: a command and a reply for each
 * of these reports.
 * @param path path of the file, see files.h.
 * @return 1. 0 when no card reader is active, the file could not be opened, or a report failed, in which
 *   case the file is removed. */
TAVLYN_API uint32_t TAVLYN_CALL DumpRawFeatureReports(const char* path);

/** Asks a serial reader for the baud code that it keeps. The error word is left alone. Traffic: FA 0D 01.
 * @return The code, 0 to 255; 65535 for another link or without an answer; 0xFFFFFFFF with no device. */
TAVLYN_API uint32_t TAVLYN_CALL ReadBaudRate(void);

/** Sets the baud code that a serial reader keeps. The speed of the open port stays, and so does the error
 * word. Traffic: FA 0D 81 code.
 * @param code 0 to 255; the low byte is sent.
 * @return 1; 0 for another link or after a refusal; unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL WriteBaudRate(uint16_t code);

/** Chooses whether all serial readers are spoken to in the ASCII dialect, until the library is unloaded. It
 * is used for ID reads, configuration read and write, factory reset, beeps and the set of volatile LEDs;
 * everything else stays in frames. There is no traffic.
 * @param on 0 for frames, any other value for the ASCII dialect.
 * @return 1; unsupported when the active device is not a card reader. */
TAVLYN_API uint32_t TAVLYN_CALL UseAsciiCommandProtocol(uint16_t on);

#endif
