#include "tools/tavlynsim/scenario/scenario.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "tools/nearest.h"

namespace tavlyn::sim {
namespace {

constexpr const char* kTitle = "tavlyn-scenario";
constexpr const char* kVersion = "1";
constexpr double kLatestSeconds = 86'400;

// A mark within a word is part of it: tracks of a card have some.
std::string WithoutComment(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t");
  return first != std::string::npos && text[first] == '#' ? "" : text.substr(0, text.find(" # "));
}

// Reads a scenario line by line; every mistake is kept, with its line.
class Reading {
 public:
  explicit Reading(std::vector<Mistake>& mistakes) : mistakes_(mistakes) {}

  void Take(int number, const std::string& text);
  Scenario Result() {
    if (line_ == 0) mistakes_.push_back({1, "the file is empty; it begins with tavlyn-scenario 1"});
    if (titled_ && scenario_.devices.empty()) Blame("there is no device; device NAME KIND makes one");
    BlameWhatIsLate();
    std::ranges::stable_sort(scenario_.actions, {}, &Action::at);
    return std::move(scenario_);
  }

 private:
  struct Line {
    ScenarioWords text;
    std::size_t least;  // words
    void (Reading::*take)();
  };
  static const Line kLines[];
  friend std::span<const ScenarioWords> tavlyn::sim::LinesOfScenarios();

  void TakeTitle();
  void TakeDevice();
  void TakeTrait();
  void TakeBegin();
  void TakeAction();
  void TakeExpectation();
  void TakeEnd();

  void Blame(const std::string& what) { mistakes_.push_back({line_, what}); }
  void BlameWhatIsLate();
  std::optional<Moment> TimeAt(std::size_t at);
  std::optional<std::size_t> DeviceAt(std::size_t at);
  [[nodiscard]] std::string Rest(std::size_t from) const;

