#include "tools/tavlynsim/scenario/results.h"

#include <algorithm>
#include <cstdio>

namespace tavlyn::sim {
namespace {

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&': escaped += "&amp;"; break;
      case '<': escaped += "&lt;"; break;
      case '>': escaped += "&gt;"; break;
      case '"': escaped += "&quot;"; break;
      default: escaped += static_cast<unsigned char>(c) < ' ' ? '?' : c;
    }
  }
  return escaped;
}

std::string Seconds(Moment moment) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", static_cast<double>(moment.count()) / 1000);
  return text;
}

struct Counts {
  std::ptrdiff_t expected;
  std::ptrdiff_t unmet;
  std::ptrdiff_t failed;  // commands
};

Counts CountsOf(const std::vector<Verdict>& verdicts) {
  const std::ptrdiff_t failed = std::ranges::count(verdicts, true, &Verdict::isCommand);
  const std::ptrdiff_t unmet = std::ranges::count(verdicts, false, &Verdict::met) - failed;
  return {static_cast<std::ptrdiff_t>(verdicts.size()) - failed, unmet, failed};
}

Moment Last(const std::vector<Verdict>& verdicts) {
  return verdicts.empty() ? Moment(0) : std::ranges::max(verdicts, {}, &Verdict::at).at;
}

std::string Wrong(const Verdict& verdict) {
  std::string text = std::string("      <") + (verdict.isCommand ? "error" : "failure") + " message=\"" +
                     Escaped(verdict.seen) + "\"/>\n";
  if (verdict.exchanges.empty()) return text;
  text += "      <system-out>what last went over, each exchange when it did:\n";
  for (const std::string& exchange : verdict.exchanges) text += Escaped(exchange) + "\n";
  return text + "</system-out>\n";
}

}  // namespace

bool AreAllMet(const std::vector<Verdict>& verdicts) { return std::ranges::all_of(verdicts, &Verdict::met); }

std::vector<std::string> LinesOf(const std::string& path, const std::vector<Verdict>& verdicts) {
  std::vector<std::string> lines;
  for (const Verdict& verdict : verdicts) {
    if (verdict.met) continue;
    lines.push_back(path + ":" + std::to_string(verdict.line) + ": " + verdict.text + ": " + verdict.seen);
  }
  const auto [expected, unmet, failed] = CountsOf(verdicts);
  std::string last = path + ": " + std::to_string(expected - unmet) + " of " + std::to_string(expected) +
                     " expectations met";
  if (failed > 0)
    last += ", " + std::to_string(failed) + (failed == 1 ? " command" : " commands") + " failed";
  lines.push_back(last);
  return lines;
}

std::string JunitText(const std::string& path, const std::vector<Verdict>& verdicts) {
  const auto [expected, unmet, failed] = CountsOf(verdicts);
  const std::string counts = "tests=\"" + std::to_string(verdicts.size()) + "\" failures=\"" +
                             std::to_string(unmet) + "\" errors=\"" + std::to_string(failed) + "\" time=\"" +
                             Seconds(Last(verdicts)) + "\"";
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites " + counts +
                     ">\n  <testsuite name=\"" + Escaped(path) + "\" " + counts + ">\n";
  for (const Verdict& verdict : verdicts) {
    text += "    <testcase classname=\"" + Escaped(path) + "\" name=\"line " + std::to_string(verdict.line) +
            ": " + Escaped(verdict.text) + "\" time=\"" + Seconds(verdict.at) + "\"";
    text += verdict.met ? "/>\n" : ">\n" + Wrong(verdict) + "    </testcase>\n";
  }
  return text + "  </testsuite>\n</testsuites>\n";
}

}  // namespace tavlyn::sim
