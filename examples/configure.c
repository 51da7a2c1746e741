/* Makes a reader silent and quick, sees whether it kept that, and saves its configuration. */
#include <api.h>
#include <stdio.h>

static int failed(const char* what) {
  char why[TAVLYN_ERROR_TEXT_SIZE];
  fprintf(stderr, "%s: %s\n", what, tavlyn_error_text(GetLastLibErr(), why, sizeof why));
  USBDisconnect();
  return 1;
}

int main(int count, char** words) {
  tsCfgFlags2 flags;
  tsTimeParms times;
  if (count != 2) {
    fprintf(stderr, "usage: configure FILE\n");
    return 2;
  }
  SetConnectProduct(1); /* card readers */
  SetDevTypeSrch(0);    /* on USB */
  if (USBConnect(NULL) != 1) return failed("not connected");

  if (GetFlags2(&flags) != 1 || GetTimeParms(&times) != 1) return failed("not read");
  flags.bBeepID = 0;
  times.iIDHoldTO = 530; /* the reader has steps of 50 ms, so it will keep 500 */
  if (SetFlags2(&flags) != 1 || SetTimeParms(&times) != 1) return failed("out of range");

  /* A write that returns 1 was sent; only what comes back was stored. */
  if (WriteCfg() != 1 || ReadCfg() != 1) return failed("not written");
  if (GetFlags2(&flags) != 1 || GetTimeParms(&times) != 1) return failed("not read");
  printf("beep %d, an ID stays for %d ms\n", flags.bBeepID, times.iIDHoldTO);

  /* Its result shows neither a reader that went away, which the error word does, nor a full disk, which the
   * trailer does. */
  if (WriteDevCfgToSecureFile(words[1]) != 1 || GetLastLibErr() != 0 || CheckTamperedFile(words[1], 0) != 1)
    return failed("not saved");
  printf("saved as %s\n", words[1]);
  USBDisconnect();
  return 0;
}
