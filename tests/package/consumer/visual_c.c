/* Compiled and linked as Visual C++ does it, without its runtime: begins at Start, which gives the exit
 * status. */
#include <api.h>

int Start(void) {
  uint16_t major = 0;
  return GetLibVersion(&major, 0, 0) == 1 && major == 7 ? 0 : 1;
}
