/* What only some readers have: card analyzer, modules, transparent mode, BLE radio. All of it works over
 * feature reports alone; on a serial link the first report fails. No call takes the library's lock. */
#ifndef TAVLYN_API_EXTENSIONS_H
#define TAVLYN_API_EXTENSIONS_H

#include "types.h"

/* The card analyzer: while it is switched on, the reader keeps a list of the cards that it sees, with the raw
 * bits of each. Its calls are for a card reader on feature reports and clear the error word of any active
 * device first. */

/* A card that it has seen; 40 bytes. */
typedef struct CardAnalyzerRecord {
  uint32_t RecType;     /* as the reader tells it, 16 bits */
  uint32_t BitCount;    /* bits of the card */
  uint8_t CardBits[32]; /* in reverse: the reader's first byte stands last, zeros stand in front */
} CardAnalyzerRecord;

/* The reader's status, 0 to 255, and the count of its records for GetCardCount and GetCardAnalyzerData.
 * 0xFFFFFFFF: a failed exchange (0x5000002, traced) or an answer to something else (error word 0); the count
 * then stays. 5: no device, or one that is no card reader on feature reports; a reader's own status may be 5
 * too. Traffic: 8C 08. */
TAVLYN_API uint32_t TAVLYN_CALL GetCardAnalyzerStatus(void);

/* Number of records that the last good status query reported, whichever device is active now; 0 before. No
 * traffic. */
TAVLYN_API uint32_t TAVLYN_CALL GetCardCount(void);

/* Passes the low 8 bits of state on to the reader. 1 when the reader confirms; 0 otherwise (0x5000001,
 * traced), or without a card reader on feature reports. Traffic: 8C 88 state. */
TAVLYN_API uint32_t TAVLYN_CALL SetCardAnalyzerControlState(uint32_t state);

/* The records, GetCardCount() of them: the count is not asked for again. The array was allocated with malloc
 * and belongs to the caller, who ends it with free; with no records it is empty and not null. Null: no
 * memory, or no card reader on feature reports. A record that could not be read as a whole is there with what
 * came of it (0x5000003, traced). Each record clears the error word, which in the end tells of the last one
 * alone. Traffic for each record r, from 0: 8C 09 r, and 8C 09 r k for each eight bytes of its data, k from
 * 1; also for those beyond the 32 that are kept. */
TAVLYN_API CardAnalyzerRecord* TAVLYN_CALL GetCardAnalyzerData(void);

/* Modules of the reader that are switched one by one; the low 8 bits of module are its number. 1 when the
 * reader confirms; 0 when it does not (no error word), after a failed exchange (traced), with no device or
 * one that is no card reader. Only a card reader's error word is cleared first. */

/* Stores in state 1 for on and 0 for anything else, also when the reader does not confirm; a failed exchange
 * (0x40000001) leaves it alone. state may be null. Traffic: 8C 0B 01 module. */
TAVLYN_API uint8_t TAVLYN_CALL GetModuleState(uint16_t module, uint16_t* state);

/* Switches it on (state not 0) or off. Error bit 0x20000001. Traffic: 8C 0B 02 module 81 (on) or 80. */
TAVLYN_API uint8_t TAVLYN_CALL SetModuleState(uint16_t module, uint16_t state);

/* Transparent mode. All three: 2 when the reader does not know it; 0 also after a failed exchange
 * (0x81000000, traced), with no device or one that is no card reader. Only a card reader's error word is
 * cleared first. */

/* 1 on, 0 off. Traffic: 8C 00. */
TAVLYN_API uint16_t TAVLYN_CALL CheckTransparentMode(void);

/* 1 when the reader has switched, 0 when it has not. With commit exactly 1 the change outlasts a power cycle:
 * a commit goes out whether the reader has switched or not, and 0 is also returned when that could not be
 * sent (error word 0x202 alone). Traffic: 8C 80 01 (enable) or 8C 80 00, then 90. */
TAVLYN_API uint16_t TAVLYN_CALL EnableTransparentMode(uint32_t commit);
TAVLYN_API uint16_t TAVLYN_CALL DisableTransparentMode(uint32_t commit);

/* The BLE radio beside the reader's card radio. Any product is asked and has its error word cleared first;
 * nothing is traced. */

/* 1 when the radio is there; 0 when it is not, or after a failed exchange (0x40000000); 65535 with no device.
 * Traffic: 8C 07. */
TAVLYN_API uint16_t TAVLYN_CALL IsBTLEPresent(void);

/* In which way it works with the card radio, 0 to 3; 65535 when there is none, after a failed exchange
 * (0x40000000) and with no device. Traffic: 8C 07. */
TAVLYN_API uint16_t TAVLYN_CALL GetBTLEConfiguration(void);

/* Hands configuration to the reader as it is, 0 to 255; those that GetBTLEConfiguration can tell are 0 to 3.
 * 1 when the reader answered, whatever it answered, so that a refusal does not show; 0 after a failed
 * exchange (0x20000000); unsupported with no device. Traffic: 8C 87 configuration. */
TAVLYN_API uint16_t TAVLYN_CALL SetBTLEConfiguration(uint8_t configuration);

#endif
