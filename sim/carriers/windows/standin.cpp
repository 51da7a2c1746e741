#include "sim/carriers/windows/standin.h"

#include <algorithm>
#include <cstdlib>
#include <thread>

#include "sim/carriers/standin_source.h"
#include "sim/carriers/wire.h"

namespace tavlyn::sim {
namespace {

using Clock = std::chrono::steady_clock;

// Input reports of another process's devices arrive even while this process makes no call of ours.
constexpr std::chrono::milliseconds kLook(10);
// Longer than the pauses of a program that is setting a reader up. After that it waits for input, without any
// call of ours; input from before would be discarded as old.
constexpr std::chrono::milliseconds kQuiet(500);

}  // namespace

// Deliberately never destroyed: programs close their devices in their own last steps.
Standin& TheStandin() {
  static Standin* const standin = new Standin;
  return *standin;
}

Standin::Standin() : source_(StandinSource()) {
  if (std::getenv(wire::kSocketVariable) == nullptr) return;
  takesInput_ = false;
  // The thread runs as long as the process, so the library must stay as well.
  HMODULE self = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<const char*>(&TheStandin), &self);
  std::thread([this] {
    for (;;) {
      std::this_thread::sleep_for(kLook);
      const std::lock_guard lock(mutex_);
      if (nodes_.empty()) continue;
      const bool open = std::ranges::any_of(nodes_, [](const Present& one) { return one.node->IsOpen(); });
      const bool quiet = exchanged_ && Clock::now() - *exchanged_ > kQuiet;
      takesInput_ = open && (takesInput_ || quiet);
      Update();
    }
  }).detach();
}

bool Standin::Run(const std::string& command, std::string& reply) {
  const std::lock_guard lock(mutex_);
  const bool done = source_.Run(command, reply);
  Update();
  return done;
}

std::vector<std::string> Standin::Paths(bool keyboards) {
  const std::lock_guard lock(mutex_);
  Update();
  std::vector<std::string> paths;
  for (const Present& one : nodes_) {
    const std::string& path = keyboards ? one.node->KeyboardPath() : one.node->HidPath();
    if (!path.empty()) paths.push_back(path);
  }
  return paths;
}

std::unique_ptr<HidIdentity> Standin::Identity(HANDLE device) {
  const std::lock_guard lock(mutex_);
  Update();
  const Present* present = Find(device);
  return present == nullptr ? nullptr : std::make_unique<HidIdentity>(present->listed.identity);
}

bool Standin::SetFeature(HANDLE device, std::span<const std::uint8_t> report) {
  return Exchange(device, report.size(), [&](Key key) { return source_.SetFeature(key, report); });
}

bool Standin::GetFeature(HANDLE device, std::span<std::uint8_t> report) {
  return Exchange(device, report.size(), [&](Key key) { return source_.GetFeature(key, report); });
}

template <typename Call>
bool Standin::Exchange(HANDLE device, std::size_t length, Call call) {
  const std::lock_guard lock(mutex_);
  exchanged_ = Clock::now();
  const Present* present = Find(device);
  const bool fits = present != nullptr && length == FeatureReportBytes(present->listed.identity);
  const bool wrongLength = present != nullptr && !fits;
  const bool done = fits && call(present->listed.key) == Outcome::kDone;
  Update();
  if (wrongLength) SetLastError(ERROR_INVALID_PARAMETER);
  return done;
}

const Standin::Present* Standin::Find(HANDLE device) const {
  const auto at = std::ranges::find_if(nodes_, [&](const Present& one) { return one.node->Owns(device); });
  if (at == nodes_.end()) return nullptr;
  at->node->Note(device);
  return &*at;
}

void Standin::Update() {
  const std::vector<Listed> all = source_.List();
  std::erase_if(nodes_, [&](const Present& one) {
    return std::ranges::find(all, one.listed.key, &Listed::key) == all.end();
  });
  for (const Listed& listed : all) {
    const bool known =
        std::ranges::any_of(nodes_, [&](const Present& one) { return one.listed.key == listed.key; });
    if (!known) nodes_.push_back({listed, std::make_unique<Node>(listed.identity)});
  }
  std::vector<std::uint8_t> report;
  for (const Present& one : nodes_) {
    one.node->Tend();
    while (takesInput_ && one.node->IsOpen() && source_.TakeInput(one.listed.key, report) == Outcome::kDone) {
      one.node->Deliver(report);
    }
  }
}

}  // namespace tavlyn::sim
