/* The public header in a C program: every type is complete and a call links. */
#include <stdio.h>
#include <string.h>

#include "api.h"

int main(void) {
  tsCfgFlags flags = {0};
  tsTimeParms times = {0};
  uint16_t major = 0;
  uint32_t did = 0;
  char why[TAVLYN_ERROR_TEXT_SIZE];
  if (sizeof flags != 16 || sizeof times != 16 || sizeof(tsIDBitCnts) != 16) return 1;
  if (GetLibVersion(&major, NULL, NULL) != 1 || major != 7) return 2;
  SetDevTypeSrch(0);
  SetConnectProduct(0);
  if (USBConnect(&did) != 0 || GetDevCnt() != 0 || GetFlags(&flags) != 0) return 3;
  USBDisconnect();
  if (strcmp(tavlyn_error_text(TAVLYN_ERR_GET_UNREAD, why, sizeof why),
             "the configuration has not been read") != 0)
    return 4;
  puts("a C program runs");
  return 0;
}
