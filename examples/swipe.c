/* Prints the tracks of the next swipe through a magnetic-stripe reader. */
#define _POSIX_C_SOURCE 199309L /* nanosleep */
#include <api.h>
#include <stdio.h>
#include <time.h>

int main(void) {
  const struct timespec pause = {0, 100 * 1000 * 1000};
  char why[TAVLYN_ERROR_TEXT_SIZE];
  SetConnectProduct(2); /* magnetic-stripe readers */
  SetDevTypeSrch(0);    /* on USB */
  if (USBConnect(NULL) != 1) {
    const uint32_t word = GetLastLibErr();
    fprintf(stderr, "%s\n", word == 0 ? "no reader is plugged in" : tavlyn_error_text(word, why, sizeof why));
    return 1;
  }
  while (sorbaneIsDataAvailable() == 0 && GetLastLibErr() == 0) nanosleep(&pause, NULL);
  if (GetLastLibErr() != 0) {
    fprintf(stderr, "%s\n", tavlyn_error_text(GetLastLibErr(), why, sizeof why));
    USBDisconnect();
    return 1;
  }
  for (uint16_t track = 1; track <= 3; ++track) {
    const uint8_t* text = sorbaneGetTrackData(track, 1); /* a length, then the characters */
    const int length = text == NULL ? 0 : text[0] & 127;
    if (length > 0) printf("track %d: %.*s\n", track, length, (const char*)text + 1);
  }
  sorbaneClearDataAvailable(); /* makes room for the next swipe */
  USBDisconnect();
  return 0;
}
