#include "sim/devices/faults.h"

#include <algorithm>
#include <utility>

namespace tavlyn::sim {

Fault Faults::Next() {
  if (vanished_) return Fault::kVanish;
  ++exchanges_;
  for (const Armed& armed : armed_) {
    const int past = exchanges_ - armed.first;
    if (past < 0 || past >= armed.times) continue;
    vanished_ = armed.fault == Fault::kVanish;
    return armed.fault;
  }
  return Fault::kNone;
}

void Faults::EndVanishing() {
  vanished_ = false;
  std::erase_if(armed_, [](const Armed& armed) { return armed.fault == Fault::kVanish; });
}

void Faults::ArmCommand(Effect effect, std::initializer_list<std::uint8_t> prefix, int times, Bytes answer) {
  byCommand_.push_back({effect, prefix, times, std::move(answer)});
}

void Faults::RefuseCommand(std::initializer_list<std::uint8_t> prefix, int times) {
  ArmCommand(Effect::kCommand, prefix, times, {});
}

void Faults::RefuseReply(std::initializer_list<std::uint8_t> prefix, int times) {
  ArmCommand(Effect::kReply, prefix, times, {});
}

void Faults::AnswerWith(std::initializer_list<std::uint8_t> prefix, Bytes answer, int times) {
  ArmCommand(Effect::kAnswer, prefix, times, std::move(answer));
}

Faults::ByCommand* Faults::Take(Effect effect, std::span<const std::uint8_t> command) {
  ByCommand* best = nullptr;
  for (ByCommand& candidate : byCommand_) {
    const Bytes& prefix = candidate.prefix;
    const bool applies = candidate.effect == effect && candidate.left > 0 && StartsWith(command, prefix);
    if (applies && (best == nullptr || prefix.size() >= best->prefix.size())) best = &candidate;
  }
  if (best != nullptr && best->left != kAlways) --best->left;
  return best;
}

bool Faults::TakeCommandRefusal(std::span<const std::uint8_t> command) {
  return Take(Effect::kCommand, command) != nullptr;
}

bool Faults::TakeReplyRefusal(std::span<const std::uint8_t> command) {
  return Take(Effect::kReply, command) != nullptr;
}

std::optional<Bytes> Faults::TakeAnswer(std::span<const std::uint8_t> command) {
  const ByCommand* found = Take(Effect::kAnswer, command);
  if (found == nullptr) return std::nullopt;
  return found->answer;
}

bool StartsWith(std::span<const std::uint8_t> bytes, std::span<const std::uint8_t> prefix) {
  return bytes.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), bytes.begin());
}

void Garble(std::span<std::uint8_t> bytes) {
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(~byte);
}

}  // namespace tavlyn::sim
