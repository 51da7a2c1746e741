/* Writes the keys of a file into a reader. */
#include <api.h>
#include <stdio.h>

int main(int count, char** words) {
  char why[TAVLYN_ERROR_TEXT_SIZE];
  if (count != 2) {
    fprintf(stderr, "usage: load_keys FILE\n");
    return 2;
  }
  /* Before anything is sent. It finds damage, not tampering: anybody can compute a trailer. */
  if (CheckTamperedFile(words[1], 1) != 1) {
    fprintf(stderr, "%s is damaged, or not a file of keys\n", words[1]);
    return 1;
  }
  SetConnectProduct(1); /* card readers */
  SetDevTypeSrch(0);    /* on USB only: keys would cross a network in the clear */
  int done = USBConnect(NULL) == 1;
  if (GetDevCnt() != 1) {
    fprintf(stderr, "%d readers; plug in exactly one\n", GetDevCnt());
    done = 0;
  } else {
    /* The result is that of the last item alone, so it is safest to have one item in a file. */
    done = done && LoadIniFile(words[1]) == 1;
    if (!done)
      fprintf(stderr, "not loaded: %s; try again\n", tavlyn_error_text(GetLastLibErr(), why, sizeof why));
    if (done) printf("loaded\n");
  }
  USBDisconnect();
  return !done;
}
