#include "tools/tavlynctl/command_words.h"

#include <map>

#include "tools/word_checks.h"

namespace tavlyn::ctl {
namespace {

constexpr int kWeek = 604'800;  // seconds

}  // namespace

CLI::App* Add(CLI::App& parent, const char* name, const char* text, Options& options) {
  CLI::App* command = parent.add_subcommand(name, text);
  command->add_flag("--json", options.json, "One JSON object instead of text");
  return command;
}

void AddDevice(CLI::App* command, Options& options) {
  command->add_option("--device", options.device, "Index of the device, as list shows it (0)")
      ->check(WholeNumber(0));
}

void AddProduct(CLI::App* command, Options& options) {
  static const std::map<std::string, std::uint32_t> kWords = {
      {"reader", kReaders}, {"magstripe", kMagstripes}, {"sonar", kSensors}};
  command
      ->add_option_function<std::string>(
          "--product", [&options](const std::string& word) { options.products = kWords.at(word); },
          "reader, magstripe or sonar: only such a device; all are searched without it")
      ->check(OneOf({"reader", "magstripe", "sonar"}))
      ->option_text("WORD");
}

void AddDryRun(CLI::App* command, Options& options) {
  command->add_flag("--dry-run", options.dryRun, "Only tell what would change");
}

CLI::Option* AddCount(CLI::App* command, Options& options, const char* text) {
  return command->add_option("--count", options.count, text)->check(WholeNumber(1))->option_text("N");
}

void AddTimeout(CLI::App* command, Options& options, const char* text) {
  command->add_option("--timeout", options.timeout, text)->check(Seconds(kWeek))->option_text("S");
}

void AddFile(CLI::App* command, Options& options) {
  command->add_option("FILE", options.files)->required()->expected(1);
}

void AddChoice(CLI::App* command, Options& options, const char* name, const std::vector<std::string>& words) {
  command->add_option(name, options.choice)->required()->check(OneOf(words));
}

}  // namespace tavlyn::ctl
