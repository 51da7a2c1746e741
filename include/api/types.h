/* Record types, error words and the marks every export carries. */
#ifndef TAVLYN_API_TYPES_H
#define TAVLYN_API_TYPES_H

#include <stdint.h>

#if defined(__cplusplus)
#define TAVLYN_EXTERN extern "C"
#else
#define TAVLYN_EXTERN extern
#endif

#if defined(_WIN32) && defined(TAVLYN_BUILDING)
#define TAVLYN_API TAVLYN_EXTERN __declspec(dllexport)
#elif defined(_WIN32)
#define TAVLYN_API TAVLYN_EXTERN __declspec(dllimport)
#else
#define TAVLYN_API TAVLYN_EXTERN __attribute__((visibility("default")))
#endif

/* How every export, and a function handed to one, is called. On x64 there is one way; on x86 programs that
 * are compiled for another one, and languages that assume another one, have to be told. */
#if defined(_WIN32)
#define TAVLYN_CALL __cdecl
#else
#define TAVLYN_CALL
#endif

/* Every configuration record is eight 16-bit words. Flags are 0 or non-zero; words named iPad are kept and
 * handed back but mean nothing. Where only a greatest value is told a negative word is not refused: low
 * bits of it, or of the number of its steps, reach the reader. */

/* What the reader does with an ID. */
typedef struct tsCfgFlags {
  int16_t bFixLenDsp;    /* send as fixed length with leading zeros as needed */
  int16_t bFrcBitCntEx;  /* the received bit count must be exact to be valid */
  int16_t bStripFac;     /* strip the FAC from the ID (not discarded) */
  int16_t bSndFac;       /* send the FAC if stripped */
  int16_t bUseDelFac2Id; /* put a delimiter between FAC and ID on send */
  int16_t bNoUseELChar;  /* no end-of-line character on send (the default is ENTER) */
  int16_t bSndOnRx;      /* send a valid ID as soon as received; iIDLockOutTm is not used */
  int16_t bHaltKBSnd;    /* send no keys to USB: the mode for reading IDs through this library */
} tsCfgFlags;

typedef struct tsIDBitCnts {
  int16_t iLeadParityBitCnt;  /* Wiegand leading parity bits to strip: at most 15, or 142 where ExFeatures01
                                 bit 7 is set */
  int16_t iTrailParityBitCnt; /* trailing parity bits to strip, the same range */
  int16_t iIDBitCnt;          /* with bStripFac, the bits of the ID that set ID and FAC apart: 1 to 255 */
  int16_t iTotalBitCnt;       /* with bFrcBitCntEx, the bits of a valid read including parity: 26 to 255 */
  int16_t iPad4;
  int16_t iPad5;
  int16_t iPad6;
  int16_t iPad7;
} tsIDBitCnts;

typedef struct tsIDDispParms {
  int16_t iFACIDDelim;     /* character between FAC and ID: at most 255 */
  int16_t iELDelim;        /* character at the end of the ID, unless bNoUseELChar: at most 255 */
  int16_t iIDDispLen;      /* with bFixLenDsp, the ID is padded with zeros to this length: at most 25 */
  int16_t iFACDispLen;     /* with bFixLenDsp, the FAC is padded with zeros to this length: at most 25 */
  int16_t iExOutputFormat; /* 0 = data format mode, 1 = extended mode */
  int16_t iPad5;
  int16_t iPad6;
  int16_t iPad7;
} tsIDDispParms;

/* Milliseconds. A value between two steps reaches the reader rounded down. */
typedef struct tsTimeParms {
  int16_t iBitStrmTO;   /* a Wiegand read times out after this time: at most 1020, steps of 4 */
  int16_t iIDHoldTO;    /* a card ID remains valid for this time: at most 12750, steps of 50 */
  int16_t iIDLockOutTm; /* repeated reports are squelched for this time: at most 12750, steps of 50 */
  int16_t iUSBKeyPrsTm; /* USB inter-key press time: at most 1020, steps of 4 */
  int16_t iUSBKeyRlsTm; /* USB inter-key release time: at most 1020, steps of 4 */
  int16_t ExFeatures01; /* feature bits reported by the reader: 5 ASCII conversion, 6 extended separated
                           fields and iExOutputFormat, 7 parity counts above 15 */
  int16_t iPad6;
  int16_t iTPCfgFlg3; /* tsCfgFlags3 as one byte; kept by the library, a set leaves it alone */
} tsTimeParms;

