/** @file
 * Record types, error words, and the markers of every export.
 *
 * A configuration record is eight 16-bit words. A flag is 0 or non-zero. Words named iPad are stored and
 * returned but unused. Where only a maximum is given, a negative word is not refused: its low bits, or those
 * of its number of steps, reach the reader. */
#ifndef TAVLYN_API_TYPES_H
#define TAVLYN_API_TYPES_H

#include <stdint.h>

/** @def TAVLYN_EXTERN
 * C linkage, whatever the language of the program. */
#if defined(__cplusplus)
#define TAVLYN_EXTERN extern "C"
#else
#define TAVLYN_EXTERN extern
#endif

/** @def TAVLYN_API
 * Marks a function that the library exports. */
#if defined(_WIN32) && defined(TAVLYN_BUILDING)
#define TAVLYN_API TAVLYN_EXTERN __declspec(dllexport)
#elif defined(_WIN32)
#define TAVLYN_API TAVLYN_EXTERN __declspec(dllimport)
#else
#define TAVLYN_API TAVLYN_EXTERN __attribute__((visibility("default")))
#endif

/** @def TAVLYN_CALL
 * The calling convention of every export and of every function passed to one. On x64 there is only one; on
 * x86 it has to be declared where the compiler or the language assumes another. */
#if defined(_WIN32)
#define TAVLYN_CALL __cdecl
#else
#define TAVLYN_CALL
#endif

/** What the reader does with an ID. Each word is a flag. */
typedef struct tsCfgFlags {
  int16_t bFixLenDsp;    /**< Send the ID at a fixed length, with leading zeros as needed. */
  int16_t bFrcBitCntEx;  /**< Only an ID of exactly iTotalBitCnt bits is valid. */
  int16_t bStripFac;     /**< Strip the facility code (FAC) from the ID; it is not discarded. */
  int16_t bSndFac;       /**< Send the FAC, if it is stripped. */
  int16_t bUseDelFac2Id; /**< Send a delimiter between FAC and ID. */
  int16_t bNoUseELChar;  /**< Send no end-of-line character (which is ENTER by default). */
  int16_t bSndOnRx;      /**< Send a valid ID as soon as it is received; iIDLockOutTm is not used. */
  int16_t bHaltKBSnd;    /**< Send no keys to USB: the mode for reading IDs through this library. */
} tsCfgFlags;

/** How the bits of a read are counted and set apart. */
typedef struct tsIDBitCnts {
  int16_t iLeadParityBitCnt; /**< Leading Wiegand parity bits to strip: at most 15 (142, see ExFeatures01). */
  int16_t iTrailParityBitCnt; /**< Trailing Wiegand parity bits to strip: at most 15 (142 likewise). */
  int16_t iIDBitCnt;          /**< With bStripFac, bits of the ID; the rest is FAC: 1 to 255. */
  int16_t iTotalBitCnt;       /**< With bFrcBitCntEx, bits of a valid read including parity: 26 to 255. */
  int16_t iPad4;              /**< Unused. */
  int16_t iPad5;              /**< Unused. */
  int16_t iPad6;              /**< Unused. */
  int16_t iPad7;              /**< Unused. */
} tsIDBitCnts;

/** How an ID is shown. */
typedef struct tsIDDispParms {
  int16_t iFACIDDelim;     /**< Character between FAC and ID: at most 255. */
  int16_t iELDelim;        /**< Character at the end of the ID, unless bNoUseELChar is set: at most 255. */
  int16_t iIDDispLen;      /**< With bFixLenDsp, length to which the ID is padded with zeros: at most 25. */
  int16_t iFACDispLen;     /**< With bFixLenDsp, length to which the FAC is padded with zeros: at most 25. */
  int16_t iExOutputFormat; /**< 0 = data format mode, 1 = extended mode. */
  int16_t iPad5;           /**< Unused. */
  int16_t iPad6;           /**< Unused. */
  int16_t iPad7;           /**< Unused. */
} tsIDDispParms;

