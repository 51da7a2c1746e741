/* Waits for a card on the first reader and prints its ID. */
#define _POSIX_C_SOURCE 199309L /* nanosleep */
#include <api.h>
#include <stdio.h>
#include <time.h>

int main(void) {
  const struct timespec pause = {0, 250 * 1000 * 1000};
  uint8_t id[32];
  uint16_t bits = 0;
  char why[TAVLYN_ERROR_TEXT_SIZE];
  SetConnectProduct(1); /* card readers */
  SetDevTypeSrch(0);    /* on USB */
  if (USBConnect(NULL) != 1) {
    const uint32_t word = GetLastLibErr();
    printf("%s\n", word == 0 ? "no reader is plugged in" : tavlyn_error_text(word, why, sizeof why));
    return 1;
  }
  while ((bits = GetActiveID32(id, sizeof id)) == 0 && GetLastLibErr() == 0) nanosleep(&pause, NULL);
  printf("%d bits: ", bits);
  for (int i = (bits + 7) / 8; i > 0; --i) printf("%02X", id[i - 1]);
  printf("\n");
  USBDisconnect();
  return bits == 0;
}
