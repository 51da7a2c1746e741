/* Magnetic-stripe reader: tracks, user fields, counts. */
#ifndef TAVLYN_API_MAGSTRIPE_H
#define TAVLYN_API_MAGSTRIPE_H

#include "types.h"

#endif
