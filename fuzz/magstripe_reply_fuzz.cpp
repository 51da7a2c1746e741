// A magnetic-stripe reader that answers as it likes. Two bytes set it up (how often it refuses, which calls
// are made); the others are its answers: what follows the letters of the command or, where the first is 255,
// a whole packet.
#include <algorithm>
#include <array>
#include <memory>

#include "core/state.h"
#include "fuzz/any_device.h"
#include "fuzz/connected.h"

namespace tavlyn::fuzz {
namespace {

constexpr std::size_t kLetters = 3;
constexpr std::uint8_t kWholePacket = 255;

class AnyStripe final : public AnyDevice {
 public:
  AnyStripe(std::uint8_t refusals, std::span<const std::uint8_t> answers)
      : AnyDevice(MagstripeIdentity(), refusals, answers) {}

  bool SetFeature(std::span<const std::uint8_t> payload) override {
    std::copy_n(payload.begin(), kLetters, letters_.begin());
    letters_[0] = 'R';
    return AnyDevice::SetFeature(payload);
  }
  bool GetFeature(std::span<std::uint8_t> payload) override {
    if (Refuses()) return false;
    const auto rest = payload.subspan(kLetters);
    Take(rest);
    if (rest[0] != kWholePacket) {
      std::ranges::copy(letters_, payload.begin());
    } else {
      Take(payload);
    }
    return true;
  }

 private:
  static sim::HidIdentity MagstripeIdentity() {
    sim::HidIdentity identity;
    identity.vid = 0x7A31;
    identity.pid = 0x1000;
    identity.usages = {{1, 6}};
    identity.featureBytes = 24;
    return identity;
  }

  std::array<std::uint8_t, kLetters> letters_{};
};

void FetchTracks() {
  for (std::uint16_t track = 0; track <= 4; ++track) {
    for (std::uint16_t convert = 0; convert <= 1; ++convert) {
      const std::uint8_t* data = sorbaneGetTrackData(track, convert);
      Require(std::all_of(data + 1 + std::max(data[0] & 127, 109), data + 257,
                          [](std::uint8_t byte) { return byte == 0; }));
    }
    sorbaneGetTrackFieldOffset(track, 1, 0, 8, 255, 1);
    sorbaneGetTrackFieldOffset(track, 0, 100, 1, 0, 0);
    sorbaneGetTrackFieldOffset(track, 2, 65535, 1, 65535, 0);
    Require(sorbaneGetTrackData_BYTE(track, 1, 0) <= 255);
  }
}

void ReadIds() {
  std::array<std::uint8_t, 300> id{};
  sorbaneSetActiveID(2, 1, 0, 13);
  for (const int length : {0, 1, 8, 300}) {
    sim::VirtualHost::Instance().clock.tick += 1000;
    Require(GetActiveID(id.data(), static_cast<std::int16_t>(length)) <= length);
  }
  sim::VirtualHost::Instance().clock.tick += 1000;
  Require(GetActiveID32(id.data(), 40) <= 32);
  Require(GetQueuedID(0, 0) <= 32);
  Require(GetQueuedID_index(32) <= 65535);
  Require(GetQueuedID_index(33) <= 255);
}

void AskStatus() {
  Require(sorbaneIsDataAvailable() <= 7);
  sorbaneGetSystemUptime();
  sorbaneGetSystemCardsRead();
  for (std::uint32_t index = 0; index < 5; ++index) Require(sorbaneGetSystemInternalCount(index) <= 65535);
  for (std::int16_t index = 0; index < 12; ++index) SetRawPayload_index(index, 'Q');
  for (std::uint16_t index = 0; index < 12; ++index) Require(index < 10 || GetRawPayload_index(index) == 2);
}

void CheckMirror() {
  const tsSorbaneCfg& cfg = DevTable[0].SorbaneBlock.Cfg;
  for (const tsSorbaneField& field : cfg.UserField) Require(field.nKeys <= 63 && field.Track <= 3);
  Require(cfg.TrackEnables <= 7 && cfg.KeyPressTime <= 1020);
  Require(DevTable[0].PartNumber[24] == '\0');
}

void Talk(std::uint8_t calls) {
  const auto wants = [calls](int bit) { return (calls >> bit & 1) == 0; };
  if (wants(0)) FetchTracks();
  if (wants(1)) ReadIds();
  if (wants(2)) AskStatus();
  if (wants(3)) ReadCfg();
  if (wants(4)) WriteCfg();
  if (wants(5)) ResetFactoryDflts();
  CheckMirror();
}

void Meet(std::uint8_t refusals, std::uint8_t calls, std::span<const std::uint8_t> answers) {
  const Connected connected(2, std::make_shared<AnyStripe>(refusals, answers));
  Require(GetDevCnt() == 1);
  Talk(calls);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  tavlyn::fuzz::Meet(data[0], data[1], {data + 2, size - 2});
  return 0;
}
