// The program's commands. A command is a record: its members are its options, Take names the words that set
// them, Run executes it and returns a document or throws Failure.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/command_line.h"
#include "tools/tavlynctl/choice.h"
#include "tools/tavlynctl/link.h"
#include "tools/tavlynctl/output.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {

// What a command is given besides its own options.
struct Request {
  std::string command;  // "config show"
  Link link;
  bool json = false;
  DeviceChoice device;
  int verbose = 0;
  std::uint32_t products = kAllProducts;  // for a command of several products: those that it may use
  std::vector<std::string> files;         // every FILE

  [[nodiscard]] Json Document() const { return NewDocument(command); }
  [[nodiscard]] Json DeviceDocument() const;
};

// The words that one command takes, in the order in which its help lists them.
class Words {
 public:
  Words(CLI::App& command, Request& request) : command_(command), request_(request) {}

  // A value may be optional, and every word may be left out unless ->required() follows.
  template <typename Value>
  CLI::Option* Number(const char* name, Value& number, int least, int most, const char* text = "") {
    return Named(command_.add_option(name, number, text)->check(WholeNumber(least, most)));
  }
  // A list takes several.
  template <typename Value>
  CLI::Option* Text(const char* name, Value& value, const char* text = "") {
    return command_.add_option(name, value, text)->required();
  }
  CLI::Option* Flag(const char* name, bool& flag, const char* text) {
    return command_.add_flag(name, flag, text);
  }
  void Choice(const char* name, std::string& word, const std::vector<std::string>& words, const char* text) {
    Text(name, word, text)->check(OneOf(words));
  }
  // File names are checked before the command begins.
  void File(std::string& path);
  void Files(std::vector<std::string>& paths, const char* text);
  // A word that the command parses itself.
  CLI::Option* Parsed(const char* name, const std::function<void(const std::string&)>& take,
                      const char* text) {
    return command_.add_option_function<std::string>(name, take, text);
  }

  // A device by another name than --device.
  CLI::Option* Which(const char* name, DeviceChoice& device, const char* text);
  void DryRun(bool& dryRun) { Flag("--dry-run", dryRun, "Only show what would change"); }
  // What ends a command that waits or watches.
  CLI::Option* Count(int& count, const char* text);
  void Timeout(std::optional<double>& seconds, const char* text);
  // For commands that take several products.
  void Product();
  void Device();
  // For commands that change a device, or do when the function says so.
  void DeviceToChange(const std::function<bool()>& changes = [] { return true; });
  // After that, for commands that run ForEachChosen.
  void All();

 private:
  // An option that takes a number shows it as N.
  static CLI::Option* Named(CLI::Option* option) {
    return option->get_positional() ? option : option->type_name("N");
  }

  CLI::App& command_;
  Request& request_;
};

class Program {
 public:
  Program(const char* text, const std::function<std::string()>& version);

  // The heading of the commands that are added from now on.
  void BeginHeading(const char* title) { heading_ = title; }
  // A word that only introduces the commands below it.
  void Group(const char* words, const char* text);
  // Adds a command by its words: "list", "config show" below a group, "cards set" below a command.
  template <typename Command>
  void Add(const char* words, const char* text) {
    const auto command = std::make_shared<Command>();
    Words taken(NewCommand(words, text), request_);
    command->Take(taken);
    commands_[words] = [command](const Request& request) { return command->Run(request); };
  }

  // After the last command.
  void AddHelp();
  [[nodiscard]] CLI::App& Definition() { return app_; }

  // Returns the exit code.
  int Run(int argc, char** argv);

 private:
  CLI::App& NewWord(const std::string& words, const char* text);
  CLI::App& NewCommand(const std::string& words, const char* text);
  int Complete(const std::vector<std::string>& words);
  void TakeVariable();
  int RunGiven();
  [[nodiscard]] bool IsWithoutCommand(const CLI::ParseError& error) const;
  int RunWithoutCommand();
  int Refuse(const CLI::ParseError& error, bool json) const;

  std::function<std::string()> version_;
  CLI::App app_;
  Request request_;
  std::string heading_;
  std::map<std::string, std::function<Json(const Request&)>> commands_;
};

}  // namespace tavlyn::ctl
