// range: what a sonar sensor measures.
#include <algorithm>
#include <array>
#include <cstdio>

#include "api.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/session.h"
#include "tools/tavlynctl/watching.h"
#include "tools/terminal.h"

namespace tavlyn::ctl {
namespace {

constexpr std::size_t kRangeWords = 5;
constexpr int kMostInches = 74;
constexpr int kInchesPerMark = 2;

struct Measurement {
  int inches = 0;
  std::array<int, 3> status{};
};

bool Measure(Measurement& measured) {
  std::array<std::uint16_t, kRangeWords> words{};
  if (GetObjRangeInfo(words.data()) != 1) return false;
  measured = {words[0], {words[1], words[2], words[3]}};
  return true;
}

void Describe(const Measurement& measured, Json& document) {
  document["inches"] = measured.inches;
  document["status"] = measured.status;
}

std::string Line(const Measurement& measured) {
  char text[32];
  std::snprintf(text, sizeof text, "%2d in  %d %d %d", measured.inches, measured.status[0],
                measured.status[1], measured.status[2]);
  return text;
}

// Over the line that stands there.
void ShowBar(const Measurement& measured) {
  const auto full = static_cast<std::size_t>(std::clamp(measured.inches, 0, kMostInches) / kInchesPerMark);
  const std::string bar(full, '#');
  const std::string rest(kMostInches / kInchesPerMark - full, '.');
  std::printf("\r%s%s %s", bar.c_str(), rest.c_str(), Line(measured).c_str());
  FlushOutput();
}

void ShowLine(const Measurement& measured, bool json) {
  Json event = NewDocument("range");
  event["event"] = "range";
  Describe(measured, event);
  ShowEvent(event, Line(measured), json);
}

// A live line that is left as it is when the watching ends.
class LiveLine {
 public:
  explicit LiveLine(bool live) : live_(live) {}
  ~LiveLine() {
    if (live_ && shown_) std::printf("\n");
  }
  LiveLine(const LiveLine&) = delete;
  LiveLine& operator=(const LiveLine&) = delete;

  void Show(const Measurement& measured, bool json) {
    shown_ = true;
    if (live_) {
      ShowBar(measured);
    } else {
      ShowLine(measured, json);
    }
  }

 private:
  bool live_;
  bool shown_ = false;
};

// A measurement takes a quarter of a second, so that nothing else sets the pace.
void WatchRange(const Options& options) {
  Watching watching(std::nullopt, options.count);
  TellWatched(options.json);
  LiveLine line(!options.json && OutputIsTerminal());
  Answers answers;
  while (watching.GoesOn()) {
    Measurement measured;
    if (!answers.Came(Measure(measured))) continue;
    line.Show(measured, options.json);
    watching.Count(1);
  }
}

}  // namespace

Json Range(const Options& options) {
  Session session(options.link, kSensors);
  session.Use(options.device);
  if (options.watch) {
    session.Settle();
    WatchRange(options);
    return {};
  }
  Measurement measured;
  if (!Measure(measured)) {
    throw Failure(kDeviceError, ActiveDeviceName() + " did not measure, " + ErrorText());
  }
  Json document = NewDocument("range", options.device);
  Describe(measured, document);
  return document;
}

}  // namespace tavlyn::ctl
