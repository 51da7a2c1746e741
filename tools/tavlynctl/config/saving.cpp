#include "tools/tavlynctl/config/saving.h"

#include <algorithm>
#include <filesystem>

#include "api.h"
#include "tools/path_names.h"
#include "tools/tavlynctl/config/fields.h"
#include "tools/tavlynctl/config/product_settings.h"
#include "tools/tavlynctl/config/template_file.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

// Every configuration must be in the file: the library skips one that it could not read, and does not report
// a full disk.
void CheckSaved(const NewFile& file, std::size_t configurations, bool secure) {
  std::error_code unknown;
  if (std::filesystem::file_size(PathOf(file.Path()), unknown) == 0) throw file.NotWhole();
  const Template saved = ParseTemplate(file.Path());
  const std::vector<Json>& all = saved.configurations;
  const auto lost = std::ranges::find_if(all, [](const Json& one) { return one.empty(); });
  if (all.empty() || lost != all.end()) {
    throw Failure(kDeviceError, "configuration " + std::to_string(lost - all.begin()) + " of " +
                                    ActiveDeviceName() + " could not be saved, " + ErrorText());
  }
  const bool sound = !secure || CheckTamperedFile(file.Path().c_str(), 0) == 1;
  if (!saved.problem.empty() || all.size() != configurations || !sound) throw file.NotWhole();
}

// The library does not report a full disk here either.
void CheckSettingsSaved(const NewFile& file) {
  const Json mirror = MirrorSettings();
  if (SettingsIn(file.Path(), file.NotWhole()) != mirror) throw file.NotWhole();
}

}  // namespace

void SaveConfiguration(const NewFile& file, bool secure) {
  if (secure && !DeviceIsReader()) RefuseSecure(GetProduct());
  // A reader that goes away in the meantime counts as a plain one.
  const std::size_t configurations = GetMaxConfig() + std::size_t{1};
  if (secure) {
    WriteDevCfgToSecureFile(file.Path().c_str());
  } else {
    WriteDevCfgToFile(file.Path().c_str());
  }
  if (DeviceIsReader()) {
    CheckSaved(file, configurations, secure);
  } else {
    CheckSettingsSaved(file);
  }
}

void SaveConfigurationAt(const std::string& path) {
  const NewFile file(path);
  SaveConfiguration(file, false);
  file.Keep();
}

std::vector<Json> PresentSettings() {
  if (!DeviceIsReader()) return {MirrorSettings()};
  std::vector<Json> all;
  for (int index = 0; index <= GetMaxConfig(); ++index) {
    const SelectedConfiguration selected(index);
    all.push_back(Settings());
  }
  return all;
}

}  // namespace tavlyn::ctl
