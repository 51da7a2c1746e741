// tavlynctl on pseudo-terminals and the loopback network.
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <nlohmann/json.hpp>

#include "sim/devices/reader_ascii.h"
#include "tests/boundary/far_end.h"
#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

// Records what a reader receives, and creates a file once a text has arrived.
class Noting final : public sim::FaultyLine {
 public:
  explicit Noting(sim::ByteDevice& reader) : reader_(reader) {}
  void Silence() override { reader_.Silence(); }

  std::string came;
  std::string awaited;
  fs::path made;

 private:
  void TakeByte(std::uint8_t byte) override {
    came += static_cast<char>(byte);
    if (!awaited.empty() && came.ends_with(awaited)) std::ofstream(made) << "";
    reader_.Receive({&byte, 1});
    PassOn(reader_);
  }

  sim::ByteDevice& reader_;
};

class TavlynctlLinks : public testing::Test {
 protected:
  static Ended Ctl(const std::string& words) { return RunLine(kCtl + " " + words); }

  // The document of a command that succeeds.
  static Json Document(const std::string& words) { return ParsedText(Ctl(words + " --json")); }
  static std::string Peer(const Ip& ip, const TcpDevice& device) {
    return "--ip " + std::to_string(ip[0]) + "." + std::to_string(ip[1]) + "." + std::to_string(ip[2]) + "." +
           std::to_string(ip[3]) + ":" + std::to_string(device.Port()) + " ";
  }

  PortFolder ports_;
  std::shared_ptr<sim::Reader> reader_ = sim::Reader::Plain();
  sim::ReaderFa line_{reader_};
};

TEST_F(TavlynctlLinks, ListOfAPort) {
  const PortDevice device(ports_, 3, line_);
  const Json list = Document("--com 3 list");
  ASSERT_EQ(list["devices"].size(), 1u);
  EXPECT_EQ(list["devices"][0]["path"], "COM3:");
  EXPECT_EQ(list["devices"][0]["identity"], "");
  EXPECT_EQ(list["devices"][0]["did"], "7431");
}

TEST_F(TavlynctlLinks, ListOfSeveralPorts) {
  const auto second = sim::Reader::Plain();
  sim::ReaderFa secondLine(second);
  const PortDevice device(ports_, 3, line_);
  const PortDevice other(ports_, 12, secondLine);
  const Json list = Document("list --com 2-12");
  ASSERT_EQ(list["devices"].size(), 2u);
  EXPECT_EQ(list["devices"][1]["path"], "COM12:");
}

TEST_F(TavlynctlLinks, InfoAsksForTheFirmwareWords) {
  const auto plus = sim::Reader::Plus(2);
  sim::ReaderFa line(plus);
  const PortDevice device(ports_, 3, line);
  const Json info = Document("info --com 3");
  EXPECT_EQ(info["device"]["configurations"], 2);
  EXPECT_EQ(info["device"]["firmware_words"][0]["words"][0], "10072005");
}

TEST_F(TavlynctlLinks, ReadOnAPort) {
  reader_->PutCard({1, 2, 3, 3}, 26);
  const PortDevice device(ports_, 3, line_);
  const Ended read = Ctl("read --com 3");
  EXPECT_EQ(read.status, 0) << read.err;
  EXPECT_EQ(read.out, "card 26 bits 03030201\n");
}

TEST_F(TavlynctlLinks, ConfigurationOnAPort) {
  const PortDevice device(ports_, 3, line_);
  const Json set = Document("--com 3 config set iIDHoldTO=150");
  EXPECT_EQ(set["changes"][0]["result"], "stored");
  EXPECT_EQ(Document("--com 3 config get iIDHoldTO")["fields"]["TimeParms.iIDHoldTO"], 150);
}

