#include "sim/devices/reader_secure.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tavlyn::sim {
namespace {

constexpr std::size_t kBlockAt = 3;  // in a packet
constexpr std::size_t kBytesAt = 4;
constexpr std::size_t kBlockBytes = 4;
constexpr std::uint8_t kEnd = 0xFF;

constexpr std::uint8_t kReadsBle = 0x10;
constexpr std::uint8_t kWritesBle = 0x11;
constexpr std::uint8_t kBleKey = 0x10;
constexpr std::uint8_t kOpens = 0x80;  // opens a piece for reading, or saves it when writing

std::array<std::uint8_t, 3> NameOf(const Block& header) {
  return {header[kBytesAt], header[kBytesAt + 1], header[kBytesAt + 3]};
}

std::uint8_t LengthOf(const Block& header) { return header[kBytesAt + 2]; }

// Which piece a selector means.
std::optional<std::size_t> PieceOf(std::uint8_t selector) {
  if (selector < 3) return selector;
  if (selector == kBleKey) return 3;
  return std::nullopt;
}

Block BeginRead(SecureMemory& memory, const Block& command) {
  SecureMemory::Transfer& read = memory.read;
  const std::uint8_t last = command.back();
  if (command[kBytesAt] != kReadsBle) {
    const auto item = memory.items.find(NameOf(command));
    read = {};
    if (item == memory.items.end() || item->second.size() != LengthOf(command)) return {};
    read = {command, item->second, {}};
    return command;
  }
  // First the piece, then an opener that says only whether the piece is data or the key.
  if ((last & kOpens) != 0) {
    const bool chosen =
        read.header[kBytesAt] == kReadsBle && (read.header.back() & kBleKey) == (last & kBleKey);
    return chosen ? command : Block{};
  }
  read = {};
  const auto piece = PieceOf(last);
  if (!piece) return {};
  read = {command, {memory.ble[*piece].begin(), memory.ble[*piece].end()}, {}};
  return command;
}

Block BeginWrite(SecureMemory& memory, const Block& command) {
  memory.write = {};
  const std::uint8_t length = LengthOf(command);
  if (command[kBytesAt] == kWritesBle && (!PieceOf(command.back()) || length != kBlePieceBytes)) return {};
  memory.write.header = command;
  memory.write.bytes.resize(length);
  memory.write.blocks.resize((length + kBlockBytes - 1) / kBlockBytes);
  return command;
}

// A block past the end of the item is echoed like any other but not stored.
Block WriteOneBlock(SecureMemory::Transfer& write, const Block& command) {
  if (write.header == Block{}) return {};
  const std::size_t block = command[kBlockAt] - std::size_t{1};
  if (block >= write.blocks.size()) return command;
  write.blocks[block] = true;
  const std::size_t at = block * kBlockBytes;
  const std::size_t count = std::min(kBlockBytes, write.bytes.size() - at);
  std::copy_n(command.begin() + kBytesAt, count, write.bytes.begin() + static_cast<std::ptrdiff_t>(at));
  return command;
}

// An item that lacks a block is dropped.
Block EndWrite(SecureMemory& memory, const Block& command) {
  const std::uint8_t last = command.back();
  if ((last & kOpens) != 0) {
    const auto piece = PieceOf(last & static_cast<std::uint8_t>(~kOpens));
    if (!piece) return {};
    memory.storedBle[*piece] = memory.ble[*piece];
    return command;
  }
  const SecureMemory::Transfer write = std::exchange(memory.write, {});
  if (write.header == Block{} || std::ranges::count(write.blocks, false) > 0) return {};
  if (write.header[kBytesAt] != kWritesBle) {
    memory.items[NameOf(write.header)] = write.bytes;
    return command;
  }
  if (last != write.header.back()) return {};
  std::ranges::copy(write.bytes, memory.ble[*PieceOf(last)].begin());
  return command;
}

}  // namespace

Block SecureRead(SecureMemory& memory, const Block& command) {
  if (command[kBlockAt] == 0) return BeginRead(memory, command);
  const std::vector<std::uint8_t>& bytes = memory.read.bytes;
  const std::size_t at = (command[kBlockAt] - std::size_t{1}) * kBlockBytes;
  if (at >= bytes.size()) return {};
  Block reply{command[0], command[1], command[2], command[3]};
  std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), std::min(kBlockBytes, bytes.size() - at),
              reply.begin() + kBytesAt);
  return reply;
}

Block SecureWrite(SecureMemory& memory, const Block& command) {
  switch (command[kBlockAt]) {
    case 0: return BeginWrite(memory, command);
    case kEnd: return EndWrite(memory, command);
    default: return WriteOneBlock(memory.write, command);
  }
}

void KeepItems(SecureMemory& memory) { memory.storedItems = memory.items; }

void LoseUnkept(SecureMemory& memory) {
  memory.items = memory.storedItems;
  memory.ble = memory.storedBle;
  memory.write = memory.read = {};
}

}  // namespace tavlyn::sim
