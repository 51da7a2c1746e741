// A USB device at the end of a socket of the kernel's: what it answers to whole messages, to messages in
// pieces, and to those that no kernel sends.
#include "sim/carriers/usb/usbip.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>

#include "sim/carriers/usb/hid_function.h"
#include "sim/devices/reader.h"

namespace tavlyn::test {
namespace {

using sim::usb::Bytes;

constexpr std::uint32_t kSubmit = 1;
constexpr std::uint32_t kUnlink = 2;
constexpr std::uint32_t kSubmitted = 3;
constexpr std::uint32_t kUnlinked = 4;
constexpr std::size_t kHeader = 48;
constexpr std::size_t kMostData = 65536;

constexpr std::int32_t kStalled = -32;
constexpr std::int32_t kBroken = -71;
constexpr std::int32_t kTakenBack = -104;

using SetupPacket = std::array<std::uint8_t, 8>;

void Put(Bytes& message, std::uint32_t word) {
  for (int shift = 24; shift >= 0; shift -= 8) message.push_back(static_cast<std::uint8_t>(word >> shift));
}

std::uint32_t Get(const Bytes& message, std::size_t at) {
  std::uint32_t word = 0;
  for (std::size_t i = 0; i < 4; ++i) word = word << 8 | message[at + i];
  return word;
}

Bytes Message(std::uint32_t command, std::uint32_t number, bool in, std::uint32_t endpoint,
              std::uint32_t word, const SetupPacket& setup = {}) {
  Bytes message;
  for (const std::uint32_t field : {command, number, 1U, in ? 1U : 0U, endpoint}) Put(message, field);
  for (const std::uint32_t field : {command == kUnlink ? word : 0U, word, 0U, 0U, 0U}) Put(message, field);
  message.insert(message.end(), setup.begin(), setup.end());
  return message;
}

class UsbipTest : public testing::Test {
 protected:
  std::shared_ptr<sim::Reader> reader = sim::Reader::Kelda(1);
  sim::usb::HidFunction device{{reader.get()}};
  sim::usb::UsbipSession session{device};

  Bytes Out() {
    const Bytes out(session.Due().begin(), session.Due().end());
    session.Sent(out.size());
    return out;
  }
  // The one answer to a message, of which the status is checked; its data.
  Bytes Answer(const Bytes& message, std::int32_t status = 0) {
    EXPECT_TRUE(session.Receive(message));
    return AnswerThatCame(Get(message, 4), status);
  }
  Bytes AnswerThatCame(std::uint32_t expected, std::int32_t status = 0) {
    const Bytes out = Out();
    if (out.size() < kHeader) {
      ADD_FAILURE() << "no answer";
      return {};
    }
    EXPECT_EQ(Get(out, 0), kSubmitted);
    EXPECT_EQ(Get(out, 4), expected);
    EXPECT_EQ(static_cast<std::int32_t>(Get(out, 20)), status);
    return {out.begin() + kHeader, out.end()};
  }
  Bytes Control(const SetupPacket& setup, std::int32_t status = 0) {
    const auto length = static_cast<std::uint32_t>(setup[6] | setup[7] << 8);
    return Answer(Message(kSubmit, ++number, true, 0, length, setup), status);
  }

