// keys and secure.
#include "tools/tavlynctl/command_words.h"
#include "tools/tavlynctl/commands.h"

namespace tavlyn::ctl {

void AddSecure(CLI::App& app, Options& options, Commands& commands) {
  CLI::App& keys = *app.add_subcommand("keys", "Key files");
  CLI::App& secure = *app.add_subcommand("secure", "Single items of the protected memory");
  for (CLI::App* group : {&keys, &secure}) group->require_subcommand(1);
  CLI::App* load = Add(keys, "load", "Writes the items of a key-load ini file", options);
  load->add_flag("--dry-run", options.dryRun, "Only test whether the file was damaged");
  CLI::App* read = Add(secure, "read", "Reads one item", options);
  read->add_flag("--show-keys", options.showKeys, "Print its bytes");
  CLI::App* write = Add(secure, "write", "Writes one item", options);
  for (CLI::App* command : {read, write}) {
    command->add_option("HEADER", options.header, "Four bytes, hexadecimal; the third is the length")
        ->required();
  }
  write
      ->add_option("DATA", options.data,
                   "-: from the standard input, where no list of processes shows it; or hexadecimal")
      ->required();
  AddFile(load, options);
  for (CLI::App* command : {load, read, write}) AddDevice(command, options);
  commands.insert(commands.end(), {{load, "keys load", LoadKeys},
                                   {read, "secure read", ReadSecure},
                                   {write, "secure write", WriteSecure}});
}

}  // namespace tavlyn::ctl
