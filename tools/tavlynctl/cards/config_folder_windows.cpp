#include <cstdlib>

#include "tools/tavlynctl/cards/config_folder.h"

namespace tavlyn::ctl {

std::string ConfigFolder() {
  const char* roaming = std::getenv("APPDATA");
  return roaming != nullptr && *roaming != '\0' ? std::string(roaming) + "\\tavlynctl" : std::string();
}

}  // namespace tavlyn::ctl
