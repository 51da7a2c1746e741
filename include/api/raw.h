/* IDs that a device queued, and raw commands. */
#ifndef TAVLYN_API_RAW_H
#define TAVLYN_API_RAW_H

#include "api/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
