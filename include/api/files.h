/** @file
 * A device's configuration as a text file, with or without a trailer.
 *
 * A trailer is a CRC-32 of the file. It finds accidents: a file that was cut, damaged on its way or edited by
 * somebody who did not know about it. It proves nothing about intent, because anybody can compute it: whoever
 * may write a file can make it say anything and pass. Protect the files themselves.
 *
 * A saved configuration can hold bytes of the hash keys that the program has set with SetHashKeyData(): the
 * lines of the separator data can run on past its end into them. Save before keys are set, or keep the file
 * as safe as the keys. On Linux a file that a save creates is accessible to its owner alone (mode 0600); an
 * existing file keeps its mode.
 *
 * Paths are narrow strings: on Windows in the code page of the calling program (GetACP), which a manifest can
 * make UTF-8, and up to 259 characters long; on Linux any bytes that the system accepts. A null path is one
 * that cannot be opened. */
#ifndef TAVLYN_API_FILES_H
#define TAVLYN_API_FILES_H

#include "types.h"

/** Reads every configuration from the device and saves it as a template file, replacing what was there. A
 * configuration that could not be read is missing from it. Only the opening of the file is checked, so that a
 * full disk goes unnoticed. Traffic: that of ReadCfg() for each configuration.
 * @param path path of the file.
 * @return 1, also when the disk was full and the file is cut. 0 when the file could not be opened. 0xFFFF
 *   when no configuration could be read: the file then holds its heading and, for a reader with several
 *   configurations, their card lines; the error word says why, as after ReadCfg(). Unsupported with no
 *   device. */
TAVLYN_API uint32_t TAVLYN_CALL WriteDevCfgToFile(const char* path);

/** Loads a template file: records that differ go through the record sets, then WriteCfg() sends them. A line
 * that is malformed or unknown changes nothing and is not a failure. Of eleven configurations the first ten
 * are loaded. Traffic: that of WriteCfg().
 * @param path path of the file.
 * @return What WriteCfg() returned, with the error word that it left. 0 when the file could not be opened or
 *   is not a template, which leaves the error word alone. Unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL ReadDevCfgFmFile(const char* path);

/** WriteDevCfgToFile() for callers that can pass only characters.
 * @param index 0 to 255: 0 clears the path and stores the character there, 1 to 254 store it, 255 saves.
 * @param character the character, 0 to 255; ignored with index 255.
 * @return 1 for a character that was stored; what WriteDevCfgToFile() returns for index 255; 0 for any other
 *   index. */
TAVLYN_API uint32_t TAVLYN_CALL writeDevCfgToFile_char(int16_t index, uint8_t character);

/** ReadDevCfgFmFile() for callers that can pass only characters.
 * @param index 0 to 255: 0 clears the path and stores the character there, 1 to 254 store it, 255 loads.
 * @param character the character, 0 to 255; ignored with index 255.
 * @return 1 for a character that was stored; what ReadDevCfgFmFile() returns for index 255; 0 for any other
 *   index. */
TAVLYN_API uint32_t TAVLYN_CALL readDevCfgFmFile_char(int16_t index, uint8_t character);

/** Tells which link the configuration file of a magstripe reader names. There is no traffic, and the error
 * word is left alone.
 * @param path path of the file.
 * @return 0 for USB, 1 for serial, 65535 when the file names none or could not be opened; 0 with a sonar
 *   sensor; unsupported with a card reader or no device. */
TAVLYN_API uint32_t TAVLYN_CALL ReadDevTypeFromFile(const char* path);

/** Tests whether a file's trailer matches what it covers; see above for what that proves. It touches no
 * device and no error word.
 * @param path path of the file.
 * @param kind 0 for configuration and BLE files, any other value for key-load ini files.
 * @return 1 when it matches; 0 when it does not or there is none, when the file could not be opened, and when
 *   there was no memory for its sum. */
TAVLYN_API uint32_t TAVLYN_CALL CheckTamperedFile(const char* path, uint32_t kind);

/** WriteDevCfgToFile() with a trailer at the end of the file. Test the file with CheckTamperedFile(): the
 * result does not show every failure. A file that cannot be read back, with mode 0200 for example, is signed
 * 00000000 and does not pass. Traffic: that of WriteDevCfgToFile().
 * @param path path of the file.
 * @return 1, also when no card reader is active and nothing was saved, when no configuration could be read,
 *   when the disk was full, and when the trailer could not be added. Unsupported when the file could not be
 *   opened, or there was no memory for its sum, which adds TAVLYN_ERR_INTEGRITY. */
TAVLYN_API uint32_t TAVLYN_CALL WriteDevCfgToSecureFile(const char* path);

/** ReadDevCfgFmFile() of a file whose trailer matches. Traffic: that of ReadDevCfgFmFile().
 * @param path path of the file.
 * @return 1, also when no card reader is active and nothing was loaded. 0 for a file that does not pass
 *   CheckTamperedFile(), which adds TAVLYN_ERR_INTEGRITY, with no device to the word of entry 0. Unsupported
 *   when the load failed. */
TAVLYN_API uint32_t TAVLYN_CALL ReadDevCfgFromSecureFile(const char* path);

#endif
