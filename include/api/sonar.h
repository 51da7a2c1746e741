/** @file
 * Sonar sensor: a desk presence detector that sends keystrokes when somebody walks away, walks up or stays
 * idle.
 *
 * Its four parameter records are mirrored on the host: a get copies a record out of the mirror, a set changes
 * the mirror and marks the record for the next WriteCfg(). Distances are inches, on the wire units of
 * 1/3.472222 inch, each rounded to the nearest. Words are sent as bytes unless noted otherwise: only the low
 * 8 bits of a larger value reach the sensor.
 *
 * Every call here returns unsupported, sign-extended from 16 bits, when the active device is not a sonar
 * sensor. docs/products.md says what the general calls do with a sensor. */
#ifndef TAVLYN_API_SONAR_H
#define TAVLYN_API_SONAR_H

#include "types.h"

/** How the sensor measures. */
typedef struct tsSonarParms {
  uint16_t LEDFlags;  /**< Bits: 0 red on, 1 LED for the application, 2 green on; 7 bits are sent. */
  uint16_t PingRate;  /**< Milliseconds between pings: 200 to 1020, steps of 4, rounded down. */
  uint16_t Reserved1; /**< Count of 40 kHz cycles; read only. */
  uint16_t MinDist;   /**< Nearest distance that counts, in inches: 1 to 59. */
  uint16_t MaxDist;   /**< Farthest distance that counts, in inches: 15 to 72. */
  uint16_t ORDBTm;    /**< Debounce time when out of range. */
  uint16_t IRDBTm;    /**< Debounce time when in range. */
  uint16_t StartDly;  /**< Seconds after a cold start before the sensor joins USB. */
} tsSonarParms;

/** Keys sent when somebody walks away. */
typedef struct tsWalkAwayParms {
  uint16_t KeyCount;      /**< Number of keys: at most 6, compared signed; 4 bits are sent. */
  uint16_t InterKeyDelay; /**< Milliseconds between keys: 64 to 16320, steps of 64, rounded down. */
  uint16_t Key1Mods;      /**< Modifiers of key 1. */
  uint16_t Key2Mods;      /**< Modifiers of key 2. */
  uint16_t Key3Mods;      /**< Modifiers of key 3. */
  uint16_t Key4Mods;      /**< Modifiers of key 4. */
  uint16_t Key5Mods;      /**< Modifiers of key 5. */
  uint16_t Key6Mods;      /**< Modifiers of key 6. */
  uint16_t Flags0;        /**< For the sensor alone; 4 bits are sent. */
  uint16_t MinFltRepRate; /**< For the sensor alone. */
  uint16_t Key1Code;      /**< Code of key 1. */
  uint16_t Key2Code;      /**< Code of key 2. */
  uint16_t Key3Code;      /**< Code of key 3. */
  uint16_t Key4Code;      /**< Code of key 4. */
  uint16_t Key5Code;      /**< Code of key 5. */
  uint16_t Key6Code;      /**< Code of key 6. */
} tsWalkAwayParms;

/** Keys sent when somebody walks up. */
typedef struct tsWalkUpParms {
  uint16_t KeyCount;      /**< Number of keys: at most 6, compared signed; 4 bits are sent. */
  uint16_t InterKeyDelay; /**< Milliseconds between keys: 64 to 16320, steps of 64, rounded down. */
  uint16_t Key1Mods;      /**< Modifiers of key 1. */
  uint16_t Key2Mods;      /**< Modifiers of key 2. */
  uint16_t Key3Mods;      /**< Modifiers of key 3. */
  uint16_t Key4Mods;      /**< Modifiers of key 4. */
  uint16_t Key5Mods;      /**< Modifiers of key 5. */
  uint16_t Key6Mods;      /**< Modifiers of key 6. */
  uint16_t Flags0;        /**< For the sensor alone; 4 bits are sent. */
  uint16_t Reserved2;     /**< A write sends what the last read returned, not this word. */
  uint16_t Key1Code;      /**< Code of key 1. */
  uint16_t Key2Code;      /**< Code of key 2. */
  uint16_t Key3Code;      /**< Code of key 3. */
  uint16_t Key4Code;      /**< Code of key 4. */
  uint16_t Key5Code;      /**< Code of key 5. */
  uint16_t Key6Code;      /**< Code of key 6. */
} tsWalkUpParms;

