/** @file
 * What only some readers have: card analyzer, modules, transparent mode, BLE radio. All of it works over
 * feature reports alone; on a serial link the first report fails. No call takes the library's lock. */
#ifndef TAVLYN_API_EXTENSIONS_H
#define TAVLYN_API_EXTENSIONS_H

#include "types.h"

/** @name Card analyzer
 * While it is switched on, the reader keeps a list of the cards that it sees, with the raw bits of each.
 * These calls are for a card reader on feature reports; except for GetCardCount() they clear the error word
 * of any active device first.
 * @{ */

/** A card that the reader has seen; 40 bytes. */
typedef struct CardAnalyzerRecord {
  uint32_t RecType;     /**< Type of the record as the reader reports it, 16 bits. */
  uint32_t BitCount;    /**< Number of bits of the card. */
  uint8_t CardBits[32]; /**< The bits in reverse: the reader's first byte is the last one here, zeros come
                           first. */
} CardAnalyzerRecord;

/** Asks for the status of the analyzer, and for the count of its records, which GetCardCount() and
 * GetCardAnalyzerData() use. Traffic: 8C 08.
 * @return The reader's status, 0 to 255. 0xFFFFFFFF after a failed exchange, which adds
 *   TAVLYN_ERR_ANALYZER_STATUS and is traced, or an answer to something else, with error word 0; the count
 *   then stays. 5 when the active device is not a card reader on feature reports; a reader's own status may
 *   be 5 too. */
TAVLYN_API uint32_t TAVLYN_CALL GetCardAnalyzerStatus(void);

/** Returns the number of records that the last good GetCardAnalyzerStatus() reported, whichever device is
 * active now. There is no traffic, and the error word is left alone.
 * @return Number of records; 0 before the first status. */
TAVLYN_API uint32_t TAVLYN_CALL GetCardCount(void);

/** Switches the analyzer. Traffic: 8C 88 state.
 * @param state passed on to the reader unchanged, 0 to 255; the low 8 bits count.
 * @return 1 when the reader confirms; 0 when it does not, which adds TAVLYN_ERR_ANALYZER_CONTROL and is
 *   traced, and when the active device is not a card reader on feature reports. */
TAVLYN_API uint32_t TAVLYN_CALL SetCardAnalyzerControlState(uint32_t state);

/** Reads the records, GetCardCount() of them: the count is not asked for again. A record that could not be
 * read completely is returned with what arrived of it, adds TAVLYN_ERR_ANALYZER_DATA and is traced. Each
 * record clears the error word first, so that in the end it covers only the last one.
 *
 * Traffic for each record r, from 0: 8C 09 r, and 8C 09 r k for each eight bytes of its data, k from 1; also
 * for those beyond the 32 that are kept.
 * @return An array from malloc that belongs to the caller, who releases it with free; with no records it is
 *   empty and not null. Null without memory, and when the active device is not a card reader on feature
 *   reports. */
TAVLYN_API CardAnalyzerRecord* TAVLYN_CALL GetCardAnalyzerData(void);

/** @} */

/** @name Modules
 * They are switched one by one. Only a card reader's error word is cleared first.
 * @{ */

/** Asks whether a module is on. Traffic: 8C 0B 01 module.
 * @param module number of the module, 0 to 255; the low 8 bits count.
 * @param state receives 1 for on and 0 for anything else, also when the reader does not confirm; a failed
 *   exchange leaves it alone. It may be null.
 * @return 1 when the reader confirms. 0 when it does not; after a failed exchange, which adds
 *   TAVLYN_ERR_GET_MODULE and is traced; and when the active device is not a card reader. */
TAVLYN_API uint8_t TAVLYN_CALL GetModuleState(uint16_t module, uint16_t* state);

/** Switches a module. Traffic: 8C 0B 02 module 81 (on) or 80 (off).
 * @param module number of the module, 0 to 255; the low 8 bits count.
 * @param state 0 for off, any other value for on.
 * @return 1 when the reader confirms. 0 when it does not; after a failed exchange, which adds
 *   TAVLYN_ERR_SET_MODULE and is traced; and when the active device is not a card reader. */
TAVLYN_API uint8_t TAVLYN_CALL SetModuleState(uint16_t module, uint16_t state);

/** @} */

/** @name Transparent mode
 * Only a card reader's error word is cleared first.
 * @{ */

/** Asks whether transparent mode is on. Traffic: 8C 00.
 * @return 1 for on, 0 for off, 2 when the reader does not know the mode. 0 also after a failed exchange,
 *   which adds TAVLYN_ERR_SECURE and is traced, and when the active device is not a card reader. */
TAVLYN_API uint16_t TAVLYN_CALL CheckTransparentMode(void);

/** Switches transparent mode on. Traffic: 8C 80 01, then 90 for a commit.
 * @param commit exactly 1 for a change that outlasts a power cycle. The commit is sent whether the reader
 *   has switched or not.
 * @return 1 when the reader has switched, 0 when it has not, 2 when it does not know the mode. 0 also after
 *   a failed exchange, which adds TAVLYN_ERR_SECURE and is traced; when the commit could not be sent, with
 *   TAVLYN_ERR_WRITE_REPORT alone; and when the active device is not a card reader. */
TAVLYN_API uint16_t TAVLYN_CALL EnableTransparentMode(uint32_t commit);

/** Switches transparent mode off. Traffic: 8C 80 00, then 90 for a commit.
 * @param commit exactly 1 for a change that outlasts a power cycle. The commit is sent whether the reader
 *   has switched or not.
 * @return As for EnableTransparentMode(). */
TAVLYN_API uint16_t TAVLYN_CALL DisableTransparentMode(uint32_t commit);

/** @} */

/** @name BLE radio
 * It comes in addition to the card radio. Any product is asked and has its error word cleared first;
 * nothing is traced.
 * @{ */

/** Asks whether the radio is there. Traffic: 8C 07.
 * @return 1 when it is; 0 when it is not, or after a failed exchange, which adds TAVLYN_ERR_GET_BLE; 65535
 *   with no device. */
TAVLYN_API uint16_t TAVLYN_CALL IsBTLEPresent(void);

/** Asks in which way the radio works with the card radio. Traffic: 8C 07.
 * @return 0 to 3; 65535 when there is no radio, after a failed exchange, which adds TAVLYN_ERR_GET_BLE, and
 *   with no device. */
TAVLYN_API uint16_t TAVLYN_CALL GetBTLEConfiguration(void);

/** Chooses in which way the radio works with the card radio. Traffic: 8C 87 configuration.
 * @param configuration passed on to the reader unchanged, 0 to 255; GetBTLEConfiguration() can return 0 to 3.
 * @return 1 when the reader answered, whatever it answered, so that a refusal does not show; 0 after a failed
 *   exchange, which adds TAVLYN_ERR_SET_BLE; unsupported with no device. */
TAVLYN_API uint16_t TAVLYN_CALL SetBTLEConfiguration(uint8_t configuration);

/** @} */

#endif
