// beep, led, relay and volume.
#include <algorithm>

#include "api.h"
#include "tools/tavlynctl/changes.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/fields.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

constexpr std::uint32_t kNoVolume = 65535;
constexpr int kMostLongBeeps = 2;

Failure NoOutput(const std::string& what) {
  return {kDeviceError, what + " of " + ActiveDeviceName() + " failed, " + ErrorText()};
}

Wish For(const char* field, bool on) { return {FindField(field), static_cast<std::int16_t>(on ? 1 : 0)}; }

// In the configuration that the reader is on.
Json SetOutputs(const char* command, const std::vector<Wish>& wishes, const Options& options) {
  const Session session(options.link);
  session.Use(options.device);
  const Change change = Wanting(GetActConfig(), Values(wishes));
  Json document = NewDocument(command, options.device);
  document["stored"] = options.store;
  return Carry(std::move(document), {change}, Sending::kAll, [&] {
    if (!options.store) return StoreNow(wishes);
    Store(wishes);
    Commit();
  });
}

}  // namespace

Json Beep(const Options& options) {
  if (options.longBeep && options.count > kMostLongBeeps) {
    throw Failure(kUsage, "a device makes 1 or 2 long beeps, or 1 to 5 short ones");
  }
  const Session session(options.link, options.products & (kReaders | kMagstripes));
  session.Use(options.device);
  if (BeepNow(static_cast<std::uint8_t>(options.count), options.longBeep ? 1 : 0) != 1) {
    throw NoOutput("the beeper");
  }
  Json document = NewDocument("beep", options.device);
  document["beeps"] = std::max(options.count, 1);
  document["long"] = options.longBeep;
  return document;
}

Json Led(const Options& options) {
  const auto told = [&](const char* word) {
    return std::ranges::find(options.words, word) != options.words.end();
  };
  if (options.words.size() > 1 && (told("off") || told("auto"))) {
    throw Failure(kUsage, "off and auto stand alone");
  }
  std::vector<Wish> wishes{For("bAppCtrlsLED", !told("auto"))};
  if (!told("auto")) {
    wishes.push_back(For("iRedLEDState", told("red")));
    wishes.push_back(For("iGrnLEDState", told("green")));
  }
  return SetOutputs("led", wishes, options);
}

Json Relay(const Options& options) {
  return SetOutputs("relay", {For("iRelayState", options.choice == "on")}, options);
}

Json Volume(const Options& options) {
  const Session session(options.link);
  session.Use(options.device);
  if (options.volume && SetBeeperVolume(static_cast<std::uint16_t>(*options.volume)) != 1) {
    throw NoOutput("the volume");
  }
  const std::uint32_t volume = GetBeeperVolume();
  if (volume == kNoVolume) throw NoOutput("the volume");
  if (options.volume && volume != static_cast<std::uint32_t>(*options.volume)) {
    throw Failure(kDeviceError, ActiveDeviceName() + " keeps the volume at " + std::to_string(volume));
  }
  Json document = NewDocument("volume", options.device);
  document["volume"] = volume;
  return document;
}

}  // namespace tavlyn::ctl
