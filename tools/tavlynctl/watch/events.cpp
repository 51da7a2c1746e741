#include "tools/tavlynctl/watch/events.h"

#include <chrono>
#include <cstdio>

#include "tools/tavlynctl/watch/event_format.h"

namespace tavlyn::ctl {
namespace {

// "2026-11-22T18:24:23.123Z", as RFC 3339 has it.
std::string TimeStamp() {
  using std::chrono::milliseconds;
  constexpr int kPerSecond = 1000;
  const auto now = std::chrono::floor<milliseconds>(std::chrono::system_clock::now());
  const auto day = std::chrono::floor<std::chrono::days>(now);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(now - day);
  char text[40];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()),
                static_cast<int>(time.subseconds().count() % kPerSecond));
  return text;
}

}  // namespace

void EventWords::Take(Words& words) {
  const auto take = [this](const std::string& text) {
    if (const std::string problem = FormatProblem(text); !problem.empty()) {
      throw CLI::ValidationError("--format", problem);
    }
    format = text;
  };
  words.Parsed("--format", take, ("Each line as this text, with " + Placeholders()).c_str())
      ->option_text("TEXT");
  const auto run = [this](const std::string& text) { command = text; };
  words
      .Parsed("--exec", run,
              "For each event let the shell run this, one after the other, with the event in its variables")
      ->option_text("COMMAND");
}

Events::Events(const Request& request, const EventWords& words) : request_(request), words_(words) {
  if (!words.format.empty() && request.json) throw Failure(kUsage, "--format and --json exclude each other");
  if (!words.command.empty()) command_.emplace(words.command);
}

bool Events::Tell(const char* event, const DevicePlace& place, const Json& found, const std::string& line) {
  Json told = request_.Document();
  told["sequence"] = ++sequence_;
  told["time"] = TimeStamp();
  told["event"] = event;
  told["device"] = place.index;
  told["path"] = place.path;
  told["serial_number"] = place.serialNumber.empty() ? Json() : Json(place.serialNumber);
  for (const auto& [key, value] : found.items()) told[key] = value;
  const bool isShown = FormatShows(words_.format, event);
  Json named = told;
  named["text"] = line;
  if (isShown) ShowEvent(told, words_.format.empty() ? line : Formatted(words_.format, named), request_.json);
  if (command_) command_->Add(sequence_, VariablesOf(named));
  return isShown;
}

void Events::Step() {
  if (command_) command_->Step();
}

}  // namespace tavlyn::ctl
