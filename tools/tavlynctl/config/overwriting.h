// What overwrites more than its words say asks first: people on a terminal; elsewhere --yes has to be given.
#pragma once

#include <string>

#include "tools/tavlynctl/config/backups.h"
#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

class Words;

// Whether people can be asked.
bool MayAsk();
// Asks on standard error; an empty line means what is usual. The end of the input means no.
bool IsConfirmed(const std::string& question, bool usually = false);

struct Overwriting {
  bool yes = false;
  bool noBackup = false;
  bool dryRun = false;

  void TakeYes(Words& words);
  // --yes and --no-backup.
  void TakeAll(Words& words);
  // Throws Failure if it can neither ask nor was told to go on. what: "this loads the factory configuration".
  void Require(const std::string& what) const;
  // Asks; throws Failure unless the answer is yes.
  void Confirm(const std::string& question) const;
  // The same, and shows the rows first.
  void Confirm(const std::string& question, const Json& rows) const;
  [[nodiscard]] Backup::Need Kept() const;
};

}  // namespace tavlyn::ctl
