#include "tools/tavlynctl/watch/events.h"

#include "tools/printable.h"
#include "tools/tavlynctl/watch/event_format.h"
#include "tools/tavlynctl/watch/time_stamp.h"
#include "tools/tavlynctl/watch/watching.h"

namespace tavlyn::ctl {

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

ShownEvents::ShownEvents(const Request& request, const EventWords& words) : request_(request), words_(words) {
  if (!words.format.empty() && request.json) throw Failure(kUsage, "--format and --json exclude each other");
  if (!words.command.empty()) command_.emplace(words.command);
}

bool ShownEvents::Tell(const char* event, const DevicePlace& place, const Json& found,
                       const std::string& line) {
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

void ShownEvents::Begin(const DevicePlace&) { TellWatched(request_.json); }

void ShownEvents::Note(const std::string& text) { tavlyn::Tell(kProgram, text); }

void ShownEvents::Step() {
  if (command_) command_->Step();
}

}  // namespace tavlyn::ctl