  std::uint32_t number = 10;
};

TEST_F(UsbipTest, DescriptorsAreCutToWhatIsAskedFor) {
  const Bytes whole = Control({0x80, 6, 0, 1, 0, 0, 64, 0});
  ASSERT_EQ(whole.size(), 18U);
  EXPECT_EQ(Bytes(whole.begin() + 8, whole.begin() + 12), (Bytes{0x31, 0x7A, 0xFB, 0x3B}));
  EXPECT_EQ(Control({0x80, 6, 0, 1, 0, 0, 8, 0}), Bytes(whole.begin(), whole.begin() + 8));
  EXPECT_EQ(Control({0x80, 6, 0, 1, 0, 0, 0, 0}), Bytes());
  const Bytes configuration = Control({0x80, 6, 0, 2, 0, 0, 255, 0});
  ASSERT_GE(configuration.size(), 34U);
  EXPECT_EQ(configuration.size(), static_cast<std::size_t>(configuration[2]));
}

TEST_F(UsbipTest, StringsAreThoseOfTheModel) {
  const Bytes text = Control({0x80, 6, 2, 3, 0, 0, 255, 0});
  std::string product;
  for (std::size_t i = 2; i < text.size(); i += 2) product += static_cast<char>(text[i]);
  EXPECT_EQ(product, reader->identity.product);
  Control({0x80, 6, 9, 3, 0, 0, 255, 0}, kStalled);
}

TEST_F(UsbipTest, FeatureReportsBeginWithTheirNumber) {
  Bytes set = Message(kSubmit, 1, false, 0, 9, {0x21, 9, 1, 3, 0, 0, 9, 0});
  set.insert(set.end(), {1, 0x8E, 0, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(Answer(set), Bytes());
  const Bytes reply = Control({0xA1, 1, 1, 3, 0, 0, 9, 0});
  ASSERT_EQ(reply.size(), 9U);
  EXPECT_EQ(reply[0], 1);
  EXPECT_EQ(reader->faults.Exchanges(), 2);
}

struct Refused {
  const char* what;
  SetupPacket setup;
};

TEST_F(UsbipTest, RefusesWhatTheDeviceHasNot) {
  const Refused kCases[] = {
      {"another report number", {0xA1, 1, 2, 3, 0, 0, 9, 0}},
      {"an input report by request", {0xA1, 1, 1, 1, 0, 0, 9, 0}},
      {"another interface", {0xA1, 1, 1, 3, 7, 0, 9, 0}},
      {"the report descriptor of another interface", {0x81, 6, 0, 0x22, 7, 0, 255, 0}},
      {"a second configuration", {0x80, 6, 1, 2, 0, 0, 255, 0}},
      {"a descriptor of high speed", {0x80, 6, 0, 6, 0, 0, 10, 0}},
      {"a request of its maker's", {0xC0, 0x77, 0, 0, 0, 0, 8, 0}},
  };
  for (const Refused& one : kCases) {
    SCOPED_TRACE(one.what);
    EXPECT_EQ(Control(one.setup, kStalled), Bytes());
  }
  EXPECT_EQ(reader->faults.Exchanges(), 0);
}

TEST_F(UsbipTest, UnknownEndpointsStall) {
  for (const std::uint32_t endpoint : {2U, 15U, 16U, 0x81U, 0x101U, 0xFFFFFFFFU}) {
    EXPECT_EQ(Answer(Message(kSubmit, ++number, true, endpoint, 64), kStalled), Bytes()) << endpoint;
  }
  Bytes out = Message(kSubmit, ++number, false, 1, 2);
  out.insert(out.end(), {1, 2});
  EXPECT_EQ(Answer(out, kStalled), Bytes());
}

TEST_F(UsbipTest, InputWaitsForTheDevice) {
  EXPECT_TRUE(session.Receive(Message(kSubmit, 5, true, 1, 64)));
  EXPECT_TRUE(session.Receive(Message(kSubmit, 6, true, 1, 4)));
  EXPECT_EQ(Out(), Bytes());
  reader->QueueInput({1, 2, 3, 4, 5, 6, 7, 8, 9});
  session.Serve();
  EXPECT_EQ(AnswerThatCame(5), (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9}));
  reader->QueueInput({1, 2, 3, 4, 5, 6, 7, 8, 9});
  session.Serve();
  EXPECT_EQ(AnswerThatCame(6), (Bytes{1, 2, 3, 4})) << "no more than there is room for";
}

TEST_F(UsbipTest, WhatIsTakenBackIsAnsweredNoMore) {
  EXPECT_TRUE(session.Receive(Message(kSubmit, 5, true, 1, 64)));
  for (const std::int32_t status : {kTakenBack, 0}) {
    EXPECT_TRUE(session.Receive(Message(kUnlink, ++number, true, 1, 5)));
    const Bytes out = Out();
    ASSERT_EQ(out.size(), kHeader);
    EXPECT_EQ(Get(out, 0), kUnlinked);
    EXPECT_EQ(Get(out, 4), number);
    EXPECT_EQ(static_cast<std::int32_t>(Get(out, 20)), status)
        << "the second time there is nothing to take back";
  }
  reader->QueueInput({1, 0, 0, 0, 0, 0, 0, 0, 0});
  session.Serve();
  EXPECT_EQ(Out(), Bytes());
}

TEST_F(UsbipTest, MessagesMayComeInPieces) {
  Bytes both = Message(kSubmit, 1, true, 0, 18, {0x80, 6, 0, 1, 0, 0, 18, 0});
  const Bytes second = Message(kSubmit, 2, true, 0, 2, {0x80, 0, 0, 0, 0, 0, 2, 0});
  both.insert(both.end(), second.begin(), second.end());
  for (const std::uint8_t byte : both) ASSERT_TRUE(session.Receive({&byte, 1}));
  EXPECT_EQ(Out().size(), kHeader + 18 + kHeader + 2);
}

TEST_F(UsbipTest, WhatIsNotUsbipEndsTheSession) {
  const Bytes kCases[] = {
      Message(0, 1, false, 0, 0),
      Message(kSubmitted, 1, false, 0, 0),
      Message(0xFFFFFFFF, 1, true, 0, 0),
      Message(kSubmit, 1, false, 0, kMostData + 1),
      Message(kSubmit, 1, false, 1, 0xFFFFFFFF),
  };
  for (const Bytes& one : kCases) {
    sim::usb::UsbipSession fresh(device);
    EXPECT_FALSE(fresh.Receive(one));
    EXPECT_FALSE(fresh.Receive(Message(kSubmit, 2, true, 0, 2, {0x80, 0, 0, 0, 0, 0, 2, 0})))
        << "it stays over";
    EXPECT_TRUE(fresh.Due().empty());
  }
}

TEST_F(UsbipTest, TheLongestTransferIsTaken) {
  Bytes out = Message(kSubmit, 1, false, 1, kMostData);
  out.resize(kHeader + kMostData);
  EXPECT_EQ(Answer(out, kStalled), Bytes());
}

TEST_F(UsbipTest, LengthsThatDisagreeAreBounded) {
  EXPECT_EQ(Answer(Message(kSubmit, 1, true, 0, 4, {0x80, 6, 0, 1, 0, 0, 18, 0})).size(), 4U);
  EXPECT_EQ(Answer(Message(kSubmit, 2, true, 0, 0xFFFFFFFF, {0x80, 6, 0, 1, 0, 0, 255, 255})).size(), 18U);
  EXPECT_EQ(Answer(Message(kSubmit, 3, false, 0, 0, {0x80, 6, 0, 1, 0, 0, 18, 0})), Bytes());
  EXPECT_EQ(Answer(Message(kSubmit, 4, false, 0, 0, {0x21, 9, 1, 3, 0, 0, 9, 0}), kStalled), Bytes());
  EXPECT_EQ(Answer(Message(kSubmit, 5, true, 1, 0)), Bytes()) << "room for nothing is no wait";
}

TEST_F(UsbipTest, NoMoreTransfersWaitThanAreBounded) {
  constexpr std::uint32_t kMost = 1024;
  for (std::uint32_t i = 0; i < kMost; ++i)
    ASSERT_TRUE(session.Receive(Message(kSubmit, 100 + i, true, 1, 64)));
  EXPECT_EQ(Out(), Bytes());
  EXPECT_EQ(Answer(Message(kSubmit, 5, true, 1, 64), -12), Bytes());
}

TEST_F(UsbipTest, ATransferBreaksWhenTheCableIsPulled) {
  reader->faults.VanishAt(1);
  Control({0xA1, 1, 1, 3, 0, 0, 9, 0}, kBroken);
}

}  // namespace
}  // namespace tavlyn::test
