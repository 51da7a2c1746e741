// The separator data in the file: how its first bytes divide it, and what is printed from after it.
#include <string>

#include "tests/files/file_bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;
using Area = std::array<std::uint8_t, 128>;

class TemplateLayout : public FileBench {
 protected:
  void SetUp() override {
    FileBench::SetUp();
    Use(Reader::Plain());
  }

  // Byte n of the area is n but for the given ones at its start.
  static Area Counting(std::initializer_list<std::uint8_t> head) {
    Area area{};
    for (std::size_t at = 0; at < area.size(); ++at) area[at] = static_cast<std::uint8_t>(at);
    std::copy(head.begin(), head.end(), area.begin());
    return area;
  }

  // The saved text between BEGIN and END of this area. Byte 3 must ask for all sixteen pages.
  std::string Saved(const Area& area) {
    reader->state.Working().separated = area;
    for (std::size_t at = 0; at < 32; ++at)
      Slot().HashKeyData[at / 16][at % 16] = static_cast<std::uint8_t>(0x80 + at);
    const std::string text = Save();
    EXPECT_EQ(Slot().sFldSepData, area);
    const std::string begin = OnDisk("\nBEGIN sFldSepData\n");
    const std::string end = OnDisk("\nEND sFldSepData\n");
    const std::size_t from = text.find(begin) + begin.size();
    const std::size_t to = text.find(end);
    EXPECT_EQ(to + end.size(), text.size());
    return text.substr(from, to - from);
  }

  // n lines of eight bytes, counting up.
  static std::string Rows(int lines, int from) {
    std::string text;
    for (int line = 0; line < lines; ++line) text += Row(8, from + 8 * line);
    return text;
  }
  static std::string Row(int bytes, int from) {
    std::string text;
    for (int byte = 0; byte < bytes; ++byte) text += (byte == 0 ? "" : ".") + Hex(from + byte);
    return text + "\n";
  }
  static std::string Hex(int value) {
    std::array<char, 3> text{};
    std::snprintf(text.data(), text.size(), "%02X", static_cast<unsigned>(value & 0xFF));
    return text.data();
  }

  static std::string Layout(const std::string& header, const std::string& fields, const std::string& seps,
                            const std::string& data) {
    return OnDisk("\n/ FldSepHdr[2] =\n" + header + "\n/ FldDefs[][4] =\n" + fields + "\n/ SepDefs[][2] =\n" +
                  seps + "\n/ SepData[] =\n" + data);
  }
};

TEST_F(TemplateLayout, TheShortFormLeavesOutTwoBytesAndAddsTwoFromBehind) {
  // Two field definitions, three separator definitions: 2 + 8 + 6 bytes, then 14 lines.
  EXPECT_EQ(Saved(Counting({0x1C, 0x23, 0x55, 0x10})),
            Layout("1C.23\n", Row(4, 4) + Row(4, 8), Row(2, 12) + Row(2, 14) + Row(2, 16), Rows(14, 18)));
}

TEST_F(TemplateLayout, TheShortFormWithoutDefinitions) {
  // 126 bytes remain: 15 lines from byte 4 to 123, then six bytes of which two are the first of a hash key.
  EXPECT_EQ(Saved(Counting({0x2C, 0x00, 0x55, 0x10})),
            Layout("2C.00\n", "", "", Rows(15, 4) + "7C.7D.7E.7F.80.81.\n"));
}

TEST_F(TemplateLayout, TheUnsetShortFormOfAReader) {
  Area area{};
  area[0] = 12;
  area[3] = 12;
  std::string zeros;
  for (int line = 0; line < 15; ++line) zeros += "00.00.00.00.00.00.00.00\n";
  EXPECT_EQ(Saved(area), Layout("0C.00\n", "", "", zeros + "00.00.00.00.80.81.\n"));
}

TEST_F(TemplateLayout, TheShortFormIsToldByTheLowNibbleAlone) {
  EXPECT_EQ(Saved(Counting({0xFC, 0xF0, 0x00, 0x10})),
            Layout("FC.F0\n",
                   Row(4, 4) + Row(4, 8) + Row(4, 12) + Row(4, 16) + Row(4, 20) + Row(4, 24) + Row(4, 28) +
                       Row(4, 32) + Row(4, 36) + Row(4, 40) + Row(4, 44) + Row(4, 48) + Row(4, 52) +
                       Row(4, 56) + Row(4, 60),
                   "", Rows(8, 64) + "80.81.\n"));
}

TEST_F(TemplateLayout, AReaderWithoutSuchDataShowsSixteenLinesFromByteFour) {
  Entry().bSepFldCapable = 0;
  std::string zeros;
  for (int line = 0; line < 15; ++line) zeros += "00.00.00.00.00.00.00.00\n";
  EXPECT_EQ(Saved(Area{}), Layout("00\n", "", "", zeros + "00.00.00.00.80.81.82.83\n"));
}

TEST_F(TemplateLayout, AHeaderOfNoBytesPrintsOneAndCountsNone) {
  EXPECT_EQ(Saved(Counting({0x10, 0x00, 0x00, 0x10})), Layout("10\n", "", "", Rows(16, 4)));
}

TEST_F(TemplateLayout, AHeaderLongerThanFourBytesOverlapsTheDefinitions) {
  EXPECT_EQ(Saved(Counting({0x07, 0x41, 0x00, 0x10})),
            Layout("07.41.00.10.04.05.06\n", Row(4, 4), "", Rows(14, 8) + "78.79.7A.7B.7C.\n"));
}

