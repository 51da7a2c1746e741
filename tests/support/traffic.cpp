#include "tests/support/traffic.h"

#include <algorithm>
#include <array>

namespace tavlyn::test {
namespace {

constexpr std::array kTrafficKinds = {
    sim::EventKind::kSleep,    sim::EventKind::kSet,   sim::EventKind::kGet,     sim::EventKind::kDrain,
    sim::EventKind::kSend,     sim::EventKind::kRecv,  sim::EventKind::kConnect, sim::EventKind::kSendTo,
    sim::EventKind::kOpenPort, sim::EventKind::kWrite, sim::EventKind::kRead,    sim::EventKind::kPurge,
    sim::EventKind::kFlush,
};

constexpr std::array kWithAnyBytes = {"get", "recv", "read", "drain"};

constexpr std::array kWithHandle = {"set ", "get ", "drain "};

// Tests talk to one device at a time, so its handle does not matter.
std::string WithoutHandle(const std::string& line) {
  for (const std::string verb : kWithHandle) {
    if (!line.starts_with(verb)) continue;
    const std::size_t end = line.find(' ', verb.size());
    return end == std::string::npos ? line.substr(0, verb.size() - 1) : verb + line.substr(end + 1);
  }
  return line;
}

bool Matches(const std::string& expected, const std::string& actual) {
  if (expected == actual) return true;
  const bool anyBytes =
      std::find(kWithAnyBytes.begin(), kWithAnyBytes.end(), expected) != kWithAnyBytes.end();
  return anyBytes && actual.starts_with(expected + ' ') && !actual.ends_with("refused");
}

// common[i][j]: how many lines expected[i..] and actual[j..] have in common, in order.
std::vector<std::vector<int>> CommonLengths(const Lines& expected, const Lines& actual) {
  std::vector<std::vector<int>> common(expected.size() + 1, std::vector<int>(actual.size() + 1));
  for (std::size_t i = expected.size(); i-- > 0;) {
    for (std::size_t j = actual.size(); j-- > 0;) {
      common[i][j] = Matches(expected[i], actual[j]) ? common[i + 1][j + 1] + 1
                                                     : std::max(common[i + 1][j], common[i][j + 1]);
    }
  }
  return common;
}

}  // namespace

Lines TrafficOf(const std::vector<sim::Event>& events) {
  Lines lines;
  for (const sim::Event& event : events) {
    const bool counts =
        std::find(kTrafficKinds.begin(), kTrafficKinds.end(), event.kind) != kTrafficKinds.end();
    if (counts) lines.push_back(WithoutHandle(event.Line()));
  }
  return lines;
}

std::uint64_t TotalSleep(const std::vector<sim::Event>& events) {
  std::uint64_t total = 0;
  for (const sim::Event& event : events) total += event.milliseconds;
  return total;
}

std::string Difference(const Lines& expected, const Lines& actual) {
  if (std::equal(expected.begin(), expected.end(), actual.begin(), actual.end(), Matches)) return {};

  const auto common = CommonLengths(expected, actual);
  std::string text;
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < expected.size() || j < actual.size()) {
    const bool both = i < expected.size() && j < actual.size();
    if (both && Matches(expected[i], actual[j])) {
      text += "  " + actual[j++] + '\n';
      ++i;
    } else if (j == actual.size() || (both && common[i + 1][j] >= common[i][j + 1])) {
      text += "- " + expected[i++] + '\n';
    } else {
      text += "+ " + actual[j++] + '\n';
    }
  }
  return text;
}

Lines Times(int count, const Lines& lines) {
  Lines all;
  for (int i = 0; i < count; ++i) all.insert(all.end(), lines.begin(), lines.end());
  return all;
}

Lines Join(std::initializer_list<Lines> parts) {
  Lines all;
  for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

}  // namespace tavlyn::test
