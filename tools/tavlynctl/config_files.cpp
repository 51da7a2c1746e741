// config save, config load, config diff and check.
#include <algorithm>

#include "api.h"
#include "tools/tavlynctl/changes.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/fields.h"
#include "tools/tavlynctl/product_settings.h"
#include "tools/tavlynctl/session.h"
#include "tools/tavlynctl/template_file.h"

namespace tavlyn::ctl {
namespace {

// The library loads no more of a file.
constexpr std::size_t kLoadedConfigurations = 10;
// First separator byte of a reader that keeps iExOutputFormat; a load clears the field of any other.
constexpr const char* kExtendedFormat = "24";
const std::string kOutputFormat = "IDDispParms.iExOutputFormat";

bool IsSepByte(const std::string& name) { return name.starts_with(kSepBlockName); }

void Drop(Json& values, bool (*which)(const std::string&)) {
  Json kept = Json::object();
  for (const auto& [name, value] : values.items()) {
    if (!which(name)) kept[name] = value;
  }
  values = std::move(kept);
}

// Separator data is loaded only over data of the same format, which its first byte names.
bool TakesSepBytes(const Json& file, const Json& reader) {
  const std::string first = SepByteName(0);
  const std::string old = reader[first];
  const std::string next = file.value(first, old);
  const std::string second = file.value(SepByteName(1), reader[SepByteName(1)].get<std::string>());
  return old != "00" && next == old && (next != "00" || second != "00");
}

bool SepBytesDiffer(const Json& file, const Json& reader) {
  return std::ranges::any_of(file.items(), [&](const auto& item) {
    return IsSepByte(item.key()) && item.value() != reader[item.key()];
  });
}

// What a load of the file would make of each configuration.
std::vector<Change> Plan(const std::string& path, Json& notLoaded) {
  std::vector<Json> file = ReadTemplate(path);
  const auto room = static_cast<std::size_t>(GetMaxConfig()) + 1;
  file.resize(std::min({file.size(), room, kLoadedConfigurations}));
  std::vector<Change> changes;
  for (Json& values : file) {
    Change change = Wanting(static_cast<int>(changes.size()), std::move(values));
    Json& wanted = change.wanted;
    if (room == 1) {
      Drop(wanted,
           [](const std::string& name) { return name == kCardTypeName || name == kCardPriorityName; });
    }
    if (wanted.contains(kOutputFormat) && change.before[SepByteName(0)] != kExtendedFormat) {
      wanted[kOutputFormat] = 0;
    }
    if (!TakesSepBytes(wanted, change.before)) {
      if (SepBytesDiffer(wanted, change.before)) notLoaded.push_back(change.configuration);
      Drop(wanted, IsSepByte);
    }
    const SelectedConfiguration selected(change.configuration);
    CheckRanges(wanted);
    changes.push_back(std::move(change));
  }
  return changes;
}

// Every configuration must have arrived in the file: the library passes over one that it could not read.
void CheckSaved(const std::string& path, bool secure) {
  const std::vector<Json> saved = ReadTemplate(path);
  for (std::size_t index = 0; index <= GetMaxConfig(); ++index) {
    if (index < saved.size() && saved[index].contains(SepByteName(0))) continue;
    throw Failure(kDeviceError, "configuration " + std::to_string(index) + " of " + ActiveDeviceName() +
                                    " could not be saved, " + ErrorText());
  }
  if (secure) CheckTrailer(path, Trailer::kHwg);
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

Side DeviceSide(const Options& options, std::uint32_t product) {
  const Session session(options.link, product);
  session.Use(options.device);
  if (options.config) CheckConfiguration(*options.config);
  if (ReaderIsActive()) return {ActiveDeviceName(), product, ReaderSettings(), true};
  return {ActiveDeviceName(), product, {MirrorSettings()}, true};
}

Side FileSide(const std::string& path) {
  const std::uint32_t product = ProductOfFile(path);
  if (product == kReaders) return {path, product, ReadTemplate(path), false};
  return {path, product, {SettingsOfFile(path)}, false};
}

// A file says nothing of what it does not mention, so a device's further values are no difference.
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

void RefuseSecure(const Options& options, std::uint32_t product) {
  if (!options.secure) return;
  throw Failure(kUsage, std::string("files of a ") + ProductName(product) + " have no integrity trailer");
}

// The library does not tell of a disk that is full.
void CheckSettingsSaved(const std::string& path) {
  const Json mirror = MirrorSettings();
  if (NamedAsIn(mirror, SettingsOfFile(path), GetProduct()) != mirror)
    throw Failure(kBadFile, path + " cannot be written");
}

// A load changes the library's mirror alone, which then tells what the device would be sent.
Json LoadSettings(const Options& options, std::uint32_t product) {
  const std::string& path = options.files.front();
  RefuseSecure(options, product);
  const Session session(options.link, product);
  session.Use(options.device);
  SettingsPlan plan{MirrorSettings(), {}, MirrorSettings};
  plan.wanted = NamedAsIn(plan.before, SettingsOfFile(path), product);
  if (ReadDevCfgFmFile(path.c_str()) != 1) throw Failure(kBadFile, path + " could not be loaded");
  const Json loaded = MirrorSettings();
  std::string refused;
  for (const auto& [name, value] : plan.wanted.items()) {
    if (loaded[name] != value) refused += (refused.empty() ? "" : ", ") + name + " = " + value.dump();
  }
  if (!refused.empty()) {
    throw Failure(kUsage, ActiveDeviceName() + " does not take all of " + path + ": " + refused);
  }
  Json document = NewDocument("config load", options.device);
  document["file"] = path;
  return CarrySettings(std::move(document), plan, options.dryRun);
}

}  // namespace

Json SaveConfig(const Options& options) {
  const std::string& path = options.files.front();
  const Session session(options.link, options.products);
  session.Use(options.device);
  if (!ReaderIsActive()) RefuseSecure(options, GetProduct());
  const std::uint32_t saved =
      options.secure ? WriteDevCfgToSecureFile(path.c_str()) : WriteDevCfgToFile(path.c_str());
  if (saved == 0) throw Failure(kBadFile, path + " cannot be written");
  if (ReaderIsActive()) {
    CheckSaved(path, options.secure);
  } else {
    CheckSettingsSaved(path);
  }
  Json document = NewDocument("config save", options.device);
  document["file"] = path;
  document["configurations"] = GetMaxConfig() + 1;
  document["secure"] = options.secure;
  return document;
}

Json LoadConfig(const Options& options) {
  const std::string& path = options.files.front();
  const std::uint32_t product = ProductOfFile(path);
  if (product != kReaders) return LoadSettings(options, product);
  const bool secure = options.secure || HasTrailer(path, Trailer::kHwg);
  if (secure) CheckTrailer(path, Trailer::kHwg);
  const Session session(options.link);
  session.Use(options.device);
  Json notLoaded = Json::array();
  const std::vector<Change> changes = Plan(path, notLoaded);
  Json document = NewDocument("config load", options.device);
  document["file"] = path;
  document["secure"] = secure;
  document["separator_data_not_loaded"] = std::move(notLoaded);
  return Carry(std::move(document), changes, options.dryRun, [&] {
    const std::uint32_t loaded =
        secure ? ReadDevCfgFromSecureFile(path.c_str()) : ReadDevCfgFmFile(path.c_str());
    if (loaded == 1) return;
    throw Failure(kDeviceError,
                  path + " could not be loaded into " + ActiveDeviceName() + ", " + ErrorText());
  });
}

Json DiffConfig(const Options& options) {
  if (options.files.size() > 2) throw Failure(kUsage, "two files are compared, or a device and one file");
  Side right = FileSide(options.files.back());
  const Side left =
      options.files.size() == 2 ? FileSide(options.files.front()) : DeviceSide(options, right.product);
  if (left.product != right.product) {
    throw Failure(kUsage, left.name + " is for a " + ProductName(left.product) + ", " + right.name +
                              " for a " + ProductName(right.product));
  }
  if (left.isDevice && left.product != kReaders) {
    right.configurations.front() =
        NamedAsIn(left.configurations.front(), right.configurations.front(), left.product);
  }
  const std::size_t count = std::max(left.configurations.size(), right.configurations.size());
  Json document = NewDocument("config diff");
  document["left"] = left.Description();
  document["right"] = right.Description();
  Json& all = document["differences"] = Json::array();
  for (std::size_t index = 0; index < count; ++index) {
    if (options.config && *options.config != static_cast<int>(index)) continue;
    for (const Json& row : Differences(index, left, right)) all.push_back(row);
  }
  return document;
}

Json CheckFile(const Options& options) {
  const std::string& path = options.files.front();
  CheckTrailer(path, options.ini ? Trailer::kIni : Trailer::kHwg);
  Json document = NewDocument("check");
  document["file"] = path;
  document["intact"] = true;
  return document;
}

}  // namespace tavlyn::ctl
