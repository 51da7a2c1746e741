#include "tools/tavlynctl/config/overwriting.h"

#include <cstdio>
#include <iostream>

#include "tools/printable.h"
#include "tools/tavlynctl/awaited.h"
#include "tools/tavlynctl/program.h"
#include "tools/terminal.h"

namespace tavlyn::ctl {

bool MayAsk() { return InputIsTerminal() && ErrorsAreOnTerminal(); }

bool IsConfirmed(const std::string& question, bool usually) {
  NowResting();
  std::fprintf(stderr, "%s? %s ", Printable(question).c_str(), usually ? "[Y/n]" : "[y/N]");
  std::string answer;
  if (!std::getline(std::cin, answer)) {
    std::fputc('\n', stderr);
    return false;
  }
  if (answer.empty()) return usually;
  return answer.starts_with('y') || answer.starts_with('Y');
}

void Overwriting::TakeYes(Words& words) {
  words.Flag("--yes", yes, "Do not ask; needed where nobody can be asked");
}

void Overwriting::TakeAll(Words& words) {
  TakeYes(words);
  words.Flag("--no-backup", noBackup, "Keep no copy of what is overwritten");
}

void Overwriting::Require(const std::string& what) const {
  if (yes || dryRun || MayAsk()) return;
  throw Failure(kUsage, what + "; where nobody can be asked, --yes does it");
}

void Overwriting::Confirm(const std::string& question) const {
  if (!yes && !IsConfirmed(question)) throw Failure(kUsage, "nothing was written");
}

void Overwriting::Confirm(const std::string& question, const Json& rows) const {
  NowResting();
  if (!yes) ShowRows(stderr, rows);
  Confirm(question);
}

Backup::Need Overwriting::Kept() const {
  return dryRun || noBackup ? Backup::Need::kNone : Backup::Need::kRequired;
}

}  // namespace tavlyn::ctl
