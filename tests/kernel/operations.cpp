#include "tests/kernel/operations.h"

#include <algorithm>

namespace tavlyn::kernel {
namespace {

constexpr int kMostPlaces = 3;

bool Reads(const Library& library, const Family& family) { return family.finds(library); }

bool ReadsConfiguration(const Library& library, const Family&) { return library.readConfiguration() == 1; }

bool WritesConfiguration(const Library& library, const Family& family) {
  const int before = family.mirrored(library);
  family.change(library, before == 9 ? 10 : 9);
  return library.writeConfiguration() == 1;
}

}  // namespace

const std::vector<Operation>& Operations() {
  static const std::vector<Operation> operations = {
      {"a connect", true, Connects},
      {"a reading", false, Reads},
      {"a configuration read", false, ReadsConfiguration},
      {"a configuration write", false, WritesConfiguration},
  };
  return operations;
}

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

std::vector<int> Places(int exchanges) {
  const int count = std::min(exchanges, kMostPlaces);
  std::vector<int> places;
  for (int place = 0; place < count; ++place) {
    places.push_back(place == 0 ? 1 : 1 + place * (exchanges - 1) / (count - 1));
  }
  return places;
}

}  // namespace tavlyn::kernel
