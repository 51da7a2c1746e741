// Reading the stored configuration over a serial link.
#include <cstring>

#include "api.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

Lines Data(const std::string& header, const std::string& data) {
  return FrameLines(header, {"read " + header.substr(0, 2), data, "read 90 00"});
}
Lines Bare(const std::string& header) { return FrameLines(header, {"read 0C", "read"}); }

Lines Texts(int number, int pages) {
  Lines lines;
  for (int page = 0; page < pages; ++page) {
    lines = Join({lines, Bare("0C 04 0" + std::to_string(number) + " 0" + std::to_string(page))});
  }
  return lines;
}
Lines ModelFrames() { return Join({Bare("0C 01 00 00"), Bare("0C 01 01 00"), Bare("0C 01 02 00")}); }

Lines OneConfig(const std::string& sepInstruction) {
  return Join({Data("04 00 00 04", "read 01 00 31 74"), Data("01 00 00 08", "read 03 05 11 10 1A 3A 28 1C"),
               Data("01 01 00 08", "read"), Data("01 02 00 08", "read 01 10 00 00 00 00 00 00"),
               Data("01 03 00 08", "read 00 00 00 00 00 00 00 00"),
               Data(sepInstruction + " 00 00 08", "read 0C 00 00 0C 00 00 00 00"),
               Data(sepInstruction + " 00 00 60", "read"), Texts(7, 8), Texts(4, 3), ModelFrames()});
}

class CfgReadFa : public SerialBench {
 protected:
  static tsCfgSlot& Slot(std::size_t number = 0) { return Entry().CfgSlot[number]; }
};

TEST_F(CfgReadFa, APlainReaderIsReadInOnePass) {
  AddReader(Reader::Plain());
  Entry().LastLibErr = 5;
  EXPECT_EQ(ReadCfg(), 1U);
  const Lines frames = OneConfig("09");
  EXPECT_EQ(Slept(), 50U * 21U) << "one pause for each frame";
  ExpectTraffic(frames);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(GetSN(), 65535U);
  EXPECT_EQ(GetDID(), 0x7431U);
  EXPECT_STREQ(getPartNumberString(), "RDR-80581AKU");
  EXPECT_STREQ(GetFWFilename(), "orvantis_80581_16_07_2_build_94.bin");
  EXPECT_STREQ(GetFullFWVersion(), "LNC 16.07.2 build 94");
  EXPECT_NE(Slot().bCfgLoaded, 0U);
  EXPECT_EQ(Slot()[field::IDBitCnts_iTotalBitCnt], 26);
}

TEST_F(CfgReadFa, TheBootDeviceFlagIsNotTakenOverSerial) {
  AddReader(Reader::Plain());
  reader->state.Working().blocks[2][0] = 0x10;
  Slot()[field::CfgFlags3_bNotBootDev] = 1;
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Slot()[field::CfgFlags3_bNotBootDev], 0);
}

TEST_F(CfgReadFa, APlusReaderIsReadFromTheHighestDown) {
  AddReader(Reader::Plus(2), kPlusReader);
  Entry().MaxConfig = 1;
  EXPECT_EQ(ReadCfg(), 1U);
  const auto config = [](const std::string& number, const std::string& answer) {
    return Join({Data("09 81 " + number + " 00", "read 81 " + number + " 00 00 00 00 00"),
                 Data("09 01 00 00", answer), OneConfig("0A")});
  };
  const auto page = [](const std::string& number, const std::string& reply) {
    return FrameLines("09 04 " + number + " 00", {"sleep 10", reply, "sleep 2"});
  };
  ExpectTraffic(Join({config("01", "read 01 01 02 00 04 F0 00"), config("00", "read 01 00 02 00 04 EF 01"),
                      Data("09 81 00 00", "read 81 00 00 00 00 00 00"),
                      page("00", "read 09 04 00 04 EF 04 F0 02 F1 01 FA 90 00"),
                      page("01", "read 09 04 01 01 7D 00 00 00 00 00 00 90 00")}));
  EXPECT_EQ(Slot(1).CardType, 0xF004);
  EXPECT_EQ(Slot(0).CardType, 0xEF04);
  EXPECT_EQ(Entry().CardTypeList[4], 0x7D01);
}

struct ReadFault {
  const char* what;
  std::initializer_list<std::uint8_t> frame;
  std::uint32_t result;
  std::uint32_t word;
  Lines trace;
};

