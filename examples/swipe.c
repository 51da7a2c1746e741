/* Prints the tracks of the next swipe through a magnetic-stripe reader. */
#define _POSIX_C_SOURCE 199309L /* nanosleep */
#include <api.h>
#include <stdio.h>
#include <time.h>

int main(void) {
  const struct timespec pause = {0, 100 * 1000 * 1000};
  SetConnectProduct(2); /* magnetic-stripe readers */
  SetDevTypeSrch(0);    /* on USB */
  if (USBConnect(NULL) != 1) {
    fprintf(stderr, "no reader (error word %X)\n", (unsigned)GetLastLibErr());
    return 1;
  }
  while (sorbaneIsDataAvailable() == 0 && GetLastLibErr() == 0) nanosleep(&pause, NULL);
  if (GetLastLibErr() != 0) {
    fprintf(stderr, "the reader does not answer (error word %X)\n", (unsigned)GetLastLibErr());
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
