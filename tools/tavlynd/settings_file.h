// Reads the settings file.
#pragma once

#include <string>
#include <vector>

#include "tools/tavlynd/settings.h"

namespace tavlyn::agent {

struct Mistake {
  unsigned line = 0;  // 0: of the file as a whole
  std::string text;
};

struct ReadSettings {
  Settings settings;
  std::vector<Mistake> mistakes;  // by line; the settings may be used if there is none
};

ReadSettings ParseSettings(const std::string& text);
// Also refuses a file with secrets that others may read, and reads the password file.
ReadSettings LoadSettings(const std::string& path);
// "/etc/tavlyn/tavlynd.toml:12: …"
std::string MistakeLine(const std::string& path, const Mistake& mistake);

}  // namespace tavlyn::agent
