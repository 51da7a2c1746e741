// Copies of configurations that commands have overwritten, in the folder of the program's state: a folder for
// each device, in it a file for each change, named by its time and the command.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tavlynctl/files.h"

namespace tavlyn::ctl {

struct KeptCopy {
  std::string time;     // "2026-11-22T18:32:01.123Z"
  std::string command;  // that changed the configuration after this
  std::string path;
};

// How a device's folder is named: by its serial number, or else by its product, identity and place.
std::string FolderOfActiveDevice();
// Every device that has copies.
std::vector<std::string> DevicesWithCopies();
// Newest first.
std::vector<KeptCopy> CopiesOf(const std::string& device);

// The present configuration of the active device, to be kept if a command goes on to change it. Make it
// before anything is put into the library's mirror.
class Backup {
 public:
  enum class Need {
    kNone,      // a dry run
    kWished,    // a command whose words say what it changes goes on without one, and tells
    kRequired,  // what overwrites a whole configuration does not
  };
  static Need NeedOf(bool dryRun) { return dryRun ? Need::kNone : Need::kWished; }
  // Throws Failure if one is required and cannot be written.
  Backup(const std::string& command, Need need);
  // The change begins now.
  void Keep() const;

 private:
  void Write(const std::string& command);
  template <typename Step>
  void Try(Step step) const;

  Need need_;
  std::string device_;
  std::optional<NewFile> file_;
};

}  // namespace tavlyn::ctl
