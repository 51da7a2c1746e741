// A bench in a folder of its own, where a connect to card readers looks for TavlynVIDPID.txt.
#pragma once

#include <fstream>
#include <string>

#include "api.h"
#include "tests/support/bench.h"

namespace tavlyn::test {

class VidPidBench : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    EnterFolder();
    SetConnectProduct(1);
    SetDevTypeSrch(0);
  }

  void WriteTable(const std::string& text) {
    std::ofstream(Folder() / "TavlynVIDPID.txt", std::ios::binary) << text;
  }

  // What a connect makes of a file with that text.
  void LoadFile(const std::string& text) {
    WriteTable(text);
    USBConnect(nullptr);
  }
};

}  // namespace tavlyn::test
