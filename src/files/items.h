// The items of a reader's protected memory, and the packets that carry them:
//
//   header    89 10|90 00 00     H0 H1 H2 H3    H2 is the length of the item, the others select it
//   block     89 10|90 00 block  four bytes     blocks count from 1
//   end       89 90 00 FF        0 0 0 x        x is 0, or names a BLE block
//   commit    90                                the reader keeps what has ended
//
// 10 reads and 90 writes. The reader echoes what it has understood; a block that is read comes back with its
// bytes. No lock is held and nothing marks a transfer, so that traffic of another thread in between breaks
// it.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/wipe.h"
#include "reader/exchange.h"

namespace tavlyn {

inline constexpr std::uint8_t kHeaderBlock = 0;
inline constexpr std::uint8_t kItemEnd = 0xFF;
inline constexpr std::size_t kBlockBytes = 4;
inline constexpr std::size_t kLengthAt = 2;  // of the header's bytes
inline constexpr std::int32_t kItemReport = 8;

using BlockBytes = std::array<std::uint8_t, kBlockBytes>;  // b5 to b8

constexpr std::size_t BlockCount(std::size_t bytes) { return (bytes + kBlockBytes - 1) / kBlockBytes; }

// The bytes of a block, numbered from 1; zeros after the end.
BlockBytes BlockAt(std::span<const std::uint8_t> bytes, std::size_t block);

class ItemChannel {
 public:
  // Payload bytes of a report: 8, or 9 with one more byte that carries nothing.
  explicit ItemChannel(std::int32_t reportSize = kItemReport) : size_(reportSize) {}

  reader::Xfer Exchange(const reader::Command& command, std::uint8_t block, const BlockBytes& bytes = {});
  // Of the last exchange: whether b1 to b4 of the reply are those of the request, and all eight.
  [[nodiscard]] bool Echoed() const { return SameFirst(4); }
  [[nodiscard]] bool EchoedWhole() const { return SameFirst(8); }
  [[nodiscard]] std::span<const std::uint8_t, kBlockBytes> Bytes() const {
    return std::span(reply_).subspan<5, kBlockBytes>();
  }

 private:
  using LongReport = Wiped<std::array<std::uint8_t, 10>>;

  [[nodiscard]] bool SameFirst(std::size_t bytes) const;

  std::int32_t size_;
  LongReport request_{};
  LongReport reply_{};
};

// The commit, which has no reply.
bool CommitItems();

inline constexpr std::size_t kItemHeader = 4;

// Whether the four header bytes at its start match the length of its payload.
bool IsWholeItem(std::span<const std::uint8_t> item);

// Writes a whole item. True when the reader was told to keep it.
bool WriteItem(std::span<const std::uint8_t> item);

}  // namespace tavlyn
