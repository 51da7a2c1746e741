// Messages on the topics of commands: hostile until they are read.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "tools/tavlynd/lines.h"
#include "tools/tavlynd/settings.h"

namespace tavlyn::agent {

struct Order {
  std::string request;
  Json command;  // for the worker; null if it is refused
  Json refusal;  // then the reply
};

Order ReadOrder(std::string_view payload, const Settings& settings);

// How many commands a device takes.
class Rate {
 public:
  // Times are milliseconds. False if there are too many.
  bool Take(const std::string& device, std::int64_t perMinute, std::int64_t now);

 private:
  struct Allowance {
    double left;
    std::int64_t time;
  };
  std::map<std::string, Allowance> devices_;
};

}  // namespace tavlyn::agent
