// Which command a report or a frame of the trace is, by the tables from which the library sends them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavlyn::ctl {

// A line of the trace with bytes in it: "… wire reader > 00 8A **".
struct WireLine {
  std::string product;
  bool sent = false;
  std::vector<int> bytes;  // -1 for one that is covered
};

// False for any other line.
bool ParseWireLine(std::string_view line, WireLine& wire);

// What goes beside the lines of one trace, in their order.
class WireNames {
 public:
  // "Identity", "data of WriteBlock", "reply to ReadBlock", "\":wieg.qual\""; may be empty.
  std::string Of(const WireLine& wire);

 private:
  std::string OfReport(const WireLine& wire);
  std::string OfFrame(const WireLine& wire);
  std::string DataName();

  std::vector<std::string> stores_;  // of the last command: the names that data may follow
  std::vector<std::string> asks_;    // and those that have a reply
  bool begun_ = false;               // the class byte of a frame has been sent
};

}  // namespace tavlyn::ctl
