/* The fields of the configuration records one by one, for callers that cannot pass records. */
#ifndef TAVLYN_API_ACCESSORS_H
#define TAVLYN_API_ACCESSORS_H

#include "types.h"

#endif
