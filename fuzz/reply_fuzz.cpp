// A device that answers as it likes. Three bytes set it up (which device, how often it refuses, which calls
// are made); the others are its answers, one after the other, and then it refuses everything.
#include <memory>

#include "fuzz/any_device.h"
#include "fuzz/reader_calls.h"

namespace tavlyn::fuzz {
namespace {

sim::HidIdentity ReaderIdentity(std::uint8_t kind) {
  const bool numbered = (kind & 1) != 0;
  sim::HidIdentity identity;
  identity.vid = 0x7A31;
  identity.pid = numbered ? 0x3BFB : 0x3BFA;
  identity.usages = {
      {static_cast<std::uint16_t>(numbered ? 0xFFA0 : 1), static_cast<std::uint16_t>(numbered ? 0xA000 : 6)}};
  identity.reportId = numbered ? 1 : 0;
  return identity;
}

void Meet(std::uint8_t kind, std::uint8_t refusals, std::uint8_t calls,
          std::span<const std::uint8_t> answers) {
  const Connected connected(1, std::make_shared<AnyDevice>(ReaderIdentity(kind), refusals, answers));
  if (connected.read) TalkToReader(calls);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 3) return 0;
  tavlyn::fuzz::Meet(data[0], data[1], data[2], {data + 3, size - 3});
  return 0;
}
