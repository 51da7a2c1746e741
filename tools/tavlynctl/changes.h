// Changes of a configuration: what would change, and whether the reader has taken it.
#pragma once

#include <functional>
#include <vector>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

struct Change {
  int configuration;
  Json wanted;  // by the names of Settings
  Json before;  // all settings
};

// With the settings of that configuration as they are.
Change ChangeOf(int configuration, Json wanted);

enum class Sending {
  kNothing,      // a dry run
  kDifferences,  // nothing where the device has it all already
  kAll,
};
inline Sending SendingOf(bool dryRun) { return dryRun ? Sending::kNothing : Sending::kDifferences; }

// Adds what would change to the document. What is sent is written, read back and compared, and the outcome
// added; when the reader did not take a value Failure is thrown with the document.
Json ApplyAndVerify(Json document, const std::vector<Change>& changes, Sending sending,
                    const std::function<void()>& write);

// The same for the settings of another product, which has one configuration; read gives them from the
// library's mirror. WriteCfg writes them.
struct SettingsPlan {
  Json before;
  Json wanted;
  std::function<Json()> read;
};
Json ApplyAndVerifySettings(Json document, const SettingsPlan& plan, bool dryRun);

// WriteCfg; throws Failure when it fails.
void Commit();

}  // namespace tavlyn::ctl
