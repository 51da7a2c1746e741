// The trailer of key-load files.
#include <string>

#include "tests/files/file_bench.h"

namespace tavlyn::test {
namespace {

const std::string kIniBody = "[FILE]\r\nkey=11 22 33\r\n\r\n";

class IniTrailer : public FileBench {
 protected:
  bool Passes(const std::string& text) { return Intact(text, 2); }
  static std::string Trailer(const std::string& line) { return kIniBody + kIniMarker + line; }
};

TEST_F(IniTrailer, AWholeFilePassesForEveryKindButZero) {
  for (const std::uint32_t kind : {1U, 2U, 255U, 0x80000000U, 0xFFFFFFFFU})
    EXPECT_TRUE(Intact(IniOf(kIniBody), kind)) << kind;
  EXPECT_FALSE(Intact(IniOf(kIniBody), 0));
  EXPECT_FALSE(Passes(SecureOf(kIniBody)));
  EXPECT_FALSE(Passes(BleOf(kIniBody)));
}

TEST_F(IniTrailer, NoByteMayChange) {
  const std::string text = IniOf(kIniBody);
  for (std::size_t at = 0; at < text.size(); ++at) {
    for (const int pattern : {0x01, 0x02, 0x04, 0x07, 0x08, 0x10, 0x20, 0x30, 0x40, 0x7F, 0x80, 0xFF}) {
      std::string changed = text;
      changed[at] = static_cast<char>(changed[at] ^ pattern);
      ASSERT_FALSE(Passes(changed)) << at << ", pattern " << pattern << "\n" << changed;
    }
  }
}

TEST_F(IniTrailer, NoByteMayBeMissing) {
  const std::string text = IniOf(kIniBody);
  for (std::size_t length = 0; length < text.size(); ++length)
    ASSERT_FALSE(Passes(text.substr(0, length))) << length;
  for (std::size_t at = 0; at < text.size(); ++at) {
    std::string without = text;
    without.erase(at, 1);
    ASSERT_FALSE(Passes(without)) << at;
  }
}

TEST_F(IniTrailer, NoByteMayFollow) {
  for (const std::string& more : {std::string("\n"), std::string("\r\n"), std::string("x"),
                                  std::string(1, '\0'), std::string("\x1A"), IniOf(kIniBody)})
    EXPECT_FALSE(Passes(IniOf(kIniBody) + more)) << more.size();
}

TEST_F(IniTrailer, ConvertedLineEnds) {
  std::string lf;
  for (const char c : IniOf(kIniBody))
    if (c != '\r') lf += c;
  EXPECT_FALSE(Passes(lf));
  // Lines of the body may end as they like, and the last need not end at all before a new line starts.
  EXPECT_TRUE(Passes(IniOf("one\ntwo\r\n\n")));
}

TEST_F(IniTrailer, TheEndLineIsExact) {
  for (const char* line :
       {"[eof]\r\n", "[EOF]\n", "[EOF] \r\n", " [EOF]\r\n", "[EOF]\r\r\n", "[EOF\r\n", "[EOF]]\r\n"})
    EXPECT_FALSE(Passes(kIniBody + line + "iEndOfIniFile=" + SumText(kIniBody) + "\r\n")) << line;
  EXPECT_FALSE(
      Passes(kIniBody + std::string("[EOF]\r\0\n", 8) + "iEndOfIniFile=" + SumText(kIniBody) + "\r\n"));
  EXPECT_TRUE(Passes(IniOf(kIniBody + "[eof]\r\n[EOF]\n")));
}

TEST_F(IniTrailer, TheFirstEndLineCounts) {
  const std::string twice = kIniBody + kIniMarker;
  EXPECT_FALSE(Passes(IniOf(twice)));
  EXPECT_FALSE(Passes(kIniBody + kIniMarker + kIniMarker + "iEndOfIniFile=" + SumText(kIniBody) + "\r\n"));
}

TEST_F(IniTrailer, FormsOfTheValueLine) {
  const std::string sum = SumText(kIniBody);
  for (const char* front : {"", "=", "=="})
    EXPECT_TRUE(Passes(Trailer(front + ("iEndOfIniFile=" + sum) + "\r\n"))) << "a token begins behind them";
  for (const std::string& line :
       {"iEndOfIniFile=" + sum + "\n", "iEndOfIniFile=" + sum, "iEndOfIniFile =" + sum + "\r\n",
        "iEndOfIniFile= " + sum + "\r\n", "iEndOfIniFile==" + sum + "\r\n", "IEndOfIniFile=" + sum + "\r\n",
        "iendofinifile=" + sum + "\r\n", " iEndOfIniFile=" + sum + "\r\n", "iEndOfHwgFile=" + sum + "\r\n",
        "iEndOfIniFile=" + sum + " \r\n", "iEndOfIniFile=" + sum + "0\r\n", "iEndOfIniFile=0" + sum + "\r\n",
        std::string("iEndOfIniFile=\r\n"), std::string("iEndOfIniFile\r\n"), std::string("\r\n"),
        std::string("=\r\n"), "iEndOfIniFile=" + sum.substr(0, 4) + "\r" + sum.substr(4) + "\r\n"})
    EXPECT_FALSE(Passes(Trailer(line))) << line;
}

TEST_F(IniTrailer, DigitsAreUpperCase) {
  std::string body;
  for (int number = 0; SumText(body).find_first_of("ABCDEF") == std::string::npos; ++number)
    body = std::to_string(number) + "\r\n";
  std::string lower = IniOf(body);
  for (std::size_t at = lower.rfind('=') + 1; at < lower.size(); ++at)
    if (lower[at] >= 'A') lower[at] = static_cast<char>(lower[at] | 0x20);
  EXPECT_TRUE(Passes(IniOf(body)));
  EXPECT_FALSE(Passes(lower));
}

TEST_F(IniTrailer, AZeroSumIsOneCharacter) {
  EXPECT_TRUE(Passes("[EOF]\r\niEndOfIniFile=0\r\n")) << "nothing is summed";
  EXPECT_FALSE(Passes("[EOF]\r\niEndOfIniFile=00000000\r\n"));
  const std::string zero = "JT\\@\\OB@@@\r\n";
  ASSERT_EQ(SumBitwise(zero), 0U);
  EXPECT_TRUE(Passes(zero + kIniMarker + "iEndOfIniFile=0\r\n"));
  EXPECT_FALSE(Passes(zero + kIniMarker + "iEndOfIniFile=00000000\r\n"));
  EXPECT_FALSE(Passes(Trailer("iEndOfIniFile=0\r\n")));
}

TEST_F(IniTrailer, LongLinesArriveInPieces) {
  for (const std::size_t length : {4094U, 4095U, 4096U, 8190U, 20000U})
    EXPECT_TRUE(Passes(IniOf(std::string(length, 'x') + "\r\n"))) << length;
  // A piece of 4095 characters ends where the end line begins.
  EXPECT_TRUE(Passes(IniOf(std::string(4095, 'x'))));
  EXPECT_TRUE(Passes(IniOf(std::string(8190, 'x'))));
  EXPECT_FALSE(Passes(IniOf(std::string(4094, 'x'))));
  EXPECT_FALSE(Passes(IniOf(std::string(4096, 'x'))));
  EXPECT_FALSE(Passes(Trailer(std::string(5000, 'x') + "\r\n")));
  EXPECT_FALSE(Passes(Trailer("iEndOfIniFile=" + SumText(kIniBody) + std::string(5000, ' ') + "\r\n")));
}

TEST_F(IniTrailer, ANulDropsTheRestOfItsPiece) {
  const std::string line("ab\0cd\r\n", 7);
  EXPECT_TRUE(Passes(kIniBody + line + kIniMarker + "iEndOfIniFile=" + SumText(kIniBody + "ab") + "\r\n"));
  EXPECT_FALSE(Passes(IniOf(kIniBody + line)));
}

TEST_F(IniTrailer, EmptyFilesAndLines) {
  EXPECT_FALSE(Passes(""));
  EXPECT_FALSE(Passes("\r\n"));
  EXPECT_FALSE(Passes(kIniMarker));
  EXPECT_FALSE(Passes(kIniBody));
}

}  // namespace
}  // namespace tavlyn::test
