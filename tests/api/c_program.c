/* The public header in a C program: every type is complete and a call links. */
#include "api.h"

#include <stdio.h>

int main(void) {
  tsCfgFlags flags = {0};
  tsTimeParms times = {0};
  uint16_t major = 0;
  uint32_t did = 0;
  if (sizeof flags != 16 || sizeof times != 16 || sizeof(tsIDBitCnts) != 16) return 1;
  if (GetLibVersion(&major, NULL, NULL) != 1 || major != 7) return 2;
  SetDevTypeSrch(0);
  SetConnectProduct(0);
  if (USBConnect(&did) != 0 || GetDevCnt() != 0 || GetFlags(&flags) != 0) return 3;
  USBDisconnect();
  puts("a C program runs");
  return 0;
}
