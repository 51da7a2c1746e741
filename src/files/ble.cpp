// The two protected blocks that a reader keeps for its BLE radio, in pieces of 128 bytes; and the text files
// with an integrity trailer that carry them from one reader to others.
#include <algorithm>
#include <array>
#include <cstdio>
#include <span>
#include <string_view>

#include "api.h"
#include "core/openings.h"
#include "core/pause.h"
#include "core/text.h"
#include "core/wipe.h"
#include "files/integrity.h"
#include "files/items.h"
#include "files/template_parse.h"

using namespace tavlyn;

namespace {

constexpr std::size_t kBlePiece = 128;
constexpr std::size_t kBleDataBytes = 3 * kBlePiece;

struct BlePiece {
  std::uint8_t selector;
  std::uint8_t opener;
  std::uint8_t saver;
};

struct BleBlock {
  const char* name;   // in its file
  const char* bytes;  // the name of its bytes there
  std::span<const BlePiece> pieces;
  std::int32_t writeSize;  // payload of the reports that write it
  bool pausesBeforeSave;
  [[nodiscard]] std::size_t Size() const { return pieces.size() * kBlePiece; }
};

// Unlike the saver, the opener has no piece number.
constexpr std::array kBleDataPieces = {BlePiece{0x00, 0x80, 0x80}, BlePiece{0x01, 0x80, 0x81},
                                       BlePiece{0x02, 0x80, 0x82}};
constexpr std::array kBleKeyPieces = {BlePiece{0x10, 0x90, 0x90}};

constexpr BleBlock kBleData = {"sFldBleData1", "BleData1", kBleDataPieces, 8, true};
// Readers expect their key in reports that are one byte longer.
constexpr BleBlock kBleKey = {"sFldBleData2", "BleData2", kBleKeyPieces, 9, false};

constexpr std::uint32_t kBeforeRead = 30;
constexpr std::uint32_t kBeforeSave = 100;
constexpr std::uint8_t kSubBlocks = kBlePiece / kBlockBytes;

constexpr BlockBytes HeaderToRead(std::uint8_t selector) { return {0x10, 0x01, 0x00, selector}; }
constexpr BlockBytes HeaderToWrite(std::uint8_t selector) { return {0x11, 0x01, kBlePiece, selector}; }

// Exchanges of one command; each returns true when a reply came.
class BleChannel {
 public:
  BleChannel(const reader::Command& command, std::int32_t reportSize)
      : channel_(reportSize), command_(command) {}

  bool Exchange(std::uint8_t block, const BlockBytes& bytes = {}) {
    return channel_.Exchange(command_, block, bytes) == reader::Xfer::kDone;
  }
  [[nodiscard]] auto Bytes() const { return channel_.Bytes(); }

 private:
  ItemChannel channel_;
  const reader::Command& command_;
};

bool ReadPiece(BleChannel& channel, const BlePiece& piece, std::span<std::uint8_t> bytes) {
  for (const std::uint8_t header : {piece.selector, piece.opener}) {
    Pause(kBeforeRead);
    if (!channel.Exchange(kHeaderBlock, HeaderToRead(header))) return false;
  }
  for (std::uint8_t block = 1; block <= kSubBlocks; ++block) {
    if (!channel.Exchange(block)) return false;
    std::ranges::copy(channel.Bytes(), bytes.begin() + (block - 1) * static_cast<int>(kBlockBytes));
  }
  return true;
}

bool WritePiece(BleChannel& channel, const BlePiece& piece, std::span<const std::uint8_t> bytes,
                bool pausesBeforeSave) {
  if (!channel.Exchange(kHeaderBlock, HeaderToWrite(piece.selector))) return false;
  for (std::uint8_t block = 1; block <= kSubBlocks; ++block) {
    if (!channel.Exchange(block, BlockAt(bytes, block))) return false;
  }
  if (!channel.Exchange(kItemEnd, {0, 0, 0, piece.selector})) return false;
  if (pausesBeforeSave) Pause(kBeforeSave);
  return channel.Exchange(kItemEnd, {0, 0, 0, piece.saver});
}

// Reading and writing deliberately ignore what the reader echoes: any reply will do. What was read before a
// failure is in the buffer.
void ReadBle(const BleBlock& block, std::span<std::uint8_t> bytes) {
  BleChannel channel(reader::command::kReadItem, kItemReport);
  for (const BlePiece& piece : block.pieces) {
    if (!ReadPiece(channel, piece, bytes.first(kBlePiece))) {
      EntryOfActDev().LastLibErr |= TAVLYN_ERR_BLE_READ;
      return;
    }
    bytes = bytes.subspan(kBlePiece);
  }
}

bool WriteBle(const BleBlock& block, std::span<const std::uint8_t> bytes) {
  BleChannel channel(reader::command::kWriteItem, block.writeSize);
  for (const BlePiece& piece : block.pieces) {
    if (!WritePiece(channel, piece, bytes.first(kBlePiece), block.pausesBeforeSave)) return false;
    bytes = bytes.subspan(kBlePiece);
  }
  return true;
}

constexpr std::size_t kLineBytes = 8;
constexpr int kBeginLine = 9;  // blank lines count

// Room for either block, so that a file for the larger one cannot overrun it.
using BleBytes = Wiped<std::array<std::uint8_t, kBleDataBytes>>;

void PrintBytes(std::FILE* file, std::span<const std::uint8_t> bytes) {
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    std::fprintf(file, "%02X%c", bytes[at], (at + 1) % kLineBytes == 0 ? '\n' : '.');
  }
}

