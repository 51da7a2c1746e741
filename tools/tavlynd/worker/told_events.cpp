#include "tools/tavlynd/worker/told_events.h"

#include <cstring>

#include "api.h"
#include "tools/tavlynctl/devices.h"
#include "tools/tavlynctl/session.h"
#include "tools/tavlynctl/watch/time_stamp.h"

namespace tavlyn::agent {
namespace {

using ctl::Clock;
using std::chrono::seconds;

// An exchange that fails takes some seconds.
constexpr seconds kUsualPatience(30);
constexpr seconds kBetweenSigns(10);

// What its description in list is called here.
constexpr std::pair<const char*, const char*> kKeys[] = {
    {"part", "part_number"}, {"luid", "luid"}, {"configurations", "configurations"}};

}  // namespace

Json PlaceOf(const ctl::DevicePlace& place) {
  Json device{{"path", place.path}};
  if (!place.serialNumber.empty()) device["serial"] = place.serialNumber;
  return device;
}

Json DescriptionAt(const ctl::DevicePlace& place) {
  Json device = PlaceOf(place);
  device["product"] = ctl::ActiveProductName();
  const Json described = ctl::DeviceDescription(GetDID() != 0);
  for (const auto& [name, key] : kKeys) {
    if (!described[key].is_null()) device[name] = described[key];
  }
  if (const std::string firmware = ctl::FirmwareVersion(); !firmware.empty()) device["firmware"] = firmware;
  return device;
}

void ToldEvents::Say(const char* event, const Json& said) {
  Json whole{{"event", event}, {"time", ctl::TimeStamp()}};
  whole.update(said);
  channel_.Say(whole);
  said_ = Clock::now();
}

bool ToldEvents::Tell(const char* event, const ctl::DevicePlace& place, const Json& found,
                      const std::string&) {
  const bool arrives = std::strcmp(event, "arrived") == 0;
  if (arrives) SetActDev(place.entry);
  Json said{{"device", arrives ? DescriptionAt(place) : PlaceOf(place)}};
  said.update(found);
  Say(event, said);
  return true;
}

void ToldEvents::Begin(const ctl::DevicePlace& place) { Tell("arrived", place, Json::object(), ""); }

void ToldEvents::Note(const std::string& text) { Say("note", {{"text", text}}); }

void ToldEvents::BeginSearch() { Expect(kLongPatience); }

void ToldEvents::Reply(const Json& reply) { Say("reply", reply); }

void ToldEvents::Expect(seconds patience) {
  patience_ = patience;
  Say("alive", {{"patience", patience.count()}});
}

void ToldEvents::Step() {
  if (patience_ != kUsualPatience || Clock::now() - said_ >= kBetweenSigns) Expect(kUsualPatience);
}

}  // namespace tavlyn::agent
