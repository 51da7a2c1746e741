// config load.
#include <algorithm>
#include <string>

#include "api.h"
#include "files/template_parse.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/changes.h"
#include "tools/tavlynctl/fields.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/product_settings.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/template_file.h"

namespace tavlyn::ctl {
namespace {

const std::string kOutputFormat = "IDDispParms.iExOutputFormat";

bool IsSepByte(const std::string& name) { return name.starts_with(kSepBlockName); }

void Drop(Json& values, bool (*which)(const std::string&)) {
  Json kept = Json::object();
  for (const auto& [name, value] : values.items()) {
    if (!which(name)) kept[name] = value;
  }
  values = std::move(kept);
}

std::uint8_t SepFormat(const Json& settings) {
  return static_cast<std::uint8_t>(std::stoi(settings[SepByteName(0)].get<std::string>(), nullptr, 16));
}

// What the file does not mention stays as it is in the reader.
bool TakesSepBytes(const Json& file, const Json& reader) {
  const std::uint8_t format = SepFormat(reader);
  return MayLoadSepData(file.contains(SepByteName(0)) ? SepFormat(file) : format, format);
}

bool SepBytesDiffer(const Json& file, const Json& reader) {
  return std::ranges::any_of(file.items(), [&](const auto& item) {
    return IsSepByte(item.key()) && item.value() != reader[item.key()];
  });
}

std::string Numbered(std::size_t configuration) { return "configuration " + std::to_string(configuration); }

// Configurations that only one of the two has, or that the library skips.
void TellUnmatched(std::size_t inFile, std::size_t inReader, std::vector<std::string>& ignored) {
  for (std::size_t index = inReader; index < inFile; ++index) {
    ignored.push_back(Numbered(index) + " of the file: the reader does not have it");
  }
  for (std::size_t index = std::min(kLoadedConfigs, inFile); index < inReader; ++index) {
    ignored.push_back(Numbered(index) + " of the reader: " +
                      (index < inFile ? "only the first ten are loaded" : "the file does not hold it"));
  }
}

// What loading a file would make of each configuration.
struct LoadPlan {
  std::vector<Change> changes;
  std::vector<std::string> ignored;
  Json sepBytesDropped = Json::array();  // of these configurations
};

// Removes what would not be sent to the reader.
void DropUntaken(Change& change, bool plus, LoadPlan& plan) {
  Json& wanted = change.wanted;
  const std::string of = " of " + Numbered(static_cast<std::size_t>(change.configuration)) + ": ";
  if (!plus && wanted.contains(kCardTypeName)) {
    plan.ignored.push_back("card type" + of + "only a plus reader has one");
    Drop(wanted, [](const std::string& name) { return name == kCardTypeName || name == kCardPriorityName; });
  }
  if (wanted.contains(kOutputFormat) && !KeepsOutputFormat(SepFormat(change.before))) {
    if (wanted[kOutputFormat] != 0)
      plan.ignored.push_back(kOutputFormat + of + "the reader does not have it");
    wanted[kOutputFormat] = 0;
  }
  if (TakesSepBytes(wanted, change.before)) return;
  if (SepBytesDiffer(wanted, change.before)) {
    plan.ignored.push_back("separator data" + of + "the reader has another format");
    plan.sepBytesDropped.push_back(change.configuration);
  }
  Drop(wanted, IsSepByte);
}

LoadPlan PlanOf(Template file) {
  LoadPlan plan;
  plan.ignored = std::move(file.ignored);
  const auto room = static_cast<std::size_t>(GetMaxConfig()) + 1;
  TellUnmatched(file.configurations.size(), room, plan.ignored);
  file.configurations.resize(std::min({file.configurations.size(), room, kLoadedConfigs}));
  for (Json& values : file.configurations) {
    Change change = ChangeOf(static_cast<int>(plan.changes.size()), std::move(values));
    DropUntaken(change, room > 1, plan);
    const SelectedConfiguration selected(change.configuration);
    CheckRanges(change.wanted);
    plan.changes.push_back(std::move(change));
  }
  return plan;
}

struct LoadConfig {
  std::string path;
  bool secure = false;
  bool strict = false;
  bool dryRun = false;

  void Take(Words& words) {
    words.File(path);
    words.Flag("--secure", secure, "Refuse a file without a trailer");
    words.Flag("--strict", strict, "Refuse a file if any part of it would be ignored");
    words.DryRun(dryRun);
    words.DeviceToChange();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const TestedFile tested(path);
    const std::uint32_t product = tested.Pass(ProductOfFile);
    return product == kReaders ? LoadReader(tested, request) : LoadSettings(tested, product, request);
  }

 private:
  // With --strict a file is loaded completely or not at all.
  void CheckIgnored(const std::vector<std::string>& ignored) const {
    if (!strict || ignored.empty()) return;
    std::string all;
    for (const std::string& one : ignored) all += (all.empty() ? "" : "; ") + one;
    throw Failure(kBadFile, path + " would not be loaded completely: " + all);
  }

  [[nodiscard]] Json LoadReader(const TestedFile& tested, const Request& request) const {
    const bool checked =
        secure || tested.Pass([](const std::string& held) { return HasTrailer(held, Trailer::kHwg); });
    if (checked) tested.Pass([](const std::string& held) { CheckTrailer(held, Trailer::kHwg); });
    Template file = tested.Pass(ReadTemplate);
    const Session session(request.link);
    session.Use(request.device);
    const LoadPlan plan = PlanOf(std::move(file));
    CheckIgnored(plan.ignored);
    Json document = request.DeviceDocument();
    document["file"] = path;
    document["secure"] = checked;
    document["separator_data_not_loaded"] = plan.sepBytesDropped;
    document["ignored"] = plan.ignored;
    return ApplyAndVerify(std::move(document), plan.changes, SendingOf(dryRun), [&] {
      const char* toLoad = tested.ToLoad();
      const std::uint32_t loaded = checked ? ReadDevCfgFromSecureFile(toLoad) : ReadDevCfgFmFile(toLoad);
      if (loaded == 1) return;
      throw Failure(kDeviceError,
                    path + " could not be loaded into " + ActiveDeviceName() + ", " + ErrorText());
    });
  }

  // A load changes only the library's mirror, which then shows what would be sent to the device.
  [[nodiscard]] Json LoadSettings(const TestedFile& tested, std::uint32_t product,
                                  const Request& request) const {
    if (secure) RefuseSecure(product);
    const SettingsFile file =
        tested.Pass([&](const std::string& held) { return ReadSettings(held, product); });
    CheckIgnored(file.ignored);
    const Session session(request.link, product);
    session.Use(request.device);
    const SettingsPlan plan{MirrorSettings(), file.settings, MirrorSettings};
    LoadMirror(tested.ToLoad(), plan.wanted, "all of " + path + ": ");
    Json document = request.DeviceDocument();
    document["file"] = path;
    document["ignored"] = file.ignored;
    return ApplyAndVerifySettings(std::move(document), plan, dryRun);
  }
};

}  // namespace

void AddConfigLoad(Program& program) {
  program.Add<LoadConfig>("config load", "Loads a file, and reads the device back");
}

}  // namespace tavlyn::ctl
