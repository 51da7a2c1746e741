// What a reader does with a card before it hands it on.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tavlyn::ctl {

struct Handing {
  int leading = 0;  // parity bits that it strips
  int trailing = 0;
  std::optional<int> idBits;       // the facility is above them; none: how it splits a card is not known
  std::vector<std::string> notes;  // what else people have to know of it
};

// As the active reader's selected configuration says; causes no traffic.
Handing ActiveHanding();

}  // namespace tavlyn::ctl
