/* What is asked of a reader besides its ID: configuration, configurations of a plus reader, texts, firmware.
 * What ReadCfg, WriteCfg and ResetFactoryDflts do on other products stands in magstripe.h and sonar.h. */
#ifndef TAVLYN_API_READER_H
#define TAVLYN_API_READER_H

#include "types.h"

/* Reads every configuration of the active device into the mirror. 0: at least one failed, or no device;
 * error bits 0x20000, 0x50000000, 0x70000000. A result of 1 can stand beside error bits of texts.
 * Traffic per configuration of a plus reader: 89 81 n, 89 01, 84; then for every reader 8A, 80, 81, 82, 83,
 * 85 i 00 10 (1 to 18 times), 8C 04 07 i (8), 8C 04 04 i (3), 8C 01 i (3). A plus reader ends with 89 81 n
 * and its card type list, 89 04 i. */
TAVLYN_API uint32_t TAVLYN_CALL ReadCfg(void);

/* Sends what has changed in the mirror and commits it, for every configuration of a plus reader from the
 * highest down. Changes that were made for an earlier device and not overwritten by a read go out too: see
 * USBConnect; ReadCfg first. 1; 0 for a failure or no device: what was sent but not committed lies in the
 * reader's working memory only and the next write sends it again. The error word does not tell of the
 * failure. Takes 20 ms for a configuration, or 1200 ms on a reader without the volume command. Traffic per
 * configuration: on a plus reader 89 81 n, 84; then each of 8A, 80, 81, 82, 83 that has changed and 85 i 00
 * 10 with a data report behind it; 84 on a plus reader; 90 mask, mask naming the blocks; 8C 06. */
TAVLYN_API uint32_t TAVLYN_CALL WriteCfg(void);

/* Makes the device load its factory configuration and reads it back; takes 1200 ms. 0: the command failed
 * (0x80000) or the read did. Traffic: A0, then that of ReadCfg. */
TAVLYN_API uint32_t TAVLYN_CALL ResetFactoryDflts(void);

/* Highest configuration index of the active plus reader and the index in use; 0 for any other device. */
TAVLYN_API uint16_t TAVLYN_CALL GetMaxConfig(void);
TAVLYN_API uint16_t TAVLYN_CALL GetActConfig(void);

/* Makes configuration index, 0 to GetMaxConfig(), the one that the record calls act on. The reader is not
 * told. 0: no such configuration, or no plus reader. */
TAVLYN_API uint32_t TAVLYN_CALL SetActConfig(uint8_t index);

/* Card type code and priority (0 low, 1 high) of the active configuration; -1 when the device is no plus
 * reader. */
TAVLYN_API int32_t TAVLYN_CALL GetCardType(void);
TAVLYN_API int32_t TAVLYN_CALL GetCardPriority(void);

/* Sets both for the active configuration; the next WriteCfg sends them. 0: no plus reader. */
TAVLYN_API uint32_t TAVLYN_CALL SetCardTypePriority(uint16_t type, int16_t priority);

/* 1 when the reader knows a card type; bits 4 to 7 do not count, a type without other bits is always known,
 * and a reader that does not tell rejects nothing. 0: not known, or no reader is active. */
TAVLYN_API uint32_t TAVLYN_CALL IsCardTypeInList(int16_t type);

/* Texts read with the configuration; null with no device. */
TAVLYN_API const char* TAVLYN_CALL GetFullFWVersion(void);
TAVLYN_API const char* TAVLYN_CALL GetFWFilename(void);
TAVLYN_API const char* TAVLYN_CALL getPartNumberString(void);
/* Character of the part number. Index 0 takes a copy first, the others read that copy; 0 behind its end. */
TAVLYN_API uint8_t TAVLYN_CALL getPartNumberString_char(int16_t index);

/* Texts of up to 24 characters asked of the reader at each call: 8C 04 k i with i = 0 to 2, over a serial
 * link 0C 04 k i. Empty on failure, with error bit 0x20000 over reports; the error word is not cleared first.
 * All five share one buffer. Neither product nor table is looked at: with no device, entry 0 is asked in
 * vain, over reports for 480 ms, and its error word becomes 0x20202. */
TAVLYN_API const char* TAVLYN_CALL GetSerialNumber(void);  /* k = 2 */
TAVLYN_API const char* TAVLYN_CALL GetPlatformType(void);  /* k = 3 */
TAVLYN_API const char* TAVLYN_CALL GetBuildDate(void);     /* k = 5 */
TAVLYN_API const char* TAVLYN_CALL GetCopyrightInfo(void); /* k = 6 */
TAVLYN_API const char* TAVLYN_CALL GetCPUInfo(void);       /* k = 8 */

/* The 32 bytes of the electronic serial number, or null: no reader on reports, one without the volume command
 * (8C 06), or a failed exchange (0x1000000). Traffic: 8C 06, then 8C 05 i with i = 0 to 3. */
TAVLYN_API const uint8_t* TAVLYN_CALL getESN(void);

/* Firmware word index (0 to 4) of processor cpu (0 to 2) as read at connect; 0 for another index, no device
 * or a plain reader. No traffic. */
TAVLYN_API uint32_t TAVLYN_CALL GetFirmwareVersion(uint16_t cpu, uint16_t index);

/* Reads the firmware words of every device again: 89 03 cpu index, a row ending at its first 0. Afterwards
 * device 0 is active, with configuration 0. */
TAVLYN_API void TAVLYN_CALL SendGetFWVersion(void);

/* Milliseconds that the device took to answer, 1 to 65535. No device or no answer: the host's tick count,
 * told by its implausible size. Traffic: 8A. */
TAVLYN_API uint32_t TAVLYN_CALL Ping(void);

/* Copies one stored bank of a plus reader to another: 1 working set, 2 user defaults, 3 plus defaults; the
 * low 3 bits count. Takes 100 ms. 0: no plus reader, or the exchange failed (0x1000000 for a lost reply).
 * Traffic: 89 82 from to 00 FF. */
TAVLYN_API uint32_t TAVLYN_CALL PlusBlockMove(int16_t from, int16_t to);

/* Bank moves by name: user defaults to the working set, the reverse, and plus defaults to both (whose first
 * move is not answered for). The mirror is not read again. Unsupported for devices without such defaults. */
TAVLYN_API uint32_t TAVLYN_CALL ResetUserDflts(void);
TAVLYN_API uint32_t TAVLYN_CALL SaveUserDflts(void);
TAVLYN_API uint32_t TAVLYN_CALL tavlynPlusDefaults(void);

/* Writes every readable report of the active reader to a text file. 0: no reader, the file could not be
 * opened, or a report failed (the file is then removed). */
TAVLYN_API uint32_t TAVLYN_CALL DumpRawFeatureReports(const char* path);

/* The baud code a serial reader keeps; ReadBaudRate: 65535 for another link or no answer, 0xFFFFFFFF with no
 * device. WriteBaudRate takes the low byte; 0 for another link or a refusal, unsupported with no device. The
 * port's own speed stays. Traffic: FA 0D 01, FA 0D 81 code. */
TAVLYN_API uint32_t TAVLYN_CALL ReadBaudRate(void);
TAVLYN_API uint32_t TAVLYN_CALL WriteBaudRate(uint16_t code);

/* Speaks the ASCII dialect (on not 0) with serial readers, all of them, until the library is unloaded: ID
 * reads, configuration read and write, factory reset, beep and volatile LED set; everything else stays in
 * frames. 1; unsupported when the active device is no card reader. No traffic. */
TAVLYN_API uint32_t TAVLYN_CALL UseAsciiCommandProtocol(uint16_t on);

#endif