/** Times in milliseconds, and the features of the reader. A value between two steps reaches the reader
 * rounded down. Bits of ExFeatures01: 5 the ASCII conversion type, 6 extended separated fields and
 * iExOutputFormat, 7 parity counts above 15, up to 142. */
typedef struct tsTimeParms {
  int16_t iBitStrmTO;   /**< A Wiegand read times out after this time: at most 1020, steps of 4. */
  int16_t iIDHoldTO;    /**< A card ID remains valid for this time: at most 12750, steps of 50. */
  int16_t iIDLockOutTm; /**< Repeated reports are suppressed for this time: at most 12750, steps of 50. */
  int16_t iUSBKeyPrsTm; /**< How long a USB key stays pressed: at most 1020, steps of 4. */
  int16_t iUSBKeyRlsTm; /**< How long a USB key stays released: at most 1020, steps of 4. */
  int16_t ExFeatures01; /**< Features that the reader reports, see above. */
  int16_t iPad6;        /**< Unused. */
  int16_t iTPCfgFlg3;   /**< Read only: tsCfgFlags3 as one byte. The library keeps it. */
} tsTimeParms;

/** More of what the reader does with an ID. Each word is a flag. */
typedef struct tsCfgFlags2 {
  int16_t bUseLeadChrs;   /**< Use the lead characters when keys are sent. */
  int16_t bDspHex;        /**< Show the ID in hexadecimal, not in decimal digits. */
  int16_t bWiegInvData;   /**< The Wiegand data on the pins is inverted. */
  int16_t bUseInvDataF;   /**< Use bWiegInvData in place of the hardware setting. */
  int16_t bRevWiegBits;   /**< Reverse the order of the Wiegand bits that are received. */
  int16_t bBeepID;        /**< Beep when an ID is received. */
  int16_t bRevBytes;      /**< Reverse the byte order (CSN reader). */
  int16_t isASCIIpresent; /**< The reader has the ASCII conversion type. Read only: it is never sent. */
} tsCfgFlags2;

/** Still more of what the reader does with an ID. Each word is a flag. */
typedef struct tsCfgFlags3 {
  int16_t bUseNumKP;     /**< Euro keyboard. */
  int16_t bSndSFON;      /**< 1 = split format, 0 = the old combined scheme. */
  int16_t bSndSFFC;      /**< 0 = FAC in decimal, 1 = FAC in hexadecimal. */
  int16_t bSndSFID;      /**< 0 = ID in decimal, 1 = ID in hexadecimal. */
  int16_t bPrxProEm;     /**< ProxPro emulation. */
  int16_t bUse64Bit;     /**< Arithmetic of the display: 0 = 32 bits, 1 = 64 bits. */
  int16_t bNotBootDev;   /**< How the reader appears on USB: 0 = boot device, 1 = not a boot device. */
  int16_t bLowerCaseHex; /**< Hexadecimal digits: 0 = upper case, 1 = lower case. */
} tsCfgFlags3;

/** Characters sent before an ID, and when it becomes invalid. Lead and trail characters (tsIDDispParms3)
 * share three places; lead characters have priority. The low byte of each character is sent. */
typedef struct tsIDDispParms2 {
  int16_t iLeadChrCnt; /**< With bUseLeadChrs, number of lead characters: at most 3. */
  int16_t iLeadChr0;   /**< First lead character. */
  int16_t iLeadChr1;   /**< Second lead character. */
  int16_t iLeadChr2;   /**< Third lead character. */
  int16_t iCrdGnChr0;  /**< Unless 0, sent when the ID becomes invalid. */
  int16_t iCrdGnChr1;  /**< Unless this or iCrdGnChr0 is 0, sent when the ID becomes invalid. */
  int16_t iPad6;       /**< Unused. */
  int16_t iPad7;       /**< Unused. */
} tsIDDispParms2;

