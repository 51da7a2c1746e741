#include "tools/tavlynctl/config/changes.h"

#include <algorithm>

#include "api.h"
#include "core/sonar_fields.h"
#include "tools/tavlynctl/awaited.h"
#include "tools/tavlynctl/config/fields.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

// Devices store times as counts of steps, rounded down.
bool IsRounded(const Json& wanted, const Json& stored, int step) {
  return stored == wanted.get<int>() / step * step;
}

const char* Outcome(const std::string& name, const Json& wanted, const Json& stored) {
  if (stored == wanted) return "stored";
  const auto* field = std::ranges::find_if(kFields, [&](const Field& one) { return FullName(one) == name; });
  const bool rounded = field != kFields.end() && IsRounded(wanted, stored, field->step);
  return rounded ? "rounded" : "different";
}

Json RowOf(const Change& change, const std::string& name, const Json& wanted) {
  return {{"configuration", change.configuration},
          {"field", name},
          {"old", change.before.value(name, Json())},
          {"new", wanted}};
}

Json PlannedRows(const std::vector<Change>& changes) {
  Json rows = Json::array();
  for (const Change& change : changes) {
    for (const auto& [name, wanted] : change.wanted.items()) {
      Json row = RowOf(change, name, wanted);
      if (row["old"] != row["new"]) rows.push_back(std::move(row));
    }
  }
  return rows;
}

// A value that the reader did not accept gets a row even if it was not to change.
Json WrittenRows(const std::vector<Change>& changes, std::string& refused) {
  Json rows = Json::array();
  for (const Change& change : changes) {
    const SelectedConfiguration selected(change.configuration);
    const Json after = Settings();
    for (const auto& [name, wanted] : change.wanted.items()) {
      Json row = RowOf(change, name, wanted);
      const Json stored = after.value(name, Json());
      const std::string outcome = Outcome(name, wanted, stored);
      if (outcome == "different") refused += (refused.empty() ? "" : ", ") + name;
      if (row["old"] == row["new"] && outcome != "different") continue;
      row["stored"] = stored;
      row["result"] = outcome;
      rows.push_back(std::move(row));
    }
  }
  return rows;
}

// A reader without extended fields does not report this one, and reading it back would only give what was
// set.
void ForgetUntold(const std::vector<Change>& changes) {
  for (const Change& change : changes) {
    const SelectedConfiguration selected(change.configuration);
    Store({{FindField("iExOutputFormat"), 0}});
  }
}

void ReadBack() {
  NowDoing("reading the configuration back");
  if (ReadCfg() == 1) return;
  throw Failure(kDeviceError, ActiveDeviceName() + " was written but could not be read back, " + ErrorText());
}

Json Verified(Json document, Json rows, const std::string& refused) {
  document["verified"] = refused.empty();
  document["changes"] = std::move(rows);
  if (refused.empty()) return document;
  throw Failure(kDeviceError, ActiveDeviceName() + " does not keep what was written of " + refused,
                std::move(document));
}

// If nothing is sent because the device has it all, that counts as verified too.
Json Unsent(Json document, Json rows, Sending sending) {
  if (sending != Sending::kNothing) document["verified"] = true;
  document["changes"] = std::move(rows);
  return document;
}

// A magnetic-stripe reader stores a setting exactly or not at all.
const char* SettingOutcome(const std::string& name, const Json& row) {
  const Json& stored = row["stored"];
  if (stored == row["new"]) return "stored";
  const auto* field =
      std::ranges::find_if(sonar::kFields, [&](const sonar::Field& one) { return name == one.key; });
  if (field == sonar::kFields.end()) return "different";
  if (IsRounded(row["new"], stored, field->step)) return "rounded";
  return field->readOnly ? "read only" : "different";
}

Json SettingRow(const SettingsPlan& plan, const std::string& name, const Json& wanted) {
  return {{"setting", name}, {"old", plan.before.value(name, Json())}, {"new", wanted}};
}

Json PlannedSettings(const SettingsPlan& plan) {
  Json rows = Json::array();
  for (const auto& [name, wanted] : plan.wanted.items()) {
    Json row = SettingRow(plan, name, wanted);
    if (row["old"] != wanted) rows.push_back(std::move(row));
  }
  return rows;
}

Json WrittenSettings(const SettingsPlan& plan, std::string& refused) {
  const Json after = plan.read();
  Json rows = Json::array();
  for (const auto& [name, wanted] : plan.wanted.items()) {
    Json row = SettingRow(plan, name, wanted);
    row["stored"] = after.value(name, Json());
    row["result"] = SettingOutcome(name, row);
    const bool different = row["result"] == "different";
    if (different) refused += (refused.empty() ? "" : ", ") + name;
    if (row["old"] != wanted || different) rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace

Change ChangeOf(int configuration, Json wanted) {
  const SelectedConfiguration selected(configuration);
  return {configuration, std::move(wanted), Settings()};
}

Json ApplyAndVerify(Json document, const std::vector<Change>& changes, Sending sending, const Write& write) {
  Json planned = PlannedRows(changes);
  const bool needed = sending == Sending::kAll || (sending == Sending::kDifferences && !planned.empty());
  document["written"] = needed;
  if (!needed) return Unsent(std::move(document), std::move(planned), sending);
  write(planned);
  ForgetUntold(changes);
  ReadBack();
  std::string refused;
  Json rows = WrittenRows(changes, refused);
  return Verified(std::move(document), std::move(rows), refused);
}

Json ApplyAndVerifySettings(Json document, const SettingsPlan& plan, bool dryRun, const Write& write) {
  Json planned = PlannedSettings(plan);
  const bool needed = !dryRun && !planned.empty();
  document["written"] = needed;
  if (!needed) {
    return Unsent(std::move(document), std::move(planned), SendingOf(dryRun));
  }
  write(planned);
  ReadBack();
  std::string refused;
  Json rows = WrittenSettings(plan, refused);
  return Verified(std::move(document), std::move(rows), refused);
}

void Commit() {
  NowDoing("writing the configuration");
  if (WriteCfg() == 1) return;
  throw Failure(kDeviceError,
                "the configuration of " + ActiveDeviceName() + " could not be written, " + ErrorText());
}

}  // namespace tavlyn::ctl
