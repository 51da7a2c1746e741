#include "tools/tavlynctl/trouble/simulator.h"

#include <string_view>

#include "tools/tavlynctl/process.h"

namespace tavlyn::ctl {
namespace {

constexpr std::string_view kOption = "--device";
constexpr std::string_view kReplay = "replay:";

}  // namespace

Failure RunSimulator(const std::vector<std::string>& words) {
  std::vector<std::string> all = {"tavlynsim", "run", "--no-interactive"};
  all.insert(all.end(), words.begin(), words.end());
  return {kNoDevice, "tavlynsim cannot be run: " + BecomeOneOfOurs(all)};
}

std::vector<std::string> WordsForReplay(std::span<char* const> arguments) {
  std::vector<std::string> own;
  std::string recording;
  for (std::size_t at = 0; at < arguments.size(); ++at) {
    std::string word = arguments[at];
    const bool isApart = word == kOption && at + 1 < arguments.size();
    std::string value = isApart ? arguments[at + 1] : "";
    if (word.starts_with(std::string(kOption) + "=")) value = word.substr(kOption.size() + 1);
    if (!value.starts_with(kReplay)) {
      own.push_back(std::move(word));
      continue;
    }
    recording = std::move(value);
    if (isApart) ++at;
  }
  if (recording.empty()) return {};
  std::vector<std::string> words = {std::string(kOption), recording, "--"};
  words.insert(words.end(), own.begin(), own.end());
  return words;
}

}  // namespace tavlyn::ctl
