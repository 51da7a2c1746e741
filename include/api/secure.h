/* Keys and other items in the protected memory of a reader, and files that hold them. */
#ifndef TAVLYN_API_SECURE_H
#define TAVLYN_API_SECURE_H

#include "types.h"

#endif
