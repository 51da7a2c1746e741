// Shows the simulated devices that are on lines to the programs of this machine: as serial ports and as
// Ethernet adapters. Bulk devices are served to the stand-in that asks for them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sim/carriers/served.h"
#include "sim/source.h"

namespace tavlyn::sim {

class LineShow {
 public:
  // exposed: Ethernet adapters may listen beyond the loopback.
  LineShow(Source& source, bool exposed) : source_(source), exposed_(exposed) {}

  // portFolder: where the names of the serial ports come. False: problem tells why.
  bool Start(const std::string& portFolder, std::string& problem);

  void AddTo(std::vector<pollfd>& polled) const;
  // When Serve has something to do even if nothing comes.
  [[nodiscard]] DueTime NextDue() const;
  // Carries what has come, and plugs in and unplugs as the source does.
  void Serve();

 private:
  struct Shown;

  bool PlugNew(std::string& problem);

  Source& source_;
  bool exposed_;
  std::string portFolder_;
  std::vector<std::shared_ptr<Shown>> shown_;
};

// How a program reaches a line: "tavlynctl --com 3 read"; or that a search does not.
std::string ReachedBy(const LinePlace& place);

}  // namespace tavlyn::sim
