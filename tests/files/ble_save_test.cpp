// Saving a reader's BLE blocks.
#include "tests/files/ble_bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;

class BleSave : public BleBench {
 protected:
  void SetUp() override {
    BleBench::SetUp();
    Fill();
  }
  std::uint32_t SaveData() { return WriteBLEDataToFile(File().c_str()); }
  std::uint32_t SaveKey() { return WriteBLEKeyToFile(File().c_str()); }
};

TEST_F(BleSave, EveryByteOfADataFile) {
  Entry().LastLibErr = 5;
  const Bytes bytes = DataOf(Memory().ble);
  EXPECT_EQ(SaveData(), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(Fetch(File()), SavedBleFile(kDataKind, HexLines(bytes)));
  EXPECT_EQ(CheckTamperedFile(File().c_str(), 0), 1U);
  ExpectTraffic(Join({Read("00", "80", Piece(bytes, 0)), Read("01", "80", Piece(bytes, 1)),
                      Read("02", "80", Piece(bytes, 2))}));
  ExpectTrace({});
}

TEST_F(BleSave, EveryByteOfAKeyFile) {
  const Bytes bytes = KeyOf(Memory().ble);
  EXPECT_EQ(SaveKey(), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(Fetch(File()), SavedBleFile(kKeyKind, HexLines(bytes)));
  for (const sim::Event& event : host.transcript.Events()) {
    if (event.kind == sim::EventKind::kSet || event.kind == sim::EventKind::kGet) {
      EXPECT_EQ(event.bytes.size(), 8U);
    }
  }
  ExpectTraffic(Read("10", "90", bytes));
  ExpectTrace({});
}

TEST_F(BleSave, TheHeadCountsNineLines) {
  const std::string head = BleHead(kDataKind);
  const std::string before = head.substr(0, head.find("BEGIN"));
  EXPECT_EQ(std::count(before.begin(), before.end(), '\n'), 8);
}

TEST_F(BleSave, ASaveReplacesWhatWasThere) {
  Store(File(), std::string(100000, 'x'));
  EXPECT_EQ(SaveKey(), 1U);
  EXPECT_EQ(SaveKey(), 1U);
  EXPECT_EQ(Fetch(File()), SavedBleFile(kKeyKind, HexLines(KeyOf(Memory().ble))));
}

// A reply's contents are used, whatever comes before them.
TEST_F(BleSave, NothingThatIsRepeatedIsLookedAt) {
  reader->faults.AnswerWith({0x89, 0x10}, {1, 2, 3, 4, 5, 6, 7, 8});
  EXPECT_EQ(SaveKey(), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  Bytes bytes;
  for (int block = 0; block < 32; ++block) bytes.insert(bytes.end(), {5, 6, 7, 8});
  EXPECT_EQ(Fetch(File()), SavedBleFile(kKeyKind, HexLines(bytes)));
}

// The file is complete all the same, with zeros for what did not arrive.
TEST_F(BleSave, AFaultAtEachExchangeOfAKey) {
  WithAFaultAtEach([&] { return SaveKey(); },
                   [&](std::size_t number, const std::string& line, std::uint32_t result) {
                     EXPECT_EQ(result, 1U);
                     const std::uint32_t channel = line.starts_with("set") ? 0x202 : 0;
                     EXPECT_EQ(GetLastLibErr(), 0x30000000U | channel);
                     Bytes bytes = KeyOf(Memory().ble);
                     const std::size_t came = number < 4 ? 0 : (number - 4) / 2 * 4;
                     std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(came), bytes.end(),
                               std::uint8_t{0});
                     EXPECT_EQ(Fetch(File()), SavedBleFile(kKeyKind, HexLines(bytes)));
                     ExpectTrace({});
                     const Lines traffic = TrafficOf(host.transcript.Events());
                     ASSERT_FALSE(traffic.empty());
                     EXPECT_EQ(traffic.back(), line.starts_with("set") ? "sleep 80" : "get refused");
                   });
}

TEST_F(BleSave, AFaultInEachPieceOfTheData) {
  for (std::size_t piece = 0; piece < 3; ++piece) {
    reader->faults.Restart();
    reader->faults.RefuseAt(static_cast<int>(68 * piece) + 6);  // the first block's reply
    Entry().LastLibErr = 5;
    EXPECT_EQ(SaveData(), 1U);
    EXPECT_EQ(GetLastLibErr(), 0x30000000U);
    Bytes bytes = DataOf(Memory().ble);
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(128 * piece), bytes.end(), std::uint8_t{0});
    EXPECT_EQ(Fetch(File()), SavedBleFile(kDataKind, HexLines(bytes)));
    EXPECT_EQ(CheckTamperedFile(File().c_str(), 0), 1U);
  }
}

TEST_F(BleSave, FilesThatCannotBeOpened) {
  for (const std::string& path : {File("missing/file"), Folder().string(), std::string()}) {
    Entry().LastLibErr = 5;
    EXPECT_EQ(WriteBLEDataToFile(path.c_str()), 0x8001U);
    EXPECT_EQ(WriteBLEKeyToFile(path.c_str()), 0x8001U);
    ExpectUntouched(0);
  }
  EXPECT_EQ(WriteBLEDataToFile(nullptr), 0x8001U);
  EXPECT_EQ(WriteBLEKeyToFile(nullptr), 0x8001U);
  ExpectUntouched(0);
}

// While the reader is asked, the current folder changes to one in which a folder has the file's name.
TEST_F(BleSave, ATrailerThatCannotBeAdded) {
  const auto here = std::filesystem::absolute(Folder());
  const auto elsewhere = here / "elsewhere";
  std::filesystem::create_directories(elsewhere / "file.txt");
  for (const auto save : {WriteBLEDataToFile, WriteBLEKeyToFile}) {
    EnterFolder();
    host.clock.onSleep = [&] { std::filesystem::current_path(elsewhere); };
    Entry().LastLibErr = 5;
    EXPECT_EQ(save("file.txt"), 0x8001U);
    host.clock.onSleep = nullptr;
    EXPECT_EQ(GetLastLibErr(), 0x30000000U);
    EXPECT_TRUE(Fetch(here / "file.txt").ends_with(OnDisk(kPlainMarker)));
    ExpectTrace({});
  }
}

}  // namespace
}  // namespace tavlyn::test
