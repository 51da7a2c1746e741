// Loads one configuration file into every reader that is plugged in.
#include <api.h>

#include <iostream>

int main(int count, char** words) {
  if (count != 2) {
    std::cerr << "usage: clone FILE\n";
    return 2;
  }
  if (CheckTamperedFile(words[1], 0) != 1) {
    std::cerr << words[1] << " is damaged, or was saved without a trailer\n";
    return 1;
  }
  SetConnectProduct(1);  // card readers
  SetDevTypeSrch(0);     // on USB
  USBConnect(nullptr);   // which ends at the first reader that fails: the loop below reads each
  int failures = 0;
  for (int16_t i = 0; i < GetDevCnt(); ++i) {
    SetActDev(i);
    // First read: a load writes what differs from what was read.
    if (ReadCfg() == 1 && ReadDevCfgFromSecureFile(words[1]) == 1) {
      std::cout << GetSerialNumber() << " loaded\n";
    } else {
      char why[TAVLYN_ERROR_TEXT_SIZE];
      std::cerr << "reader " << i << ": " << tavlyn_error_text(GetLastLibErr(), why, sizeof why) << '\n';
      ++failures;
    }
  }
  if (GetDevCnt() == 0) std::cerr << "no reader\n";
  const bool good = GetDevCnt() > 0 && failures == 0;
  USBDisconnect();
  return good ? 0 : 1;
}
