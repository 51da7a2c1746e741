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
// Everything that a device stores.
const std::vector<NamedSetting>& SettingNames();
// The parts of a user field of a magnetic-stripe reader, as magfield names them.
std::vector<std::string> UserFieldParts();
// None for a name that no product has.
std::optional<NamedSetting> FindSetting(const std::string& name);

// Whose fields or settings these words are, "NAME" or "NAME=VALUE"; readers for names that nothing has.
// Throws Failure if the words are for several products.
std::uint32_t ProductOfWords(const std::vector<std::string>& words);
// From words "NAME=VALUE" for one of the other products.
Json ParseSettings(const std::vector<std::string>& words);

// The product that a configuration file is for, by its title; readers if it has no other product's title.
// Throws Failure if it cannot be read.
std::uint32_t ProductOfFile(const std::string& path);

// Throws Failure: their files have no integrity trailer.
[[noreturn]] void RefuseSecure(std::uint32_t product);

struct SettingsFile {
  Json settings = Json::object();    // what it mentions
  std::vector<std::string> ignored;  // lines that the device does not get
};
// Throws Failure for a file that cannot be read, has no setting, or is cut short.
SettingsFile ReadSettings(const std::string& path, std::uint32_t product);

// The settings in the file that the library wrote for the active device; throws that Failure if they did not
// arrive.
Json SettingsIn(const std::string& path, const Failure& otherwise);
// The active device's settings in the library's mirror, without the two that the device itself does not
// store.
Json MirrorSettings();
// Changes the mirror. Throws Failure, naming what, for settings that it does not accept.
void LoadMirror(const std::string& path, const Json& wanted, const std::string& what);
void StoreSettings(const Json& wanted);

}  // namespace tavlyn::ctl
