// The machine is suspended and resumed by its kernel: tasks frozen, devices and processor stopped, everything
// but the firmware's part. That is left out because no machine of this kind wakes from it.
#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <iterator>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "tests/kernel/bus.h"
#include "tests/kernel/checks.h"
#include "tests/kernel/families.h"
#include "tests/kernel/operations.h"
#include "tests/kernel/sections.h"

namespace tavlyn::kernel {
namespace {

bool WriteTo(const char* file, const char* word) {
  const int opened = open(file, O_WRONLY | O_CLOEXEC);
  if (opened < 0) return false;
  const auto length = static_cast<ssize_t>(std::strlen(word));
  const bool written = write(opened, word, std::strlen(word)) == length;
  close(opened);
  return written;
}

// Returns when the machine runs again.
bool Suspend(const char* depth, const char* state) {
  return WriteTo("/sys/power/pm_test", depth) && WriteTo("/sys/power/state", state);
}

// A device after whose n-th report the machine is suspended, while the host gives it time to prepare a reply.
// Not within an exchange: USB ends a transfer before it lets the machine go.
class Drowsy : public sim::HidDevice {
 public:
  explicit Drowsy(sim::Model& model) : model_(model) {}

  [[nodiscard]] const sim::HidIdentity& Identity() const override { return model_.Identity(); }
  bool SetFeature(std::span<const std::uint8_t> payload) override {
    ++reports_;
    return model_.SetFeature(payload);
  }
  bool GetFeature(std::span<std::uint8_t> payload) override { return model_.GetFeature(payload); }
  // Asked for whenever everything has been answered.
  bool TakeInput(std::vector<std::uint8_t>& report) override {
    if (until_ > 0 && reports_ == until_) {
      until_ = 0;
      sleeps_ += Suspend("core", "mem") ? 1 : 0;
    }
    return model_.TakeInput(report);
  }
  [[nodiscard]] bool Present() const override { return model_.Present(); }

  void SleepAfter(int report) {
    reports_ = 0;
    until_ = report;
  }
  [[nodiscard]] int Reports() const { return reports_; }
  [[nodiscard]] int Sleeps() const { return sleeps_; }

 private:
  sim::Model& model_;
  int reports_ = 0;
  int until_ = 0;
  int sleeps_ = 0;
};

void CheckBetween(const Library& library, Bus& bus, const Family& family) {
  const auto model = family.make();
  const Plugged plugged(bus, *model);
  Check(Connects(library, family), std::string(family.who) + ": connects");
  for (const auto& [depth, state] : {std::pair("devices", "freeze"), std::pair("core", "mem")}) {
    for (const Operation& operation : Operations()) {
      if (operation.begins) continue;
      const std::string who = std::string(family.who) + ": " + operation.what + " after " + state;
      bus.Locked([&] { family.put(*model); });
      Check(Suspend(depth, state), who + ": the machine runs again");
      Check(operation.run(library, family), who);
    }
  }
  library.disconnect();
}

void CheckWithin(const Library& library, Bus& bus, const Family& family, const Operation& operation) {
  const std::string where = std::string(family.who) + ": suspended in " + operation.what;
  const auto model = family.make();
  Drowsy drowsy(*model);
  const Plugged plugged(bus, drowsy);
  const auto runs = [&](int suspendAfter) {
    Prepare(library, bus, family, operation, *model);
    bus.Locked([&] { drowsy.SleepAfter(suspendAfter); });
    const bool good = operation.run(library, family);
    library.disconnect();
    return good;
  };
  Check(runs(0), where + ": undisturbed it is good");
  const std::vector<int> places = Places(bus.Locked([&] { return drowsy.Reports(); }));
  std::ptrdiff_t good = 0;
  for (const int report : places) good += runs(report) ? 1 : 0;
  CheckEqual(good, std::ssize(places), where + ": so it is each time");
  CheckEqual(bus.Locked([&] { return drowsy.Sleeps(); }), std::ssize(places),
             where + ": and the machine slept");
}

}  // namespace

void SuspendChecks(const char* libraryPath) {
  Library library{};
  if (!LoadLibrary(libraryPath, library)) return;
  Check(WriteTo("/sys/module/suspend/parameters/pm_test_delay", "0"), "the machine can be suspended");
  Bus bus;
  for (const Family& family : Families()) {
    CheckBetween(library, bus, family);
    if (!family.rests) continue;
    for (const Operation& operation : Operations()) CheckWithin(library, bus, family, operation);
  }
}

}  // namespace tavlyn::kernel
