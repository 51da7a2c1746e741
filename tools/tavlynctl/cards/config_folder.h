// Where people keep files of their own for the program.
#pragma once

#include <string>

namespace tavlyn::ctl {

// Empty if the environment names no such place.
std::string ConfigFolder();

}  // namespace tavlyn::ctl