/** Characters sent after an ID. Lead characters (tsIDDispParms2) share the three places and have
 * priority. The low byte of each character is sent. */
typedef struct tsIDDispParms3 {
  int16_t iTrailChrCnt; /**< Number of trail characters: at most 3. */
  int16_t iTrailChr0;   /**< First trail character. */
  int16_t iTrailChr1;   /**< Second trail character. */
  int16_t iTrailChr2;   /**< Third trail character. */
  int16_t iPad4;        /**< Unused. */
  int16_t iPad5;        /**< Unused. */
  int16_t iPad6;        /**< Unused. */
  int16_t iPad7;        /**< Unused. */
} tsIDDispParms3;

/** State of the LEDs. */
typedef struct tsLEDCtrl {
  int16_t bAppCtrlsLED; /**< The LEDs are controlled through this library. */
  int16_t iRedLEDState; /**< 0 = off, 1 = on. */
  int16_t iGrnLEDState; /**< 0 = off, 1 = on. */
  int16_t iPad3;        /**< Unused. */
  int16_t iPad4;        /**< Unused. */
  int16_t iPad5;        /**< Unused. */
  int16_t iPad6;        /**< Unused. */
  int16_t bVolatile;    /**< 0 = stored by the next WriteCfg(), 1 = set now and not stored. */
} tsLEDCtrl;

/** State of beeper and relay. */
typedef struct tsBprRlyCtrl {
  int16_t iPad0;        /**< Unused. */
  int16_t iBeeperState; /**< 0 = off, 1 = on. */
  int16_t iRelayState;  /**< 0 = off, 1 = on. */
  int16_t iPad3;        /**< Unused. */
  int16_t iPad4;        /**< Unused. */
  int16_t iPad5;        /**< Unused. */
  int16_t iPad6;        /**< Unused. */
  int16_t bVolatile;    /**< 0 = stored by the next WriteCfg(), 1 = set now and not stored. */
} tsBprRlyCtrl;

/** @name Error words
 * The words of GetLastLibErr. Some replace what the word held, some add (or) their bits to it, so that
 * it can hold several at once.
 * @{ */
