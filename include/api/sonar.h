/* Sonar sensor: a desk presence detector that sends keystrokes when somebody walks away, walks up or stays
 * idle. Its four parameter records are mirrored on the host: a get copies a record out of the mirror, a set
 * changes the mirror and marks the record for the next WriteCfg; neither causes traffic. Distances are
 * inches, on the wire units of 1/3.472222 inch, each rounded to the nearest.
 *
 * Every call here, when the active device is no sonar sensor or none is active: unsupported, sign-extended
 * from 16 bits. Of the general calls a sensor serves, beside those of identity.h:
 *
 * - ReadCfg: records and identity. 80, page 1 unasked (it is fetched twice), 82, 83, 84, 85, 8A, each reply
 *   after 250 ms. Values out of range are brought into it. 0: error bit 0x20000; what came is kept.
 * - WriteCfg: the marked records, 80, 81 82, 83 84, 85, each page 250 ms after its command; the commit, 90
 *   mask, in any case; after SetLUID 8A and the identity. 0: error bit 0x40000; what was not committed stays
 *   marked.
 * - ResetFactoryDflts: A0, 2000 ms, then ReadCfg; where the device ID word is 040x, Flags of tsIdleParms is
 *   then cleared, written and read back. 0: error bit 0x80000, or the read or write failed.
 * - ResetUserDflts, SaveUserDflts: D0 or E0, 2000 ms, then ReadCfg. 0 as before.
 * - GetActiveID, GetActiveID32: always 4, and in buffer bit 0 of the status, the distance, LUID low and high
 *   (these two where length is at least 4), then zeros. Traffic: that of GetObjRangeInfo, whose failure shows
 *   as zeros in the first two bytes. getActiveID, getActiveID32: 0.
 * - GetLEDCtrl: LEDFlags as a record. 1; LEDFlags itself, with a cleared record, when it is above 7; null: 0.
 * - SetLEDCtrl: LEDFlags from a record, in the mirror only and unmarked: it goes out with the next write of
 *   tsSonarParms. The result is LEDFlags. Null: 0.
 * - WriteDevCfgToFile: the mirror as it stands, as a text file of "key = value" lines. No traffic.
 * - ReadDevCfgFmFile: such lines into the mirror through the four sets; a record with a value out of range is
 *   left out as a whole. 1 for any file that opens, with error word 0. No traffic.
 * - GetFirmwareVersion: index 0 the device ID word, 1 the second version word, otherwise 0.
 * - GetTimeParms, SetTimeParms, GetQueuedID, GetQueuedID_index, SetRawPayload_index, GetRawPayload_index: do
 *   nothing and return 0.
 */
#ifndef TAVLYN_API_SONAR_H
#define TAVLYN_API_SONAR_H

#include "types.h"

/* Words travel as bytes unless told otherwise: of what does not fit the low 8 bits reach the sensor. */
typedef struct tsSonarParms {
  uint16_t LEDFlags;  /* bit 0 red on, bit 1 the application controls the LED, bit 2 green on; 7 bits */
  uint16_t PingRate;  /* milliseconds between pings: 200 to 1020, steps of 4, rounded down */
  uint16_t Reserved1; /* count of 40 kHz cycles; read only */
  uint16_t MinDist;   /* nearest distance that counts, inches: 1 to 59 */
  uint16_t MaxDist;   /* farthest distance that counts, inches: 15 to 72 */
  uint16_t ORDBTm;    /* debounce time, out of range */
  uint16_t IRDBTm;    /* debounce time, in range */
  uint16_t StartDly;  /* seconds after a cold start before the sensor joins USB */
} tsSonarParms;

/* Keys sent when somebody walks away. */
typedef struct tsWalkAwayParms {
  uint16_t KeyCount;      /* keys that follow: 0 to 6; 4 bits */
  uint16_t InterKeyDelay; /* milliseconds between key presses: 64 to 16320, steps of 64, rounded down */
  uint16_t Key1Mods;      /* key modifiers */
  uint16_t Key2Mods;
  uint16_t Key3Mods;
  uint16_t Key4Mods;
  uint16_t Key5Mods;
  uint16_t Key6Mods;
  uint16_t Flags0; /* 4 bits, the sensor's own */
  uint16_t MinFltRepRate;
  uint16_t Key1Code; /* key codes */
  uint16_t Key2Code;
  uint16_t Key3Code;
  uint16_t Key4Code;
  uint16_t Key5Code;
  uint16_t Key6Code;
} tsWalkAwayParms;

