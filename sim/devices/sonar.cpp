#include "sim/devices/sonar.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tavlyn::sim {
namespace {

enum Opcode : std::uint8_t {
  kFirstPage = 0x80,
  kLastPage = 0x85,
  kIdentity = 0x8A,
  kRange = 0x8F,
  kCommit = 0x90,
  kFactoryDefaults = 0xA0,
  kSendKeys = 0xB0,
  kHaltKeys = 0xB1,
  kRestoreUser = 0xD0,
  kSaveUser = 0xE0,
};

// Of page 0.
constexpr std::size_t kCycles = 2;  // read only
constexpr std::size_t kMinDistance = 3;
constexpr std::size_t kMaxDistance = 4;

HidIdentity SonarIdentity() {
  return {0x18C8, 0x2BFA, {{1, 6}}, 0, sizeof(SonarPage), "Orvantis presence sensor", "0600123456"};
}

bool IsPage(std::uint8_t opcode) { return opcode >= kFirstPage && opcode <= kLastPage; }

std::uint8_t InUnits(double inches) {
  return static_cast<std::uint8_t>(std::clamp(std::floor(inches * kUnitsPerInch + 0.5), 0.0, 255.0));
}

constexpr std::uint8_t Low(std::uint16_t word) { return static_cast<std::uint8_t>(word & 0xFFU); }
constexpr std::uint8_t High(std::uint16_t word) { return static_cast<std::uint8_t>(word >> 8U); }

SonarPage IdentityPage(const SonarState& state) {
  const auto& firmware = state.firmware;
  return {Low(state.luid), High(state.luid), Low(state.did), High(state.did),
          firmware[0],     firmware[1],      firmware[2],    firmware[3]};
}

}  // namespace

SonarPages FactorySonarPages() {
  constexpr std::uint8_t kWindowsKey = 0x08;
  constexpr std::uint8_t kL = 0x0F;
  constexpr std::uint8_t kSpace = 0x2C;
  return {{
      {0x02, 250 / 4, 12, 49, 208, 5, 2, 3},  // 14 to 60 inches
      {1, 1, kWindowsKey},                    // leaving locks the screen
      {0, 2, kL},
      {1, 1},
      {0, 0, kSpace},
      {0, 0, 0, 0, 1, 10, 60, 25},
  }};
}

SonarState NewSonarState() {
  SonarState state;
  state.working = state.stored = state.user = FactorySonarPages();
  return state;
}

Sonar::Sonar(SonarState initial) : Model(SonarIdentity()), state(std::move(initial)) {}

void Sonar::Keep(Memory& memory) {
  memory.PassNumber("luid", state.luid);
  for (std::size_t i = 0; i < kSonarPages; ++i) {
    memory.Pass("stored-page-" + std::to_string(i), state.stored[i]);
    memory.Pass("user-page-" + std::to_string(i), state.user[i]);
  }
  if (memory.IsTaken()) PowerCycle();
}

void Sonar::PowerCycle() {
  state.working = state.stored;
  state.sendsKeys = true;
  fetches_ = 0;
  dataMayFollow_ = false;
  SetCommand({});
  SetReply({});
}

bool Sonar::TakeReport(Payload report) {
  if (std::exchange(dataMayFollow_, false)) {
    Keep(Command()[0], report);
    return true;
  }
  if (faults.TakeCommandRefusal(report)) return false;
  SetCommand(report);
  SetReply({});
  fetches_ = 0;
  TakeCommand(report[0], report[1]);
  return true;
}

void Sonar::TakeCommand(std::uint8_t opcode, std::uint8_t parameter) {
  dataMayFollow_ = IsPage(opcode) || opcode == kIdentity;
  if (IsPage(opcode)) return SetReply(state.working[opcode - kFirstPage]);
  switch (opcode) {
    case kIdentity: SetReply(IdentityPage(state)); break;
    case kRange: SetReply(Range()); break;
    case kCommit:
      ++state.counters.commits;
      for (std::size_t page = 0; page < kSonarPages; ++page) {
        if ((parameter >> page & 1U) != 0) state.stored[page] = state.working[page];
      }
      break;
    case kFactoryDefaults: state.working = state.stored = FactorySonarPages(); break;
    case kSendKeys:
    case kHaltKeys: state.sendsKeys = opcode == kSendKeys; break;
    case kRestoreUser: state.working = state.stored = state.user; break;
    case kSaveUser: state.user = state.working; break;
    default: ++state.counters.unknownCommands; break;
  }
}

void Sonar::Keep(std::uint8_t opcode, Payload data) {
  if (opcode == kIdentity) {
    state.luid = static_cast<std::uint16_t>(data[1] | data[2] << 8U);
    return;
  }
  const std::size_t number = opcode - kFirstPage;
  SonarPage& page = state.working[number];
  const std::uint8_t cycles = page[kCycles];
  std::copy(data.begin(), data.end(), page.begin());
  if (number == 0) page[kCycles] = cycles;
}

void Sonar::BeginFetch() {
  dataMayFollow_ = false;
  const std::uint8_t opcode = Command()[0];
  if (state.repeatTurnsPage && ++fetches_ == 2 && IsPage(opcode) && opcode != kLastPage) {
    SetReply(state.working[opcode - kFirstPage + 1U]);
  }
}

SonarPage Sonar::Range() const {
  const std::uint8_t distance = InUnits(state.walk.At(Now()));
  const SonarPage& limits = state.working[0];
  std::uint8_t status = 0;
  if (distance >= limits[kMinDistance] && distance <= limits[kMaxDistance]) {
    const double speed = state.walk.SpeedAt(Now());
    status = kSomebody;
    if (speed > 0) status |= kGoingAway;
    if (speed < 0) status |= kComingNear;
  }
  return {state.status.value_or(status), distance};
}

}  // namespace tavlyn::sim
