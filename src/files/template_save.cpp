// Saving a reader's configurations as a template file.
#include <algorithm>
#include <cstdio>

#include "core/openings.h"
#include "core/text.h"
#include "files/template_file.h"
#include "files/template_words.h"

namespace tavlyn {
namespace {

void PrintFields(std::FILE* file, const tsCfgSlot& slot) {
  for (const SavedOption& option : kSavedOptions) {
    WriteSection(file, option.heading);
    WriteEntry(file, option.keyword, static_cast<std::uint16_t>(slot.*option.word), kOptionComment);
  }
  for (const Field& each : kFields) {
    if (each.id.word == 0) WriteSection(file, kRecordNames[each.id.record]);
    if (each.save == Save::kUnsaved) continue;
    const auto word = static_cast<std::uint16_t>(slot[each.id]);
    WriteEntry(file, each.keyword, each.save == Save::kFlag ? std::uint16_t{word != 0} : word, each.comment);
  }
}

// How the separator area is divided, according to its first bytes.
struct SepLayout {
  int header;
  int fieldSize;
  int fieldCount;
  int sepSize;
  int sepCount;
};

SepLayout LayoutOf(const tsCfgSlot& slot) {
  const int b0 = slot.sFldSepData[0];
  const int b1 = slot.sFldSepData[1];
  const int b2 = slot.sFldSepData[2];
  if ((b0 & 0x0F) == 0x0C) return {2, 4, b1 >> 4, 2, b1 & 0x0F};
  return {b0 & 0x0F, b1 >> 4 & 0x0E, b1 & 0x1F, b2 >> 4 & 0x0E, b2 & 0x1F};
}

constexpr int kSepEnd = static_cast<int>(kSepFldBytes);
constexpr int kLineBytes = 8;
constexpr int kMostLines = 16;
// Field definitions are taken from here even in the short form, whose header is only two bytes long.
// Deliberately, the two bytes in between are not printed, and two bytes after the area are.
constexpr int kFieldsAt = 4;

class SepPrinter {
 public:
  SepPrinter(std::FILE* file, const tsCfgSlot& slot) : file_(file), slot_(slot), layout_(LayoutOf(slot)) {}

  void Print() {
    Heading("FldSepHdr[2]");
    Line(std::max(layout_.header, 1));
    int count = layout_.header;
    at_ = kFieldsAt;
    Heading("FldDefs[][4]");
    count += Definitions(layout_.fieldCount, layout_.fieldSize);
    Heading("SepDefs[][2]");
    count += Definitions(layout_.sepCount, layout_.sepSize);
    Heading("SepData[]");
    Rest(count);
  }

 private:
  void Heading(const char* name) { std::fprintf(file_, "\n%c %s =\n", kCommentMark, name); }

  void Byte(const char* format) { std::fprintf(file_, format, slot_.SepByteAt(at_++)); }

  void Line(int bytes) {
    for (int byte = 1; byte < bytes; ++byte) Byte("%02X.");
    Byte("%02X\n");
  }

  // Even a definition without bytes prints one. Returns the number of bytes printed.
  int Definitions(int number, int size) {
    const int printed = std::max(size, 1);
    for (int definition = 0; definition < number; ++definition) Line(printed);
    return number * printed;
  }

  void Rest(int count) {
    int lines = (kSepEnd - count) / kLineBytes;
    if (lines < 0 || lines > kMostLines) lines = kMostLines;
    for (int line = 0; line < lines; ++line) Line(kLineBytes);
    count += lines * kLineBytes;
    if (count >= kSepEnd) return;
    // Unlike the others this line keeps the period after its last byte.
    for (; count < kSepEnd; ++count) Byte("%02X.");
    std::fputs("\n", file_);
  }

  std::FILE* file_;
  const tsCfgSlot& slot_;
  SepLayout layout_;
  std::size_t at_ = 0;
};

void PrintConfig(std::FILE* file, const tsCfgSlot& slot) {
  PrintFields(file, slot);
  std::fprintf(file, "\n%c Note: DO NOT change the name \"%s\"!\n", kCommentMark, kSepBlockName);
  std::fprintf(file, "%c Comment and Blank Lines between data bytes are optional.\n", kCommentMark);
  std::fprintf(file, "%c ASCII Hex data bytes may be separated by Comma, Period, Space or Tab.\n",
               kCommentMark);
  std::fprintf(file, "\n%s %s\n", kBlockBegin, kSepBlockName);
  SepPrinter(file, slot).Print();
  std::fprintf(file, "\n%s %s\n", kBlockEnd, kSepBlockName);
}

void PrintCard(std::FILE* file, const tsCfgSlot& slot) {
  std::fprintf(file, "%s %d / Card type code\n", kCardTypeWord, slot.CardType);
  std::fprintf(file, "%s %d / 0=Low, 1=High Priority\n", kCardPriorityWord, slot.CardPriority);
  std::fprintf(file, "%s\n", kNextConfigMark);
}

}  // namespace

std::uint32_t SaveTemplateFile(const char* path) {
  const tsDevEntry& entry = EntryOfActDev();
  const std::uint16_t highest = entry.MaxConfig;
  const File file = CreateKeyFile(path);
  if (file == nullptr) return 0;
  WriteHeading(file.get(), kTemplateTitle);
  const std::uint8_t remembered = entry.ActConfig;
  // Stays all ones, and so looks like success to many callers, when no configuration could be read.
  std::uint32_t result = ~0U;
  for (unsigned config = 0; config <= highest; ++config) {
    if (highest != 0) UseConfig(static_cast<std::uint8_t>(config));
    if (ReadCfgLocked() != 0) {
      PrintConfig(file.get(), entry.CfgSlot[entry.ActConfig]);
      result &= 1;
    }
    if (highest != 0) PrintCard(file.get(), entry.CfgSlot[config]);
  }
  if (highest != 0) UseConfig(remembered);
  return result;
}

}  // namespace tavlyn