TEST_F(TemplateLayout, AHeaderOfThirteenBytesIsNotTheShortForm) {
  EXPECT_EQ(Saved(Counting({0x1D, 0x00, 0x00, 0x10})),
            Layout("1D.00.00.10.04.05.06.07.08.09.0A.0B.0C\n", "", "", Rows(14, 4) + "74.75.76.\n"));
}

TEST_F(TemplateLayout, AHeaderOfOneByte) {
  // 127 bytes remain: fifteen lines and seven bytes.
  EXPECT_EQ(Saved(Counting({0x31, 0x00, 0x00, 0x10})),
            Layout("31\n", "", "", Rows(15, 4) + "7C.7D.7E.7F.80.81.82.\n"));
}

TEST_F(TemplateLayout, SizesAreEvenAndComeFromTheUpperBits) {
  // B1 0xF1: size 14, 17 definitions. B2 0x51: size 4, 17 definitions. 4 + 17 * 14 is beyond the area.
  std::string fields;
  for (int definition = 0; definition < 17; ++definition) {
    const int from = 4 + 14 * definition;
    for (int byte = 0; byte < 14; ++byte) {
      const int at = from + byte;
      fields += (byte == 0 ? "" : ".") + (at < 160 ? Hex(at) : "00");
    }
    fields += "\n";
  }
  std::string seps;
  for (int definition = 0; definition < 17; ++definition) seps += "00.00.00.00\n";
  std::string zeros;
  for (int line = 0; line < 16; ++line) zeros += "00.00.00.00.00.00.00.00\n";
  EXPECT_EQ(Saved(Counting({0x04, 0xF1, 0x51, 0x10})), Layout("04.F1.51.10\n", fields, seps, zeros));
}

TEST_F(TemplateLayout, ThirtyOneDefinitionsWithoutASizePrintOneByteEach) {
  std::string fields;
  for (int at = 4; at < 35; ++at) fields += Hex(at) + "\n";
  std::string seps;
  for (int at = 35; at < 66; ++at) seps += Hex(at) + "\n";
  // 4 + 31 + 31 are accounted for; 62 remain.
  EXPECT_EQ(Saved(Counting({0x04, 0x1F, 0x1F, 0x10})),
            Layout("04.1F.1F.10\n", fields, seps, Rows(7, 66) + "7A.7B.7C.7D.7E.7F.\n"));
}

TEST_F(TemplateLayout, OnlySeparatorDefinitions) {
  EXPECT_EQ(Saved(Counting({0x04, 0x00, 0x62, 0x10})),
            Layout("04.00.62.10\n", "", Row(6, 4) + Row(6, 10), Rows(14, 16)));
}

TEST_F(TemplateLayout, NothingIsLeftWhenExactlyAllIsAccountedFor) {
  // 4 + 31 * 4 = 128.
  std::string fields;
  for (int definition = 0; definition < 31; ++definition) fields += Row(4, 4 + 4 * definition);
  EXPECT_EQ(Saved(Counting({0x04, 0x5F, 0x00, 0x10})), Layout("04.5F.00.10\n", fields, "", ""));
}

TEST_F(TemplateLayout, LessThanOneLineTooManyPrintsNone) {
  // 4 + 31 * 4 + 7: the remainder of -7 rounds to no line.
  std::string fields;
  for (int definition = 0; definition < 31; ++definition) fields += Row(4, 4 + 4 * definition);
  std::string seps;
  for (int at = 128; at < 135; ++at) seps += Hex(at) + "\n";
  EXPECT_EQ(Saved(Counting({0x04, 0x5F, 0x07, 0x10})), Layout("04.5F.07.10\n", fields, seps, ""));
}

TEST_F(TemplateLayout, OneLineTooManyPrintsSixteen) {
  // 4 + 31 * 4 + 8: a remainder of -1 line counts as very many. What follows the hash keys shows as zeros.
  std::string fields;
  for (int definition = 0; definition < 31; ++definition) fields += Row(4, 4 + 4 * definition);
  std::string seps;
  for (int at = 128; at < 136; ++at) seps += Hex(at) + "\n";
  std::string data = Rows(3, 136);
  for (int line = 0; line < 13; ++line) data += "00.00.00.00.00.00.00.00\n";
  EXPECT_EQ(Saved(Counting({0x04, 0x5F, 0x08, 0x10})), Layout("04.5F.08.10\n", fields, seps, data));
}

TEST_F(TemplateLayout, EveryDivisionSavesWithoutLeavingTheSlot) {
  for (int b0 = 0; b0 < 16; ++b0) {
    for (int b1 = 0; b1 < 256; b1 += 23) {
      for (const int b2 : {0x00, 0x1F, 0x3E, 0xF1, 0xFF}) {
        // The first byte must not be 0 or 12, which a read interprets differently.
        const auto first = static_cast<std::uint8_t>(0x10 + b0);
        const std::string text =
            Saved(Counting({first, static_cast<std::uint8_t>(b1), static_cast<std::uint8_t>(b2), 0x10}));
        ASSERT_EQ(text.find(OnDisk("\n/ FldSepHdr[2] =\n") + Hex(first)), 0U);
      }
    }
  }
}

}  // namespace
}  // namespace tavlyn::test
