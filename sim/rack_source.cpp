#include "sim/rack_source.h"

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

int RackSource::LineNumber(Key line) {
  const int number = NumberIn(line);
  return line - static_cast<Key>(number) == generation_ && rack_.LineOf(number) != nullptr ? number : 0;
}

std::vector<ListedLine> RackSource::Lines() {
  const std::lock_guard lock(mutex_);
  std::vector<ListedLine> all;
  for (const Rack::Line& line : rack_.Lines()) {
    all.push_back({generation_ + static_cast<Key>(line.number), line.place, line.manner});
  }
  return all;
}

Outcome RackSource::SendBytes(Key line, std::span<const std::uint8_t> bytes) {
  const std::lock_guard lock(mutex_);
  const int number = LineNumber(line);
  if (number == 0) return Outcome::kGone;
  rack_.SendBytes(number, bytes);
  return Outcome::kDone;
}

Outcome RackSource::TakeBytes(Key line, std::vector<std::uint8_t>& bytes) {
  const std::lock_guard lock(mutex_);
  const int number = LineNumber(line);
  bytes.resize(number == 0 ? 0 : rack_.TakeBytes(number, bytes));
  if (number == 0) return Outcome::kGone;
  return DoneOr(!bytes.empty(), Outcome::kNothing);
}

Outcome RackSource::Silence(Key line) {
  const std::lock_guard lock(mutex_);
  const int number = LineNumber(line);
  if (number == 0) return Outcome::kGone;
  rack_.LineOf(number)->Silence();
  return Outcome::kDone;
}

Outcome RackSource::TakeCut(Key line) {
  const std::lock_guard lock(mutex_);
  const int number = LineNumber(line);
  if (number == 0) return Outcome::kGone;
  return DoneOr(rack_.LineOf(number)->TakeCut(), Outcome::kNothing);
}

bool RackSource::Run(const std::string& command, std::string& reply) {
  const std::lock_guard lock(mutex_);
  const bool hadDevices = !rack_.IsEmpty();
  const bool done = rack_.Run(command, reply);
  if (hadDevices && rack_.IsEmpty()) generation_ += kGenerationStep;
  return done;
}

}  // namespace tavlyn::sim
