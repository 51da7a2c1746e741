// Loading BLE files into a reader.
#include "tests/files/ble_bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::EventKind;

class BleLoad : public BleBench {
 protected:
  std::uint32_t LoadData(const std::string& text) {
    Store(File(), text);
    return WriteBLEDataToReader(File().c_str());
  }
  std::uint32_t LoadKey(const std::string& text) {
    Store(File(), text);
    return WriteBLEKeyToReader(File().c_str());
  }
  // Refused after the check of the trailer.
  void ExpectRefused(const std::string& text, const BleKind& kind = kKeyKind) {
    Entry().LastLibErr = 5;
    EXPECT_EQ(kind.number == kKeyKind.number ? LoadKey(text) : LoadData(text), 0x8001U) << text;
    ExpectUntouched(0x30000001);
  }
  // The key block that is stored when these lines are loaded.
  void ExpectKey(const std::string& lines, Bytes wanted) {
    wanted.resize(128);
    EXPECT_EQ(LoadKey(BleFile(kKeyKind, lines)), 1U) << lines;
    EXPECT_EQ(KeyOf(Memory().storedBle), wanted) << lines;
    ForgetTraffic();
  }
  // With an existing file: nothing is sent after the exchange that failed, and no wait follows it.
  void ExpectAFaultToEndIt(std::uint32_t (*load)(const char*)) {
    WithAFaultAtEach([&] { return load(File().c_str()); },
                     [&](std::size_t, const std::string& line, std::uint32_t result) {
                       EXPECT_EQ(result, 0x8001U);
                       const bool sent = line.starts_with("get");
                       EXPECT_EQ(GetLastLibErr(), sent ? 0x30000001U : 0x30000203U);
                       ExpectTrace({});
                       const Lines traffic = TrafficOf(host.transcript.Events());
                       ASSERT_FALSE(traffic.empty());
                       EXPECT_EQ(traffic.back(), sent ? "get refused" : "sleep 80");
                     });
  }
  const Bytes data = Counting(384, 3);
  const Bytes key = Counting(128, 7);
};

