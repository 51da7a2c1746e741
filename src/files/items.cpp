#include "files/items.h"

#include <algorithm>

#include "api.h"
#include "core/openings.h"
#include "core/pause.h"
#include "core/state.h"
#include "core/trace.h"

namespace tavlyn {
namespace {

constexpr std::uint32_t kStoreTime = 500;  // the reader needs it between the end of an item and the commit

BlockBytes HeaderOf(std::span<const std::uint8_t> item) { return BlockAt(item, 1); }

bool ReadHeader(ItemChannel& channel, const BlockBytes& header) {
  EntryOfActDev().LastLibErr = 0;
  const reader::Xfer done = channel.Exchange(reader::command::kReadItem, kHeaderBlock, header);
  if (done == reader::Xfer::kNotSent) return Fail("readSecure::readSecureHeader", TAVLYN_ERR_SECURE);
  if (done == reader::Xfer::kNoReply) return false;
  if (channel.EchoedWhole()) return true;
  LogLine("readSecure::headerVerify", "Header Verifiaction failed");
  return false;
}

// A block that fails is left out and those after it move up, which nothing reports. Always stores whole
// blocks, even where the last one exceeds the length.
void ReadPayload(ItemChannel& channel, std::size_t length, std::uint8_t* out) {
  EntryOfActDev().LastLibErr = 0;
  std::fill_n(out, length, std::uint8_t{0});
  for (std::size_t block = 1; block <= BlockCount(length); ++block) {
    const reader::Xfer done = channel.Exchange(reader::command::kReadItem, static_cast<std::uint8_t>(block));
    if (done == reader::Xfer::kNotSent) {
      Fail("readSecure::readKeyData", TAVLYN_ERR_SECURE);
      return;
    }
    if (done == reader::Xfer::kDone && channel.Echoed()) out = std::ranges::copy(channel.Bytes(), out).out;
  }
}

// Deliberately without a result: the payload follows even a header that was lost or refused.
void WriteItemHeader(ItemChannel& channel, const BlockBytes& header) {
  EntryOfActDev().LastLibErr = 0;
  const reader::Xfer done = channel.Exchange(reader::command::kWriteItem, kHeaderBlock, header);
  if (done == reader::Xfer::kNoReply) Fail("writeSecure::WriteSecureHeader", TAVLYN_ERR_SECURE);
}

// One block that the reader echoed is enough.
bool WriteItemPayload(ItemChannel& channel, std::span<const std::uint8_t> payload) {
  EntryOfActDev().LastLibErr = 0;
  bool anyEchoed = false;
  for (std::size_t block = 1; block <= BlockCount(payload.size()); ++block) {
    const reader::Xfer done = channel.Exchange(reader::command::kWriteItem, static_cast<std::uint8_t>(block),
                                               BlockAt(payload, block));
    if (done == reader::Xfer::kNotSent) return Fail("writeSecure::WriteKeyData", TAVLYN_ERR_SECURE);
    anyEchoed |= done == reader::Xfer::kDone && channel.Echoed();
  }
  return anyEchoed;
}

bool SaveItem(ItemChannel& channel) {
  constexpr const char* kTag = "writeSecure::SaveKeyData";
  EntryOfActDev().LastLibErr = 0;
  const reader::Xfer ended = channel.Exchange(reader::command::kWriteItem, kItemEnd);
  if (ended == reader::Xfer::kNotSent) return Fail(kTag, TAVLYN_ERR_SECURE);
  if (ended == reader::Xfer::kNoReply || !channel.Echoed()) return false;
  Pause(kStoreTime);
  return CommitItems() || Fail(kTag, TAVLYN_ERR_SECURE);
}

}  // namespace

BlockBytes BlockAt(std::span<const std::uint8_t> bytes, std::size_t block) {
  bytes = bytes.subspan(std::min((block - 1) * kBlockBytes, bytes.size()));
  BlockBytes taken{};
  std::ranges::copy(bytes.first(std::min(bytes.size(), taken.size())), taken.begin());
  return taken;
}

reader::Xfer ItemChannel::Exchange(const reader::Command& command, std::uint8_t block,
                                   const BlockBytes& bytes) {
  constexpr std::size_t kShown = 5;  // the rest belongs to the item
  const Report packet = reader::CommandReport(command, {block});
  request_ = {};
  std::ranges::copy(packet, request_.begin());
  std::ranges::copy(bytes, request_.begin() + 5);
  reply_ = {};
  if (!WriteFeatureReport(size_, shared.ActDev, request_.data(), kShown)) return reader::Xfer::kNotSent;
  return ReadFeatureReport(size_, shared.ActDev, reply_.data(), kShown) ? reader::Xfer::kDone
                                                                        : reader::Xfer::kNoReply;
}

bool ItemChannel::SameFirst(std::size_t bytes) const {
  return std::ranges::equal(std::span(request_).subspan(1, bytes), std::span(reply_).subspan(1, bytes));
}

bool CommitItems() { return SendReport(reader::CommandReport(reader::command::kCommit)); }

bool IsWholeItem(std::span<const std::uint8_t> item) {
  return item.size() >= kItemHeader && item.size() - kItemHeader == item[kLengthAt];
}

bool WriteItem(std::span<const std::uint8_t> item) {
  ItemChannel channel;
  WriteItemHeader(channel, HeaderOf(item));
  return WriteItemPayload(channel, item.subspan(kItemHeader)) && SaveItem(channel);
}

}  // namespace tavlyn

using namespace tavlyn;

std::uint32_t WriteSecureData(const std::uint8_t* item, std::uint32_t length) {
  if (!ReaderIsActive() || item == nullptr || length < kItemHeader) return 0;
  // The length byte is checked before the rest is trusted to be there.
  if (length - kItemHeader != item[kLengthAt]) return 0;
  return WriteItem({item, length}) ? 1 : 0;
}

std::uint32_t ReadSecureData(const std::uint8_t* header, std::uint8_t* out) {
  if (!ReaderIsActive() || header == nullptr || out == nullptr) return 0;
  ItemChannel channel;
  if (!ReadHeader(channel, HeaderOf({header, kItemHeader}))) return 0;
  ReadPayload(channel, header[kLengthAt], out);
  return 1;
}
