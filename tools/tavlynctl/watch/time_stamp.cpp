#include "tools/tavlynctl/watch/time_stamp.h"

#include <chrono>
#include <cstdio>

namespace tavlyn::ctl {

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

}  // namespace tavlyn::ctl
