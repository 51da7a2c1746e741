/* Card analyzer, modules, transparent mode and the BLE radio of a reader. */
#ifndef TAVLYN_API_EXTENSIONS_H
#define TAVLYN_API_EXTENSIONS_H

#include "types.h"

#endif
