/* Sonar sensor: range and parameters. */
#ifndef TAVLYN_API_SONAR_H
#define TAVLYN_API_SONAR_H

#include "types.h"

#endif
