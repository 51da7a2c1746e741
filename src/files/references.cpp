// References to files and keys. Unlike other items these need every packet echoed, do not wait before the
// commit, have an error word of their own and log nothing.
#include <algorithm>
#include <span>

#include "api.h"
#include "core/openings.h"
#include "files/items.h"
#include "reader/configuration.h"

using namespace tavlyn;

namespace {

constexpr std::size_t kMostBytes = 512;

bool MarkFailed() {
  EntryOfActDev().LastLibErr |= TAVLYN_ERR_REFERENCE;
  return false;
}

bool Repeated(ItemChannel& channel, std::uint8_t block, const BlockBytes& bytes) {
  return channel.Exchange(reader::command::kWriteItem, block, bytes) == reader::Xfer::kDone &&
         channel.Echoed();
}

// Only a lost reply leaves an error bit.
bool WriteReferenceHeader(ItemChannel& channel, const BlockBytes& header) {
  EntryOfActDev().LastLibErr = 0;
  const reader::Xfer done = channel.Exchange(reader::command::kWriteItem, kHeaderBlock, header);
  if (done == reader::Xfer::kNoReply) return MarkFailed();
  return done == reader::Xfer::kDone && channel.Echoed();
}

bool WriteReferencePayload(ItemChannel& channel, std::span<const std::uint8_t> data) {
  EntryOfActDev().LastLibErr = 0;
  for (std::size_t block = 1; block <= BlockCount(data.size()); ++block) {
    if (!Repeated(channel, static_cast<std::uint8_t>(block), BlockAt(data, block))) return MarkFailed();
  }
  return true;
}

bool SaveReference(ItemChannel& channel) {
  return (Repeated(channel, kItemEnd, {}) && CommitItems()) || MarkFailed();
}

std::uint32_t WriteReference(std::uint8_t h0, std::uint8_t h1, const std::uint8_t* data,
                             std::uint32_t length) {
  if (!ActiveInRange() || (data == nullptr && length != 0)) return 0;
  reader::SelectConfig(ActiveConfig());
  ItemChannel channel;
  const BlockBytes header = {h0, h1, static_cast<std::uint8_t>(length)};
  const std::span bytes(data, std::min<std::size_t>(length, kMostBytes));
  return WriteReferenceHeader(channel, header) && WriteReferencePayload(channel, bytes) &&
                 SaveReference(channel)
             ? 1
             : 0;
}

}  // namespace

std::uint32_t WriteEV1FileRefrence(const std::uint8_t* data, std::uint32_t length) {
  return WriteReference(0x02, 0x01, data, length);
}

std::uint32_t WriteSEKeyRefrence(const std::uint8_t* data, std::uint32_t length, std::uint8_t slot) {
  return WriteReference(0x01, slot, data, length);
}
