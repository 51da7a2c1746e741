// Makes the simulated devices on lines visible to this machine's programs, as serial ports and as Ethernet
// adapters. Bulk devices are served to the stand-in that asks for them.
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

  // portFolder: where to put the names of the serial ports. False on an error, which problem then describes.
  bool Start(const std::string& portFolder, std::string& problem);

  void AddTo(std::vector<pollfd>& polled) const;
  // When Serve has something to do even if nothing arrives.
  [[nodiscard]] DueTime NextDue() const;
  // Carries what has arrived, and follows the source's plugging and unplugging.
  void Serve();

 private:
  struct Shown;

  bool PlugNew(std::string& problem);

  Source& source_;
  bool exposed_;
  std::string portFolder_;
  std::vector<std::shared_ptr<Shown>> shown_;
};

// How a program reaches a line: "tavlynctl --com 3 read"; or that no search finds it.
std::string ReachedBy(const LinePlace& place);

}  // namespace tavlyn::sim
