/* Tells when somebody comes to a desk with a sonar sensor, and when nobody is there any more. */
#include <api.h>
#include <stdio.h>
#include <stdlib.h>

int main(int count, char** words) {
  long lines_left = count > 1 ? atol(words[1]) : -1; /* ends after so many */
  int present = -1;                                  /* not known yet */
  uint16_t range[5];                                 /* inches, three bits of the status, the status */
  char why[TAVLYN_ERROR_TEXT_SIZE];
  SetConnectProduct(4); /* sonar sensors */
  SetDevTypeSrch(0);    /* on USB */
  if (USBConnect(NULL) != 1) {
    const uint32_t word = GetLastLibErr();
    fprintf(stderr, "%s\n", word == 0 ? "no sensor is plugged in" : tavlyn_error_text(word, why, sizeof why));
    return 1;
  }
  while (lines_left != 0 && GetObjRangeInfo(range) == 1) { /* which takes a quarter of a second */
    if (range[1] == present) continue;
    present = range[1];
    printf("%s\n", present ? "somebody is there" : "nobody is there");
    fflush(stdout);
    if (lines_left > 0) --lines_left;
  }
  if (lines_left != 0) fprintf(stderr, "%s\n", tavlyn_error_text(GetLastLibErr(), why, sizeof why));
  USBDisconnect();
  return lines_left != 0;
}
