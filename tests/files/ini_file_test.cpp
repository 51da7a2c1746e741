// Key-load files.
#include "tests/files/secure_bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

const std::string kHead = "[Blob1]\r\n";

// An item of three lines, as another tool writes them.
std::string ItemText(const std::string& header, const std::string& data) {
  return kHead + "hdr=" + header + "\r\ndata=" + data + "\r\n";
}

const std::string kGood = ItemText("20 7 5 9", "1 2 3 4 5");
const std::string kBad = ItemText("21 7 5 9", "1 2 3 4");

class IniFiles : public SecureBench {
 protected:
  // As it is, and sealed.
  std::uint32_t LoadRaw(const std::string& text) {
    Store(At("keys.ini"), text);
    return LoadIniFile(File("keys.ini").c_str());
  }
  std::uint32_t Load(const std::string& items) { return LoadRaw(IniOf(items)); }
  static Lines Written(const Bytes& item) {
    const Bytes payload(item.begin() + 4, item.end());
    return Join({Echoed({0x89, 0x90, 0, 0, item[0], item[1], item[2], item[3]}), Blocks(payload), kStored});
  }
  const Lines good = Written({0x20, 7, 5, 9, 1, 2, 3, 4, 5});
};

TEST_F(IniFiles, OneItem) {
  Entry().LastLibErr = 5;
  EXPECT_EQ(Load(kGood), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTraffic(good);
  ExpectTrace({});
  EXPECT_EQ(Memory().storedItems.at({0x20, 7, 9}), Counting(5));
}

TEST_F(IniFiles, SeveralItemsOneAfterTheOther) {
  EXPECT_EQ(Load(kGood + ItemText("1 2 3 4", "AA bb cC") + kGood), 1U);
  ExpectTraffic(Join({good, Written({1, 2, 3, 4, 0xAA, 0xBB, 0xCC}), good}));
}

TEST_F(IniFiles, BytesWithAPrefix) {
  EXPECT_EQ(Load(ItemText("0x20 7 0x5 0X9", "0x1 2 3 4 0x5")), 1U);
  ExpectTraffic(good);
}

TEST_F(IniFiles, SectionHeads) {
  const std::string rest = kGood.substr(kHead.size());
  for (const char* head : {"[Blob]\r\n", "[Blob0]\r\n", "[Blob12345678901234567890]\r\n"}) {
    EXPECT_EQ(Load(head + rest), 1U) << head;
    ExpectTraffic(good);
  }
  for (const char* head : {"[blob1]\r\n", "[Blob1]\n", "[Blob1] \r\n", " [Blob1]\r\n", "[Blob1a]\r\n",
                           "[Blob-1]\r\n", "[Blob 1]\r\n", "[Blob1\r\n", "Blob1]\r\n", "[Blob1]]\r\n",
                           "[Blob1]\r\r\n", "\r\n", "; a comment\r\n", "[EOF]\n", ""}) {
    EXPECT_EQ(Load(head + rest), 0U) << head;
    ExpectTraffic({});
    EXPECT_EQ(GetLastLibErr(), 0U);
  }
}

TEST_F(IniFiles, TheLastItemAnswers) {
  EXPECT_EQ(Load(kGood + kBad + kGood), 1U);
  ExpectTraffic(Join({good, good}));
  EXPECT_EQ(Load(kGood + kBad), 0U);
  ExpectTraffic(good);
  EXPECT_EQ(Memory().storedItems.count({0x20, 7, 9}), 1U) << "the first item stands";
}

TEST_F(IniFiles, AnItemThatTheReaderRefusesIsFollowedByTheNext) {
  const std::string other = ItemText("21 7 4 9", "1 2 3 4");
  reader->faults.AnswerWith({0x89, 0x90, 0, 0xFF}, {0}, 1);
  EXPECT_EQ(Load(other + kGood), 1U);
  reader->faults.AnswerWith({0x89, 0x90, 0, 0xFF}, {0});
  EXPECT_EQ(Load(kGood + other), 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(IniFiles, ALineBetweenItemsEndsTheLoad) {
  for (const char* line : {"\r\n", "; a comment\r\n", "hdr=1\r\n", "[EOF] \r\n"}) {
    EXPECT_EQ(Load(kGood + line + kGood), 0U) << line;
    ExpectTraffic(good);
  }
}

TEST_F(IniFiles, AFileWithoutItems) {
  EXPECT_EQ(Load(""), 0U);
  ExpectTraffic({});
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(IniFiles, MalformedLines) {
  for (const std::string& items :
       {kHead, kHead + "hdr=20 7 5 9\r\n", kHead + "data=1\r\nhdr=1\r\n", kHead + "Hdr=1\r\ndata=1\r\n",
        kHead + "hdr =20 7 1 9\r\ndata=1\r\n", kHead + " hdr=20 7 1 9\r\ndata=1\r\n",
        kHead + "hdr:20 7 1 9\r\ndata=1\r\n", kHead + "hdr=20 7 1 9\r\nData=1\r\n",
        kHead + "hdr=20 7 1 9\r\n\r\ndata=1\r\n", kHead + "hdr=20 7 1 9\r\ndat=1\r\n",
        kHead + "xhdr=20 7 1 9\r\ndata=1\r\n", kHead + "hdr=20 7 1 9\r\ndatax=1\r\n",
        kHead + "hdr\r\ndata=1\r\n", kHead + "=\r\ndata=1\r\n", kHead + "\r\n\r\n"}) {
    Entry().LastLibErr = 5;
    EXPECT_EQ(Load(items), 0U) << items;
    ExpectTraffic({});
    EXPECT_EQ(GetLastLibErr(), 0U) << items;
  }
}

TEST_F(IniFiles, BytesThatDoNotAddUp) {
  for (const std::string& item :
       {ItemText("20 7 5 9", "1 2 3 4"), ItemText("20 7 5 9", "1 2 3 4 5 6"), ItemText("20 7 5", "1 2 3 4 5"),
        ItemText("", "1"), ItemText("20 7 5 9", "1 2 3 4 5 "), ItemText("20 7 5 9 ", "1 2 3 4 5"),
        kHead + "hdr=20 7 0\r\ndata=\n", kHead + "hdr=\n" + "data=\n"}) {
    EXPECT_EQ(Load(item), 0U) << item;
    ExpectTraffic({});
    EXPECT_EQ(GetLastLibErr(), 0U);
  }
}

// A blank before the carriage return, or nothing at all before it, counts as one more byte.
TEST_F(IniFiles, StrayBytes) {
  EXPECT_EQ(Load(ItemText("20 7 6 9", "1 2 3 4 5 ")), 1U);
  ExpectTraffic(Written({0x20, 7, 6, 9, 1, 2, 3, 4, 5, 0}));
  EXPECT_EQ(Load(ItemText("20 7 1 9", "")), 1U);
  ExpectTraffic(Written({0x20, 7, 1, 9, 0}));
  EXPECT_EQ(Load(kHead + "hdr=20 7 0 9\ndata=\n"), 0U) << "an item without payload is not saved";
  ExpectTraffic(Echoed({0x89, 0x90, 0, 0, 0x20, 7, 0, 9}));
  EXPECT_EQ(Load(kHead + "hdr=20 7 2 9 \ndata=1 2 \n"), 1U) << "a line feed of its own is none";
  ExpectTraffic(Written({0x20, 7, 2, 9, 1, 2}));
}

// Header and data are one run of bytes, of which the third is the length.
TEST_F(IniFiles, TheHeaderMayReachIntoTheData) {
  EXPECT_EQ(Load(ItemText("20 7 2", "9 1 2")), 1U);
  ExpectTraffic(Written({0x20, 7, 2, 9, 1, 2}));
  EXPECT_EQ(Load(ItemText("20 7 2 9 1 2", "")), 0U);
  EXPECT_EQ(Load(kHead + "hdr=20 7 2 9 1 2\r\ndata=\n"), 1U);
  ExpectTraffic(Written({0x20, 7, 2, 9, 1, 2}));
}

TEST_F(IniFiles, Numbers) {
  EXPECT_EQ(Load(ItemText("0x20 07 0A 1FF", "AbC 0xFe -1 +2 zz 7g  8 \t9 0x 123456789")), 1U);
  ExpectTraffic(Written({0x20, 7, 10, 0xFF, 0xBC, 0xFE, 0xFF, 2, 0, 7, 8, 9, 0, 0x89}));
}

TEST_F(IniFiles, EqualsSigns) {
  EXPECT_EQ(Load(kHead + "hdr==20 7 1 9\r\ndata===1\r\n"), 1U);
  ExpectTraffic(Written({0x20, 7, 1, 9, 1}));
  EXPECT_EQ(Load(kHead + "hdr=20 7 1 9=8\r\ndata=1=2\r\n"), 1U) << "a second value is not looked at";
  ExpectTraffic(Written({0x20, 7, 1, 9, 1}));
}

TEST_F(IniFiles, TheLongestLine) {
  std::string data;
  for (int byte = 0; byte < 82; ++byte) data += "AA ";
  data += "AA";  // 248 characters, 83 bytes, with the key and the line end 255
  EXPECT_EQ(("data=" + data + "\r\n").size(), 255U);
  EXPECT_EQ(Load(ItemText("20 7 53 9", data)), 1U);
  EXPECT_EQ(Memory().storedItems.at({0x20, 7, 9}), Bytes(83, 0xAA));
  ForgetTraffic();
  // The rest is a line of its own, out of place; half a number counts as a number.
  Bytes cut(88, 0xAA);
  std::copy_n(Bytes{0x20, 7, 0x54, 9}.begin(), 4, cut.begin());
  cut.back() = 0x0A;
  EXPECT_EQ(Load(ItemText("20 7 54 9", data + " AA")), 0U);
  ExpectTraffic(Written(cut));
  EXPECT_EQ(Load(ItemText("20 7 5 9", std::string(100000, '1'))), 0U);
  ExpectTraffic({});
}

TEST_F(IniFiles, EveryFlippedBitIsRefused) {
  const std::string whole = IniOf(kGood + ItemText("1 2 3 4", "AA bb cC"));
  EXPECT_EQ(LoadRaw(whole), 1U);
  ForgetTraffic();
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (int bit = 0; bit < 8; ++bit) {
      std::string changed = whole;
      changed[at] = static_cast<char>(changed[at] ^ 1 << bit);
      Entry().LastLibErr = 5;
      EXPECT_EQ(LoadRaw(changed), 0U) << at << ' ' << bit;
      ExpectUntouched(0x91000005);
    }
  }
  ExpectTrace({});
}

TEST_F(IniFiles, AFileThatIsCutOrLonger) {
  const std::string whole = IniOf(kGood);
  Entry().LastLibErr = 5;
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_EQ(LoadRaw(whole.substr(0, size)), 0U) << size;
    ExpectUntouched(0x91000005);
  }
  for (const std::string& more : {std::string("\r\n"), std::string("x"), whole, std::string(1, '\0')}) {
    EXPECT_EQ(LoadRaw(whole + more), 0U);
    ExpectUntouched(0x91000005);
  }
}

TEST_F(IniFiles, FilesThatAreNone) {
  Entry().LastLibErr = 5;
  for (const std::string& text :
       {std::string(), kGood, BleOf(kGood), SecureOf(kGood), std::string(5000, '\0')}) {
    EXPECT_EQ(LoadRaw(text), 0U);
    ExpectUntouched(0x91000005);
  }
  for (const std::string& path : {File("missing"), File("missing/file"), Folder().string(), std::string()}) {
    EXPECT_EQ(LoadIniFile(path.c_str()), 0U);
    ExpectUntouched(0x91000005);
  }
  EXPECT_EQ(LoadIniFile(nullptr), 0U);
  ExpectUntouched(0x91000005);
}

// The check and the load cut a long line differently: what a NUL hides from the CRC is never taken for a
// line.
TEST_F(IniFiles, ANulEndsALine) {
  const std::string covered = kGood + kHead + "hdr=20 7 1 9";
  const std::string hidden = std::string(1, '\0') + "\r\ndata=1\r\n";
  const std::string sum = SumText(covered + "data=1\r\n");
  EXPECT_EQ(LoadRaw(covered + hidden + kIniMarker + "iEndOfIniFile=" + sum + "\r\n"), 1U);
  ExpectTraffic(Join({good, Written({0x20, 7, 1, 9, 1})}));
}

TEST_F(IniFiles, AFaultAtEachExchange) {
  Store(At("keys.ini"), IniOf(kGood));
  WithAFaultAtEach([&] { return LoadIniFile(File("keys.ini").c_str()); },
                   [&](std::size_t number, const std::string& line, std::uint32_t result) {
                     const bool silent = number == 1 || number == 3 || number == 5;
                     EXPECT_EQ(result, silent ? 1U : 0U);
                     const bool lost = line.starts_with("set") && number != 0;
                     EXPECT_EQ(GetLastLibErr(), lost ? 0x81000202U : 0U);
                   });
}

TEST_F(IniFiles, OnlyIntoACardReader) {
  Entry().ProductKind = kMagstripe;
  Entry().LastLibErr = 5;
  EXPECT_EQ(Load(kGood), 0U);
  ExpectUntouched(0);
  EXPECT_EQ(LoadRaw(kGood), 0U);
  ExpectUntouched(0x91000005);
  Entry().ProductKind = kReader;
  shared.DevCnt = 0;
  EXPECT_EQ(Load(kGood), 0U);
  ExpectUntouched();
  EXPECT_EQ(LoadRaw(kGood), 0U);
  ExpectUntouched(0x91000005);
  shared.DevCnt = 1;
}

}  // namespace
}  // namespace tavlyn::test