/** A key pressed while somebody stays idle. */
typedef struct tsIdleParms {
  uint16_t Reserved1; /**< A write sends 4 bits of what the last read returned, not this word. */
  uint16_t PressRate; /**< Seconds between presses; 0 for none. */
  uint16_t Key1Mods;  /**< Modifiers of the key. */
  uint16_t Key1Code;  /**< Code of the key. */
  uint16_t Flags;     /**< For the sensor alone. */
  uint16_t DMTODelta; /**< Dead man: a change of distance that counts, in units of 1/3.472 inch. */
  uint16_t DMTOTm;    /**< Dead man: seconds without such a change. */
  uint16_t SNBlankTm; /**< Blanking time of the drive, in units of 43 microseconds. */
} tsIdleParms;

/** Copies tsSonarParms out of the mirror: how the sensor measures. There is no traffic.
 * @param record receives the words.
 * @return 1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
 *   parameters were not read yet); unsupported without a sonar sensor. */
TAVLYN_API uint32_t TAVLYN_CALL GetSonarParms(tsSonarParms* record);

/** Changes tsSonarParms in the mirror, for the next WriteCfg(): how the sensor measures. There is no traffic.
 * @param record the words, in the ranges of tsSonarParms.
 * @return 1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
 *   TAVLYN_ERR_SONAR_PARMS (PingRate not 200 to 1020), + 1 (MinDist not 1 to 59) or + 2 (MaxDist not 15 to
 *   72); unsupported without a sonar sensor. */
TAVLYN_API uint32_t TAVLYN_CALL SetSonarParms(const tsSonarParms* record);

/** Copies tsWalkAwayParms out of the mirror: the keys sent when somebody walks away. There is no traffic.
 * @param record receives the words.
 * @return 1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
 *   parameters were not read yet); unsupported without a sonar sensor. */
TAVLYN_API uint32_t TAVLYN_CALL GetWalkAwayParms(tsWalkAwayParms* record);

/** Changes tsWalkAwayParms in the mirror, for the next WriteCfg(): the keys sent when somebody walks away.
 * There is no traffic.
 * @param record the words, in the ranges of tsWalkAwayParms.
 * @return 1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
 *   TAVLYN_ERR_WALK_AWAY (KeyCount above 6, compared signed) or + 1 (InterKeyDelay not 64 to 16320);
 *   unsupported without a sonar sensor. */
TAVLYN_API uint32_t TAVLYN_CALL SetWalkAwayParms(const tsWalkAwayParms* record);

/** Copies tsWalkUpParms out of the mirror: the keys sent when somebody walks up. There is no traffic.
 * @param record receives the words.
 * @return 1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
 *   parameters were not read yet); unsupported without a sonar sensor. */
TAVLYN_API uint32_t TAVLYN_CALL GetWalkUpParms(tsWalkUpParms* record);

/** Changes tsWalkUpParms in the mirror, for the next WriteCfg(): the keys sent when somebody walks up. There
 * is no traffic.
 * @param record the words, in the ranges of tsWalkUpParms.
 * @return 1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
 *   TAVLYN_ERR_WALK_UP (KeyCount above 6, compared signed) or + 1 (InterKeyDelay not 64 to 16320);
 *   unsupported without a sonar sensor. */
TAVLYN_API uint32_t TAVLYN_CALL SetWalkUpParms(const tsWalkUpParms* record);

/** Copies tsIdleParms out of the mirror: the key pressed while somebody stays idle. There is no traffic.
 * @param record receives the words.
 * @return 1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
 *   parameters were not read yet); unsupported without a sonar sensor. */
TAVLYN_API uint32_t TAVLYN_CALL GetIdleParms(tsIdleParms* record);

/** Changes tsIdleParms in the mirror, for the next WriteCfg(): the key pressed while somebody stays idle.
 * There is no traffic.
 * @param record the words, in the ranges of tsIdleParms.
 * @return 1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer); it has no
 *   ranges; unsupported without a sonar sensor. */
TAVLYN_API uint32_t TAVLYN_CALL SetIdleParms(const tsIdleParms* record);

/** Asks for the range of the nearest object. It takes 250 ms. Traffic: 8F.
 * @param words receives five words: distance in inches; bits 0, 1 and 2 of the sensor's status, each 0 or 1;
 *   the whole status.
 * @return 1. 0 after a failed exchange, which adds TAVLYN_ERR_COMMAND and leaves the words as they were, and
 *   for a null pointer, for which nothing is sent. Unsupported without a sonar sensor. */
TAVLYN_API uint32_t TAVLYN_CALL GetObjRangeInfo(uint16_t* words);

/** Halts the sensor's keystrokes or lets them go on. The error word is left alone, except for
 * TAVLYN_ERR_WRITE_REPORT. Traffic: B1 (halt) or B0.
 * @param halt 0 to let them go on, any other value to halt them.
 * @return 1, or 0 when the report could not be sent; unsupported without a sonar sensor. */
TAVLYN_API uint32_t TAVLYN_CALL HaltKBSends(uint32_t halt);

#endif
