// Tests of the built library over real wires.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>

#include "sim/devices/reader_fa.h"
#include "tests/boundary/calls.h"
#include "tests/boundary/far_end.h"
#include "tests/boundary/library.h"
#include "tests/boundary/passing.h"

namespace tavlyn::boundary {

constexpr std::uint32_t kNotWritten = 0xDEADBEEF;

// Searches for card readers; nothing is plugged in on USB.
class Wire : public testing::Test {
 protected:
  void SetUp() override {
    SetVariable("TAVLYNAPI_LOGGING", nullptr);
    WatchCalls();
    library_.Standin("reset");
    CALL(library_, SetConnectProduct)(1);
    connectsBefore_ = Connects();
    datagramsBefore_ = Datagrams();
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
  std::string Name() {
    std::array<char, 513> name{};
    CALL(library_, GetDevName)(name.data());
    return name.data();
  }

  // Far ends close what they have open a moment later.
  static void ExpectOpenAsBefore(int before) {
    for (int wait = 0; wait < 100 && OpenHandles() != before; ++wait) Pause(Milliseconds(10));
    EXPECT_EQ(OpenHandles(), before);
  }

  // Since the test began, in the whole process.
  [[nodiscard]] int NewConnects() const { return Connects() - connectsBefore_; }
  [[nodiscard]] int NewDatagrams() const { return Datagrams() - datagramsBefore_; }

  PortFolder ports_;
  Library library_;
  std::uint32_t did_ = kNotWritten;
  std::shared_ptr<sim::Reader> reader_ = sim::Reader::Plain();
  sim::ReaderFa line_{reader_};

 private:
  int connectsBefore_ = 0;
  int datagramsBefore_ = 0;
};

// The answers to a ping and to every other frame.
inline const Bytes kPingAnswer{0x04, 1, 2, 3, 4, 0x90, 0x00};

// An adapter's answer at this address when it is asked for its kind.
inline Bytes DiscoveryReply(Ip ip) {
  Bytes reply(128);
  const std::string head = std::string("RFIDDISC\x02\x00\xF4\xF0\xF2\xF0", 14) + "-Kestrin/Wedge";
  std::copy(head.begin(), head.end(), reply.begin());
  const Bytes mac{0x7C, 0x31, 0xA6, 0x44, 0x55, 0x66};
  std::copy(mac.begin(), mac.end(), reply.begin() + 29);
  std::copy(ip.begin(), ip.end(), reply.begin() + 36);
  return reply;
}

}  // namespace tavlyn::boundary
