#include "tools/tavlynsim/commands.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <string>
#include <vector>

#include "tools/command_line.h"
#include "tools/completion.h"
#include "tools/tavlynsim/asking.h"
#include "tools/tavlynsim/run.h"
#include "tools/tavlynsim/scenario/check.h"
#include "tools/tavlynsim/serve.h"
#include "tools/terminal.h"

namespace tavlyn::sim {
namespace {

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
    {"KIND@acm", "a virtual serial port, 7A31:2301; needs --carrier vhci"},
    {"KIND,luid=7", "with a LUID of its choice, also serial=0400999999; else the first has 1, the next 2"},
    {"replay:FILE", "the devices of a recording, also replay:FILE,strict; without others"},
    {"attached", "the HID devices of this machine, to be recorded; without others"},
};

int ShowKinds() {
  for (const Kind& kind : kKinds) std::printf("%-16s %s\n", kind.word, kind.text);
  return 0;
}

// The kinds themselves; "plus:N" goes on with a number, "replay:FILE" with a name.
std::vector<Candidate> KindWords(const std::vector<std::string>& /*words*/) {
  std::vector<Candidate> all;
  for (const Kind& kind : kKinds) {
    const std::string word = kind.word;
    if (!word.starts_with("KIND")) all.push_back({word.substr(0, word.find_first_of("NF")), kind.text});
  }
  return all;
}

constexpr Offer kOffers[] = {{"--device", KindWords}};

}  // namespace

std::span<const Kind> Kinds() { return kKinds; }

std::function<int()> AddCommands(CLI::App& app) {
  app.require_subcommand(1);
  const auto run = AddRun(app);
  const auto serve = AddServe(app);
  const auto ask = AddAsking(app);
  const auto check = AddCheck(app);
  app.add_subcommand("devices", "List what can be simulated");
  AddCommonWords(app, [] { return std::string(kProgram) + " " TAVLYN_VERSION; });
  return [&app, run, serve, ask, check] {
    if (app.got_subcommand("devices")) return ShowKinds();
    if (app.got_subcommand("run")) return run();
    if (app.got_subcommand("check")) return check();
    return app.got_subcommand("serve") ? serve() : ask();
  };
}

int Main(int argc, char** argv) {
  ShowAllLanguages();
  CLI::App app(kAbout, kProgram);
  const auto execute = AddCommands(app);
  if (const auto ended = Parsed(app, argc, argv, kOffers, kBadUsage)) return *ended;
  return execute();
}

}  // namespace tavlyn::sim
