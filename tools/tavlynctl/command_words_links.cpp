// Options of every command that choose the link; find and serial.
#include "tools/tavlynctl/command_words.h"
#include "tools/tavlynctl/commands.h"
#include "tools/word_checks.h"

namespace tavlyn::ctl {

// Options of the program, also taken after a command.
void AddLinks(CLI::App& app, Link& link) {
  app.fallthrough();
  const auto add = [&](const char* name, bool (*take)(const std::string&, Link&), const char* kind,
                       const char* text) {
    return app.add_option_function<std::string>(
        name,
        [&link, take, name, kind](const std::string& word) {
          if (!take(word, link)) throw CLI::ValidationError(name, word + " is not " + kind);
        },
        text);
  };
  CLI::Option* com = add("--com", TakePorts, "a port from 1 to 256, or LO-HI of such ports",
                         "Search this COM port, or these")
                         ->type_name("N|LO-HI");
  add("--ip", TakePeer, "an address with a port, A.B.C.D:PORT",
      "Search behind the Ethernet adapter of this address")
      ->type_name("A.B.C.D:PORT")
      ->excludes(com);
  app.add_option("--baud", link.baud, "Speed of the COM ports (9600)")->check(WholeNumber(1))->needs(com);
  app.add_flag("--ascii", link.ascii, "Speak the text dialect of serial readers");
}

void AddFind(CLI::App& app, Options& options, Commands& commands) {
  CLI::App* find = Add(app, "find", "The Ethernet adapters of an address range", options);
  find->add_option_function<std::string>(
          "RANGE",
          [&options](const std::string& word) {
            options.range = ParseRange(word);
            if (!options.range)
              throw CLI::ValidationError(
                  "RANGE", word + " is not an address or a range of them, such as 10.0.0.1-254");
          },
          "A.B.C.D or A.B.C.FIRST-LAST; this host's own network without it")
      ->type_name("");
  commands.push_back({find, "find", Find});
}

void AddSerial(CLI::App& app, Options& options, Commands& commands) {
  CLI::App& serial = *app.add_subcommand("serial", "The serial side of a reader");
  serial.require_subcommand(1);
  CLI::App* baud = Add(serial, "baud", "Tells or sets the code of the reader's baud rate", options);
  baud->add_option("CODE", options.code)->check(WholeNumber(0, 255));
  CLI::App* write = Add(serial, "write", "Sends raw bytes", options);
  write->add_option("HEX", options.words)->required();
  write->add_option("--read", options.count, "Bytes to read afterwards, at most")
      ->check(WholeNumber(1, 1024));
  CLI::App* read = Add(serial, "read", "Reads raw bytes", options);
  read->add_option("COUNT", options.count, "At most")->required()->check(WholeNumber(1, 1024));
  for (CLI::App* command : {baud, write, read}) AddDevice(command, options);
  commands.insert(commands.end(), {{baud, "serial baud", SerialBaud},
                                   {write, "serial write", SerialWrite},
                                   {read, "serial read", SerialRead}});
}

}  // namespace tavlyn::ctl
