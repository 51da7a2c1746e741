#include "tools/tavlynsim/scenario/results.h"

#include <algorithm>
#include <cstdio>

#include "tools/printable.h"
#include "tools/tavlynsim/run.h"

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

int Unmet(const std::vector<Verdict>& verdicts) {
  return static_cast<int>(std::ranges::count(verdicts, false, &Verdict::met));
}

Moment Last(const std::vector<Verdict>& verdicts) {
  return verdicts.empty() ? Moment(0) : std::ranges::max(verdicts, {}, &Verdict::at).at;
}

}  // namespace

int TellVerdicts(const std::string& path, const std::vector<Verdict>& verdicts) {
  for (const Verdict& verdict : verdicts) {
    if (verdict.met) continue;
    Tell(kProgram, path + ":" + std::to_string(verdict.line) + ": " + verdict.text + ": " + verdict.seen);
  }
  const int unmet = Unmet(verdicts);
  Tell(kProgram, path + ": " + std::to_string(verdicts.size() - static_cast<std::size_t>(unmet)) + " of " +
                     std::to_string(verdicts.size()) + " expectations met");
  return unmet;
}

std::string JunitText(const std::string& path, const std::vector<Verdict>& verdicts) {
  const std::string counts = "tests=\"" + std::to_string(verdicts.size()) + "\" failures=\"" +
                             std::to_string(Unmet(verdicts)) + "\" errors=\"0\" time=\"" +
                             Seconds(Last(verdicts)) + "\"";
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites " + counts +
                     ">\n  <testsuite name=\"" + Escaped(path) + "\" " + counts + ">\n";
  for (const Verdict& verdict : verdicts) {
    text += "    <testcase classname=\"" + Escaped(path) + "\" name=\"line " + std::to_string(verdict.line) +
            ": " + Escaped(verdict.text) + "\" time=\"" + Seconds(verdict.at) + "\"";
    text += verdict.met ? "/>\n"
                        : ">\n      <failure message=\"" + Escaped(verdict.seen) + "\"/>\n    </testcase>\n";
  }
  return text + "  </testsuite>\n</testsuites>\n";
}

}  // namespace tavlyn::sim