// Otherwise the port would get the number of the closed stream, and the reader would get what is printed.
TEST_F(TavlynctlLinks, ClosedDescriptorsAreNoPorts) {
  reader_->PutCard({1, 2}, 16);
  Noting noted(line_);
  PortDevice device(ports_, 3, noted);
  for (const char* closed : {"<&-", "2>&-", "<&- 2>&-"}) {
    const Ended watch = Ctl(std::string("watch --com 3 --count 1 ") + closed);
    EXPECT_EQ(watch.status, 0) << closed << watch.err;
    EXPECT_EQ(watch.out, "card 16 bits 0201\n") << closed;
  }
  EXPECT_EQ(Ctl("watch --com 3 --count 1 <&- >&- 2>&-").status, 6);
  device.With([&] { EXPECT_FALSE(Holds(noted.came, "card")); });
}

TEST_F(TavlynctlLinks, WatchNoticesALostPort) {
  reader_->PutCard({1}, 8);
  line_.faults.VanishAt(800);
  const PortDevice device(ports_, 3, line_);
  const Ended watch = Ctl("watch --com 3 --no-wait");
  EXPECT_EQ(watch.status, 4) << watch.out;
  EXPECT_TRUE(watch.out.starts_with("card 8 bits 01\n")) << watch.out;
  EXPECT_TRUE(Holds(watch.err, "card reader 0 (COM3:) does not answer")) << watch.err;
}

TEST_F(TavlynctlLinks, WrongWords) {
  for (const char* words :
       {"list --com 0", "list --com 257", "list --com 5-3", "list --com 3-", "list --com COM3",
        "list --ip 10.0.0.5", "list --ip 10.0.0.256:1", "list --ip 10.0.0.5:0", "list --ip 10.0.0.5:1x",
        "list --com 3 --ip 10.0.0.5:1", "list --baud 9600", "list --ascii", "serial baud",
        "serial write FA --com 3 --read 0", "serial read 0 --com 3", "serial write FAx --com 3",
        "find 10.0.0", "find 10.0.0.9-3", "find 10.0.0.1-256"}) {
    EXPECT_EQ(Ctl(words).status, 1) << words;
  }
}

TEST_F(TavlynctlLinks, AsciiReader) {
  reader_->PutCard({0xAB, 0x12, 0x01}, 26);
  reader_->state.luid = 7;
  sim::ReaderAscii text(reader_);
  PortDevice device(ports_, 3, text);
  const Ended read = Ctl("--com 3 --ascii read");
  EXPECT_EQ(read.status, 0) << read.err;
  EXPECT_EQ(read.out, "card 26 bits 000112AB\n");
  device.With([&] { EXPECT_FALSE(text.echoes) << "the dialect was not spoken"; });
}

// Nothing is shown that a reader did not report.
TEST_F(TavlynctlLinks, ReaderThatDoesNotSpeakText) {
  const PortDevice device(ports_, 3, line_);
  const Ended read = Ctl("--com 3 --ascii read --timeout 1");
  EXPECT_EQ(read.status, 4);
  EXPECT_TRUE(read.err.starts_with("searching on COM3 takes up to 9 seconds\n")) << read.err;
  EXPECT_TRUE(read.err.ends_with("tavlynctl: card reader 0 (COM3:) does not speak the text dialect\n"))
      << read.err;
  const Ip ip{127, 5, 0, 4};
  const TcpDevice adapter(ip, line_);
  const Ended get = Ctl(Peer(ip, adapter) + "--ascii config get iIDBitCnt --json");
  EXPECT_EQ(get.status, 4);
  EXPECT_TRUE(Holds(get.err, "does not speak the text dialect")) << get.err;
  EXPECT_FALSE(Json::parse(get.out).contains("fields"));
}

TEST_F(TavlynctlLinks, TextBehindAnAdapter) {
  reader_->PutCard({0xAB, 0x12}, 26);
  sim::ReaderAscii text(reader_);
  const Ip ip{127, 5, 0, 5};
  const TcpDevice device(ip, text);
  const Ended read = Ctl(Peer(ip, device) + "--ascii read");
  EXPECT_EQ(read.out, "card 26 bits 000012AB\n") << read.err;
}

// Seconds that a line's programs have waited.
double WaitedSeconds(const std::string& clock) { return std::stod(clock) * 1e-9; }

