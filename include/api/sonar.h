/* Sonar sensor: range and parameters. */
#ifndef TAVLYN_API_SONAR_H
#define TAVLYN_API_SONAR_H

#include "api/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
