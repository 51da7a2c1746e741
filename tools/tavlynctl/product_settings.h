// The settings of magnetic-stripe readers and sonar sensors by the names that their text files have for them:
// {"PingRateS": 248, ...}. Readers have records and templates instead.
#pragma once

#include <cstdint>
#include <string>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// Whose configuration file it is, by its title; readers for a file that has none of the others'. Throws
// Failure when it cannot be read.
std::uint32_t ProductOfFile(const std::string& path);

// What the file mentions.
Json SettingsOfFile(const std::string& path);

// Those of the active device as the library mirrors them, without the two that the device itself does not
// keep.
Json MirrorSettings();

// A file's settings with the names that the device has, which may differ in case; others are left out.
Json NamedAsIn(const Json& mirror, const Json& file, std::uint32_t product);

}  // namespace tavlyn::ctl
