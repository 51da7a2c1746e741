// The settings of magnetic-stripe readers and sonar sensors by the names that their text files have for them:
// {"PingRateS": 248, ...}. Readers have records and templates instead.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

struct NamedSetting {
  std::uint32_t product;
  std::string name;
};
// All that a device keeps.
const std::vector<NamedSetting>& SettingNames();
// Nothing for a name that no product has.
std::optional<NamedSetting> FindSetting(const std::string& name);

// Whose fields or settings these words are, "NAME" or "NAME=VALUE"; readers for names that nothing has.
// Throws Failure for words of several products.
std::uint32_t ProductOfWords(const std::vector<std::string>& words);
// From words "NAME=VALUE" of one of the other products.
Json ParseSettings(const std::vector<std::string>& words);

// Whose configuration file it is, by its title; readers for a file that has none of the others'. Throws
// Failure when it cannot be read.
std::uint32_t ProductOfFile(const std::string& path);

// Throws Failure: their files have no integrity trailer.
[[noreturn]] void RefuseSecure(std::uint32_t product);

struct SettingsFile {
  Json settings = Json::object();    // what it mentions
  std::vector<std::string> ignored;  // lines that the device is not told of
};
// Throws Failure for a file that cannot be read, has no setting, or ends in the middle.
SettingsFile ReadSettings(const std::string& path, std::uint32_t product);

// What the library has written of the active device; throws that Failure where it has not arrived.
Json SettingsIn(const std::string& path, const Failure& otherwise);
// Those of the active device as the library mirrors them, without the two that the device itself does not
// keep.
Json MirrorSettings();
// Changes the mirror. Throws Failure, with what, for those that it does not take.
void LoadMirror(const std::string& path, const Json& wanted, const std::string& what);
void StoreSettings(const Json& wanted);

}  // namespace tavlyn::ctl
