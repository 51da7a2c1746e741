#include "sim/devices/model.h"

#include <algorithm>
#include <utility>

namespace tavlyn::sim {
namespace {

template <typename To>
void CopyFilled(std::span<const std::uint8_t> from, To& to) {
  to.fill(0);
  if (!from.empty()) std::copy_n(from.begin(), std::min(from.size(), to.size()), to.begin());
}

}  // namespace

Model::Model(HidIdentity shown) : identity(std::move(shown)) {}

void Model::SetCommand(Payload command) { CopyFilled(command, command_); }
void Model::SetReply(Payload reply) { CopyFilled(reply, reply_); }

bool Model::SetFeature(std::span<const std::uint8_t> payload) {
  if (!Present() || !identity.Takes(payload.size())) return false;
  const Fault fault = faults.Next();
  if (fault == Fault::kRefuse || fault == Fault::kVanish) return false;
  if (fault == Fault::kDrop) return true;

  late_ = fault == Fault::kDelay;
  Report report{};
  CopyFilled(payload, report);
  const std::span whole = std::span(report).first(identity.featureBytes);
  if (fault == Fault::kGarble) Garble(whole);
  return TakeReport(whole);
}

bool Model::GetFeature(std::span<std::uint8_t> payload) {
  if (!Present() || !identity.Takes(payload.size())) return false;
  const Fault fault = faults.Next();
  BeginFetch();
  if (fault == Fault::kRefuse || fault == Fault::kVanish || fault == Fault::kDrop) return false;
  if (faults.TakeReplyRefusal(Command())) return false;

  const bool late = std::exchange(late_, false) || fault == Fault::kDelay;
  Report reply = late ? fetched_ : reply_;
  if (const auto answer = faults.TakeAnswer(Command())) CopyFilled(*answer, reply);
  if (fault == Fault::kGarble) Garble(reply);
  fetched_ = reply;
  std::ranges::fill(payload, std::uint8_t{0});
  std::copy_n(reply.begin(), std::min(reply.size(), payload.size()), payload.begin());
  return true;
}

}  // namespace tavlyn::sim
