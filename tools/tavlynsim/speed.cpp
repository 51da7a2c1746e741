#include "tools/tavlynsim/speed.h"

#include <cstdlib>

namespace tavlyn::sim {

std::string SpeedProblem(const std::string& speed) {
  char* end = nullptr;
  const double times = std::strtod(speed.c_str(), &end);
  const bool isNumber = !speed.empty() && *end == '\0' && times >= 1 && times <= 1000;
  return isNumber || speed == "max" ? std::string() : speed + " is no speed: 1 to 1000, or max";
}

}  // namespace tavlyn::sim
