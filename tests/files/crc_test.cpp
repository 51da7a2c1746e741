// The CRC itself, whole files, and the trailers that are added.
#include "files/crc.h"

#include <memory>
#include <string>
#include <type_traits>

#include "tests/files/file_bench.h"

namespace tavlyn::test {
namespace {

static_assert(std::has_virtual_destructor_v<CRC>);

class Crc : public FileBench {
 protected:
  std::uint32_t Sum(std::string_view text) {
    std::uint32_t sum = 1;
    crc.Begin();
    crc.Add(text);
    EXPECT_EQ(crc.Compute(sum), 0);
    return sum;
  }
  std::uint32_t SumOfFile(const std::string& path) {
    std::uint32_t sum = 1;
    crc.Begin();
    crc.AddWholeFile(path.c_str());
    EXPECT_EQ(crc.Compute(sum), 0);
    return sum;
  }
  CRC crc;
};

TEST_F(Crc, KnownSums) {
  EXPECT_EQ(Sum("123456789"), 0xCBF43926U);
  EXPECT_EQ(Sum(""), 0U);
  EXPECT_EQ(Sum("a"), 0xE8B7BE43U);
  EXPECT_EQ(Sum(std::string(1, '\0')), 0xD202EF8DU);
  EXPECT_EQ(Sum("\xFF\xFF\xFF\xFF"), 0xFFFFFFFFU);
  EXPECT_EQ(Sum("\x9D\x0A\xD9\x6D"), 0U);
}

TEST_F(Crc, EveryByteValueAgreesWithTheBitwiseSum) {
  for (int value = 0; value < 256; ++value) {
    const std::string text = "head" + std::string(3, static_cast<char>(value));
    ASSERT_EQ(Sum(text), SumBitwise(text)) << value;
  }
}

// Whole groups of bytes are summed in another way than what is left of them.
TEST_F(Crc, EveryLengthAndEverySplitAgreesWithTheBitwiseSum) {
  std::string text;
  for (int at = 0; at < 70; ++at) {
    for (std::size_t first = 0; first <= text.size(); ++first) {
      std::uint32_t sum = 1;
      crc.Begin();
      crc.Add(std::string_view(text).substr(0, first));
      crc.Add(std::string_view(text).substr(first));
      ASSERT_EQ(crc.Compute(sum), 0);
      ASSERT_EQ(sum, SumBitwise(text)) << first << " of " << at;
    }
    text += static_cast<char>(at * 151 + 0x8F);
  }
}

TEST_F(Crc, NotBegun) {
  crc.Add("123456789");
  std::uint32_t sum = 1;
  EXPECT_EQ(crc.Compute(sum), 23);
  EXPECT_EQ(sum, 0U) << "the complement of all ones";
}

TEST_F(Crc, WholeFiles) {
  Store(File(), "one\ntwo\r\nno end");
  EXPECT_EQ(SumOfFile(File()), SumBitwise("one\ntwo\r\nno end"));
  Store(File(), "");
  EXPECT_EQ(SumOfFile(File()), SumBitwise(""));
  EXPECT_EQ(SumOfFile(File("missing")), SumBitwise(""));
  const std::string longLine(20000, 'x');
  Store(File(), longLine);
  EXPECT_EQ(SumOfFile(File()), SumBitwise(longLine));
}

TEST_F(Crc, ANulDropsTheRestOfItsPiece) {
  Store(File(), std::string("one\0rest\ntwo\n", 13));
  EXPECT_EQ(SumOfFile(File()), SumBitwise("onetwo\n"));
  // A piece is 4095 characters.
  Store(File(), "a" + std::string(1, '\0') + std::string(4093, 'b') + "c\n");
  EXPECT_EQ(SumOfFile(File()), SumBitwise("ac\n"));
  Store(File(), std::string(4095, 'a') + std::string(1, '\0') + "b\nc");
  EXPECT_EQ(SumOfFile(File()), SumBitwise(std::string(4095, 'a') + "c"));
}

TEST_F(Crc, TheTrailerOfASecureFile) {
  Store(File(), OnDisk("one\ntwo\n"));
  EXPECT_EQ(crc.AppendSecureTrailer(File().c_str()), 0);
  EXPECT_EQ(Fetch(File()), SavedSecureOf("one\ntwo\n"));
  EXPECT_EQ(crc.CheckFile(File().c_str(), 0), 1);
}

TEST_F(Crc, TheTrailerOfABleFile) {
  Store(File(), "one\n/--- iEndOfHwgFile\n");
  EXPECT_EQ(crc.AppendHwgTrailer(File().c_str()), 1);
  EXPECT_EQ(Fetch(File()), "one\n/--- iEndOfHwgFile\niEndOfHwgFile=" + SumText("one\n/--- iEndOfHwgFile\n"));
  EXPECT_EQ(crc.CheckFile(File().c_str(), 0), 1);
}

TEST_F(Crc, SumsAreEightDigits) {
  Store(File(), "\x9D\x0A\xD9\x6D");
  EXPECT_EQ(crc.AppendHwgTrailer(File().c_str()), 1);
  EXPECT_TRUE(Fetch(File()).ends_with("iEndOfHwgFile=00000000"));
}

TEST_F(Crc, ATrailerThatCannotBeAdded) {
  EXPECT_EQ(crc.AppendHwgTrailer(File("missing/file").c_str()), 0);
  EXPECT_EQ(crc.AppendSecureTrailer(File("missing/file").c_str()), 0) << "the same as success";
}

TEST_F(Crc, AMissingFileIsMade) {
  EXPECT_EQ(crc.AppendSecureTrailer(File("new").c_str()), 0);
  EXPECT_EQ(Fetch(File("new")), OnDisk(kBlankMarker) + "iEndOfHwgFile = 00000000");
  EXPECT_EQ(crc.CheckHwgFile(File("new").c_str()), 1);
}

TEST_F(Crc, OneObjectServesSeveralCalculations) {
  const auto own = std::make_unique<CRC>();
  Store(File("a"), SecureOf("a\n"));
  Store(File("b"), IniOf("b\r\n"));
  EXPECT_EQ(own->CheckFile(File("a").c_str(), 0), 1);
  EXPECT_EQ(own->CheckFile(File("b").c_str(), 1), 1);
  EXPECT_EQ(own->CheckFile(File("b").c_str(), 0), 0);
  EXPECT_EQ(own->CheckFile(File("a").c_str(), 2), 0);
  EXPECT_EQ(own->CheckFile(File("b").c_str(), 0xFFFFFFFF), 1);
  std::uint32_t sum = 0;
  EXPECT_EQ(own->Compute(sum), 23) << "it ends after each";
}

}  // namespace
}  // namespace tavlyn::test
