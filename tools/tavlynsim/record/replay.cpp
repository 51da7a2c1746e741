#include "tools/tavlynsim/record/replay.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace tavlyn::sim {
namespace {

bool Fits(std::int16_t recorded, std::uint8_t byte) { return recorded == kCovered || recorded == byte; }

bool BeginsWith(const Exchange& recorded, std::span<const std::uint8_t> bytes) {
  return recorded.bytes.size() >= bytes.size() &&
         std::equal(bytes.begin(), bytes.end(), recorded.bytes.begin(),
                    [](std::uint8_t byte, std::int16_t shown) { return Fits(shown, byte); });
}

bool IsRequest(const Exchange& recorded) { return recorded.way == Way::kSent; }

// What was covered is played as zeros.
std::vector<std::uint8_t> Played(const Shown& shown) {
  std::vector<std::uint8_t> bytes;
  for (const std::int16_t one : shown) bytes.push_back(static_cast<std::uint8_t>(one == kCovered ? 0 : one));
  return bytes;
}

std::string Text(const std::string& link, std::span<const std::uint8_t> bytes) {
  return LineOf(link, Exchange{Way::kSent, Outcome::kDone, ShownBytes(bytes)});
}

}  // namespace

Playing::Playing(RecordedLink link, bool strict) : link_(std::move(link)), strict_(strict) {
  HidIdentity& identity = link_.identity;
  if (identity.featureBytes != 0) return;
  for (const Exchange& one : link_.exchanges) {
    if (one.way == Way::kInput || one.bytes.empty()) continue;
    identity.reportId = static_cast<std::uint8_t>(one.bytes.front());
    identity.featureBytes = std::max(identity.featureBytes, one.bytes.size() - 1);
  }
}

const Exchange* Playing::NextRequest() const {
  const auto next = std::find_if(link_.exchanges.begin() + static_cast<std::ptrdiff_t>(at_),
                                 link_.exchanges.end(), IsRequest);
  return next == link_.exchanges.end() ? nullptr : &*next;
}

const Exchange* Playing::Send(std::span<const std::uint8_t> request, std::string& problem) {
  const std::vector<Exchange>& all = link_.exchanges;
  const auto isIt = [&](const Exchange& one) {
    return IsRequest(one) && one.bytes.size() == request.size() && BeginsWith(one, request);
  };
  const Exchange* found = nullptr;
  if (strict_) {
    const Exchange* next = NextRequest();
    if (next != nullptr && isIt(*next)) found = next;
    if (found == nullptr) {
      const std::string place = next == nullptr ? "nothing" : "line " + std::to_string(next->line);
      problem = Text(link_.name, request) + ": " + place + " of the recording comes next";
      return nullptr;
    }
  } else {
    const auto here = all.begin() + static_cast<std::ptrdiff_t>(at_);
    const auto ahead = std::find_if(here, all.end(), isIt);
    const auto before = std::find_if(std::make_reverse_iterator(here), all.rend(), isIt);
    if (ahead != all.end()) found = &*ahead;
    if (found == nullptr && before != all.rend()) found = &*before;
    if (found == nullptr) {
      problem = Text(link_.name, request) + ": the recording has no such request";
      return nullptr;
    }
  }
  at_ = static_cast<std::size_t>(found - all.data()) + 1;
  return found;
}

const Exchange* Playing::Receive() {
  const std::vector<Exchange>& all = link_.exchanges;
  for (std::size_t next = at_; next < all.size() && !IsRequest(all[next]); ++next) {
    if (all[next].way != Way::kReceived) continue;
    at_ = next + 1;
    return &all[next];
  }
  return nullptr;
}

const Exchange* Playing::Input() {
  const std::vector<Exchange>& all = link_.exchanges;
  const auto isInput = [](const Exchange& one) { return one.way == Way::kInput; };
  const auto next = std::find_if(all.begin() + static_cast<std::ptrdiff_t>(input_), all.end(), isInput);
  if (next == all.end()) return nullptr;
  const auto index = static_cast<std::size_t>(next - all.begin());
  if (index > at_ && !std::all_of(all.begin() + static_cast<std::ptrdiff_t>(at_), next, isInput))
    return nullptr;
  input_ = index + 1;
  return &*next;
}

bool Playing::IsNextBegun(std::span<const std::uint8_t> request) const {
  const Exchange* next = NextRequest();
  return next != nullptr && next->bytes.size() > request.size() && BeginsWith(*next, request);
}

bool Playing::IsBegun(std::span<const std::uint8_t> request) const {
  return std::ranges::any_of(link_.exchanges,
                             [&](const Exchange& one) { return IsRequest(one) && BeginsWith(one, request); });
}