void PrintHead(std::FILE* file, const BleBlock& block) {
  WriteHeading(file, kTemplateTitle);
  std::fprintf(file, "\n%c Note: DO NOT change the name \"%s\"!\n", kCommentMark, block.name);
  std::fprintf(file, "%c No Comment or Blank Lines between data bytes.\n", kCommentMark);
  std::fprintf(file, "%c ASCII hex data bytes must be seperated by a Period.\n", kCommentMark);
  std::fprintf(file, "\nBEGIN %s\n", block.name);
  std::fprintf(file, "\n%c %s[] =\n", kCommentMark, block.bytes);
}

void PrintTail(std::FILE* file, const BleBlock& block) {
  std::fprintf(file, "\nEND %s\n", block.name);
  std::fprintf(file, "%c--- %s\n", kCommentMark, kHwgSumName);
}

std::uint32_t SaveBle(const BleBlock& block, const char* path) {
  // Without an active card reader nothing is saved, and the result is deliberately 1 all the same.
  if (!ActiveInRange()) return 1;
  EntryOfActDev().LastLibErr = 0;
  if (EntryOfActDev().ProductKind != kReader) return 1;
  File file = CreateKeyFile(path);
  if (file == nullptr) return shared.UnsupportedValue;
  PrintHead(file.get(), block);
  // What a failed read did not deliver is saved as zeros; only the error word shows it.
  BleBytes bytes{};
  ReadBle(block, bytes);
  PrintBytes(file.get(), std::span(bytes).first(block.Size()));
  PrintTail(file.get(), block);
  file.reset();
  if (CRC().AppendHwgTrailer(path) != 0) return 1;
  EntryOfActDev().LastLibErr |= TAVLYN_ERR_BLE_READ;
  return shared.UnsupportedValue;
}

// The ninth line alone decides the kind of a file; null when it is neither.
const BleBlock* BlockOf(std::FILE* file) {
  Lines<128> lines(file);
  std::string_view line;
  for (int number = 0; number < kBeginLine; ++number) {
    if (!lines.Next(line)) return nullptr;
  }
  std::rewind(file);
  for (const BleBlock* block : {&kBleData, &kBleKey}) {
    std::array<char, 32> begin;
    std::snprintf(begin.data(), begin.size(), "BEGIN %s", block->name);
    if (Mentions(line, begin.data())) return block;
  }
  return nullptr;
}

// Adds the bytes of a line; those beyond the room are parsed but not kept.
bool TakeBytes(std::string_view line, BleBytes& bytes, std::size_t& count) {
  Tokens tokens(line);
  for (std::string_view token = tokens.Next(kDataDelimiters); !token.empty();
       token = tokens.Next(kDataDelimiters)) {
    unsigned value = 0;
    if (!Scan(token, "%x", value)) return false;
    if (count < bytes.size()) bytes[count++] = static_cast<std::uint8_t>(value);
  }
  return true;
}

// The first line that programs do not ignore begins the block. The number of bytes is not checked: missing
// ones stay 0.
bool ParseBytes(std::FILE* file, BleBytes& bytes) {
  Lines<384> lines(file);
  std::string_view line;
  std::size_t count = 0;
  bool begun = false;
  while (lines.Next(line)) {
    line = Content(line);
    if (line.empty()) continue;
    if (Mentions(line, "END")) return true;
    if (begun && count < bytes.size() && !TakeBytes(line, bytes, count)) return false;
    begun = true;
  }
  return true;
}

bool LoadBlock(const BleBlock& block, const char* path) {
  const File file = OpenFile(path, "r");
  BleBytes bytes{};
  return file != nullptr && HasTitle(file.get()) && BlockOf(file.get()) == &block &&
         ParseBytes(file.get(), bytes) && WriteBle(block, bytes);
}

std::uint32_t LoadBle(const BleBlock& block, const char* path) {
  if (!PassesIntegrity(path, kHwgTrailer)) return shared.UnsupportedValue;
  // As for a save.
  if (!ReaderIsActive()) return 1;
  EntryOfActDev().LastLibErr = 0;
  if (LoadBlock(block, path)) return 1;
  EntryOfActDev().LastLibErr |= TAVLYN_ERR_BLE_WRITE;
  return shared.UnsupportedValue;
}

}  // namespace

std::uint32_t WriteBLEDataToFile(const char* path) { return SaveBle(kBleData, path); }
std::uint32_t WriteBLEKeyToFile(const char* path) { return SaveBle(kBleKey, path); }
std::uint32_t WriteBLEDataToReader(const char* path) { return LoadBle(kBleData, path); }
std::uint32_t WriteBLEKeyToReader(const char* path) { return LoadBle(kBleKey, path); }
