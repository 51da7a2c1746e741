// Reports in text frames over a real TCP connection. No search gets far enough to use them, so the routines
// are called as the report channel calls them.
#include <gtest/gtest.h>

#include "hid/text_frames.h"
#include "hid/vidpid_table.h"
#include "links/link_socket.h"
#include "tests/boundary/far_end.h"
#include "tests/boundary/passing.h"

namespace tavlyn::boundary {
namespace {

constexpr int kEmptyRead = 30 + 5 * 20;
const std::string kRequest = "#Req/FR:";

// Answers each request with the next of its replies.
class FrameScript final : public sim::FaultyLine {
 public:
  std::vector<std::string> replies;
  std::string taken;

 private:
  void TakeByte(std::uint8_t byte) override {
    taken += static_cast<char>(byte);
    if (!taken.ends_with(kRequest) || replies.empty()) return;
    Send(Bytes(replies.front().begin(), replies.front().end()));
    replies.erase(replies.begin());
  }
};

class HostFrames : public testing::Test {
 protected:
  void TearDown() override { LinkClose(); }

  // True once it is connected.
  bool Connect(const TcpDevice& device) { return LinkConnect({ip_, device.Port()}) == 0; }
  static std::string Reply(const std::string& payload) {
    return "#DUSB/FR/001L0" + std::to_string(payload.size()) + ":\x7A\x31\x3B\xFA" + payload;
  }
  int TimeOfRead(std::int32_t n, bool expected) {
    return TimeOf([&] { EXPECT_EQ(ReadTextFrame(n, report_.data()), expected); });
  }

  Ip ip_{127, 4, 0, 1};
  std::array<std::uint8_t, 9> report_{};
  FrameScript script_;
};

TEST_F(HostFrames, ReportGoesOutAndComesBack) {
  script_.replies = {Reply("abcdefg")};
  TcpDevice device(ip_, script_);
  ASSERT_TRUE(Connect(device));
  report_ = {0, '1', '2', '3', '4', '5', '6', '7'};
  EXPECT_TRUE(WriteTextFrame(7, report_.data()));
  EXPECT_EQ(TimeOfRead(7, true), 20 + 50);
  EXPECT_EQ(report_, (std::array<std::uint8_t, 9>{0, 'a', 'b', 'c', 'd', 'e', 'f', 'g', 0}));
  device.With([&] { EXPECT_EQ(script_.taken, "#HUSB/FR/001L07:1234567" + kRequest); });
}

TEST_F(HostFrames, LongReportIsNotSent) {
  TcpDevice device(ip_, script_);
  ASSERT_TRUE(Connect(device));
  EXPECT_FALSE(WriteTextFrame(8, report_.data()));
  Pause(Milliseconds(50));
  device.With([&] { EXPECT_EQ(script_.taken, ""); });
}

TEST_F(HostFrames, WrongRepliesAreNone) {
  std::string wrongHead = Reply("abcdefg");
  wrongHead[0] = '%';
  std::string wrongIds = Reply("abcdefg");
  wrongIds[16] = '\x01';
  script_.replies = {wrongHead, wrongIds, Reply("abc"), Reply("abcdefghi")};
  const TcpDevice device(ip_, script_);
  ASSERT_TRUE(Connect(device));
  for (int reply = 0; reply < 4; ++reply) EXPECT_EQ(TimeOfRead(7, false), 20 + 50) << reply;
}

TEST_F(HostFrames, SilenceAndTrickleEndInTime) {
  const TcpDevice device(ip_, script_, {.betweenBytes = Milliseconds(15)});
  ASSERT_TRUE(Connect(device));
  EXPECT_EQ(TimeOfRead(7, false), 20 + kEmptyRead);
  script_.replies = {Reply("abcdefg")};
  EXPECT_EQ(TimeOfRead(7, false), 20 + kEmptyRead);
}

TEST_F(HostFrames, PeerThatHangsUp) {
  script_.replies = {Reply("abcdefg"), Reply("abcdefg")};
  script_.CutAfter(10);
  const TcpDevice device(ip_, script_);
  ASSERT_TRUE(Connect(device));
  for (int read = 0; read < 3; ++read) EXPECT_EQ(TimeOfRead(7, false), 20 + kEmptyRead);
  EXPECT_TRUE(WriteTextFrame(7, report_.data())) << "whether it arrives is not asked";
  EXPECT_TRUE(LinkIsOpen());
}

TEST_F(HostFrames, NobodyListens) {
  EXPECT_EQ(LinkConnect({ip_, ClosedTcpPort(ip_)}), -3);
  EXPECT_FALSE(LinkIsOpen());
  EXPECT_EQ(LinkConnect({ip_, 0}), -3);
  EXPECT_EQ(LinkConnect({{0, 0, 0, 1}, 10001}), -3);
}

}  // namespace
}  // namespace tavlyn::boundary
