// config save, config diff and check.
#include <algorithm>
#include <filesystem>
#include <optional>

#include "api.h"
#include "tools/path_names.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/fields.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/product_settings.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/template_file.h"

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

std::vector<Json> ReaderSettings() {
  std::vector<Json> all;
  for (int index = 0; index <= GetMaxConfig(); ++index) {
    const SelectedConfiguration selected(index);
    all.push_back(Settings());
  }
  return all;
}

struct Side {
  std::string name;
  std::uint32_t product;
  std::vector<Json> configurations;
  bool isDevice;

  [[nodiscard]] Json Of(std::size_t index) const {
    return index < configurations.size() ? configurations[index] : Json::object();
  }
  [[nodiscard]] Json Description() const {
    return {{"name", name}, {"configurations", configurations.size()}};
  }
};

Side DeviceSide(const Request& request, std::uint32_t product, std::optional<int> only) {
  const Session session(request.link, product);
  session.Use(request.device);
  if (only) CheckConfiguration(*only);
  if (DeviceIsReader()) return {ActiveDeviceName(), product, ReaderSettings(), true};
  return {ActiveDeviceName(), product, {MirrorSettings()}, true};
}

Side FileSide(const std::string& path) {
  const std::uint32_t product = ProductOfFile(path);
  if (product == kReaders) return {path, product, ReadTemplate(path).configurations, false};
  return {path, product, {ReadSettings(path, product).settings}, false};
}

// A file leaves open what it does not mention, so other values of the device are not differences.
Json Differences(std::size_t index, const Side& left, const Side& right) {
  const Json mine = left.Of(index);
  const Json theirs = right.Of(index);
  Json rows = Json::array();
  const auto add = [&](const std::string& name) {
    const Json a = mine.value(name, Json());
    const Json b = theirs.value(name, Json());
    if (a != b) rows.push_back({{"configuration", index}, {"field", name}, {"left", a}, {"right", b}});
  };
  for (const auto& [name, value] : theirs.items()) {
    if (!left.isDevice || mine.contains(name)) add(name);
  }
  if (left.isDevice) return rows;
  for (const auto& [name, value] : mine.items()) {
    if (!theirs.contains(name)) add(name);
  }
  return rows;
}

// The library does not report a full disk here either.
void CheckSettingsSaved(const NewFile& file) {
  const Json mirror = MirrorSettings();
  if (SettingsIn(file.Path(), file.NotWhole()) != mirror) throw file.NotWhole();
}

struct SaveConfig {
  std::string path;
  bool secure = false;

  void Take(Words& words) {
    words.File(path);
    words.Flag("--secure", secure, "With a trailer that detects damage, not tampering");
    words.Product();
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const NewFile file(path);
    const Session session(request.link, request.products);
    session.Use(request.device);
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
    file.Keep();
    Json document = request.DeviceDocument();
    document["file"] = path;
    document["configurations"] = configurations;
    document["secure"] = secure;
    return document;
  }
};

struct DiffConfig {
  std::vector<std::string> paths;
  std::optional<int> only;

  void Take(Words& words) {
    words.Files(paths, "One, compared with the device, or two");
    words.Number("--config", only, 0, kHighestConfiguration, "Only this configuration of a plus reader");
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    if (paths.size() > 2) throw Failure(kUsage, "two files are compared, or a device and one file");
    const Side right = FileSide(paths.back());
    const Side left = paths.size() == 2 ? FileSide(paths.front()) : DeviceSide(request, right.product, only);
    if (left.product != right.product) {
      throw Failure(kUsage, left.name + " is for a " + ProductName(left.product) + ", " + right.name +
                                " for a " + ProductName(right.product));
    }
    const std::size_t count = std::max(left.configurations.size(), right.configurations.size());
    Json document = request.Document();
    document["left"] = left.Description();
    document["right"] = right.Description();
    Json& all = document["differences"] = Json::array();
    for (std::size_t index = 0; index < count; ++index) {
      if (only && *only != static_cast<int>(index)) continue;
      for (const Json& row : Differences(index, left, right)) all.push_back(row);
    }
    return document;
  }
};

struct CheckFile {
  std::string path;
  bool ini = false;

  void Take(Words& words) {
    words.File(path);
    words.Flag("--ini", ini, "The file is a key-load ini file");
  }

  [[nodiscard]] Json Run(const Request& request) const {
    CheckTrailer(path, ini ? Trailer::kIni : Trailer::kHwg);
    if (!ini && !HasText(path, kBleBlock)) ReadTemplate(path);
    Json document = request.Document();
    document["file"] = path;
    document["intact"] = true;
    return document;
  }
};

}  // namespace

void AddConfigFiles(Program& program) {
  program.Add<SaveConfig>("config save", "Saves every configuration as a file");
  AddConfigLoad(program);
  program.Add<DiffConfig>("config diff", "Compares a device with a file, or two files");
}

void AddCheck(Program& program) {
  program.Add<CheckFile>(
      "check", "Whether a file with a trailer was damaged since it was written; does not detect tampering");
}

}  // namespace tavlyn::ctl
