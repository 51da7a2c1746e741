// Single items of a reader's protected memory.
#include "files/secure_items.h"

#include <algorithm>

#include "api.h"
#include "core/openings.h"
#include "core/pause.h"
#include "core/trace.h"
#include "files/item_packets.h"

namespace tavlyn {
namespace {

constexpr std::uint32_t kStoreTime = 500;  // the reader needs it between the end of an item and the commit

bool Fail(const char* tag) {
  EntryOfActDev().LastLibErr |= TAVLYN_ERR_SECURE;
  LogFailure(tag);
  return false;
}

BlockBytes HeaderOf(std::span<const std::uint8_t> item) { return BlockAt(item, 1); }

bool ReadHeader(ItemChannel& channel, const BlockBytes& header) {
  EntryOfActDev().LastLibErr = 0;
  const Xfer done = channel.Exchange(command::kReadItem, kHeaderBlock, header);
  if (done == Xfer::kNotSent) return Fail("readSecure::readSecureHeader");
  if (done == Xfer::kNoReply) return false;
  if (channel.EchoedWhole()) return true;
  LogLine("readSecure::headerVerify", "Header Verifiaction failed");
  return false;
}

// A block that does not come is left out and those behind it move up; nothing tells of it. Whole blocks are
// stored, also where the last one is longer than what is left of the length.
void ReadPayload(ItemChannel& channel, std::size_t length, std::uint8_t* out) {
  EntryOfActDev().LastLibErr = 0;
  std::fill_n(out, length, std::uint8_t{0});
  for (std::size_t block = 1; block <= BlockCount(length); ++block) {
    const Xfer done = channel.Exchange(command::kReadItem, static_cast<std::uint8_t>(block));
    if (done == Xfer::kNotSent) {
      Fail("readSecure::readKeyData");
      return;
    }
    if (done == Xfer::kDone && channel.Echoed()) out = std::ranges::copy(channel.Bytes(), out).out;
  }
}

// Deliberately without a result: the payload follows a header that was lost or refused, too.
void WriteHeader(ItemChannel& channel, const BlockBytes& header) {
  EntryOfActDev().LastLibErr = 0;
  const Xfer done = channel.Exchange(command::kWriteItem, kHeaderBlock, header);
  if (done == Xfer::kNoReply) Fail("writeSecure::WriteSecureHeader");
}

// One block that was repeated is enough.
bool WritePayload(ItemChannel& channel, std::span<const std::uint8_t> payload) {
  EntryOfActDev().LastLibErr = 0;
  bool anyEchoed = false;
  for (std::size_t block = 1; block <= BlockCount(payload.size()); ++block) {
    const Xfer done =
        channel.Exchange(command::kWriteItem, static_cast<std::uint8_t>(block), BlockAt(payload, block));
    if (done == Xfer::kNotSent) return Fail("writeSecure::WriteKeyData");
    anyEchoed |= done == Xfer::kDone && channel.Echoed();
  }
  return anyEchoed;
}

bool SaveItem(ItemChannel& channel) {
  constexpr const char* kTag = "writeSecure::SaveKeyData";
  EntryOfActDev().LastLibErr = 0;
  const Xfer ended = channel.Exchange(command::kWriteItem, kItemEnd);
  if (ended == Xfer::kNotSent) return Fail(kTag);
  if (ended == Xfer::kNoReply || !channel.Echoed()) return false;
  Pause(kStoreTime);
  return CommitItems() || Fail(kTag);
}

}  // namespace

bool IsWholeItem(std::span<const std::uint8_t> item) {
  return item.size() >= kItemHeader && item.size() - kItemHeader == item[kLengthAt];
}

bool WriteItem(std::span<const std::uint8_t> item) {
  ItemChannel channel;
  WriteHeader(channel, HeaderOf(item));
  return WritePayload(channel, item.subspan(kItemHeader)) && SaveItem(channel);
}

}  // namespace tavlyn

using namespace tavlyn;

std::uint32_t WriteSecureData(const std::uint8_t* item, std::uint32_t length) {
  if (!ReaderIsActive() || item == nullptr || length < kItemHeader) return 0;
  // The length byte is looked at before the rest is trusted to be there.
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
