/* A door controller: opens for the cards of its command line, and goes on when the reader was unplugged.
   usage: door CARD...    each in hexadecimal digits, as it is printed when it is shown */
#define _POSIX_C_SOURCE 200809L
#include <api.h>
#include <signal.h>
#include <stdio.h>
#include <string.h>
#include <time.h>

enum { kPollMs = 250, kOpenMs = 500, kRetryMs = 300, kIdBytes = 32 };

static volatile sig_atomic_t over = 0;

static void end(int signal_number) { over = signal_number; }

static void pause_ms(long ms) {
  const struct timespec pause = {ms / 1000, ms % 1000 * 1000000};
  nanosleep(&pause, NULL);
}

static void tell(const char* what) {
  puts(what);
  fflush(stdout);
}

/* Until the reader loses its power: bVolatile. */
static void show(int16_t red, int16_t green) {
  tsLEDCtrl leds = {0};
  leds.bAppCtrlsLED = 1;
  leds.iRedLEDState = red;
  leds.iGrnLEDState = green;
  leds.bVolatile = 1;
  SetLEDCtrl(&leds);
}

/* 1 if the relay is so. The set alone does not say whether it has reached the reader. */
static int set_relay(int16_t on) {
  tsBprRlyCtrl relay;
  if (GetBprRlyCtrl(&relay) != 1) return 0;
  relay.iRelayState = on;
  relay.bVolatile = 1;
  SetBprRlyCtrl(&relay);
  return ReadCfg() == 1 && GetBprRlyCtrl(&relay) == 1 && relay.iRelayState == on;
}

/* The reader is not to beep by itself: three beeps are for cards that it does not let in. It keeps that. */
static int set_up(void) {
  tsCfgFlags2 flags;
  if (GetFlags2(&flags) != 1) return 0;
  if (flags.bBeepID != 0) {
    flags.bBeepID = 0;
    if (SetFlags2(&flags) != 1 || WriteCfg() != 1) return 0;
  }
  show(1, 0);
  return set_relay(0);
}

static int open_door(void) {
  show(0, 1);
  if (!set_relay(1)) return 0;
  pause_ms(kOpenMs);
  show(1, 0);
  return set_relay(0);
}

static void write_hex(char* text, const uint8_t* id, unsigned bits) {
  *text = '\0';
  for (unsigned i = (bits + 7) / 8; i > 0; --i) text += sprintf(text, "%02X", id[i - 1]);
}

static int serve_card(const char* card, char** known) {
  printf("%s ", card);
  for (; *known != NULL; ++known) {
    if (strcmp(*known, card) != 0) continue;
    tell("opens");
    return open_door();
  }
  tell("is not known");
  return BeepNow(3, 0) == 1;
}

/* Returns when the reader does not do what it is told, or at the end. */
static void serve(char** known) {
  char last[2 * kIdBytes + 1] = "";
  for (; over == 0; pause_ms(kPollMs)) {
    uint8_t id[kIdBytes] = {0};
    char card[2 * kIdBytes + 1];
    const unsigned bits = GetActiveID32(id, sizeof id);
    if (GetLastLibErr() != 0) return;
    write_hex(card, id, bits);
    if (bits != 0 && strcmp(card, last) != 0 && !serve_card(card, known)) return;
    memcpy(last, card, sizeof last);
  }
}

int main(int count, char** words) {
  struct sigaction action = {0};
  action.sa_handler = end;
  sigaction(SIGTERM, &action, NULL);
  sigaction(SIGINT, &action, NULL);
  if (count < 2) {
    fprintf(stderr, "usage: door CARD...\n");
    return 2;
  }
  SetConnectProduct(1); /* card readers */
  SetDevTypeSrch(0);    /* on USB */
  for (; over == 0; pause_ms(kRetryMs)) {
    if (USBConnect(NULL) == 1 && set_up()) {
      tell("ready");
      serve(words + 1);
      tell(over != 0 ? "ends" : "the reader is lost");
      set_relay(0);
    }
    USBDisconnect();
  }
  return 0;
}
