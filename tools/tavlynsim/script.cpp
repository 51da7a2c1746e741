#include "tools/tavlynsim/script.h"

#include <algorithm>
#include <utility>

namespace tavlyn::sim {
namespace {

constexpr const char* kFirst = "#1 ";

}  // namespace

Script::Script(Source& source, Timetable timetable, std::string announce)
    : source_(source), timetable_(std::move(timetable)), announce_(std::move(announce)) {}

bool Script::Check(std::string& reason) {
  if (timetable_.cards.empty()) return true;
  std::string reply;
  for (const std::string& card : timetable_.cards) {
    if (!source_.Run(kFirst + ("card " + card), reason)) return false;
  }
  return source_.Run(kFirst + std::string("take"), reply);
}

void Script::Begin() {
  if (begun_ || timetable_.cards.empty()) return;
  begun_ = true;
  Lay();
}

std::optional<std::chrono::milliseconds> Script::UntilNext() const {
  if (!due_) return std::nullopt;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*due_ - Clock::now());
  return std::max(left, std::chrono::milliseconds(0));
}

void Script::Step() {
  if (!due_ || Clock::now() < *due_) return;
  if (lies_) {
    Take();
  } else {
    Lay();
  }
}

void Script::Lay() {
  std::string reply;
  source_.Run(kFirst + ("card " + timetable_.cards[next_]), reply);
  if (!announce_.empty()) source_.Run(kFirst + ("input " + announce_), reply);
  lies_ = true;
  due_ = Clock::now() + timetable_.on;
}

void Script::Take() {
  std::string reply;
  source_.Run(kFirst + std::string("take"), reply);
  lies_ = false;
  due_ = Clock::now() + timetable_.off;
  if (++next_ < timetable_.cards.size()) return;
  next_ = 0;
  if (!timetable_.repeat) due_.reset();
}

}  // namespace tavlyn::sim
