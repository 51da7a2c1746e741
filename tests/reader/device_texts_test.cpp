// Texts that each call reads from the reader, and its electronic serial number.
#include <functional>
#include <vector>

#include "api.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

struct TextRow {
  const char* (*get)();
  int number;
  const char* text;
};

const std::vector<TextRow> kTexts = {
    {GetSerialNumber, 2, "0400123456"},        {GetPlatformType, 3, "Desktop USB"},
    {GetBuildDate, 5, "Mar  5 2024 06:07:08"}, {GetCopyrightInfo, 6, "(c) Orvantis"},
    {GetCPUInfo, 8, "M4 at 96 MHz"},
};

class DeviceTexts : public Bench {
 protected:
  void Use(std::shared_ptr<Reader> model) { reader = Connected(std::move(model)); }
  std::shared_ptr<Reader> reader;
};

TEST_F(DeviceTexts, EachIsAskedInThreePieces) {
  Use(Reader::Plain());
  EntryOfActDev().LastLibErr = 5;
  for (const TextRow& row : kTexts) {
    EXPECT_STREQ(row.get(), row.text);
    const std::string set = "set 8C 04 0" + std::to_string(row.number);
    ExpectTraffic({set, "get", set + " 01", "get", set + " 02", "get"});
  }
  EXPECT_EQ(GetLastLibErr(), 5U) << "not cleared";
}

TEST_F(DeviceTexts, TheyShareOneBuffer) {
  Use(Reader::Plain());
  const char* first = GetSerialNumber();
  EXPECT_EQ(GetCPUInfo(), first);
  EXPECT_STREQ(first, "M4 at 96 MHz");
  reader->faults.RefuseReply({0x8C, 0x04}, 1);
  EXPECT_STREQ(GetBuildDate(), "");
  EXPECT_STREQ(first, "") << "cleared, also for a text that does not come";
}

TEST_F(DeviceTexts, TwentyFourCharactersAreTheMost) {
  Use(Reader::Plain());
  reader->state.texts[sim::kBuildDate] = std::string(40, 'b');
  EXPECT_EQ(GetBuildDate(), std::string(24, 'b'));
  reader->state.texts[sim::kBuildDate] = "b";
  EXPECT_STREQ(GetBuildDate(), "b");
}

TEST_F(DeviceTexts, AFaultAtEachExchangeGivesAnEmptyText) {
  Use(Reader::Plain());
  for (const TextRow& row : kTexts) {
    for (int exchange = 1; exchange <= 6; ++exchange) {
      const bool sendFails = exchange % 2 == 1;
      reader->faults.Restart();
      reader->faults.RefuseAt(exchange, sendFails ? 6 : 1);
      EntryOfActDev().LastLibErr = 5;
      ForgetTraffic();
      const char* text = row.get();
      ASSERT_NE(text, nullptr);
      EXPECT_STREQ(text, "") << exchange;
      EXPECT_EQ(GetLastLibErr(), sendFails ? 0x20202U : 0x20005U);
      const Lines traffic = TrafficOf(host.transcript.Events());
      EXPECT_EQ(traffic.size(), static_cast<std::size_t>(exchange - 1) + (sendFails ? 12 : 1))
          << "nothing more is asked";
    }
  }
}

TEST_F(DeviceTexts, WithNoDeviceEntry0IsAsked) {
  EXPECT_STREQ(GetSerialNumber(), "");
  EXPECT_EQ(DevTable[0].LastLibErr, 0x20202U);
  EXPECT_EQ(Slept(), 480U);
}

TEST_F(DeviceTexts, AnIndexOutsideTheTableAsksNobody) {
  Use(Reader::Plain());
  const char* text = GetSerialNumber();
  ForgetTraffic();
  for (const int index : {-32768, -1, 127, 32767}) {
    shared.ActDev = static_cast<std::int16_t>(index);
    EXPECT_STREQ(GetCPUInfo(), "") << index;
  }
  shared.ActDev = 0;
  EXPECT_STREQ(text, "0400123456") << "the buffer keeps the last text";
  ExpectTraffic({});
}