/* clang-format off */
/* table error words */
#define TAVLYN_ERR_SEP_NULL          0x1u         /**< Added: GetSepFldData or SetSepFldData got a null buffer. */
#define TAVLYN_ERR_SEP_UNREAD        0x2u         /**< Added: GetSepFldData found that the configuration was not read. */
#define TAVLYN_ERR_ASCII_LENGTH      0x100u       /**< Replaces the word: an ID read in the ASCII dialect got a buffer of fewer than 8 bytes. */
#define TAVLYN_ERR_ASCII_PORT        0x101u       /**< Replaces the word: an ID read in the ASCII dialect had no open port. */
#define TAVLYN_ERR_ASCII_ANSWER      0x105u       /**< Replaces the word: an ID read in the ASCII dialect got no whole answer. */
#define TAVLYN_ERR_WRITE_REPORT      0x202u       /**< Replaces the word: a feature report could not be written in six attempts. */
#define TAVLYN_ERR_CONNECT           0x10000u     /**< In the trace only: a connect, or a search within one, failed. */
#define TAVLYN_ERR_CONFIG_READ       0x20000u     /**< Added: a configuration could not be read; of a magstripe reader: replaces the word. */
#define TAVLYN_ERR_FIELD_PART        0x20001u     /**< Replaces the word: a user field of a magstripe reader could not be read or written. */
#define TAVLYN_ERR_CONFIG_WRITE      0x40000u     /**< Added: a configuration could not be written. */
#define TAVLYN_ERR_RESET             0x80000u     /**< Added: a reset, or a save of user defaults, could not be sent. */
#define TAVLYN_ERR_GET               0x100000u    /**< Replaces the word: a record get has begun. */
#define TAVLYN_ERR_GET_NULL          0x100001u    /**< Replaces the word: a record get was handed a null pointer. */
#define TAVLYN_ERR_GET_UNREAD        0x100002u    /**< Replaces the word: a record get found that the configuration was not read. */
#define TAVLYN_ERR_SET               0x200000u    /**< Replaces the word: a record set has begun. */
#define TAVLYN_ERR_SET_NULL          0x200001u    /**< Replaces the word: a record set was handed a null pointer. */
#define TAVLYN_ERR_SONAR_PARMS       0x201000u    /**< Replaces the word: SetSonarParms, PingRate out of range; + 1 MinDist, + 2 MaxDist. */
#define TAVLYN_ERR_WALK_AWAY         0x201010u    /**< Replaces the word: SetWalkAwayParms, KeyCount out of range; + 1 InterKeyDelay. */
#define TAVLYN_ERR_WALK_UP           0x201020u    /**< Replaces the word: SetWalkUpParms, KeyCount out of range; + 1 InterKeyDelay. */
#define TAVLYN_ERR_ID_BIT_CNTS       0x201010u    /**< Replaces the word: SetIDBitCnts, word 0 out of range; + 1 to + 3 words 1 to 3. */
#define TAVLYN_ERR_ID_DISP_PARMS     0x201020u    /**< Replaces the word: SetIDDispParms, word 0 out of range; + 1 to + 3 words 1 to 3. */
#define TAVLYN_ERR_TIME_PARMS        0x201030u    /**< Replaces the word: SetTimeParms, word 0 out of range; + 1 to + 4 words 1 to 4. */
#define TAVLYN_ERR_CHR_CNT           0x201050u    /**< Replaces the word: SetIDDispParms2 or SetIDDispParms3, a count above 3. */
#define TAVLYN_ERR_COMMAND           0x1000000u   /**< Added: an exchange of a read or an action failed. */
#define TAVLYN_ERR_HALT_KB_SENDS     0x2000000u   /**< In the trace only: HaltKBSends could not be sent. */
#define TAVLYN_ERR_ANALYZER_CONTROL  0x5000001u   /**< Added: the card analyzer could not be switched. */
#define TAVLYN_ERR_ANALYZER_STATUS   0x5000002u   /**< Added: the status of the card analyzer could not be read. */
#define TAVLYN_ERR_ANALYZER_DATA     0x5000003u   /**< Added: a record of the card analyzer could not be read. */
#define TAVLYN_ERR_SET_BLE           0x20000000u  /**< Added: the BLE configuration could not be set. */
#define TAVLYN_ERR_SET_MODULE        0x20000001u  /**< Added: a module could not be switched. */
#define TAVLYN_ERR_BLE_READ          0x30000000u  /**< Added: a BLE block could not be read or saved as a file. */
#define TAVLYN_ERR_BLE_WRITE         0x30000001u  /**< Added: a BLE block could not be written, or the file is not one that holds it. */
#define TAVLYN_ERR_GET_BLE           0x40000000u  /**< Added: the BLE configuration could not be read. */
#define TAVLYN_ERR_GET_MODULE        0x40000001u  /**< Added: the state of a module could not be read. */
#define TAVLYN_ERR_FW_FILENAME       0x50000000u  /**< Added: the firmware file name could not be read. */
#define TAVLYN_ERR_DEVICE_GONE       0x60000000u  /**< Added, always to the word of entry 0: the device was gone when its port was drained. */
#define TAVLYN_ERR_FULL_FW_VERSION   0x70000000u  /**< Added: the full firmware version could not be read. */
#define TAVLYN_ERR_REFERENCE         0x80000000u  /**< Added: an exchange of WriteEV1FileRefrence or WriteSEKeyRefrence failed. */
#define TAVLYN_ERR_SECURE            0x81000000u  /**< Added: an exchange of secure data or of transparent mode failed. */
#define TAVLYN_ERR_INTEGRITY         0x91000000u  /**< Added: a trailer does not fit its file, or could not be computed. */
/* end */
/* clang-format on */
/** @} */

#endif
