// beep, led, relay and volume.
#include "tools/tavlynctl/outputs.h"

#include <algorithm>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/config/changes.h"
#include "tools/tavlynctl/config/fields.h"
#include "tools/tavlynctl/every_device.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

constexpr std::uint32_t kNoVolume = 65535;
constexpr int kLoudest = 255;
constexpr const char* kStoreText = "For good; otherwise until the reader loses power";

FieldValue FlagValue(const char* field, bool on) {
  return {FindField(field), static_cast<std::int16_t>(on ? 1 : 0)};
}

// In the reader's current configuration.
Json SetOutputs(Json document, const std::vector<FieldValue>& values, bool store) {
  const Change change = ChangeOf(GetActConfig(), Values(values));
  document["stored"] = store;
  return ApplyAndVerify(std::move(document), {change}, Sending::kAll, [&](const Json&) {
    if (!store) return StoreNow(values);
    Store(values);
    Commit();
  });
}

bool Has(const std::vector<std::string>& colours, const char* word) {
  return std::ranges::find(colours, word) != colours.end();
}

void CheckBeeps(int count, bool isLong) {
  if (count <= (isLong ? kMostLongBeeps : kMostBeeps)) return;
  throw Failure(kUsage, "a device makes 1 or 2 long beeps, or 1 to 5 short ones");
}

void CheckColours(const std::vector<std::string>& colours) {
  if (colours.size() < 2 || (!Has(colours, "off") && !Has(colours, "auto"))) return;
  throw Failure(kUsage, "off and auto take no other word");
}

struct Beep {
  int count = 0;  // 0: one
  bool isLong = false;

  void Take(Words& words) {
    words.Number("COUNT", count, 1, kMostBeeps, "Beeps (1)");
    words.Flag("--long", isLong, "One or two long beeps");
    words.Product();
    words.Device();
    words.All();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    CheckBeeps(count, isLong);
    return ForEachChosen(request, request.products & (kReaders | kMagstripes),
                         [&] { return MakeBeep(request.DeviceDocument(), count, isLong); });
  }
};

struct Led {
  std::vector<std::string> colours;
  bool store = false;

  void Take(Words& words) {
    words.Text("COLOUR", colours, "red, green or both; off; auto: as the reader itself does")
        ->check(OneOf({"red", "green", "off", "auto"}));
    words.Flag("--store", store, kStoreText);
    words.DeviceToChange();
    words.All();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    CheckColours(colours);
    return ForEachChosen(request, kReaders,
                         [&] { return SwitchLeds(request.DeviceDocument(), colours, store); });
  }
};

struct Relay {
  std::string state;
  bool store = false;

  void Take(Words& words) {
    words.Choice("STATE", state, {"on", "off"}, "on or off");
    words.Flag("--store", store, kStoreText);
    words.DeviceToChange();
    words.All();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    return ForEachChosen(request, kReaders,
                         [&] { return SwitchRelay(request.DeviceDocument(), state == "on", store); });
  }
};

struct Volume {
  std::optional<int> wanted;

  void Take(Words& words) {
    words.Number("N", wanted, 0, kLoudest, "0 to 255; without it the volume is shown");
    words.DeviceToChange([this] { return wanted.has_value(); });
    words.All();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    return ForEachChosen(request, kReaders, [&] { return OfActive(request); });
  }

 private:
  [[nodiscard]] Json OfActive(const Request& request) const {
    if (wanted && SetBeeperVolume(static_cast<std::uint16_t>(*wanted)) != 1) throw Failed("the volume");
    const std::uint32_t volume = GetBeeperVolume();
    if (volume == kNoVolume) throw Failed("the volume");
    if (wanted && volume != static_cast<std::uint32_t>(*wanted)) {
      throw Failure(kDeviceError, ActiveDeviceName() + " keeps the volume at " + std::to_string(volume));
    }
    Json document = request.DeviceDocument();
    document["volume"] = volume;
    return document;
  }
};

}  // namespace

Json MakeBeep(Json document, int count, bool isLong) {
  CheckBeeps(count, isLong);
  if (BeepNow(static_cast<std::uint8_t>(count), isLong ? 1 : 0) != 1) throw Failed("the beeper");
  document["beeps"] = std::max(count, 1);
  document["long"] = isLong;
  return document;
}

Json SwitchLeds(Json document, const std::vector<std::string>& colours, bool store) {
  CheckColours(colours);
  const bool byItself = Has(colours, "auto");
  std::vector<FieldValue> values{FlagValue("bAppCtrlsLED", !byItself)};
  if (!byItself) {
    values.push_back(FlagValue("iRedLEDState", Has(colours, "red")));
    values.push_back(FlagValue("iGrnLEDState", Has(colours, "green")));
  }
  return SetOutputs(std::move(document), values, store);
}

Json SwitchRelay(Json document, bool on, bool store) {
  return SetOutputs(std::move(document), {FlagValue("iRelayState", on)}, store);
}

void AddOutputs(Program& program) {
  program.Add<Beep>("beep", "Beeps now");
  program.Add<Led>("led", "Switches the LEDs");
  program.Add<Relay>("relay", "Switches the relay");
  program.Add<Volume>("volume", "Shows or sets the volume of the beeper");
}

}  // namespace tavlyn::ctl
