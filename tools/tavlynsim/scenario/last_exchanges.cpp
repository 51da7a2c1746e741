#include "tools/tavlynsim/scenario/last_exchanges.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <utility>

#include "sim/words.h"
#include "tools/tavlynsim/desk.h"
#include "tools/tavlynsim/record/recorder.h"
#include "tools/tavlynsim/scenario/play.h"

namespace tavlyn::sim {
namespace {

constexpr std::size_t kMost = 10;
constexpr std::size_t kLongestWords = 400;
constexpr char kSent = static_cast<char>(Way::kSent);
constexpr std::string_view kHid = "hid";

// Of a link that a recording names.
std::optional<std::size_t> DeviceOf(const Rack& rack, const std::string& link) {
  if (link.starts_with(kHid)) return rack.DeviceOf(ParseNumber<int>(link.substr(kHid.size())).value_or(0));
  for (const Rack::Line& line : rack.Lines()) {
    if (NameOf(line.place) == link) return static_cast<std::size_t>(line.number) - 1;
  }
  return std::nullopt;
}

}  // namespace

void LastExchanges::Take(const std::string& time, const std::string& words) {
  if (words.starts_with(kSent) || last_.empty()) {
    Fold();
    last_.push_back({time, words});
    if (last_.size() > kMost) last_.pop_front();
  } else if (last_.back().words.size() + words.size() < kLongestWords) {
    last_.back().words += " " + words;
  }
}

void LastExchanges::Fold() {
  if (last_.empty()) return;
  const auto newest = last_.end() - 1;
  const auto same = std::ranges::find(last_.begin(), newest, newest->words, &Exchange::words);
  if (same != newest) {
    newest->times += same->times;
    last_.erase(same);
  }
}

std::vector<std::string> LastExchanges::Lines() const {
  LastExchanges folded = *this;
  folded.Fold();
  std::vector<std::string> lines;
  for (const auto& [time, words, times] : folded.last_) {
    std::string line = time;
    line.append(" ").append(words);
    if (times > 1) line.append(" (").append(std::to_string(times)).append(" times)");
    lines.push_back(std::move(line));
  }
  return lines;
}

void NoteExchanges(Desk& desk, const Rack& rack, bool keepsKeys, Play& play) {
  const auto note = [&](const std::string& line) {
    std::istringstream words(line);
    std::string time;
    std::string link;
    std::string rest;
    std::getline(words >> time >> link >> std::ws, rest);
    const bool isExchange = !rest.empty() && std::string_view("><!").find(rest[0]) != std::string_view::npos;
    const auto device = isExchange ? DeviceOf(rack, link) : std::nullopt;
    if (device) play.NoteExchange(*device, rest);
  };
  desk.Put(std::make_unique<Recorder>(desk.TakeAway(), Kept{.ids = true, .keys = keepsKeys}, note));
}

}  // namespace tavlyn::sim
