// The hardware parts of a reader, and the speed of its serial line.
#include <cstdlib>

#include "api.h"
#include "core/openings.h"
#include "reader/exchange.h"

namespace tavlyn::reader {
namespace {

constexpr std::size_t kFlags = 8;

// Where the mask is in the reply.
enum class Mask : std::uint8_t { kInstalled = 0, kSupported = 4 };

// From the C allocator, because the caller keeps it and need not be a C++ program.
std::uint8_t* HardwareFlags(Mask which) {
  if (!ActiveInRange()) return nullptr;
  EntryOfActDev().LastLibErr = 0;
  if (!ReaderIsActive()) return nullptr;
  auto* flags = static_cast<std::uint8_t*>(std::calloc(kFlags, 1));
  if (flags == nullptr) return nullptr;
  const Outcome hardware = Exchange(command::kHardware);
  if (hardware.xfer != Xfer::kDone) return flags;
  const unsigned mask = hardware.reply[static_cast<std::size_t>(which)];
  for (std::size_t bit = 0; bit < kFlags; ++bit) flags[bit] = static_cast<std::uint8_t>(mask >> bit & 1);
  return flags;
}

}  // namespace
}  // namespace tavlyn::reader

using namespace tavlyn;
using namespace tavlyn::reader;

std::uint8_t* InstalledHardware() { return HardwareFlags(Mask::kInstalled); }
std::uint8_t* SupportedHardware() { return HardwareFlags(Mask::kSupported); }

std::uint32_t ReadBaudRate() {
  constexpr std::uint32_t kNoDevice = 0xFFFFFFFF;
  constexpr std::uint32_t kNoAnswer = 65535;
  if (!ActiveInRange()) return kNoDevice;
  const Outcome baud = Exchange(command::kReadBaud);
  return baud.xfer == Xfer::kDone ? baud.reply[0] : kNoAnswer;
}

std::uint32_t WriteBaudRate(std::uint16_t code) {
  if (!ActiveInRange()) return shared.UnsupportedValue;
  return Exchange(command::kWriteBaud, {static_cast<std::uint8_t>(code)}).xfer == Xfer::kDone ? 1 : 0;
}
