// Changes to a configuration: what would change, and whether the reader accepted it.
#pragma once

#include <functional>
#include <vector>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

struct Change {
  int configuration;
  Json wanted;  // keyed as Settings are
  Json before;  // all settings
};

// With the current settings of that configuration.
Change ChangeOf(int configuration, Json wanted);

enum class Sending {
  kNothing,      // a dry run
  kDifferences,  // nothing if the device has it all already
  kAll,
};
inline Sending SendingOf(bool dryRun) { return dryRun ? Sending::kNothing : Sending::kDifferences; }

// Given the rows that would change.
using Write = std::function<void(const Json& rows)>;

// Adds what would change to the document. What is sent is written, read back and compared, and the outcome
// added; throws Failure with the document if the reader did not accept a value.
Json ApplyAndVerify(Json document, const std::vector<Change>& changes, Sending sending, const Write& write);

// The same for the settings of another product, which has one configuration. read returns them from the
// library's mirror, where they are set already.
struct SettingsPlan {
  Json before;
  Json wanted;
  std::function<Json()> read;
};
Json ApplyAndVerifySettings(Json document, const SettingsPlan& plan, bool dryRun, const Write& write);

// Calls WriteCfg; throws Failure if it fails.
void Commit();

}  // namespace tavlyn::ctl
