/** @file
 * Beeper and volume. LEDs, relay and the steady state of the beeper are records, see records.h. */
#ifndef TAVLYN_API_OUTPUTS_H
#define TAVLYN_API_OUTPUTS_H

#include "types.h"

/** Beeps now. Traffic: 8C 03 code.
 * @param count 1 to 5; 0 counts as 1 and more than 5 as 5. There are at most two long beeps.
 * @param longBeep not 0 for long beeps.
 * @return 1, or 0 with no device or after a failed exchange, which adds TAVLYN_ERR_COMMAND. */
TAVLYN_API uint32_t TAVLYN_CALL BeepNow(uint8_t count, int16_t longBeep);

/** Asks for the volume of the beeper. Any product is asked. Traffic: 8C 06.
 * @return 0 to 255; 65535 when the reader does not have the command, after a failed exchange, which adds
 *   TAVLYN_ERR_COMMAND, and with no device. */
TAVLYN_API uint32_t TAVLYN_CALL GetBeeperVolume(void);

/** Sets the volume of the beeper. Any product is asked. Traffic: 8C 86 volume.
 * @param volume 0 to 255; the low byte is sent.
 * @return 1; 0 when the reader does not have the command, or after a failed exchange, which adds
 *   TAVLYN_ERR_COMMAND; unsupported with no device. */
TAVLYN_API uint32_t TAVLYN_CALL SetBeeperVolume(uint16_t volume);

#endif