typedef struct tsCfgFlags2 {
  int16_t bUseLeadChrs;   /* use the lead characters when keys are sent */
  int16_t bDspHex;        /* show the ID as ASCII hexadecimal, not ASCII decimal */
  int16_t bWiegInvData;   /* Wiegand data on the pins is inverted */
  int16_t bUseInvDataF;   /* use bWiegInvData over the hardware setting */
  int16_t bRevWiegBits;   /* reverse the received Wiegand bits */
  int16_t bBeepID;        /* beep when an ID is received */
  int16_t bRevBytes;      /* reverse the byte order (CSN reader) */
  int16_t isASCIIpresent; /* the reader has the ASCII conversion type; read only */
} tsCfgFlags2;

typedef struct tsCfgFlags3 {
  int16_t bUseNumKP;     /* Euro keyboard */
  int16_t bSndSFON;      /* 1 = split format, 0 = the old combined scheme */
  int16_t bSndSFFC;      /* 0 = FAC decimal, 1 = FAC hexadecimal */
  int16_t bSndSFID;      /* 0 = ID decimal, 1 = ID hexadecimal */
  int16_t bPrxProEm;     /* ProxPro emulation */
  int16_t bUse64Bit;     /* 0 = 32-bit, 1 = 64-bit display math */
  int16_t bNotBootDev;   /* USB enumeration: 0 = boot device, 1 = not a boot device */
  int16_t bLowerCaseHex; /* 0 = upper case, 1 = lower case */
} tsCfgFlags3;

typedef struct tsIDDispParms2 {
  int16_t iLeadChrCnt; /* with bUseLeadChrs, the number of lead characters: at most 3 */
  int16_t iLeadChr0;
  int16_t iLeadChr1;
  int16_t iLeadChr2;
  int16_t iCrdGnChr0; /* if not 0, sent when the ID goes invalid */
  int16_t iCrdGnChr1; /* if this and iCrdGnChr0 are not 0, sent when the ID goes invalid */
  int16_t iPad6;
  int16_t iPad7;
} tsIDDispParms2;

/* Lead and trail characters share three places; lead characters have priority. */
typedef struct tsIDDispParms3 {
  int16_t iTrailChrCnt; /* number of trail characters: at most 3 */
  int16_t iTrailChr0;
  int16_t iTrailChr1;
  int16_t iTrailChr2;
  int16_t iPad4;
  int16_t iPad5;
  int16_t iPad6;
  int16_t iPad7;
} tsIDDispParms3;

typedef struct tsLEDCtrl {
  int16_t bAppCtrlsLED; /* the LEDs are controlled through this library */
  int16_t iRedLEDState; /* 0 off, 1 on */
  int16_t iGrnLEDState; /* 0 off, 1 on */
  int16_t iPad3;
  int16_t iPad4;
  int16_t iPad5;
  int16_t iPad6;
  int16_t bVolatile; /* 0 = for the reader's storage, 1 = now and not stored */
} tsLEDCtrl;

typedef struct tsBprRlyCtrl {
  int16_t iPad0;
  int16_t iBeeperState; /* 0 off, 1 on */
  int16_t iRelayState;  /* 0 off, 1 on */
  int16_t iPad3;
  int16_t iPad4;
  int16_t iPad5;
  int16_t iPad6;
  int16_t bVolatile; /* 0 = for the reader's storage, 1 = now and not stored */
} tsBprRlyCtrl;

