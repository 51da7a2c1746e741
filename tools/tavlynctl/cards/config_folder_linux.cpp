#include <cstdlib>

#include "tools/tavlynctl/cards/config_folder.h"

namespace tavlyn::ctl {

std::string ConfigFolder() {
  const char* folder = secure_getenv("XDG_CONFIG_HOME");
  if (folder != nullptr && *folder == '/') return std::string(folder) + "/tavlynctl";
  const char* home = secure_getenv("HOME");
  return home != nullptr && *home == '/' ? std::string(home) + "/.config/tavlynctl" : std::string();
}

}  // namespace tavlyn::ctl
