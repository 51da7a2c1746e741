// Every family on the kernel's own HID stack: its configuration read and written, what it reads, and its
// cable pulled in the middle of each operation.
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "tests/kernel/bus.h"
#include "tests/kernel/checks.h"
#include "tests/kernel/families.h"
#include "tests/kernel/operations.h"
#include "tests/kernel/sections.h"

namespace tavlyn::kernel {
namespace {

constexpr int kNewSetting = 9;
constexpr int kOtherSetting = 10;

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

// How many exchanges the undisturbed operation has; 0 if it fails.
int CountExchanges(const Library& library, Bus& bus, const Family& family, const Operation& operation,
                   sim::Model& model) {
  const Plugged plugged(bus, model);
  Prepare(library, bus, family, operation, model);
  const bool good = operation.run(library, family);
  library.disconnect();
  return good ? bus.Locked([&] { return model.faults.Exchanges(); }) : 0;
}

// The operation or, where it needed no more of the device, the next reading says that the device has gone; it
// is good as soon as it is plugged in again.
void CheckUnplugging(const Library& library, Bus& bus, const Family& family, const Operation& operation,
                     sim::Model& model) {
  const std::string where = std::string(family.who) + ": unplugged in " + operation.what;
  const int exchanges = CountExchanges(library, bus, family, operation, model);
  const std::vector<int> places = Places(exchanges);
  int told = 0;
  int good = 0;
  for (const int exchange : places) {
    const Plugged plugged(bus, model);
    good += Prepare(library, bus, family, operation, model) ? 1 : 0;
    bus.Locked([&] { model.faults.VanishAt(exchange); });
    const bool done = operation.run(library, family) && library.error() == 0 && family.finds(library);
    told += !done && bus.Locked([&] { return model.faults.Vanished(); }) ? 1 : 0;
    library.disconnect();
    bus.Locked([&] { model.faults.Restart(); });
  }
  Check(exchanges > 0, where + ", which has " + std::to_string(exchanges) + " exchanges");
  CheckEqual(told, std::ssize(places), where + ": told at each of " + std::to_string(places.size()));
  CheckEqual(good, std::ssize(places), where + ": the connect before was good");
}

// Each connect but the first comes after an unplugging.
void CheckUnpluggings(const Library& library, Bus& bus, const Family& family) {
  const auto model = family.make();
  for (const Operation& operation : Operations()) CheckUnplugging(library, bus, family, operation, *model);
  const Plugged plugged(bus, *model);
  Check(Connects(library, family), std::string(family.who) + ": plugged in again it connects");
  bus.Locked([&] { family.put(*model); });
  Check(family.finds(library), std::string(family.who) + ": and reads what is before it");
  library.disconnect();
}

}  // namespace

void FamilyChecks(const char* libraryPath) {
  Library library{};
  if (!LoadLibrary(libraryPath, library)) return;
  Bus bus;
  for (const Family& family : Families()) {
    CheckLife(library, bus, family);
    // The minutes that these take are spent on the other carrier alone.
    if (!onUsb) CheckUnpluggings(library, bus, family);
  }
}

}  // namespace tavlyn::kernel