  std::vector<Mistake>& mistakes_;
  Scenario scenario_;
  bool titled_ = false;
  bool skips_ = false;  // of another version
  int line_ = 0;
  Words words_;
};

const Reading::Line Reading::kLines[] = {
    {{"device NAME KIND", "a device, as --device takes it, and the name by which other lines know it"},
     3,
     &Reading::TakeDevice},
    {{"template FILE",
      "of the card reader above: its configuration, from a file that a reader was saved to; beside this "
      "file"},
     2,
     &Reading::TakeTrait},
    {{"set WORD VALUE",
      "of the device above: a word of what it has stored; iIDHoldTO@1 is that of a reader's second "
      "configuration"},
     3,
     &Reading::TakeTrait},
    {{"firmware PROCESSOR INDEX HEX", "a firmware word of it"}, 4, &Reading::TakeTrait},
    {{"begin exchange|card",
      "time 0: the first exchange with a device (as without this line), or the first request for a card"},
     2,
     &Reading::TakeBegin},
    {{"at T NAME COMMAND",
      "a typed command for the device, T seconds after the beginning; those of time 0 are done before"},
     4,
     &Reading::TakeAction},
    {{"expect by T NAME WHAT", "it is so at some moment until then"}, 5, &Reading::TakeExpectation},
    {{"expect at T NAME WHAT", "it is so at that moment"}, 5, &Reading::TakeExpectation},
    {{"expect from T to T NAME WHAT", "it is so all the time"}, 7, &Reading::TakeExpectation},
    {{"expect never NAME WHAT", "it is never so"}, 4, &Reading::TakeExpectation},
    {{"expect end NAME WHAT", "it is so when the program has ended"}, 4, &Reading::TakeExpectation},
    {{"end T", "the program is asked to end then, as it is by SIGTERM; without this line it ends by itself"},
     2,
     &Reading::TakeEnd},
};

void Reading::Take(int number, const std::string& text) {
  line_ = number;
  words_.clear();
  std::istringstream stream(WithoutComment(text));
  for (std::string word; stream >> word;) words_.push_back(word);
  if (words_.empty() || skips_) return;
  if (!titled_) return TakeTitle();
  std::vector<std::string> names;
  for (const Line& line : kLines) {
    const std::string_view form = line.text.words;
    const std::string name(form.substr(0, form.find(' ')));
    names.push_back(name);
    if (words_[0] != name) continue;
    if (words_.size() >= line.least || name == "expect") return (this->*line.take)();
    return Blame(std::string("it is ") + line.text.words);
  }
  Blame(words_[0] + ": no such line" + DidYouMean(words_[0], names));
}

void Reading::TakeTitle() {
  titled_ = true;
  if (words_[0] != kTitle) return Blame("this is no scenario; it begins with tavlyn-scenario 1");
  if (words_.size() == 2 && words_[1] == kVersion) return;
  skips_ = true;
  titled_ = false;
  Blame("version " + Rest(1) + " is none that this tavlynsim knows; it knows 1");
}

std::string Reading::Rest(std::size_t from) const {
  std::string rest;
  for (std::size_t i = from; i < words_.size(); ++i) rest += (rest.empty() ? "" : " ") + words_[i];
  return rest;
}

void Reading::BlameWhatIsLate() {
  const auto look = [&](const auto& one, Moment at) {
    if (!scenario_.end || at <= *scenario_.end) return;
    mistakes_.push_back({one.line, InSeconds(at) + " is after the end at " + InSeconds(*scenario_.end)});
  };
  for (const Action& action : scenario_.actions) look(action, action.at);
  for (const Expectation& expectation : scenario_.expectations) look(expectation, expectation.to);
}

std::optional<Moment> Reading::TimeAt(std::size_t at) {
  const std::string word = at < words_.size() ? words_[at] : "";
  char* end = nullptr;
  const double seconds = std::strtod(word.c_str(), &end);
  if (!word.empty() && *end == '\0' && seconds >= 0 && seconds <= kLatestSeconds) {
    return Moment(std::llround(seconds * 1000));
  }
  Blame(word + ": a time is in seconds, 0 to 86400");
  return std::nullopt;
}

std::optional<std::size_t> Reading::DeviceAt(std::size_t at) {
  std::vector<std::string> names;
  for (const ScenarioDevice& device : scenario_.devices) names.push_back(device.name);
  const std::string word = at < words_.size() ? words_[at] : "";
  const auto found = std::ranges::find(names, word);
  if (found != names.end()) return static_cast<std::size_t>(found - names.begin());
  Blame(word + ": no device of this name" + DidYouMean(word, names));
  return std::nullopt;
}

void Reading::TakeDevice() {
  const bool taken =
      std::ranges::find(scenario_.devices, words_[1], &ScenarioDevice::name) != scenario_.devices.end();
  if (taken) return Blame(words_[1] + ": two devices of this name");
  if (words_.size() > 3) return Blame("a KIND has no blanks");
  scenario_.devices.push_back({line_, words_[1], words_[2]});
}

void Reading::TakeTrait() {
  if (scenario_.devices.empty()) return Blame(words_[0] + " follows the device that it is for");
  scenario_.devices.back().traits.push_back({line_, words_});
}

void Reading::TakeBegin() {
  if (words_[1] != "exchange" && words_[1] != "card")
    return Blame("a scenario begins with an exchange or a card");
  scenario_.beginsWithCard = words_[1] == "card";
}

void Reading::TakeAction() {
  const auto at = TimeAt(1);
  const auto device = DeviceAt(2);
  if (at && device) scenario_.actions.push_back({line_, *at, *device, Rest(3), Rest(0)});
}

void Reading::TakeExpectation() {
  struct Form {
    const char* word;
    When when;
    std::size_t device;  // where its name is
  };
  static constexpr Form kForms[] = {{"by", When::kBy, 3},
                                    {"at", When::kAt, 3},
                                    {"from", When::kFrom, 5},
                                    {"never", When::kNever, 2},
                                    {"end", When::kEnd, 2}};
  const std::string word = words_.size() > 1 ? words_[1] : "";
  const auto* form = std::ranges::find(kForms, word, &Form::word);
  if (form == std::end(kForms)) return Blame("after expect is by, at, from, never or end");
  Expectation expectation{line_, Rest(0), form->when, {}, {}, 0, {}};
  if (form->device > 2) {
    const auto from = TimeAt(2);
    const auto to = form->when == When::kFrom ? TimeAt(4) : from;
    if (!from || !to) return;
    if (form->when == When::kFrom && (words_[3] != "to" || *to < *from))
      return Blame("it is from T to a later T");
    expectation.from = *from;
    expectation.to = *to;
  }
  const auto device = DeviceAt(form->device);
  if (!device) return;
  expectation.device = *device;
  std::string problem;
  const Words what(words_.begin() + static_cast<std::ptrdiff_t>(form->device) + 1, words_.end());
  if (!ParseCondition(what, expectation.condition, problem)) return Blame(problem);
  scenario_.expectations.push_back(std::move(expectation));
}

void Reading::TakeEnd() {
  if (scenario_.end) return Blame("the end is given already");
  scenario_.end = TimeAt(1);
}

}  // namespace

std::span<const ScenarioWords> LinesOfScenarios() {
  static const auto lines = [] {
    std::vector<ScenarioWords> all;
    for (const auto& line : Reading::kLines) all.push_back(line.text);
    return all;
  }();
  return lines;
}

Scenario ParseScenario(const std::string& text, std::vector<Mistake>& mistakes) {
  Reading reading(mistakes);
  std::istringstream lines(text);
  int number = 0;
  for (std::string line; std::getline(lines, line);) reading.Take(++number, line);
  return reading.Result();
}

std::string InSeconds(Moment moment) {
  char text[32];
  std::snprintf(text, sizeof text, "%.8g s", static_cast<double>(moment.count()) / 1000);
  return text;
}

}  // namespace tavlyn::sim
