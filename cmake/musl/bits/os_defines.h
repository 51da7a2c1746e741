// In place of a header of the C++ runtime's, which asks for glibc's version and counts on names of its
// headers.
#pragma once

#include <features.h>

#define __GLIBC_PREREQ(major, minor) 0
#define __locale_t locale_t

// The bits of the table that __ctype_b_loc returns, in glibc as in musl on a processor that stores the low
// byte first.
enum {
  _ISblank = 1 << 0,
  _IScntrl = 1 << 1,
  _ISpunct = 1 << 2,
  _ISalnum = 1 << 3,
  _ISupper = 1 << 8,
  _ISlower = 1 << 9,
  _ISalpha = 1 << 10,
  _ISdigit = 1 << 11,
  _ISxdigit = 1 << 12,
  _ISspace = 1 << 13,
  _ISprint = 1 << 14,
  _ISgraph = 1 << 15
};
