// The traffic of a connect, report by report.
#include <gtest/gtest.h>

#include <algorithm>

#include "api.h"
#include "core/state.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

std::string Hex(int byte) { return sim::HexText({static_cast<std::uint8_t>(byte)}); }

Lines Ask(const std::string& command) { return {"set " + command, "get"}; }

// Commands with a running index; trailing zeros of a report are not written.
Lines AskEach(const std::string& command, int count, const std::string& tail = "") {
  Lines lines;
  for (int i = 0; i < count; ++i) {
    const std::string index = i == 0 && tail.empty() ? "" : " " + Hex(i) + tail;
    lines = Join({lines, Ask(command + index)});
  }
  return lines;
}

// A reader with twelve pages of separated fields.
Lines OneConfiguration() {
  return Join({Ask("8A"), Ask("80"), Ask("81"), Ask("82"), Ask("83"), AskEach("85", 12, " 00 10"),
               AskEach("8C 04 07", 8), AskEach("8C 04 04", 3), AskEach("8C 01", 3)});
}

Lines Classified() { return Join({Ask("89 01"), Ask("84")}); }

Lines FoundPlain() { return Times(6, {"set 89 01 refused", "sleep 80"}); }

Lines FirmwareWords() {
  return Join({AskEach("89 03", 1), Ask("89 03 00 01"), Ask("89 03 00 02"), Ask("89 03 01"),
               Ask("89 03 01 01"), Ask("89 03 02")});
}

// For a reader with five card types.
Lines CardTypes() { return AskEach("89 04", 2); }

class ConnectTrafficTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    SetConnectProduct(1);
    SetDevTypeSrch(0);
  }

  [[nodiscard]] std::ptrdiff_t Reports() const {
    const auto events = host.transcript.Events();
    return std::count_if(events.begin(), events.end(), [](const sim::Event& event) {
      return event.kind == sim::EventKind::kSet || event.kind == sim::EventKind::kGet;
    });
  }

  static Lines Numbered(Lines lines) {
    for (std::string& line : lines) {
      if (line.starts_with("set ")) line.insert(4, "[1] ");
    }
    return lines;
  }
};

TEST_F(ConnectTrafficTest, APlainReader) {
  Plug(Reader::Plain());
  const std::uint64_t before = host.clock.tick;
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(Reports(), 6 + 62);
  EXPECT_EQ(Slept(), 480U);
  EXPECT_EQ(host.clock.tick - before, 480U);
  ExpectTraffic(Join({FoundPlain(), OneConfiguration()}));
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(ConnectTrafficTest, APlusReaderOfThreeConfigurations) {
  Plug(Reader::Plus(3));
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(Reports(), 226);
  EXPECT_EQ(Slept(), 0U);
  ExpectTraffic(Join({Classified(), Ask("89 81 02"), Classified(), OneConfiguration(), Ask("89 81 01"),
                      Classified(), OneConfiguration(), Ask("89 81"), Classified(), OneConfiguration(),
                      Ask("89 81"), CardTypes(), FirmwareWords()}));
  EXPECT_EQ(GetMaxConfig(), 2U);
  EXPECT_EQ(GetActConfig(), 0U);
}

TEST_F(ConnectTrafficTest, ElevenConfigurationsAreReadFromTheHighestDown) {
  auto reader = Reader::Plus(11);
  Plug(reader);
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  Lines expected = Classified();
  for (int c = 10; c >= 0; --c) {
    const std::string number = c == 0 ? "" : " " + Hex(c);
    expected = Join({expected, Ask("89 81" + number), Classified(), OneConfiguration()});
  }
  ExpectTraffic(Join({expected, Ask("89 81"), CardTypes(), FirmwareWords()}));
  EXPECT_EQ(reader->state.active, 0U);
}

TEST_F(ConnectTrafficTest, APlusReaderWorkingOnItsSecondConfigurationIsLeftOnTheFirst) {
  auto reader = Reader::Plus(2);
  reader->state.active = 1;
  Plug(reader);
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  // The connect goes back to configuration 0 before it reads.
  ExpectTraffic(Join({Classified(), Ask("89 81 01"), Classified(), OneConfiguration(), Ask("89 81"),
                      Classified(), OneConfiguration(), Ask("89 81"), CardTypes(), FirmwareWords()}));
  EXPECT_EQ(GetActConfig(), 0U);
  EXPECT_EQ(reader->state.active, 0U);
}

TEST_F(ConnectTrafficTest, APlusReaderBehindAnotherGetsOnePass) {
  Plug(Reader::Plain());
  Plug(Reader::Plus(3));
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  ExpectTraffic(Join({FoundPlain(), OneConfiguration(), Classified(), OneConfiguration(), Ask("89 81"),
                      CardTypes(), FirmwareWords()}));
  EXPECT_EQ(GetActDev(), 0);
  SetActDev(1);
  EXPECT_EQ(GetMaxConfig(), 2U);
  EXPECT_EQ(GetFirmwareVersion(0, 0), 0x10072005U);
}

TEST_F(ConnectTrafficTest, APlainReaderBehindAnotherIsClassifiedByItsRead) {
  Plug(Reader::Plain());
  Plug(Reader::Plain());
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  ExpectTraffic(Times(2, Join({FoundPlain(), OneConfiguration()})));
}

TEST_F(ConnectTrafficTest, AReportIdReaderNumbersItsReports) {
  Plug(Reader::Kelda(1));
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  ExpectTraffic(Numbered(Join({Classified(), Ask("89 81"), Classified(), OneConfiguration(), Ask("89 81"),
                               CardTypes(), FirmwareWords()})));
}

TEST_F(ConnectTrafficTest, AReaderWithoutSeparatedFieldsIsAskedForThemOnce) {
  auto reader = Reader::Plain();
  Plug(reader);
  for (const int first : {0, 0xFF}) {
    reader->state.Working().separated.fill(static_cast<std::uint8_t>(first));
    ForgetTraffic();
    EXPECT_EQ(USBConnect(nullptr), 1U);
    EXPECT_EQ(Reports(), 6 + 62 - 22);
    USBDisconnect();
  }
}

TEST_F(ConnectTrafficTest, AWordsRefusedFetchEndsItsRow) {
  auto reader = Reader::Plus(1);
  reader->faults.RefuseReply({0x89, 0x03, 0x00, 0x01});
  Plug(reader);
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  const Lines traffic = TrafficOf(host.transcript.Events());
  const Lines expected = {"set 89 03",       "get", "set 89 03 00 01", "get refused", "set 89 03 01", "get",
                          "set 89 03 01 01", "get", "set 89 03 02",    "get"};
  ASSERT_GE(traffic.size(), expected.size());
  EXPECT_EQ(Difference(expected,
                       Lines(traffic.end() - static_cast<std::ptrdiff_t>(expected.size()), traffic.end())),
            "");
  EXPECT_EQ(GetLastLibErr() & 0x1000000U, 0x1000000U);
}

TEST_F(ConnectTrafficTest, AWordThatAnswersAnotherCountsAsNone) {
  auto reader = Reader::Plus(1);
  reader->faults.AnswerWith({0x89, 0x03, 0x00, 0x00}, {0x89, 0x03, 0x01, 0x00, 1, 2, 3, 4});
  StartTrace();
  Plug(reader);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(GetFirmwareVersion(0, 0), 0U);
  EXPECT_EQ(GetFirmwareVersion(1, 0), 0x20010009U);
  const Lines trace = Trace();
  EXPECT_EQ(std::count(trace.begin(), trace.end(), "USBConnect Firmware: CPU0 Application in hex is  0"), 1);
}

}  // namespace
}  // namespace tavlyn::test
