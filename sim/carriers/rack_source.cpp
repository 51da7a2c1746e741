#include "sim/carriers/rack_source.h"

namespace tavlyn::sim {
namespace {

constexpr Key kGenerationStep = 0x10000;

Outcome DoneOr(bool done, Outcome otherwise) { return done ? Outcome::kDone : otherwise; }

}  // namespace

int RackSource::Number(Key key) const {
  const int number = NumberIn(key);
  return key - static_cast<Key>(number) == generation_ && rack_.IsPresent(number) ? number : 0;
}

std::vector<Listed> RackSource::List() {
  const std::lock_guard lock(mutex_);
  std::vector<Listed> all;
  for (const Rack::Interface& present : rack_.Present()) {
    all.push_back({generation_ + static_cast<Key>(present.number), present.identity});
  }
  return all;
}

Outcome RackSource::SetFeature(Key key, std::span<const std::uint8_t> report) {
  const std::lock_guard lock(mutex_);
  const int number = Number(key);
  if (number == 0) return Outcome::kGone;
  return DoneOr(rack_.SetFeature(number, report), Outcome::kRefused);
}

Outcome RackSource::GetFeature(Key key, std::span<std::uint8_t> report) {
  const std::lock_guard lock(mutex_);
  const int number = Number(key);
  if (number == 0) return Outcome::kGone;
  return DoneOr(rack_.GetFeature(number, report), Outcome::kRefused);
}

Outcome RackSource::TakeInput(Key key, std::vector<std::uint8_t>& report) {
  const std::lock_guard lock(mutex_);
  const int number = Number(key);
  if (number == 0) return Outcome::kGone;
  return DoneOr(rack_.TakeInput(number, report), Outcome::kNothing);
}

bool RackSource::Run(const std::string& command, std::string& reply) {
  const std::lock_guard lock(mutex_);
  const bool hadDevices = rack_.Identity(1) != nullptr;
  const bool done = rack_.Run(command, reply);
  if (hadDevices && rack_.Identity(1) == nullptr) generation_ += kGenerationStep;
  return done;
}

}  // namespace tavlyn::sim
