#include "files/ble_memory.h"

#include <algorithm>

#include "core/pause.h"
#include "core/state.h"
#include "files/items.h"

namespace tavlyn {
namespace {

constexpr std::uint32_t kBeforeRead = 30;
constexpr std::uint8_t kSubBlocks = kBlePiece / kBlockBytes;

constexpr BlockBytes HeaderToRead(std::uint8_t selector) { return {0x10, 0x01, 0x00, selector}; }
constexpr BlockBytes HeaderToWrite(std::uint8_t selector) { return {0x11, 0x01, kBlePiece, selector}; }

void Wait(std::uint32_t milliseconds) {
  if (milliseconds > 0) Pause(milliseconds);
}

// The exchanges of one command, each true when a reply came.
class BleChannel {
 public:
  BleChannel(const Command& command, std::int32_t reportSize) : channel_(reportSize), command_(command) {}

  bool Exchange(std::uint8_t block, const BlockBytes& bytes = {}) {
    return channel_.Exchange(command_, block, bytes) == Xfer::kDone;
  }
  [[nodiscard]] auto Bytes() const { return channel_.Bytes(); }

 private:
  ItemChannel channel_;
  const Command& command_;
};

bool ReadPiece(BleChannel& channel, const BlePiece& piece, std::span<std::uint8_t> bytes) {
  for (const std::uint8_t header : {piece.selector, piece.opener}) {
    Wait(kBeforeRead);
    if (!channel.Exchange(kHeaderBlock, HeaderToRead(header))) return false;
  }
  for (std::uint8_t block = 1; block <= kSubBlocks; ++block) {
    if (!channel.Exchange(block)) return false;
    std::ranges::copy(channel.Bytes(), bytes.begin() + (block - 1) * static_cast<int>(kBlockBytes));
  }
  return true;
}

bool WritePiece(BleChannel& channel, const BlePiece& piece, std::span<const std::uint8_t> bytes,
                std::uint32_t beforeSave) {
  if (!channel.Exchange(kHeaderBlock, HeaderToWrite(piece.selector))) return false;
  for (std::uint8_t block = 1; block <= kSubBlocks; ++block) {
    if (!channel.Exchange(block, BlockAt(bytes, block))) return false;
  }
  if (!channel.Exchange(kItemEnd, {0, 0, 0, piece.selector})) return false;
  Wait(beforeSave);
  return channel.Exchange(kItemEnd, {0, 0, 0, piece.saver});
}

}  // namespace

void ReadBle(const BleBlock& block, std::span<std::uint8_t> bytes) {
  BleChannel channel(command::kReadItem, kItemReport);
  for (const BlePiece& piece : block.pieces) {
    if (!ReadPiece(channel, piece, bytes.first(kBlePiece))) {
      EntryOfActDev().LastLibErr |= TAVLYN_ERR_BLE_READ;
      return;
    }
    bytes = bytes.subspan(kBlePiece);
  }
}

bool WriteBle(const BleBlock& block, std::span<const std::uint8_t> bytes) {
  BleChannel channel(command::kWriteItem, block.writeSize);
  for (const BlePiece& piece : block.pieces) {
    if (!WritePiece(channel, piece, bytes.first(kBlePiece), block.beforeSave)) return false;
    bytes = bytes.subspan(kBlePiece);
  }
  return true;
}

}  // namespace tavlyn
