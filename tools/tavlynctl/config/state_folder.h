// Where the program keeps what outlives a command, for this user alone.
#pragma once

#include <string>
#include <system_error>

namespace tavlyn::ctl {

// Below the folder of the user's state; empty if the environment names no such place.
std::string StateFolder();
// This and its missing parents. Throws Failure if it is not there afterwards.
void MakeOwnFolder(const std::string& path);

// One for each system. No error if it is there already.
std::error_code CreateOwnFolder(const std::string& path);

}  // namespace tavlyn::ctl
