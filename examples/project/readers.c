/* Lists what is plugged in. */
#include <api.h>
#include <stdio.h>

int main(void) {
  SetConnectProduct(7); /* all products */
  SetDevTypeSrch(0);    /* on USB */
  USBConnect(NULL);     /* ends at the first device that fails; the table has all */
  for (int16_t i = 0; i < GetDevCnt(); ++i) {
    char name[512] = "";
    SetActDev(i);
    GetDevName(name);
    printf("product %u, LUID %u, %s\n", (unsigned)GetProduct(), (unsigned)GetLUID(), name);
  }
  USBDisconnect();
  return 0;
}