TEST_F(DeviceTexts, TheElectronicSerialNumber) {
  Use(Reader::Plain());
  EntryOfActDev().LastLibErr = 5;
  const std::uint8_t* esn = getESN();
  ASSERT_NE(esn, nullptr);
  for (std::size_t at = 0; at < 32; ++at) EXPECT_EQ(esn[at], 0x40 + at);
  ExpectTraffic({"set 8C 06", "get 8C 06 02", "set 8C 05", "get", "set 8C 05 01", "get", "set 8C 05 02",
                 "get", "set 8C 05 03", "get"});
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(DeviceTexts, ASlowReaderHasNone) {
  auto model = Reader::Plain();
  model->state.lacks.push_back({0x8C, 0x06});
  Use(std::move(model));
  EXPECT_EQ(getESN(), nullptr);
  ExpectTraffic({"set 8C 06", "get 00"});
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(DeviceTexts, AReaderOfTwoOrFourConfigurationsIsAFastOne) {
  for (const int configurations : {1, 2, 3, 4, 5}) {
    auto model = Reader::Plus(configurations);
    model->state.lacks.push_back({0x8C, 0x06});
    Use(model);
    EXPECT_EQ(getESN() != nullptr, configurations == 2 || configurations == 4) << configurations;
    USBDisconnect();
    host.hid.Reset();
    Reload();
  }
}

TEST_F(DeviceTexts, AReportId1ReaderIsAFastOne) {
  auto model = Reader::Kelda(1);
  model->state.lacks.push_back({0x8C, 0x06});
  Use(model);
  EXPECT_NE(getESN(), nullptr);
  ExpectTraffic({"set [1] 8C 06", "get [1] 00", "set [1] 8C 05", "get [1] 40 41 42 43 44 45 46 47",
                 "set [1] 8C 05 01", "get [1] 48 49 4A 4B 4C 4D 4E 4F", "set [1] 8C 05 02",
                 "get [1] 50 51 52 53 54 55 56 57", "set [1] 8C 05 03", "get [1] 58 59 5A 5B 5C 5D 5E 5F"});
}

TEST_F(DeviceTexts, AFaultAtEachExchangeOfTheSerialNumber) {
  Use(Reader::Plain());
  StartTrace();
  for (int exchange = 1; exchange <= 10; ++exchange) {
    const bool sendFails = exchange % 2 == 1;
    reader->faults.Restart();
    reader->faults.RefuseAt(exchange, sendFails ? 6 : 1);
    EntryOfActDev().LastLibErr = 5;
    EXPECT_EQ(getESN(), nullptr) << exchange;
    EXPECT_EQ(GetLastLibErr(), sendFails ? 0x1000202U : 0x1000000U) << exchange;
    ExpectTrace(exchange <= 2 ? Lines{} : Lines{"tavlyn_getESN ERROR CODE: 0", "tavlyn_getESN Failed !!"});
  }
  reader->faults.Restart();
  EXPECT_NE(getESN(), nullptr);
}

TEST_F(DeviceTexts, OnlyAReaderOnReportsHasASerialNumber) {
  Use(Reader::Plain());
  EntryOfActDev().LinkKind = kBySerialPort;
  EXPECT_EQ(getESN(), nullptr);
  EntryOfActDev().LinkKind = kByReports;
  ExpectTraffic({});
}

class DeviceTextsFa : public SerialBench {};

TEST_F(DeviceTextsFa, EachIsAskedInThreeFramesAndFailsWithoutAWord) {
  AddReader(Reader::Plain());
  for (const TextRow& row : kTexts) {
    EXPECT_STREQ(row.get(), row.text);
    const std::string header = "0C 04 0" + std::to_string(row.number) + " 0";
    ExpectTraffic(
        Join({FrameLines(header + "0", {"read 0C", "read"}), FrameLines(header + "1", {"read 0C", "read"}),
              FrameLines(header + "2", {"read 0C", "read"})}));
    EntryOfActDev().LastLibErr = 5;
    line->faults.RefuseReply({0x0C, 0x04, static_cast<std::uint8_t>(row.number), 1}, 1);
    EXPECT_STREQ(row.get(), "");
    ExpectTraffic(Join({FrameLines(header + "0", {"read 0C", "read"}), FrameLines(header + "1", {"read"})}));
    EXPECT_EQ(GetLastLibErr(), 5U);
  }
}

}  // namespace
}  // namespace tavlyn::test
