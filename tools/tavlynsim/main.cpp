// Runs a program with simulated devices.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <string>

#include "tools/command_line.h"
#include "tools/printable.h"
#include "tools/tavlynsim/run.h"
#include "tools/terminal.h"

namespace {

struct Kind {
  const char* word;
  const char* text;
};

constexpr Kind kKinds[] = {
    {"reader", "a card reader of one configuration, 7A31:3BFA"},
    {"plus:N", "a plus reader of 2 to 11 configurations, 7A31:3BFA"},
    {"magstripe", "a magnetic-stripe reader, 7A31:1000"},
    {"sonar", "a sonar sensor, 18C8:2BFA"},
    {"KIND@VID:PID", "any one under another USB identity, such as reader@19E5:2021"},
    {"KIND@7A31:3BFB",
     "a reader that numbers its reports, announces cards by input reports, has a keyboard beside it"},
    {"KIND@com3", "on serial port COM3, also com3:ascii for one that speaks text"},
    {"KIND@IP:PORT", "behind an Ethernet adapter at an address of this machine, such as 127.0.0.1:10001"},
    {"KIND@bulk", "a bulk device, 171B:1004, for programs that use libusb-0.1"},
    {"KIND,luid=7", "with a LUID of its choice, also serial=0400999999; else the first has 1, the next 2"},
};

int ShowKinds() {
  for (const Kind& kind : kKinds) std::printf("%-16s %s\n", kind.word, kind.text);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  tavlyn::ShowAllLanguages();
  CLI::App app("Simulated devices for programs that use tavlynapi or hidapi", tavlyn::sim::kProgram);
  app.require_subcommand(1);
  const auto run = tavlyn::sim::AddRun(app);
  app.add_subcommand("devices", "List what can be simulated");
  tavlyn::AddCommonWords(app, [] { return std::string(tavlyn::sim::kProgram) + " " TAVLYN_VERSION; });
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // help
    tavlyn::Tell(tavlyn::sim::kProgram, tavlyn::WrongWords(app, error));
    return tavlyn::sim::kBadUsage;
  }
  if (app.got_subcommand("devices")) return ShowKinds();
  return run();
}
