/* Magnetic-stripe reader: tracks, user fields, counts. */
#ifndef TAVLYN_API_MAGSTRIPE_H
#define TAVLYN_API_MAGSTRIPE_H

#include "api/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
