/* Loads the packaged library, asks for its version, connects to what there is on USB. */
#include <api.h>
#include <stdio.h>

int main(void) {
  uint16_t major = 0;
  uint16_t minor = 0;
  uint16_t build = 0;
  if (GetLibVersion(&major, &minor, &build) != 1) return 1;
  SetConnectProduct(1);
  SetDevTypeSrch(0);
  printf("tavlynapi %u.%u.%u, connect %u\n", (unsigned)major, (unsigned)minor, (unsigned)build,
         (unsigned)USBConnect(NULL));
  return USBDisconnect() == 1 ? 0 : 2;
}