TEST_F(CfgReadFa, AFaultAtEachFrame) {
  AddReader(Reader::Plain());
  StartTrace();
  for (const ReadFault& row : std::initializer_list<ReadFault>{
           {"identity", {0x04}, 0, 0x20000, {kReadCode}},
           {"block 0", {0x01, 0x00}, 0, 0, {kReadFailed}},
           {"block 1", {0x01, 0x01}, 0, 0, {}},
           {"block 2", {0x01, 0x02}, 0, 0, {}},
           {"block 3", {0x01, 0x03}, 0, 0, {kReadFailed}},
           {"area", {0x09, 0x00, 0x00, 0x60}, 1, 0, {kReadModel}},
           {"file name", {0x0C, 0x04, 0x07, 0x03}, 1, 0, {kReadModel}},
           {"version", {0x0C, 0x04, 0x04, 0x02}, 1, 0, {kReadModel}},
           {"model", {0x0C, 0x01, 0x01}, 1, 0, {}},
       }) {
    for (const bool refused : {true, false}) {
      SCOPED_TRACE(std::string(row.what) + (refused ? " refused" : " silent"));
      line->faults.Restart();
      if (refused) {
        line->faults.RefuseCommand(row.frame, 1);
      } else {
        line->faults.RefuseReply(row.frame, 1);
      }
      Slot().bCfgLoaded = 0;
      Entry().bPartNumberPending = 1;
      Entry().LastLibErr = 5;
      std::strcpy(Entry().FWFilename, "old");
      std::strcpy(Entry().FullFWVersion, "old");
      EXPECT_EQ(ReadCfg(), row.result);
      EXPECT_EQ(GetLastLibErr(), row.word);
      EXPECT_EQ(Slot().bCfgLoaded, row.result);
      EXPECT_EQ(Entry().bSepFldCapable, 1U);
      EXPECT_EQ(Entry().bPartNumberPending, row.trace.empty() && row.result == 1 ? 0U : 1U);
      if (row.result == 1) {
        EXPECT_EQ(std::string(GetFWFilename()).empty(), std::string(row.what) == "file name");
        EXPECT_EQ(std::string(GetFullFWVersion()).empty(), std::string(row.what) == "version");
      }
      ExpectTrace(row.trace);
    }
  }
}

TEST_F(CfgReadFa, AFaultAtEachByteNeverHangsOrCrashes) {
  AddReader(Reader::Plus(2), kPlusReader);
  Entry().MaxConfig = 1;
  EXPECT_EQ(ReadCfg(), 1U);
  const int bytes = line->faults.Exchanges();
  ASSERT_GT(bytes, 300);
  for (int byte = 1; byte <= bytes; byte += 3) {
    for (const bool garbled : {false, true}) {
      line->faults.Restart();
      if (garbled) {
        line->faults.GarbleAt(byte);
      } else {
        line->faults.RefuseAt(byte);
      }
      line->Silence();
      Entry().PlusState = kPlusReader;
      Entry().MaxConfig = 1;
      Entry().ActConfig = 0;
      Entry().bSepFldCapable = 1;
      ReadCfg();
      EXPECT_LE(Entry().MaxConfig, 10) << byte;
      EXPECT_LE(Entry().ActConfig, 10) << byte;
      EXPECT_TRUE(Port().IsOpen());
      ForgetTraffic();
    }
  }
  line->faults.Restart();
  line->Silence();
  Entry().PlusState = kPlusReader;
  EXPECT_EQ(ReadCfg(), 1U) << "nothing of it lasts";
}

TEST_F(CfgReadFa, WithoutAPortTheReadFailsAtItsFirstFrame) {
  AddReader(Reader::Plain());
  Port().Close();
  EXPECT_EQ(ReadCfg(), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x20000U);
  ExpectTraffic({});
}

TEST_F(CfgReadFa, InSocketModeEachFrameIsCleared) {
  AddReader(Reader::Plain());
  Port().SetIpAddr({});
  EXPECT_EQ(ReadCfg(), 1U);
  const Lines traffic = TrafficOf(host.transcript.Events());
  EXPECT_EQ(std::count(traffic.begin(), traffic.end(), "purge"), 21);
  EXPECT_EQ(std::count(traffic.begin(), traffic.end(), "sleep 50"), 7) << "bare replies do not wait";
}

}  // namespace
}  // namespace tavlyn::test
