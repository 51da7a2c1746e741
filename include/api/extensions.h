/* Card analyzer, modules, transparent mode and the BLE radio of a reader. */
#ifndef TAVLYN_API_EXTENSIONS_H
#define TAVLYN_API_EXTENSIONS_H

#include "api/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
