#include "tools/tavlynctl/command_words.h"

#include <map>

namespace tavlyn::ctl {

CLI::App* Add(CLI::App& parent, const char* name, const char* text, Options& options) {
  CLI::App* command = parent.add_subcommand(name, text);
  command->add_flag("--json", options.json, "One JSON object instead of text");
  return command;
}

void AddDevice(CLI::App* command, Options& options) {
  command->add_option("--device", options.device, "Index of the device, as list shows it (0)");
}

void AddProduct(CLI::App* command, Options& options) {
  static const std::map<std::string, std::uint32_t> kWords = {
      {"reader", kReaders}, {"magstripe", kMagstripes}, {"sonar", kSensors}};
  command->add_option("--product", options.products, "Only devices of this product; all are searched")
      ->transform(CLI::CheckedTransformer(kWords));
}

void AddDryRun(CLI::App* command, Options& options) {
  command->add_flag("--dry-run", options.dryRun, "Only tell what would change");
}

void AddFiles(CLI::App* command, Options& options, int most) {
  command->add_option("FILE", options.files)->required()->expected(1, most);
}

void AddChoice(CLI::App* command, Options& options, const char* name, const std::vector<std::string>& words) {
  command->add_option(name, options.choice)->required()->check(CLI::IsMember(words));
}

}  // namespace tavlyn::ctl
