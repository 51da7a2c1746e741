// What a rollout has done so far, in a file, so that an interrupted one goes on where it was.
#pragma once

#include <string>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

class Rollout {
 public:
  // Without a path nothing is kept. Throws Failure if the file is of another rollout: text is what is loaded.
  Rollout(const std::string& path, const std::string& text);

  [[nodiscard]] bool IsDone(const std::string& place) const;
  // The request for this device: that of the last run if its reply was not seen, so that a device which has
  // loaded the file replies without loading it again.
  std::string Request(const std::string& place);
  // Throws Failure if it cannot be kept, as the next.
  void Keep() const;
  // A device that failed is asked anew.
  void Take(const std::string& place, bool isOk);

 private:
  std::string path_;
  Json kept_;
};

}  // namespace tavlyn::ctl
