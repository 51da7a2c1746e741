/* A line for each card and reader that comes or goes, until Ctrl-C, or until so many lines. */
#define _POSIX_C_SOURCE 199309L /* nanosleep */
#include <api.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

static long lines_left = -1;

static void end_line(void) {
  printf("\n");
  fflush(stdout);
  if (lines_left > 0 && --lines_left == 0) {
    USBDisconnect();
    exit(0);
  }
}

static void tell(const char* text) {
  printf("%s", text);
  end_line();
}

static void wait_ms(long ms) {
  const struct timespec pause = {ms / 1000, ms % 1000 * 1000000};
  nanosleep(&pause, NULL);
}

static void tell_card(const uint8_t* id, unsigned bits) {
  printf("card %u bits ", bits);
  for (unsigned i = (bits + 7) / 8; i > 0; --i) printf("%02X", id[i - 1]);
  end_line();
}

/* Returns when the reader no longer answers. */
static void watch_cards(void) {
  uint8_t last[32] = {0};
  unsigned last_bits = 0;
  for (;; wait_ms(250)) {
    uint8_t id[32] = {0};
    const unsigned bits = GetActiveID32(id, sizeof id);
    if (GetLastLibErr() != 0) return;
    if (bits != 0 && (bits != last_bits || memcmp(id, last, sizeof id) != 0)) tell_card(id, bits);
    if (bits == 0 && last_bits != 0) tell("card gone");
    memcpy(last, id, sizeof id);
    last_bits = bits;
  }
}

int main(int count, char** words) {
  int waiting = 0;
  if (count > 1) lines_left = atol(words[1]);
  SetConnectProduct(1); /* card readers */
  SetDevTypeSrch(0);    /* on USB */
  for (;; wait_ms(1000)) {
    if (USBConnect(NULL) == 1) {
      tell("reader");
      watch_cards();
      tell("reader gone");
    } else if (!waiting) {
      fprintf(stderr, "waiting for a reader\n");
    }
    waiting = 1;
    USBDisconnect(); /* also after a connect that found nothing: each connect needs it */
  }
}
