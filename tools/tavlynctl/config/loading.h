// A configuration file on its way into devices.
#pragma once

#include <string>

#include "tools/tavlynctl/config/overwriting.h"
#include "tools/tavlynctl/config/template_file.h"
#include "tools/tavlynctl/files.h"

namespace tavlyn::ctl {

// A file that has passed its tests.
class Loading {
 public:
  // Throws Failure; also for a file without a trailer if it has to be secure. name: what messages call it.
  Loading(const std::string& path, bool secure, const std::string& name);

  [[nodiscard]] std::uint32_t Product() const { return product_; }

  struct Terms {
    std::string command;  // which asks for it
    Overwriting over;
    bool strict = false;  // completely or not at all
  };
  // Loads it into the active device and reads that back. Adds the outcome to the document; throws Failure.
  [[nodiscard]] Json Into(Json document, const Terms& terms) const;

 private:
  void CheckIgnored(const std::vector<std::string>& ignored, const Terms& terms) const;
  [[nodiscard]] Json IntoReader(Json document, const Terms& terms) const;
  [[nodiscard]] Json IntoOther(Json document, const Terms& terms) const;

  std::string name_;
  TestedFile tested_;
  std::uint32_t product_;
  bool checked_ = false;  // its trailer matches
  Template whole_;        // of another product: one configuration
};

}  // namespace tavlyn::ctl
