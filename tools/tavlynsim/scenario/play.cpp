#include "tools/tavlynsim/scenario/play.h"

#include <algorithm>
#include <utility>

namespace tavlyn::sim {

Play::Play(Source& source, Scenario scenario, ScenarioModels models)
    : source_(source),
      scenario_(std::move(scenario)),
      models_(std::move(models)),
      exchanges_(models_.size()) {
  for (const Expectation& expectation : scenario_.expectations) watched_.push_back({expectation});
  DoUntil(Moment(0));
}

void Play::Begin() {
  if (!begun_) begun_ = Clock::now();
}

Moment Play::Now() const {
  return begun_ ? std::chrono::duration_cast<Moment>(Clock::now() - *begun_) : Moment(0);
}

void Play::NoteAsked() {
  Begin();
  Step();
}

void Play::NoteSent(const Model& model, std::span<const std::uint8_t> command) {
  if (!scenario_.beginsWithCard) Begin();
  for (Watched& watched : watched_) {
    if (models_[watched.expectation.device].get() == &model) {
      sim::NoteSent(watched.expectation.condition, command);
    }
  }
  if (!begun_) return;
  // What comes before a step that is due has been done counts as before it.
  const auto next = Next();
  Look(next ? std::max(Moment(0), std::min(Now(), *next - Moment(1))) : Now());
}

void Play::NoteExchange(std::size_t device, const std::string& words) {
  if (device >= exchanges_.size()) return;  // plugged in by a typed command
  for (Watched& watched : watched_) {
    const bool awaits = watched.awaited > 0 && watched.expectation.device == device;
    if (awaits && words.starts_with('>') && --watched.awaited == 0) TakeExchanges(watched);
  }
  exchanges_[device].Take(InSeconds(Now()), words);
}

void Play::TakeExchanges(Watched& watched) {
  watched.verdict->exchanges = exchanges_[watched.expectation.device].Lines();
}

std::optional<Moment> Play::Next() const {
  std::optional<Moment> next;
  const auto take = [&](Moment moment) {
    if (moment > looked_ && (!next || moment < *next)) next = moment;
  };
  if (next_ < scenario_.actions.size()) take(scenario_.actions[next_].at);
  for (const Watched& watched : watched_) {
    if (watched.verdict || watched.expectation.when >= When::kNever) continue;
    take(watched.expectation.from);
    take(watched.expectation.to);
  }
  if (scenario_.end && !over_) take(*scenario_.end);
  return next;
}

std::optional<std::chrono::milliseconds> Play::UntilNext() const {
  const auto next = begun_ ? Next() : std::nullopt;
  if (!next) return std::nullopt;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*begun_ + *next - Clock::now());
  return std::max(left, std::chrono::milliseconds(0));
}

// What is due at one moment is done before it is looked at, however late the step comes.
void Play::Step() {
  if (!begun_) return;
  const Moment now = Now();
  for (auto next = Next(); next && *next <= now; next = Next()) {
    DoUntil(*next);
    Look(*next);
    looked_ = *next;
    over_ = over_ || (scenario_.end && *scenario_.end <= *next);
  }
}

void Play::DoUntil(Moment moment) {
  while (next_ < scenario_.actions.size() && scenario_.actions[next_].at <= moment) {
    Do(scenario_.actions[next_++]);
  }
}

void Play::Do(const Action& action) {
  std::string reply;
  if (source_.Run(Addressed(action.device, action.command), reply)) return;
  failed_.push_back(
      {action.line, action.text, false, action.at, reply, true, exchanges_[action.device].Lines()});
}

void Play::Look(Moment now) {
  for (Watched& watched : watched_) {
    if (!watched.verdict) LookAt(watched, now);
  }
}

void Play::LookAt(Watched& watched, Moment now) {
  const Expectation& expectation = watched.expectation;
  const auto sight = sim::Look(expectation.condition, *models_[expectation.device]);
  const bool holds = sight && sight->holds;
  const std::string seen = sight ? sight->text : "the device is another one";
  switch (expectation.when) {
    case When::kBy:
      if (holds || now >= expectation.to) Decide(watched, now, holds, seen);
      break;
    case When::kAt:
      if (now >= expectation.to) Decide(watched, now, holds, seen);
      break;
    case When::kFrom:
      if (now < expectation.from) break;
      if (!holds || now >= expectation.to) Decide(watched, now, holds, seen);
      break;
    case When::kNever:
      if (holds) Decide(watched, now, false, seen);
      break;
    case When::kEnd: break;
  }
}

void Play::Decide(Watched& watched, Moment now, bool met, const std::string& seen) {
  watched.verdict = {watched.expectation.line, watched.expectation.text, met, now,
                     "at " + InSeconds(now) + " " + seen};
  constexpr int kThisAndNext = 2;
  if (!met) watched.awaited = kThisAndNext;
}

void Play::DecideLast(Watched& watched, Moment now) {
  const Expectation& expectation = watched.expectation;
  const auto sight = sim::Look(expectation.condition, *models_[expectation.device]);
  const bool holds = sight && sight->holds;
  const std::string seen = sight ? sight->text : "the device is another one";
  if (expectation.when == When::kNever) return Decide(watched, now, !holds, seen);
  if (expectation.when == When::kEnd) return Decide(watched, now, holds, seen);
  Decide(watched, now, false, begun_ ? "the program had ended; " + seen : "nothing had begun");
}

const std::vector<Verdict>& Play::Finish() {
  if (std::exchange(finished_, true)) return verdicts_;
  Step();
  const Moment now = Now();
  for (Watched& watched : watched_) {
    if (!watched.verdict) DecideLast(watched, now);
    if (watched.awaited > 0) TakeExchanges(watched);
    verdicts_.push_back(*watched.verdict);
  }
  verdicts_.insert(verdicts_.end(), failed_.begin(), failed_.end());
  std::ranges::stable_sort(verdicts_, {}, &Verdict::line);
  return verdicts_;
}

}  // namespace tavlyn::sim
