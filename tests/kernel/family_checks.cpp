// Every family on the kernel's own HID stack: its configuration read and written, what it reads, and its
// cable pulled in the middle of each operation.
#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "tests/kernel/bus.h"
#include "tests/kernel/checks.h"
#include "tests/kernel/families.h"
#include "tests/kernel/sections.h"

namespace tavlyn::kernel {
namespace {

constexpr int kNewSetting = 9;
constexpr int kOtherSetting = 10;
constexpr int kPlaces = 4;  // of an operation's exchanges, spread evenly with the first and the last

struct Operation {
  const char* what;
  bool begins;  // needs a device that is not connected yet
  bool (*run)(const Library& library, const Family& family);
};

bool Writes(const Library& library, const Family& family) {
  family.change(library, family.mirrored(library) == kNewSetting ? kOtherSetting : kNewSetting);
  return library.writeConfiguration() == 1;
}

const std::vector<Operation> kOperations = {
    {"a connect", true, Connects},
    {"a reading", false, [](const Library& library, const Family& family) { return family.finds(library); }},
    {"a configuration read", false,
     [](const Library& library, const Family&) { return library.readConfiguration() == 1; }},
    {"a configuration write", false, Writes},
};

void CheckLife(const Library& library, Bus& bus, const Family& family) {
  const std::string who = family.who;
  const auto model = family.make();
  std::optional<Plugged> plugged(std::in_place, bus, *model);
  Check(Connects(library, family), who + ": connects");
  CheckEqual(family.mirrored(library), bus.Locked([&] { return family.stored(*model); }),
             who + ": the connect reads its configuration");
  bus.Locked([&] { family.put(*model); });
  Check(family.finds(library), who + ": reads what is before it");

  family.change(library, kNewSetting);
  CheckEqual(library.writeConfiguration(), 1, who + ": its configuration is written");
  CheckEqual(bus.Locked([&] { return family.stored(*model); }), kNewSetting, who + ": which it commits");
  family.change(library, kOtherSetting);
  CheckEqual(library.readConfiguration(), 1, who + ": its configuration is read");
  CheckEqual(family.mirrored(library), kNewSetting, who + ": as it was written");
  CheckEqual(library.disconnect(), 1, who + ": is disconnected");
  CheckEqual(library.count(), 0, who + ": and counted no more");

  plugged.reset();
  Check(!Connects(library, family), who + ": unplugged, it is not found");
  library.disconnect();
}

// The state in which the operation begins, with a device whose exchanges count from here.
bool Prepare(const Library& library, Bus& bus, const Family& family, const Operation& operation,
             sim::Model& model) {
  const bool connected = Connects(library, family);
  if (operation.begins) library.disconnect();
  bus.Locked([&] {
    family.put(model);
    model.faults.Restart();
  });
  return connected;
}

int CountExchanges(const Library& library, Bus& bus, const Family& family, const Operation& operation) {
  const auto model = family.make();
  const Plugged plugged(bus, *model);
  Prepare(library, bus, family, operation, *model);
  const bool good = operation.run(library, family);
  const int exchanges = bus.Locked([&] { return model->faults.Exchanges(); });
  library.disconnect();
  return good ? exchanges : 0;
}

// The operation or, where it needed no more of the device, the next reading says that the device has gone; it
// is good as soon as it is plugged in again.
void CheckUnplugging(const Library& library, Bus& bus, const Family& family, const Operation& operation) {
  const std::string where = std::string(family.who) + ": unplugged in " + operation.what;
  const int exchanges = CountExchanges(library, bus, family, operation);
  const auto model = family.make();
  const int places = std::min(exchanges, kPlaces);
  int told = 0;
  int good = 0;
  for (int place = 0; place < places; ++place) {
    const int exchange = places == 1 ? 1 : 1 + place * (exchanges - 1) / (places - 1);
    bus.Locked([&] { model->faults.Restart(); });
    const Plugged plugged(bus, *model);
    good += Prepare(library, bus, family, operation, *model) && family.mirrored(library) >= 0 ? 1 : 0;
    bus.Locked([&] { model->faults.VanishAt(exchange); });
    const bool done = operation.run(library, family) && library.error() == 0 && family.finds(library);
    told += !done && bus.Locked([&] { return model->faults.Vanished(); }) ? 1 : 0;
    library.disconnect();
  }
  bus.Locked([&] { model->faults.Restart(); });
  const Plugged plugged(bus, *model);
  Connects(library, family);
  bus.Locked([&] { family.put(*model); });
  Check(family.finds(library), where + ": plugged in again it reads what is before it");
  library.disconnect();
  Check(exchanges > 0, where + ", which has " + std::to_string(exchanges) + " exchanges");
  CheckEqual(told, places, where + ": told at each of " + std::to_string(places));
  CheckEqual(good, places, where + ": the next connect is good at each");
}

}  // namespace

void FamilyChecks(const char* libraryPath) {
  Library library{};
  if (!LoadLibrary(libraryPath, library)) return;
  Bus bus;
  for (const Family& family : Families()) {
    CheckLife(library, bus, family);
    for (const Operation& operation : kOperations) CheckUnplugging(library, bus, family, operation);
  }
}

}  // namespace tavlyn::kernel
