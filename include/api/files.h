/* A device's configuration as a text file, with or without an integrity trailer. What the saves and loads of
 * configurations do on other products than card readers stands in magstripe.h and sonar.h. */
#ifndef TAVLYN_API_FILES_H
#define TAVLYN_API_FILES_H

#include "types.h"

/* Reads every configuration from the device and saves it as a template file, replacing what was there. 1; 0
 * when the file could not be opened; 0xFFFF when no configuration could be read (the file then holds its
 * heading only); unsupported with no device. Traffic: that of ReadCfg for each configuration. */
TAVLYN_API uint32_t WriteDevCfgToFile(const char* path);

/* Loads a template file: records that differ go through the record sets, then WriteCfg sends them. What
 * WriteCfg returned; 0 when the file could not be opened or is no template; unsupported with no device. A
 * malformed or unknown line changes nothing and fails nothing. Of eleven configurations the first ten are
 * loaded. */
TAVLYN_API uint32_t ReadDevCfgFmFile(const char* path);

/* The same for callers that can pass only characters. Index 0 clears the path and stores character there, 1
 * to 254 store; both return 1. Index 255 runs the operation. Any other index: 0. */
TAVLYN_API uint32_t writeDevCfgToFile_char(int16_t index, uint8_t character);
TAVLYN_API uint32_t readDevCfgFmFile_char(int16_t index, uint8_t character);

/* The link that a magstripe reader's configuration file names: 0 USB, 1 serial, 65535 when the file names
 * none or could not be opened; sonar sensors 0. Unsupported with no device and for card readers. No traffic.
 */
TAVLYN_API uint32_t ReadDevTypeFromFile(const char* path);

/* 1 when a file is as it was written: kind 0 for configuration and BLE files, any other kind for key-load ini
 * files. Touches no device and no error word. */
TAVLYN_API uint32_t CheckTamperedFile(const char* path, uint32_t kind);

/* WriteDevCfgToFile with an integrity trailer. 1, also when no card reader is active and nothing was saved;
 * unsupported when the file could not be written. */
TAVLYN_API uint32_t WriteDevCfgToSecureFile(const char* path);

/* ReadDevCfgFmFile of a file whose trailer is good. 0 with error bits 0x91000000 for a file that was changed;
 * unsupported when the load failed; 1 otherwise, also when no card reader is active and nothing was loaded.
 */
TAVLYN_API uint32_t ReadDevCfgFromSecureFile(const char* path);

#endif
