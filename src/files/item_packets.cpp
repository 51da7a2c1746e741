#include "files/item_packets.h"

#include <algorithm>

#include "core/state.h"

namespace tavlyn {

BlockBytes BlockAt(std::span<const std::uint8_t> bytes, std::size_t block) {
  bytes = bytes.subspan(std::min((block - 1) * kBlockBytes, bytes.size()));
  BlockBytes taken{};
  std::ranges::copy(bytes.first(std::min(bytes.size(), taken.size())), taken.begin());
  return taken;
}

Xfer ItemChannel::Exchange(const Command& command, std::uint8_t block, const BlockBytes& bytes) {
  const Report packet = CommandReport(command, {block});
  request_ = {};
  std::ranges::copy(packet, request_.begin());
  std::ranges::copy(bytes, request_.begin() + 5);
  reply_ = {};
  if (!WriteFeatureReport(size_, shared.ActDev, request_.data())) return Xfer::kNotSent;
  return ReadFeatureReport(size_, shared.ActDev, reply_.data()) ? Xfer::kDone : Xfer::kNoReply;
}

bool ItemChannel::SameFirst(std::size_t bytes) const {
  return std::ranges::equal(std::span(request_).subspan(1, bytes), std::span(reply_).subspan(1, bytes));
}

bool CommitItems() { return SendReport(CommandReport(command::kCommit)); }

}  // namespace tavlyn
