#include "tests/kernel/families.h"

#include <array>
#include <cstring>
#include <utility>

#include "sim/devices/magstripe.h"
#include "sim/devices/reader.h"
#include "sim/devices/sonar.h"

namespace tavlyn::kernel {
namespace {

constexpr int kHoldStep = 50;  // milliseconds of the hold time for each count on the wire
constexpr const char* kSwipe = ";12=34?";

void PutCard(sim::Model& model) { static_cast<sim::Reader&>(model).PutCard({0x78, 0x56, 0x34, 0x12}, 26); }

bool FindsCard(const Library& library) {
  const CardRead read = ReadCard(library);
  return read.bits == 26 && read.id == sim::Bytes{0x78, 0x56, 0x34, 0x12, 0, 0, 0, 0};
}

// Such a reader is asked for an ID only after an input report.
void AnnounceCard(sim::Model& model) {
  PutCard(model);
  static_cast<sim::Reader&>(model).QueueInput({1, 0, 0, 0, 0, 0, 0, 0, 0});
}

void ChangeHold(const Library& library, int value) {
  tsTimeParms times{};
  library.times(&times);
  times.iIDHoldTO = static_cast<std::int16_t>(value * kHoldStep);
  library.setTimes(&times);
}

int MirroredHold(const Library& library) {
  tsTimeParms times{};
  library.times(&times);
  return times.iIDHoldTO / kHoldStep;
}

int StoredHold(const sim::Model& model) {
  return static_cast<const sim::Reader&>(model).state.configurations[0].stored.blocks[1][2];
}

void Swipe(sim::Model& model) { static_cast<sim::Magstripe&>(model).Swipe(*sim::ParseMagCard(kSwipe)); }

bool FindsTrack(const Library& library) {
  const std::uint8_t* track = library.track(2, 1);
  return track != nullptr && std::memcmp(track + 1, kSwipe, std::strlen(kSwipe)) == 0;
}

void ChangeKeyCount(const Library& library, int value) {
  library.setKeyCount(1, static_cast<std::uint8_t>(value));
}

int MirroredKeyCount(const Library& library) { return static_cast<int>(library.keyCount(1)); }

int StoredKeyCount(const sim::Model& model) {
  return static_cast<const sim::Magstripe&>(model).state.stored.fields[0].first[0] & 0x3F;
}

void Stand(sim::Model& model) { static_cast<sim::Sonar&>(model).Stand(25); }

bool FindsPerson(const Library& library) {
  std::array<std::uint16_t, 5> range{};
  return library.range(range.data()) == 1 && range[0] == 25;
}

void ChangeDelay(const Library& library, int value) {
  tsSonarParms parms{};
  library.ranging(&parms);
  parms.StartDly = static_cast<std::uint16_t>(value);
  library.setRanging(&parms);
}

int MirroredDelay(const Library& library) {
  tsSonarParms parms{};
  library.ranging(&parms);
  return parms.StartDly;
}

int StoredDelay(const sim::Model& model) { return static_cast<const sim::Sonar&>(model).state.stored[0][7]; }

}  // namespace

const std::vector<Family>& Families() {
  static const std::vector<Family> families = {
      {"plain reader", 1, false, [] { return std::shared_ptr<sim::Model>(sim::Reader::Plain()); }, PutCard,
       FindsCard, ChangeHold, MirroredHold, StoredHold},
      {"report-ID-1 reader", 1, false, [] { return std::shared_ptr<sim::Model>(sim::Reader::Kelda(1)); },
       AnnounceCard, FindsCard, ChangeHold, MirroredHold, StoredHold},
      {"magnetic-stripe reader", 2, true, [] { return std::shared_ptr<sim::Model>(new sim::Magstripe); },
       Swipe, FindsTrack, ChangeKeyCount, MirroredKeyCount, StoredKeyCount},
      {"sonar sensor", 4, true, [] { return std::shared_ptr<sim::Model>(new sim::Sonar); }, Stand,
       FindsPerson, ChangeDelay, MirroredDelay, StoredDelay},
  };
  return families;
}

bool Connects(const Library& library, const Family& family) {
  library.searchProducts(family.product);
  return library.connect(nullptr) == 1 && library.count() == 1;
}

}  // namespace tavlyn::kernel