// An ID read in text waits for 300 bytes, for each as long as the port's time-outs allow.
TEST_F(TavlynctlLinks, ADeadlineIsHeardWhereTextIsNotAnswered) {
  sim::ReaderAscii text(reader_);
  text.faults.RefuseCommand({'Q', 'I', 'D', '.', 'I', 'D'});
  const PortDevice device(ports_, 3, text);
  const Ended read =
      RunLine(kCtl + " --com 3 --ascii read --timeout 1; s=$?; od -An -td8 -N8 $TAVLYN_QUICK_CLOCK; exit $s");
  EXPECT_EQ(read.status, 5) << read.err;
  EXPECT_GT(20, WaitedSeconds(read.out));
}

// The first one comes while the library waits for an ID that never arrives; it has been handled once the
// process no longer catches the signal.
TEST_F(TavlynctlLinks, ASecondCtrlCEndsAtOnce) {
  sim::ReaderAscii text(reader_);
  text.faults.RefuseCommand({'Q', 'I', 'D', '.', 'I', 'D'});
  Noting noted(text);
  noted.awaited = "QID.ID";
  noted.made = ports_.PathOf(99);
  const PortDevice device(ports_, 3, noted);
  const Ended watch =
      RunLine("upon 'until test -e " + noted.made.string() +
              "; do :; done; kill -INT $pid;"
              " while grep -q SigCgt.*[2367abef]$ /proc/$pid/status; do :; done; kill -INT $pid' " +
              kCtl + " --com 3 --ascii watch");
  EXPECT_EQ(watch.status, 130) << watch.err;
}

// A raw write ends with a flush, which drops an answer that is there already.
TEST_F(TavlynctlLinks, SerialBytes) {
  const PortDevice device(ports_, 3, line_, {.delay = Milliseconds(250)});
  const Json answered = Document("--com 3 serial write FA04 000004 --read 7");
  EXPECT_EQ(answered["written"], 5);
  EXPECT_EQ(answered["read"], "04010031749000");
  EXPECT_EQ(Document("--com 3 serial read 4")["read"], "");
}

TEST_F(TavlynctlLinks, RawFrame) {
  const PortDevice device(ports_, 3, line_);
  EXPECT_EQ(Document("--com 3 raw FA 01 00 00 08")["reply"], "03 05 11 10 1A 3A 28 1C");
  EXPECT_EQ(Ctl("--com 3 analyzer list").status, 1) << "for HID devices alone";
}

TEST_F(TavlynctlLinks, SerialBaudCode) {
  const PortDevice device(ports_, 3, line_);
  EXPECT_EQ(Document("--com 3 serial baud 4")["code"], 4);
  EXPECT_EQ(Document("--com 3 --baud 19200 serial baud")["code"], 4);
}

TEST_F(TavlynctlLinks, WatchBehindAnAdapter) {
  const Ip ip{127, 5, 0, 2};
  reader_->PutCard({0x0A, 0x0B}, 16);
  const TcpDevice device(ip, line_);
  const Ended watch = Ctl(Peer(ip, device) + "watch --count 1");
  EXPECT_EQ(watch.status, 0) << watch.err;
  EXPECT_EQ(watch.out, "card 16 bits 0B0A\n");
  EXPECT_TRUE(Holds(watch.err, "card reader 0 (MAC:7C:31:A6:01:02:03 TCP/IP:127.5.0.2;Port:")) << watch.err;
}

TEST_F(TavlynctlLinks, SerialBytesBehindAnAdapter) {
  const Ip ip{127, 5, 0, 3};
  // Raw bytes do not need a reader that can be read.
  line_.faults.RefuseCommand({0x04, 0x00, 0x00, 0x04});
  const TcpDevice device(ip, line_);
  const Json answered = Document(Peer(ip, device) + "serial write FA04EDED04 --read 20");
  EXPECT_EQ(answered["read"], "04010031749000");
}

}  // namespace
}  // namespace tavlyn::boundary
