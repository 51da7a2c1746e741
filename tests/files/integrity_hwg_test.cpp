// The trailer of template files and BLE files: what passes, and nothing else does.
#include <functional>
#include <string>

#include "tests/files/file_bench.h"

namespace tavlyn::test {
namespace {

const std::string kHwgBody = "/--- A title\nfirst = 1\nsecond = 2\n";
constexpr std::uint8_t kPatterns[] = {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x2A, 0x40, 0x5A, 0x7F, 0x80, 0xFF};

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

class HwgTrailer : public FileBench {
 protected:
  // Flips bits of every byte in turn; `passes` says for which place and new byte a file stays valid.
  void FlipEveryByte(const std::string& text, const std::function<bool(std::size_t, char)>& passes) {
    ASSERT_TRUE(Intact(text));
    for (std::size_t at = 0; at < text.size(); ++at) {
      for (const std::uint8_t pattern : kPatterns) {
        std::string changed = text;
        changed[at] = static_cast<char>(changed[at] ^ pattern);
        ASSERT_EQ(Intact(changed), passes(at, changed[at]))
            << "byte " << at << ", pattern " << int{pattern} << "\n"
            << changed;
      }
    }
  }
  void CutEverywhere(const std::string& text) {
    ASSERT_TRUE(Intact(text));
    for (std::size_t length = 0; length < text.size(); ++length)
      ASSERT_FALSE(Intact(text.substr(0, length))) << length;
  }
  void FlipSecure(const std::string& text) {
    const std::size_t marker = text.rfind('/');
    const std::size_t blank = text.rfind(' ');
    FlipEveryByte(text, [&](std::size_t at, char now) {
      if (at == blank) return now != '\0' && now != '\n' && now != '=';
      const bool caseOnly = IsLetter(text[at]) && (now ^ text[at]) == 0x20;
      return at >= marker && at < blank && caseOnly;
    });
  }
  void FlipBle(const std::string& text) {
    const std::size_t name = text.rfind("iEnd");
    const std::size_t equals = text.rfind('=');
    FlipEveryByte(text, [&](std::size_t at, char now) {
      const bool caseOnly = IsLetter(text[at]) && (now ^ text[at]) == 0x20;
      return at >= name && at < equals && caseOnly;
    });
  }
  static std::string SecureCrLf() {
    const std::string body = CrLf(kHwgBody);
    return body + CrLf(kBlankMarker) + "iEndOfHwgFile = " + SumText(body);
  }
  static std::string BleCrLf() {
    const std::string body = CrLf(kHwgBody + kPlainMarker);
    return body + "iEndOfHwgFile=" + SumText(body);
  }
};

TEST_F(HwgTrailer, EveryByteOfASecureFile) { FlipSecure(SecureOf(kHwgBody)); }
TEST_F(HwgTrailer, EveryByteOfASecureFileWithCrLf) { FlipSecure(SecureCrLf()); }
TEST_F(HwgTrailer, EveryByteOfABleFile) { FlipBle(BleOf(kHwgBody)); }
TEST_F(HwgTrailer, EveryByteOfABleFileWithCrLf) { FlipBle(BleCrLf()); }

TEST_F(HwgTrailer, EveryLength) {
  CutEverywhere(SecureOf(kHwgBody));
  CutEverywhere(SecureCrLf());
  CutEverywhere(BleOf(kHwgBody));
  CutEverywhere(BleCrLf());
}

TEST_F(HwgTrailer, WithoutATrailer) {
  EXPECT_FALSE(Intact(""));
  EXPECT_FALSE(Intact("\n"));
  EXPECT_FALSE(Intact(kHwgBody));
  EXPECT_FALSE(Intact("no line end"));
  EXPECT_FALSE(Intact(kHwgBody + kBlankMarker));
  EXPECT_FALSE(Intact(kHwgBody + "/--- iEndOfHwgFile "));
  EXPECT_FALSE(Intact(kHwgBody + "iEndOfHwgFile = " + SumText(kHwgBody)));
}

TEST_F(HwgTrailer, WhatStandsBehindTheValue) {
  for (const std::string& file : {SecureOf(kHwgBody), BleOf(kHwgBody)}) {
    EXPECT_TRUE(Intact(file + "\n"));
    EXPECT_TRUE(Intact(file + "\r\n"));
    EXPECT_TRUE(Intact(file + "\r"));
    EXPECT_TRUE(Intact(file + "\nany\nlines\n" + kBlankMarker + "iEndOfHwgFile = 00000000"));
    EXPECT_TRUE(Intact(file + std::string("\0rest", 5)));
    EXPECT_FALSE(Intact(file + " \n"));
    EXPECT_FALSE(Intact(file + "0\n"));
    EXPECT_FALSE(Intact(file + "\r\r\n"));
    EXPECT_FALSE(Intact(file + "=\n"));
  }
}

TEST_F(HwgTrailer, ConvertedLineEnds) {
  EXPECT_FALSE(Intact(CrLf(SecureOf(kHwgBody))));
  EXPECT_FALSE(Intact(CrLf(BleOf(kHwgBody))));
  std::string lf;
  for (const char c : SecureCrLf())
    if (c != '\r') lf += c;
  EXPECT_FALSE(Intact(lf));
}

TEST_F(HwgTrailer, TheFirstLineDecidesTheLineEnd) {
  const std::string mixed = "first\nsecond\r\n";
  EXPECT_TRUE(Intact(SecureOf(mixed)));
  EXPECT_FALSE(Intact(mixed + CrLf(kBlankMarker) + "iEndOfHwgFile = " + SumText(mixed)));
  const std::string other = "first\r\nsecond\n";
  EXPECT_FALSE(Intact(SecureOf(other)));
  EXPECT_TRUE(Intact(other + CrLf(kBlankMarker) + "iEndOfHwgFile = " + SumText(other)));
}

TEST_F(HwgTrailer, TheFirstPieceOfALongFirstLineDecides) {
  const std::string longFirst = std::string(127, 'x') + "\r\n";
  EXPECT_TRUE(Intact(SecureOf(longFirst)));
  EXPECT_FALSE(Intact(longFirst + CrLf(kBlankMarker) + "iEndOfHwgFile = " + SumText(longFirst)));
  const std::string fits = std::string(125, 'x') + "\r\n";
  EXPECT_TRUE(Intact(fits + CrLf(kBlankMarker) + "iEndOfHwgFile = " + SumText(fits)));
}

TEST_F(HwgTrailer, AMarkerOnTopOfTheFile) {
  EXPECT_TRUE(Intact(kBlankMarker + "iEndOfHwgFile = 00000000"));
  EXPECT_TRUE(Intact(kPlainMarker + "iEndOfHwgFile=" + SumText(kPlainMarker)));
  EXPECT_TRUE(Intact(CrLf(kBlankMarker) + "iEndOfHwgFile = 00000000\r\n"));
}

TEST_F(HwgTrailer, NameAndValueDecideNotTheForm) {
  const std::string sum = SumText(kHwgBody);
  const std::string blank = kHwgBody + kBlankMarker;
  EXPECT_TRUE(Intact(blank + "iEndOfHwgFile= " + sum));
  EXPECT_TRUE(Intact(blank + "iEndOfHwgFile =x" + sum));
  EXPECT_TRUE(Intact(blank + "iEndOfHwgFile === " + sum));
  EXPECT_TRUE(Intact(blank + "IENDOFHWGFILE = " + sum));
  EXPECT_FALSE(Intact(blank + "iEndOfHwgFile=" + sum)) << "a digit is skipped";
  EXPECT_FALSE(Intact(blank + "iEndOfHwgFile =  " + sum));
  EXPECT_FALSE(Intact(blank + "iEndOfHwgFile  = " + sum));
  EXPECT_FALSE(Intact(blank + " iEndOfHwgFile = " + sum));
  EXPECT_FALSE(Intact(blank + "iEndOfIniFile = " + sum));
  EXPECT_FALSE(Intact(blank + "iEndOfHwgFile = "));
  EXPECT_FALSE(Intact(blank + "iEndOfHwgFile ="));
  EXPECT_FALSE(Intact(blank + "iEndOfHwgFile"));
  EXPECT_FALSE(Intact(blank + "= " + sum));

  const std::string plain = kHwgBody + kPlainMarker;
  const std::string plainSum = SumText(plain);
  EXPECT_TRUE(Intact(plain + "iEndOfHwgFile =" + plainSum));
  EXPECT_TRUE(Intact(plain + "iendofhwgfile==" + plainSum));
  EXPECT_FALSE(Intact(plain + "iEndOfHwgFile= " + plainSum));
  EXPECT_FALSE(Intact(plain + "iEndOfHwgFile = " + plainSum));
  EXPECT_FALSE(Intact(plain + "iEndOfHwgFile=" + sum)) << "the marker belongs to the sum";
}

TEST_F(HwgTrailer, DigitsAreUpperCaseAndEight) {
  // This body's CRC has letters and begins with a zero.
  std::string body;
  for (int number = 0;
       !SumText(body).starts_with("0") || SumText(body).find_first_of("ABCDEF") == std::string::npos;
       ++number)
    body = "body " + std::to_string(number) + "\n";
  const std::string sum = SumText(body);
  const std::string head = body + kBlankMarker + "iEndOfHwgFile = ";
  EXPECT_TRUE(Intact(head + sum));
  std::string lower = sum;
  for (char& c : lower) c = IsLetter(c) ? static_cast<char>(c | 0x20) : c;
  EXPECT_FALSE(Intact(head + lower));
  EXPECT_FALSE(Intact(head + sum.substr(1)));
  EXPECT_FALSE(Intact(head + "0" + sum));
}

TEST_F(HwgTrailer, AMarkersCaseIsOutsideOneSumAndInsideTheOther) {
  EXPECT_TRUE(Intact(kHwgBody + "/--- IENDofhwgFILE \niEndOfHwgFile = " + SumText(kHwgBody)));
  EXPECT_FALSE(Intact(kHwgBody + "/--- IENDofhwgFILE\niEndOfHwgFile=" + SumText(kHwgBody + kPlainMarker)));
  const std::string inside = kHwgBody + "/--- IENDofhwgFILE\n";
  EXPECT_TRUE(Intact(inside + "iEndOfHwgFile=" + SumText(inside))) << "it joins the sum as it stands";
}

TEST_F(HwgTrailer, MarkersMustBeWholeLines) {
  for (const char* line :
       {" /--- iEndOfHwgFile \n", "/--- iEndOfHwgFile  \n", "/--- iEndOfHwgFile x\n", "/---iEndOfHwgFile \n",
        "/--- iEndOfHwgFile \r\n", "//--- iEndOfHwgFile \n", "/--- iEndOfHwgFile\t\n"})
    EXPECT_FALSE(Intact(kHwgBody + line + "iEndOfHwgFile = " + SumText(kHwgBody))) << line;
}

TEST_F(HwgTrailer, OtherLinesBehindAMarkerArePassedOver) {
  const std::string value = "iEndOfHwgFile = " + SumText(kHwgBody);
  EXPECT_TRUE(Intact(kHwgBody + kBlankMarker + "not a value\n" + kBlankMarker + value));
  EXPECT_FALSE(Intact(kHwgBody + kBlankMarker + "not a value\n" + value));
  const std::string summed = kHwgBody + "joins\n";
  EXPECT_TRUE(Intact(kHwgBody + kBlankMarker + "dropped\njoins\n" + kBlankMarker +
                     "iEndOfHwgFile = " + SumText(summed)));
  const std::string twice = kHwgBody + kPlainMarker + kPlainMarker;
  EXPECT_TRUE(
      Intact(kHwgBody + kPlainMarker + "dropped\n" + kPlainMarker + "iEndOfHwgFile=" + SumText(twice)));
  const std::string mixed = kHwgBody + kPlainMarker;
  EXPECT_TRUE(Intact(mixed + "dropped\n" + kBlankMarker + "iEndOfHwgFile = " + SumText(mixed)));
}

TEST_F(HwgTrailer, AMarkerBehindAMarkerIsDroppedWithWhatItMarks) {
  const std::string value = "iEndOfHwgFile = " + SumText(kHwgBody);
  EXPECT_FALSE(Intact(kHwgBody + kBlankMarker + kBlankMarker + value));
  EXPECT_TRUE(Intact(kHwgBody + kBlankMarker + kBlankMarker + kBlankMarker + value));
  EXPECT_FALSE(Intact(kHwgBody + kBlankMarker + kPlainMarker + value));
}

TEST_F(HwgTrailer, AValueLineWithoutAMarkerIsSummed) {
  const std::string summed = kHwgBody + "iEndOfHwgFile = 12345678\n";
  EXPECT_TRUE(Intact(SecureOf(summed)));
  EXPECT_FALSE(Intact(kHwgBody + "iEndOfHwgFile = 12345678\n" + kBlankMarker +
                      "iEndOfHwgFile = " + SumText(kHwgBody)));
}

TEST_F(HwgTrailer, LongLinesArriveInPieces) {
  for (const std::size_t length : {126U, 127U, 128U, 253U, 254U, 255U, 5000U}) {
    EXPECT_TRUE(Intact(SecureOf(std::string(length, 'x') + "\n"))) << length;
    EXPECT_TRUE(Intact(BleOf(std::string(length, 'x') + "\n"))) << length;
  }
  // A piece of 127 characters ends where the marker begins.
  EXPECT_TRUE(Intact(SecureOf(std::string(127, 'x'))));
  EXPECT_TRUE(Intact(SecureOf(std::string(254, 'x'))));
  EXPECT_FALSE(Intact(SecureOf(std::string(126, 'x'))));
  EXPECT_FALSE(Intact(SecureOf(std::string(128, 'x'))));
  // The value line as well.
  EXPECT_FALSE(
      Intact(kHwgBody + kBlankMarker + "iEndOfHwgFile = " + SumText(kHwgBody) + std::string(200, 'x')));
  EXPECT_FALSE(
      Intact(kHwgBody + kBlankMarker + std::string(127, 'x') + "iEndOfHwgFile = " + SumText(kHwgBody)));
}

TEST_F(HwgTrailer, ANulDropsTheRestOfItsPiece) {
  const auto with = [](const std::string& line) {
    return kHwgBody + line + kBlankMarker + "iEndOfHwgFile = ";
  };
  const std::string line("ab\0cd\n", 6);
  EXPECT_TRUE(Intact(with(line) + SumText(kHwgBody + "ab")));
  EXPECT_FALSE(Intact(with(line) + SumText(kHwgBody + line)));
  const std::string nulMarker("/--- iEndOfHwgFile \0\n", 21);
  EXPECT_FALSE(Intact(kHwgBody + nulMarker + "iEndOfHwgFile = " + SumText(kHwgBody)));
}

TEST_F(HwgTrailer, TheErrorWordAndTheDeviceAreLeftAlone) {
  Use(sim::Reader::Plain());
  Entry().LastLibErr = 5;
  EXPECT_TRUE(Intact(SecureOf(kHwgBody)));
  EXPECT_FALSE(Intact(kHwgBody));
  EXPECT_EQ(GetLastLibErr(), 5U);
  ExpectTraffic({});
}

}  // namespace
}  // namespace tavlyn::test
