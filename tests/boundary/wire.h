// Tests of the built library over real wires.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "sim/devices/reader_fa.h"
#include "tests/boundary/calls.h"
#include "tests/boundary/far_end.h"
#include "tests/boundary/library.h"

namespace tavlyn::boundary {

constexpr std::uint32_t kNotWritten = 0xDEADBEEF;
// A rounded tick, and what a busy machine may be late.
constexpr int kEarly = 3;
constexpr int kLate = 150;

// Searches for card readers; nothing is plugged in on USB.
class Wire : public testing::Test {
 protected:
  void SetUp() override {
    SetVariable("TAVLYNAPI_LOGGING", nullptr);
    library_.Standin("reset");
    CALL(library_, SetConnectProduct)(1);
  }
  void TearDown() override { CALL(library_, USBDisconnect)(); }

  std::uint32_t ConnectTo(Ip ip, std::uint16_t port) {
    CALL(library_, SetDevTypeSrch)(2);
    CALL(library_, SetIpPort)(ip[0], ip[1], ip[2], ip[3], port);
    did_ = kNotWritten;
    return CALL(library_, USBConnect)(&did_);
  }
  std::uint32_t ConnectToPort(std::uint16_t number) {
    did_ = kNotWritten;
    return CALL(library_, ComConnectPort)(number, &did_);
  }
  // Without the pauses between the bytes, which a pseudo-terminal does not need.
  std::uint32_t ConnectQuickly(std::uint16_t number) {
    SkipSleeps(true);
    const std::uint32_t result = ConnectToPort(number);
    SkipSleeps(false);
    return result;
  }
  std::string Name() {
    std::array<char, 513> name{};
    CALL(library_, GetDevName)(name.data());
    return name.data();
  }

  PortFolder ports_;
  Library library_;
  std::uint32_t did_ = kNotWritten;
  std::shared_ptr<sim::Reader> reader_ = sim::Reader::Plain();
  sim::ReaderFa line_{reader_};
};

inline void ExpectTime(int expected, int took, int line = __builtin_LINE()) {
  EXPECT_GE(took, expected - kEarly) << "line " << line;
  EXPECT_LE(took, expected + kLate) << "line " << line;
}

}  // namespace tavlyn::boundary
