// Card readers on the stand-in for hidapi, and the built library.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "sim/carriers/clock/quick_time.h"
#include "tests/boundary/library.h"

namespace tavlyn::boundary {

inline constexpr std::uint32_t kDid = 0x7431;
inline constexpr std::uint32_t kNotWritten = 0xDEADBEEF;

// Longer by a coarse tick than the library leaves a reader alone after each exchange (235 ms).
inline void WaitForGate() { PassQuickly(std::chrono::milliseconds(270)); }

inline std::vector<std::string> Lines(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

class ReaderUsb : public testing::Test {
 protected:
  void SetUp() override {
    SetVariable("TAVLYNAPI_LOGGING", nullptr);
    Load();
  }

  void TearDown() override {
    if (library_ == nullptr) return;
    CALL(*library_, USBDisconnect)();
    Do("reset");
  }

  // Loads the library again; searches then stay on USB.
  void Load() {
    library_.reset();
    library_ = std::make_unique<Library>();
    TakeItsTime();
    Do("reset");
    CALL(*library_, SetDevTypeSrch)(0);
  }

  std::string Do(const std::string& command) { return library_->Standin(command); }

  std::uint32_t Connect() {
    did_ = kNotWritten;
    return CALL(*library_, USBConnect)(&did_);
  }

  int Exchanges() { return std::stoi(Do("exchanges")); }

  bool TrafficHolds(const std::string& part) { return Do("traffic").find(part) != std::string::npos; }

  // What every reader of the rack has.
  void ExpectMirror(std::int16_t features) {
    tsCfgFlags flags{};
    EXPECT_EQ(CALL(*library_, GetFlags)(&flags), 1u);
    EXPECT_EQ(
        (std::array{0, 0, 1, 1, 1, 0, 0, 0}),
        (std::array<int, 8>{flags.bFixLenDsp, flags.bFrcBitCntEx, flags.bStripFac, flags.bSndFac,
                            flags.bUseDelFac2Id, flags.bNoUseELChar, flags.bSndOnRx, flags.bHaltKBSnd}));
    tsTimeParms times{};
    EXPECT_EQ(CALL(*library_, GetTimeParms)(&times), 1u);
    EXPECT_EQ((std::array<int, 7>{100, 1000, 2000, 4, 4, features, 0x40}),
              (std::array<int, 7>{times.iBitStrmTO, times.iIDHoldTO, times.iIDLockOutTm, times.iUSBKeyPrsTm,
                                  times.iUSBKeyRlsTm, times.ExFeatures01, times.iTPCfgFlg3}));
  }

  std::unique_ptr<Library> library_;
  std::uint32_t did_ = kNotWritten;
};

}  // namespace tavlyn::boundary
