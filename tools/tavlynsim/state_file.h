// The file that keeps the memory of the devices from one run to the next.
#pragma once

#include <string>
#include <vector>

#include "sim/rack.h"
#include "tools/tavlynsim/state_lock.h"

namespace tavlyn::sim {

class StateFile {
 public:
  // rack: null for devices that are not simulated, which keep their memory themselves.
  // Gives the devices of the rack the memory that the file has, makes the file if there is none, and from now
  // on writes it whenever that memory changes, before programs learn of it. False, with the problem, if the
  // file cannot be used; then it stays as it is.
  bool Keep(const std::string& path, Rack* rack, std::string& problem);
  // False, with the problem, if the file could not be written; it is tried again.
  bool IsKept(std::string& problem);

 private:
  void Note(const Model& model);
  [[nodiscard]] std::string Write() const;

  std::string path_;
  StateLock lock_;
  std::vector<KeptDevice> devices_;
  std::vector<std::string> parts_;
  std::string problem_;  // of the last write
};

}  // namespace tavlyn::sim
