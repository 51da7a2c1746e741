// range.
#include "tools/tavlynctl/ranges.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <utility>

#include "api.h"
#include "core/sonar_fields.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/watch/watched.h"
#include "tools/terminal.h"

namespace tavlyn::ctl {
namespace {

constexpr std::size_t kRangeWords = 5;
constexpr int kInchesPerMark = 2;
// For the longest distance that fits the sensor's byte.
constexpr int kMarks = static_cast<int>(0xFF / sonar::kUnitsPerInch) / kInchesPerMark + 1;

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

// Over the current line.
void ShowBar(const Measurement& measured) {
  const auto full = static_cast<std::size_t>(std::clamp(measured.inches / kInchesPerMark, 0, kMarks));
  const std::string bar(full, '#');
  const std::string rest(kMarks - full, '.');
  std::printf("\r%s%s %s", bar.c_str(), rest.c_str(), Line(measured).c_str());
  FlushOutput();
}

// A live line, which stays on the screen when the watching ends.
class BarLine {
 public:
  explicit BarLine(bool live) : live_(live) {}
  ~BarLine() { End(); }
  BarLine(const BarLine&) = delete;
  BarLine& operator=(const BarLine&) = delete;

  [[nodiscard]] bool IsLive() const { return live_; }
  void Show(const Measurement& measured) {
    shown_ = true;
    ShowBar(measured);
  }
  void End() {
    if (std::exchange(shown_, false)) std::printf("\n");
  }

 private:
  bool live_;
  bool shown_ = false;
};

// A measurement takes a quarter of a second, so that nothing else sets the pace.
void WatchRange(const WatchWords& words, const Request& request) {
  ShownEvents events(request, words.events);
  BarLine line(!request.json && OutputIsTerminal());
  const auto ask = [&](const Watched& sensor) -> std::optional<int> {
    Measurement measured;
    if (!Measure(measured)) return std::nullopt;
    if (line.IsLive()) {
      line.Show(measured);
      return 1;
    }
    Json found;
    Describe(measured, found);
    events.Tell("range", sensor.place, found, Line(measured));
    return 1;
  };
  const auto leave = [&](const Watched&) {
    line.End();
    return 0;
  };
  Watch(request, words, events, {kSensors, {}, ask, leave}).Run();
}

struct ShowRange {
  bool watch = false;
  WatchWords words;

  void Take(Words& taken) {
    CLI::Option* live = taken.Flag("--watch", watch, "Again and again, until Ctrl-C");
    taken.Count(words.count, "End after this many measurements")->needs(live);
    words.TakeEnd(taken)->needs(live);
    taken.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    if (watch) {
      WatchRange(words, request);
      return {};
    }
    const Session session(request.link, kSensors);
    session.Use(request.device);
    Measurement measured;
    if (!Measure(measured)) {
      throw Failure(kDeviceError, ActiveDeviceName() + " did not measure, " + ErrorText());
    }
    Json document = request.DeviceDocument();
    Describe(measured, document);
    return document;
  }
};

}  // namespace

bool Measure(Measurement& measured) {
  std::array<std::uint16_t, kRangeWords> words{};
  if (GetObjRangeInfo(words.data()) != 1) return false;
  measured = {words[0], {words[1], words[2], words[3]}};
  return true;
}

void AddRange(Program& program) {
  program.Add<ShowRange>("range", "What a sonar sensor measures: inches and status bits 0 to 2");
}

}  // namespace tavlyn::ctl
