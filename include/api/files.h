/* A device's configuration as a text file, with or without a trailer. What the saves and loads of
 * configurations do on other products than card readers stands in magstripe.h and sonar.h.
 *
 * A trailer is a CRC-32 of the file. It finds accidents: a file that was cut, damaged on its way or edited by
 * somebody who did not know of it. It proves nothing about intent, because anybody can compute it: whoever
 * may write a file can make it say anything and pass. Protect the files themselves.
 *
 * A saved configuration can hold bytes of the hash keys that the program has set with SetHashKeyData: the
 * lines of the separator data can run over their end into them. Save before keys are set, or keep the file as
 * safe as the keys. On Linux a file that a save creates is its owner's alone (mode 0600); one that is there
 * keeps its mode.
 *
 * Paths are narrow: on Windows in the code page of the calling program (GetACP), where a manifest can choose
 * UTF-8, and of up to 259 characters; on Linux bytes of any kind, as the system has them. */
#ifndef TAVLYN_API_FILES_H
#define TAVLYN_API_FILES_H

#include "types.h"

/* Reads every configuration from the device and saves it as a template file, replacing what was there. 1,
 * also when the disk was full and the file is cut: only its opening is looked at. 0 when the file could not
 * be opened; 0xFFFF when no configuration could be read (the file then holds its heading, and of a reader
 * with several configurations their card lines); unsupported with no device. A configuration that could not
 * be read is missing. Traffic: that of ReadCfg for each configuration. */
TAVLYN_API uint32_t TAVLYN_CALL WriteDevCfgToFile(const char* path);

/* Loads a template file: records that differ go through the record sets, then WriteCfg sends them. What
 * WriteCfg returned; 0 when the file could not be opened or is no template; unsupported with no device. A
 * malformed or unknown line changes nothing and fails nothing. Of eleven configurations the first ten are
 * loaded. */
TAVLYN_API uint32_t TAVLYN_CALL ReadDevCfgFmFile(const char* path);

/* The same for callers that can pass only characters. Index 0 clears the path and stores character there, 1
 * to 254 store; both return 1. Index 255 runs the operation. Any other index: 0. */
TAVLYN_API uint32_t TAVLYN_CALL writeDevCfgToFile_char(int16_t index, uint8_t character);
TAVLYN_API uint32_t TAVLYN_CALL readDevCfgFmFile_char(int16_t index, uint8_t character);

/* The link that a magstripe reader's configuration file names: 0 USB, 1 serial, 65535 when the file names
 * none or could not be opened; sonar sensors 0. Unsupported with no device and for card readers. No traffic.
 */
TAVLYN_API uint32_t TAVLYN_CALL ReadDevTypeFromFile(const char* path);

/* 1 when a file's trailer fits what it covers (see above for what that tells): kind 0 for configuration and
 * BLE files, any other kind for key-load ini files. 0: it does not, it has none, the file could not be
 * opened, or there was no memory for its sum. Touches no device and no error word. */
TAVLYN_API uint32_t TAVLYN_CALL CheckTamperedFile(const char* path, uint32_t kind);

/* WriteDevCfgToFile with a trailer behind it. 1, also when no card reader is active and nothing was saved,
 * when no configuration could be read, when the disk was full, and when the trailer could not be added: test
 * the file with CheckTamperedFile. Unsupported: the file could not be opened, or there was no memory for its
 * sum (0x91000000). A file that cannot be read back, of mode 0200 say, is signed 00000000 and does not pass.
 */
TAVLYN_API uint32_t TAVLYN_CALL WriteDevCfgToSecureFile(const char* path);

/* ReadDevCfgFmFile of a file whose trailer fits. 0 with error bits 0x91000000 for one that does not pass
 * CheckTamperedFile, with no device too, in the word of entry 0; unsupported when the load failed; 1
 * otherwise, also when no card reader is active and nothing was loaded. */
TAVLYN_API uint32_t TAVLYN_CALL ReadDevCfgFromSecureFile(const char* path);

#endif
