#include "tools/tavlynctl/config/loading.h"

#include <algorithm>
#include <string>

#include "api.h"
#include "files/template_parse.h"
#include "tools/tavlynctl/awaited.h"
#include "tools/tavlynctl/config/changes.h"
#include "tools/tavlynctl/config/fields.h"
#include "tools/tavlynctl/config/product_settings.h"
#include "tools/tavlynctl/session.h"

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

std::string Question(const Json& rows) {
  const std::size_t count = rows.size();
  return "write " + std::to_string(count) + (count == 1 ? " value to " : " values to ") + ActiveDeviceName();
}

}  // namespace

Loading::Loading(const std::string& path, bool secure, const std::string& name)
    : name_(name), tested_(path, name), product_(tested_.Pass(ProductOfFile)) {
  if (product_ != kReaders) {
    if (secure) RefuseSecure(product_);
    SettingsFile file = tested_.Pass([&](const std::string& held) { return ReadSettings(held, product_); });
    whole_ = {{std::move(file.settings)}, std::move(file.ignored), ""};
    return;
  }
  checked_ = secure || tested_.Pass([](const std::string& held) { return HasTrailer(held, Trailer::kHwg); });
  if (checked_) tested_.Pass([](const std::string& held) { CheckTrailer(held, Trailer::kHwg); });
  whole_ = tested_.Pass(ReadTemplate);
}

Json Loading::Into(Json document, const Terms& terms) const {
  if (GetProduct() != product_) {
    throw Failure(kUsage, name_ + " is for a " + ProductName(product_) + ", not for " + ActiveDeviceName());
  }
  return product_ == kReaders ? IntoReader(std::move(document), terms)
                              : IntoOther(std::move(document), terms);
}

void Loading::CheckIgnored(const std::vector<std::string>& ignored, const Terms& terms) const {
  if (!terms.strict || ignored.empty()) return;
  std::string all;
  for (const std::string& one : ignored) all += (all.empty() ? "" : "; ") + one;
  throw Failure(kBadFile, name_ + " would not be loaded completely: " + all);
}

Json Loading::IntoReader(Json document, const Terms& terms) const {
  const LoadPlan plan = PlanOf(whole_);
  CheckIgnored(plan.ignored, terms);
  const Backup backup(terms.command, terms.over.Kept());
  document["secure"] = checked_;
  document["separator_data_not_loaded"] = plan.sepBytesDropped;
  document["ignored"] = plan.ignored;
  const auto write = [&](const Json& rows) {
    terms.over.Confirm(Question(rows), rows);
    backup.Keep();
    const char* toLoad = tested_.ToLoad();
    NowDoing("loading " + name_);
    const std::uint32_t loaded = checked_ ? ReadDevCfgFromSecureFile(toLoad) : ReadDevCfgFmFile(toLoad);
    if (loaded == 1) return;
    throw Failure(kDeviceError,
                  name_ + " could not be loaded into " + ActiveDeviceName() + ", " + ErrorText());
  };
  return ApplyAndVerify(std::move(document), plan.changes, SendingOf(terms.over.dryRun), write);
}

// A load changes only the library's mirror, which then shows what would be sent to the device.
Json Loading::IntoOther(Json document, const Terms& terms) const {
  CheckIgnored(whole_.ignored, terms);
  const Backup backup(terms.command, terms.over.Kept());
  const SettingsPlan plan{MirrorSettings(), whole_.configurations.front(), MirrorSettings};
  LoadMirror(tested_.ToLoad(), plan.wanted, "all of " + name_ + ": ");
  document["ignored"] = whole_.ignored;
  const auto write = [&](const Json& rows) {
    terms.over.Confirm(Question(rows), rows);
    backup.Keep();
    Commit();
  };
  return ApplyAndVerifySettings(std::move(document), plan, terms.over.dryRun, write);
}

}  // namespace tavlyn::ctl
