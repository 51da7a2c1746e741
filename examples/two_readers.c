/* Two readers, told apart by their serial numbers: the first card on either opens the door. */
#define _POSIX_C_SOURCE 199309L /* nanosleep */
#include <api.h>
#include <stdio.h>
#include <string.h>
#include <time.h>

/* Index of the reader with that serial number, or -1. */
static int16_t find_reader(const char* serial) {
  for (int16_t i = 0; i < GetDevCnt(); ++i) {
    if (SetActDev(i) == 1 && strcmp(GetSerialNumber(), serial) == 0) return i;
  }
  return -1;
}

int main(int count, char** words) {
  static const char* const roles[] = {"entrance", "exit"};
  const struct timespec pause = {0, 250 * 1000 * 1000};
  int16_t readers[2];
  char why[TAVLYN_ERROR_TEXT_SIZE];
  if (count != 3) {
    fprintf(stderr, "usage: two_readers SERIAL SERIAL\n");
    return 2;
  }
  SetConnectProduct(1); /* card readers */
  SetDevTypeSrch(0);    /* on USB */
  USBConnect(NULL);     /* whatever it returns: a third reader that fails is no concern of ours */
  for (int i = 0; i < 2; ++i) {
    readers[i] = find_reader(words[i + 1]);
    if (readers[i] < 0 || ReadCfg() != 1) {
      fprintf(stderr, "%s: reader %s is not there, or does not answer\n", roles[i], words[i + 1]);
      USBDisconnect();
      return 1;
    }
  }
  for (;; nanosleep(&pause, NULL)) {
    for (int i = 0; i < 2; ++i) {
      uint8_t id[8];
      SetActDev(readers[i]);
      const uint16_t bits = GetActiveID(id, sizeof id);
      if (bits == 0 && GetLastLibErr() == 0) continue;
      if (bits == 0)
        fprintf(stderr, "%s: %s\n", roles[i], tavlyn_error_text(GetLastLibErr(), why, sizeof why));
      if (bits != 0) printf("%s: a card of %d bits, open\n", roles[i], bits);
      USBDisconnect();
      return bits == 0;
    }
  }
}
