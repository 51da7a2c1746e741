/* Waits for a card on the first reader and prints its ID. */
#include <api.h>
#include <stdio.h>
#include <time.h>

int main(void) {
  const struct timespec pause = {0, 250 * 1000 * 1000};
  uint8_t id[8];
  uint16_t bits = 0;
  SetConnectProduct(1); /* card readers */
  SetDevTypeSrch(0);    /* on USB */
  if (USBConnect(NULL) != 1) {
    printf("no reader (error word %X)\n", (unsigned)GetLastLibErr());
    return 1;
  }
  while ((bits = GetActiveID(id, sizeof id)) == 0) nanosleep(&pause, NULL);
  printf("%d bits: %02X%02X%02X%02X\n", bits, id[3], id[2], id[1], id[0]);
  USBDisconnect();
  return 0;
}
