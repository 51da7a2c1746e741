/* Beeper and volume. LEDs, relay and the beeper's steady state are records, see records.h. */
#ifndef TAVLYN_API_OUTPUTS_H
#define TAVLYN_API_OUTPUTS_H

#include "types.h"

/* Beeps now: count 1 to 5 (0 counts as 1), or with longBeep not 0 one or two long beeps. 0: no device, or a
 * failed exchange (0x1000000). Unsupported on a sonar sensor. Traffic: 8C 03 code. */
TAVLYN_API uint32_t TAVLYN_CALL BeepNow(uint8_t count, int16_t longBeep);

/* Volume of the beeper; 65535 when the reader does not have the command, a failed exchange (0x1000000) or no
 * device. Any product is asked. Traffic: 8C 06. */
TAVLYN_API uint32_t TAVLYN_CALL GetBeeperVolume(void);

/* Sets it to the low byte of volume. 0: the reader does not have the command, or a failed exchange
 * (0x1000000); unsupported with no device. Traffic: 8C 86 volume. */
TAVLYN_API uint32_t TAVLYN_CALL SetBeeperVolume(uint16_t volume);

#endif