Replay::Replay(Recording recording, bool strict, std::function<void(const std::string&)> tell)
    : tell_(std::move(tell)) {
  for (auto& [key, link] : recording.devices) devices_.emplace(key, Playing(std::move(link), strict));
  for (RecordedLink& link : recording.lines) lines_.push_back({Playing(std::move(link), strict)});
}

void Replay::Tell(const std::string& problem) {
  if (std::ranges::find(told_, problem) != told_.end()) return;
  told_.push_back(problem);
  tell_(problem);
}

Playing* Replay::Find(Key key) {
  const auto at = devices_.find(key);
  return at == devices_.end() ? nullptr : &at->second;
}

Replay::PlayedLine* Replay::FindLine(Key key) {
  return key >= 1 && key <= lines_.size() ? &lines_[key - 1] : nullptr;
}

std::vector<Listed> Replay::List() {
  std::vector<Listed> all;
  for (const auto& [key, playing] : devices_) all.push_back({key, playing.Link().identity});
  return all;
}

Outcome Replay::SetFeature(Key key, std::span<const std::uint8_t> report) {
  Playing* playing = Find(key);
  if (playing == nullptr) return Outcome::kGone;
  std::string problem;
  const Exchange* played = playing->Send(report, problem);
  if (played != nullptr) return played->outcome;
  Tell(problem);
  return Outcome::kRefused;
}

Outcome Replay::GetFeature(Key key, std::span<std::uint8_t> report) {
  Playing* playing = Find(key);
  if (playing == nullptr) return Outcome::kGone;
  const Exchange* played = playing->Receive();
  if (played == nullptr) return Outcome::kRefused;
  const std::vector<std::uint8_t> bytes = Played(played->bytes);
  std::ranges::fill(report, std::uint8_t{0});
  std::copy_n(bytes.begin(), std::min(bytes.size(), report.size()), report.begin());
  return played->outcome;
}

Outcome Replay::TakeInput(Key key, std::vector<std::uint8_t>& report) {
  Playing* playing = Find(key);
  if (playing == nullptr) return Outcome::kGone;
  const Exchange* played = playing->Input();
  if (played == nullptr) return Outcome::kNothing;
  report = Played(played->bytes);
  return played->outcome;
}

// A program that drops what has come when it has written would drop an answer that no device gives so soon.
std::vector<ListedLine> Replay::Lines() {
  constexpr LineManner kAsADevice = {.delay = std::chrono::milliseconds(20)};
  std::vector<ListedLine> all;
  Key key = 0;
  for (const PlayedLine& line : lines_) all.push_back({++key, *line.playing.Link().place, kAsADevice});
  return all;
}

// A request arrives in pieces; it is whole when it is the one of the recording, unless more bytes would make
// it the one that comes next.
Outcome Replay::SendBytes(Key key, std::span<const std::uint8_t> bytes) {
  PlayedLine* line = FindLine(key);
  if (line == nullptr) return Outcome::kGone;
  std::vector<std::uint8_t>& asked = line->asked;
  asked.insert(asked.end(), bytes.begin(), bytes.end());
  if (line->playing.IsNextBegun(asked)) return Outcome::kDone;
  std::string problem;
  if (line->playing.Send(asked, problem) != nullptr) {
    line->answer.clear();
    if (const Exchange* reply = line->playing.Receive()) line->answer = Played(reply->bytes);
  } else if (line->playing.IsBegun(asked)) {
    return Outcome::kDone;
  } else {
    Tell(problem);
  }
  asked.clear();
  return Outcome::kDone;
}

Outcome Replay::TakeBytes(Key key, std::vector<std::uint8_t>& bytes) {
  PlayedLine* line = FindLine(key);
  if (line == nullptr) return Outcome::kGone;
  const std::size_t count = std::min(bytes.size(), line->answer.size());
  bytes.assign(line->answer.begin(), line->answer.begin() + static_cast<std::ptrdiff_t>(count));
  line->answer.erase(line->answer.begin(), line->answer.begin() + static_cast<std::ptrdiff_t>(count));
  return count != 0 ? Outcome::kDone : Outcome::kNothing;
}

Outcome Replay::Silence(Key key) {
  PlayedLine* line = FindLine(key);
  if (line == nullptr) return Outcome::kGone;
  line->asked.clear();
  return Outcome::kDone;
}

bool Replay::Run(const std::string&, std::string& reply) {
  reply = "a replayed device takes no commands";
  return false;
}

}  // namespace tavlyn::sim