/* The words of GetLastLibErr. "Set" replaces the word, "or" adds the bits to what it holds. */
/* clang-format off */
#define TAVLYN_ERR_SEP_NULL          0x1u         /* or: GetSepFldData, SetSepFldData: null buffer */
#define TAVLYN_ERR_SEP_UNREAD        0x2u         /* or: GetSepFldData: the configuration was not read */
#define TAVLYN_ERR_ASCII_LENGTH      0x100u       /* set: ID read in the ASCII dialect: buffer shorter than 8 bytes */
#define TAVLYN_ERR_ASCII_PORT        0x101u       /* set: the same: no open port */
#define TAVLYN_ERR_ASCII_ANSWER      0x105u       /* set: the same: no whole answer came */
#define TAVLYN_ERR_WRITE_REPORT      0x202u       /* set: a feature report could not be written in six attempts */
#define TAVLYN_ERR_CONNECT           0x10000u     /* a connect, or a search within one, failed (trace only) */
#define TAVLYN_ERR_CONFIG_READ       0x20000u     /* or: a read of the configuration failed; magstripe: set */
#define TAVLYN_ERR_FIELD_PART        0x20001u     /* set: a user field of a magstripe reader could not be read or written */
#define TAVLYN_ERR_CONFIG_WRITE      0x40000u     /* or: a write of the configuration failed */
#define TAVLYN_ERR_RESET             0x80000u     /* or: a reset, or a save of user defaults, could not be sent */
#define TAVLYN_ERR_GET               0x100000u    /* set: a parameter getter has begun */
#define TAVLYN_ERR_GET_NULL          0x100001u    /* set: getter: null pointer */
#define TAVLYN_ERR_GET_UNREAD        0x100002u    /* set: getter: the configuration was not read */
#define TAVLYN_ERR_SET               0x200000u    /* set: a parameter setter has begun */
#define TAVLYN_ERR_SET_NULL          0x200001u    /* set: setter: null pointer */
#define TAVLYN_ERR_SONAR_PARMS       0x201000u    /* set: SetSonarParms: PingRate out of range; +1 MinDist, +2 MaxDist */
#define TAVLYN_ERR_WALK_AWAY         0x201010u    /* set: SetWalkAwayParms: KeyCount out of range; +1 InterKeyDelay */
#define TAVLYN_ERR_WALK_UP           0x201020u    /* set: SetWalkUpParms: KeyCount out of range; +1 InterKeyDelay */
#define TAVLYN_ERR_ID_BIT_CNTS       0x201010u    /* set: SetIDBitCnts: word 0 out of range; +1 to +3: words 1 to 3 */
#define TAVLYN_ERR_ID_DISP_PARMS     0x201020u    /* set: SetIDDispParms: word 0 out of range; +1 to +3: words 1 to 3 */
#define TAVLYN_ERR_TIME_PARMS        0x201030u    /* set: SetTimeParms: word 0 out of range; +1 to +4: words 1 to 4 */
#define TAVLYN_ERR_CHR_CNT           0x201050u    /* set: SetIDDispParms2, SetIDDispParms3: first word above 3 */
#define TAVLYN_ERR_COMMAND           0x1000000u   /* or: an exchange failed in a read or an action */
#define TAVLYN_ERR_HALT_KB_SENDS     0x2000000u   /* or: HaltKBSends could not be sent (trace only) */
#define TAVLYN_ERR_ANALYZER_CONTROL  0x5000001u   /* or: the card analyzer could not be switched */
#define TAVLYN_ERR_ANALYZER_STATUS   0x5000002u   /* or: the status of the card analyzer could not be read */
#define TAVLYN_ERR_ANALYZER_DATA     0x5000003u   /* or: a record of the card analyzer could not be read */
#define TAVLYN_ERR_SET_BLE           0x20000000u  /* or: the BLE configuration could not be set */
#define TAVLYN_ERR_SET_MODULE        0x20000001u  /* or: a module could not be switched */
#define TAVLYN_ERR_BLE_READ          0x30000000u  /* or: a BLE block could not be read or saved as a file */
#define TAVLYN_ERR_BLE_WRITE         0x30000001u  /* or: a BLE block could not be written, or its file is none */
#define TAVLYN_ERR_GET_BLE           0x40000000u  /* or: the BLE configuration could not be read */
#define TAVLYN_ERR_GET_MODULE        0x40000001u  /* or: the state of a module could not be read */
#define TAVLYN_ERR_FW_FILENAME       0x50000000u  /* or: the firmware file name could not be read */
#define TAVLYN_ERR_DEVICE_GONE       0x60000000u  /* or, always on entry 0: a drain found the device gone */
#define TAVLYN_ERR_FULL_FW_VERSION   0x70000000u  /* or: the full firmware version could not be read */
#define TAVLYN_ERR_REFERENCE         0x80000000u  /* or: WriteEV1FileRefrence, WriteSEKeyRefrence: a failed exchange */
#define TAVLYN_ERR_SECURE            0x81000000u  /* or: an exchange of secure data or of transparent mode failed */
#define TAVLYN_ERR_INTEGRITY         0x91000000u  /* or: a trailer does not fit its file, or could not be computed */
/* clang-format on */

#endif
