/* IDs that a device queued, and raw commands. */
#ifndef TAVLYN_API_RAW_H
#define TAVLYN_API_RAW_H

#include "types.h"

#endif