/* Keys sent when somebody walks up. */
typedef struct tsWalkUpParms {
  uint16_t KeyCount;      /* keys that follow: 0 to 6; 4 bits */
  uint16_t InterKeyDelay; /* milliseconds between key presses: 64 to 16320, steps of 64, rounded down */
  uint16_t Key1Mods;      /* key modifiers */
  uint16_t Key2Mods;
  uint16_t Key3Mods;
  uint16_t Key4Mods;
  uint16_t Key5Mods;
  uint16_t Key6Mods;
  uint16_t Flags0;    /* 4 bits, the sensor's own */
  uint16_t Reserved2; /* a write sends what the last read brought, not this word */
  uint16_t Key1Code;  /* key codes */
  uint16_t Key2Code;
  uint16_t Key3Code;
  uint16_t Key4Code;
  uint16_t Key5Code;
  uint16_t Key6Code;
} tsWalkUpParms;

/* A key pressed while somebody stays idle. */
typedef struct tsIdleParms {
  uint16_t Reserved1; /* a write sends 4 bits of what the last read brought, not this word */
  uint16_t PressRate; /* seconds between presses; 0 none */
  uint16_t Key1Mods;  /* key modifiers */
  uint16_t Key1Code;  /* key code */
  uint16_t Flags;     /* the sensor's own */
  uint16_t DMTODelta; /* dead man: a change of distance that counts, sensor units (3.472 to an inch) */
  uint16_t DMTOTm;    /* dead man: seconds without such a change */
  uint16_t SNBlankTm; /* blanking time of the drive, units of 43 microseconds */
} tsIdleParms;

/* 1, or 0 with error word 0x100001 (null pointer) or 0x100002 (the parameters were not read yet). */
TAVLYN_API uint32_t TAVLYN_CALL GetSonarParms(tsSonarParms* record);
TAVLYN_API uint32_t TAVLYN_CALL GetWalkAwayParms(tsWalkAwayParms* record);
TAVLYN_API uint32_t TAVLYN_CALL GetWalkUpParms(tsWalkUpParms* record);
TAVLYN_API uint32_t TAVLYN_CALL GetIdleParms(tsIdleParms* record);

/* 1, or 0 with nothing stored and error word 0x200001 (null pointer) or
 * SetSonarParms: 0x201000 (PingRate), 0x201001 (MinDist), 0x201002 (MaxDist);
 * SetWalkAwayParms: 0x201010 (KeyCount), 0x201011 (InterKeyDelay);
 * SetWalkUpParms: 0x201020 (KeyCount), 0x201021 (InterKeyDelay).
 * KeyCount is compared signed; SetIdleParms takes anything. */
TAVLYN_API uint32_t TAVLYN_CALL SetSonarParms(const tsSonarParms* record);
TAVLYN_API uint32_t TAVLYN_CALL SetWalkAwayParms(const tsWalkAwayParms* record);
TAVLYN_API uint32_t TAVLYN_CALL SetWalkUpParms(const tsWalkUpParms* record);
TAVLYN_API uint32_t TAVLYN_CALL SetIdleParms(const tsIdleParms* record);

/* The range of the nearest object in five words: distance in inches; bits 0, 1 and 2 of the sensor's status,
 * each 0 or 1; the whole status. Takes 250 ms. 0: a failed exchange (0x1000000), words stay as they were; or
 * a null pointer, nothing is sent then. Traffic: 8F. */
TAVLYN_API uint32_t TAVLYN_CALL GetObjRangeInfo(uint16_t* words);

/* Halts the sensor's keystrokes (halt not 0) or lets them go on. 0: the report could not be sent. Traffic: B1
 * or B0. */
TAVLYN_API uint32_t TAVLYN_CALL HaltKBSends(uint32_t halt);

#endif