TEST_F(BleLoad, DataGoesInThreePieces) {
  Entry().LastLibErr = 5;
  EXPECT_EQ(LoadData(BleFile(kDataKind, HexLines(data))), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  for (const sim::Event& event : host.transcript.Events()) {
    if (event.kind == EventKind::kSet || event.kind == EventKind::kGet) {
      EXPECT_EQ(event.bytes.size(), 8U);
    }
  }
  ExpectTraffic(DataWritten(data));
  ExpectTrace({});
  EXPECT_EQ(DataOf(Memory().storedBle), data);
}

TEST_F(BleLoad, AKeyGoesInLongerReportsAndWithoutAWait) {
  EXPECT_EQ(LoadKey(BleFile(kKeyKind, HexLines(key))), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  int exchanges = 0;
  for (const sim::Event& event : host.transcript.Events()) {
    if (event.kind != EventKind::kSet && event.kind != EventKind::kGet) continue;
    ++exchanges;
    ASSERT_EQ(event.bytes.size(), 9U);
    EXPECT_EQ(event.bytes[8], 0);
  }
  EXPECT_EQ(exchanges, 70);
  ExpectTraffic(Written(0x10, key, {}));
  ExpectTrace({});
  EXPECT_EQ(KeyOf(Memory().storedBle), key);
}

TEST_F(BleLoad, ASaveLoadsIntoAnotherReader) {
  Fill();
  const sim::BleMemory filled = Memory().ble;
  EXPECT_EQ(WriteBLEDataToFile(File("data").c_str()), 1U);
  EXPECT_EQ(WriteBLEKeyToFile(File("key").c_str()), 1U);
  Memory().ble = {};
  EXPECT_EQ(WriteBLEDataToReader(File("data").c_str()), 1U);
  EXPECT_EQ(WriteBLEKeyToReader(File("key").c_str()), 1U);
  reader->PowerCycle();
  EXPECT_EQ(Memory().ble, filled);
}

TEST_F(BleLoad, NothingThatIsRepeatedIsLookedAt) {
  reader->faults.AnswerWith({0x89, 0x90}, {0});
  EXPECT_EQ(LoadKey(BleFile(kKeyKind, HexLines(key))), 1U);
  EXPECT_EQ(LoadData(BleFile(kDataKind, HexLines(data))), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(BleLoad, AFileOfTheOtherKind) {
  ExpectRefused(BleFile(kDataKind, HexLines(data)), kKeyKind);
  ExpectRefused(BleFile(kKeyKind, HexLines(key)), kDataKind);
}

TEST_F(BleLoad, EveryFlippedBitOfTheCoveredPartIsRefused) {
  const std::string whole = BleFile(kKeyKind, HexLines(key));
  const std::size_t value = whole.rfind('\n') + 1;
  Entry().LastLibErr = 5;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    if (at >= value && at < value + std::string("iEndOfHwgFile").size()) continue;  // ignores case
    for (int bit = 0; bit < 8; ++bit) {
      std::string changed = whole;
      changed[at] = static_cast<char>(changed[at] ^ 1 << bit);
      EXPECT_EQ(LoadKey(changed), 0x8001U) << at << ' ' << bit;
      ExpectUntouched(0x91000005);
    }
  }
}

TEST_F(BleLoad, FilesThatAreNone) {
  const std::string whole = BleFile(kDataKind, HexLines(data));
  Entry().LastLibErr = 5;
  for (const std::string& text : {std::string(), whole.substr(0, whole.size() - 1), BleHead(kDataKind),
                                  IniOf(whole), CrLf(whole), std::string(5000, '\0')}) {
    EXPECT_EQ(LoadData(text), 0x8001U);
    ExpectUntouched(0x91000005);
    EXPECT_EQ(LoadKey(text), 0x8001U);
    ExpectUntouched(0x91000005);
  }
  for (const std::string& path : {File("missing"), Folder().string(), std::string()}) {
    EXPECT_EQ(WriteBLEDataToReader(path.c_str()), 0x8001U);
    ExpectUntouched(0x91000005);
  }
  EXPECT_EQ(WriteBLEKeyToReader(nullptr), 0x8001U);
  ExpectUntouched(0x91000005);
}

TEST_F(BleLoad, TheTitleStandsWithinTheFirst128Bytes) {
  std::string rest =
      BleHead(kKeyKind).substr(std::string(kTitleLine).size()) + HexLines(key) + BleTail(kKeyKind);
  ExpectRefused(BleOf(rest));
  ExpectRefused(BleOf("\n" + rest));
  // As far back as it may be, and one byte further; in place of the first version line.
  const std::string title = kTitleLine;
  rest.erase(0, rest.find('\n') + 1);
  const std::size_t before = 128 - (title.size() - 2) - std::string("/\n/").size();
  EXPECT_EQ(LoadKey(BleOf("/" + std::string(before, ' ') + "\n" + title + rest)), 1U);
  ForgetTraffic();
  ExpectRefused(BleOf("/" + std::string(before + 1, ' ') + "\n" + title + rest));
}

TEST_F(BleLoad, TheNinthLineBeginsTheBlock) {
  const std::string title = kTitleLine;
  const std::string head = BleHead(kKeyKind).substr(title.size()) + HexLines(key) + "END\n";
  EXPECT_EQ(LoadKey(BleOf(title + head)), 1U);
  ForgetTraffic();
  ExpectRefused(BleOf(title + "/ one more line\n" + head));
  ExpectRefused(BleOf(title + head.substr(head.find('\n') + 1)));
  ExpectRefused(BleOf(title + "\n\n\n\n\n"));
  const auto load = [&](const std::string& begin) {
    Store(File(), BleOf(title + std::string(7, '\n') + begin + "\nEND\n"));
    const std::uint32_t result = WriteBLEKeyToReader(File().c_str());
    EXPECT_EQ(TrafficOf(host.transcript.Events()).empty(), result != 1);
    ForgetTraffic();
    return result;
  };
  EXPECT_EQ(load("BEGIN sFldBleData2"), 1U);
  EXPECT_EQ(load("xBEGIN sFldBleData2x"), 1U);
  EXPECT_EQ(load("begin sFldBleData2"), 0x8001U);
  EXPECT_EQ(load("BEGIN  sFldBleData2"), 0x8001U);
  EXPECT_EQ(load("BEGIN sFldBleData2 BEGIN sFldBleData1"), 0x8001U) << "the data's name goes first";
  EXPECT_EQ(WriteBLEDataToReader(File().c_str()), 1U);
  // A line that is longer than its buffer counts as several.
  const std::string wide =
      title + std::string(130, ' ') + "\n" + std::string(5, '\n') + "BEGIN sFldBleData2\n";
  EXPECT_EQ(LoadKey(BleOf(wide + "END\n")), 1U);
  // The buffer holds 127 characters and a terminator.
  const std::string full =
      title + std::string(126, ' ') + "\n" + std::string(6, '\n') + "BEGIN sFldBleData2\n";
  EXPECT_EQ(LoadKey(BleOf(full + "END\n")), 1U);
}

TEST_F(BleLoad, BytesMayStandInManyWays) {
  ExpectKey("01.02,03 04\t05\n", {1, 2, 3, 4, 5});
  ExpectKey("1\n2\n\n3\n", {1, 2, 3});
  ExpectKey("1.2\n/ a comment\n: another\n3\n", {1, 2, 3});
  ExpectKey("  \t 1..,,2.\t3\n", {1, 2, 3});
  ExpectKey("0xAB.cd.1FF.-1.7g\n", {0xAB, 0xCD, 0xFF, 0xFF, 7});
  ExpectKey("\xFF\x80 11\n", {0x11});
  ExpectKey("11\r\n22\r\n", {0x11, 0x22});
}

TEST_F(BleLoad, ALineOfBytesIsCutBehind383Characters) {
  std::string lines;
  for (int number = 0; number < 127; ++number) lines += "12.";
  ExpectKey(lines + "1234\n", Bytes(128, 0x12));
}

TEST_F(BleLoad, ATokenThatIsNoNumberFails) {
  for (const char* lines : {"GG\n", "1.2.x.4\n", "1.2. \n", "1 2 \n", "1.2.\n", ".\n", "#\n", "1.2.3;4.;\n"})
    ExpectRefused(BleFile(kKeyKind, lines));
}

TEST_F(BleLoad, TheEndOfTheBlock) {
  ExpectKey("1\nEND\n2\n", {1});
  ExpectKey("1\nthe ENDING\nx\n", {1});
  ExpectKey("1\n/ END\n2\n", {1, 2});
  ExpectKey("", {});
  // Also on the line that begins the block.
  EXPECT_EQ(LoadKey(BleOf(kTitleLine + std::string(7, '\n') + "BEGIN sFldBleData2 END\n1\nx\n")), 1U);
  EXPECT_EQ(KeyOf(Memory().storedBle), Bytes(128));
}

// Any line that is not a comment begins the block, and the ninth is then data.
TEST_F(BleLoad, ALineInFrontOfTheBlock) {
  const std::string begin = "BEGIN sFldBleData2\n1\nEND\n";
  EXPECT_EQ(LoadKey(BleOf(kTitleLine + std::string(6, '\n') + "/ a comment\n" + begin)), 1U);
  ForgetTraffic();
  ExpectRefused(BleOf(kTitleLine + std::string(6, '\n') + "1\n" + begin));
}

// Without one the trailer's value is taken as data, unless there is no room for any.
TEST_F(BleLoad, ABlockWithoutAnEnd) {
  ExpectRefused(BleOf(BleHead(kKeyKind) + HexLines(key)));
  EXPECT_EQ(LoadData(BleOf(BleHead(kDataKind) + HexLines(data))), 1U);
  ExpectTraffic(DataWritten(data));
}

TEST_F(BleLoad, MissingBytesGoOutAsZeros) {
  Bytes wanted = Counting(200);
  EXPECT_EQ(LoadData(BleFile(kDataKind, HexLines(Counting(200)))), 1U);
  wanted.resize(384);
  ExpectTraffic(DataWritten(wanted));
}

TEST_F(BleLoad, MoreBytesThanTheBlockHas) {
  // The bound is checked where a line begins: what follows on that line is scanned all the same.
  std::string lines = HexLines(data);
  EXPECT_EQ(LoadData(BleFile(kDataKind, lines + "no number\n")), 1U);
  ForgetTraffic();
  lines.insert(lines.size() - 1, ".AA.BB");
  EXPECT_EQ(LoadData(BleFile(kDataKind, lines + "no number\n")), 1U);
  ExpectTraffic(DataWritten(data));
  lines.insert(lines.size() - 1, ".GG");
  ExpectRefused(BleFile(kDataKind, lines), kDataKind);
  // A key has room for as many.
  ExpectKey(HexLines(data), {data.begin(), data.begin() + 128});
  ExpectKey("1." + std::string(375, '1') + ".2\n", {1, 0xFF, 2});
}

TEST_F(BleLoad, AFaultAtEachExchangeOfAKey) {
  Store(File(), BleFile(kKeyKind, HexLines(key)));
  ExpectAFaultToEndIt(WriteBLEKeyToReader);
}

TEST_F(BleLoad, AFaultAtEachExchangeOfTheData) {
  Store(File(), BleFile(kDataKind, HexLines(data)));
  ExpectAFaultToEndIt(WriteBLEDataToReader);
}

TEST_F(BleLoad, AChangedByteOfADataFileReachesNoReader) {
  std::string whole = BleFile(kDataKind, HexLines(data));
  const std::size_t last = whole.rfind("END sFldBleData1") - 3;
  whole[last] = whole[last] == '0' ? '1' : '0';
  Entry().LastLibErr = 5;
  EXPECT_EQ(LoadData(whole), 0x8001U);
  ExpectUntouched(0x91000005);
}

// An additional comment moves the line that gives the kind; a comment in place of another does not, once the
// file is sealed again.
TEST_F(BleLoad, ACommentInFrontOfTheBlock) {
  const std::string rest = HexLines(data) + BleTail(kDataKind);
  const std::string comment = "/ of the front door\n";
  std::string more = BleHead(kDataKind);
  more.insert(more.find("\nBEGIN"), comment);
  std::string other = BleHead(kDataKind);
  const std::size_t note = other.find("/ No Comment");
  other.replace(note, other.find('\n', note) + 1 - note, comment);
  const std::string seal = SumText(BleHead(kDataKind) + rest + kPlainMarker);
  Entry().LastLibErr = 5;
  for (const std::string& head : {more, other}) {
    EXPECT_EQ(LoadData(head + rest + kPlainMarker + "iEndOfHwgFile=" + seal), 0x8001U);
    ExpectUntouched(0x91000005);
  }
  ExpectRefused(BleOf(more + rest), kDataKind);
  EXPECT_EQ(LoadData(BleOf(other + rest)), 1U);
  ExpectTraffic(DataWritten(data));
}

TEST_F(BleLoad, TakesNoLock) {
  EXPECT_EQ(LoadKey(BleFile(kKeyKind, HexLines(key))), 1U);
  EXPECT_EQ(WriteBLEKeyToFile(File("saved").c_str()), 1U);
  ExpectNoLock();
}

TEST_F(BleLoad, PiecesBeforeAFailureStay) {
  reader->faults.RefuseReply({0x89, 0x90, 0, 0, 0x11, 1, 0x80, 1}, 1);
  EXPECT_EQ(LoadData(BleFile(kDataKind, HexLines(data))), 0x8001U);
  EXPECT_EQ(GetLastLibErr(), 0x30000001U);
  Bytes wanted(data.begin(), data.begin() + 128);
  wanted.resize(384);
  EXPECT_EQ(DataOf(Memory().storedBle), wanted);
}

TEST_F(BleLoad, WithoutAReaderNothingIsLoaded) {
  const std::string whole = BleFile(kDataKind, HexLines(data));
  Entry().LastLibErr = 5;
  Entry().ProductKind = kMagstripe;
  EXPECT_EQ(LoadData(whole), 1U);
  ExpectUntouched();
  EXPECT_EQ(LoadData("x"), 0x8001U);
  ExpectUntouched(0x91000005);
  Entry().ProductKind = kReader;
  shared.DevCnt = 0;
  EXPECT_EQ(LoadData(whole), 1U);
  EXPECT_EQ(LoadKey(whole), 1U);
  ExpectUntouched();
  EXPECT_EQ(LoadData("x"), 0x8001U);
  ExpectUntouched(0x91000005);
  shared.DevCnt = 1;
}

}  // namespace
}  // namespace tavlyn::test
