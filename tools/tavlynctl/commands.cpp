#include "tools/tavlynctl/commands.h"

#include <cstdint>
#include <string>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/process.h"
#include "tools/tavlynctl/program.h"
#include "tools/terminal.h"

namespace tavlyn::ctl {
namespace {

// In the order in which --help shows them.
constexpr Heading kHeadings[] = {
    {"find", "Find devices", {AddDevices, AddTexts, AddFind}},
    {"trouble", "When something does not work", {AddDoctor, AddError, AddRecord}},
    {"read", "Read cards", {AddReads, AddCard, AddQueue}},
    {"config", "Configure", {AddConfig, AddCardTypes}},
    {"outputs", "Beeper, LEDs and relay", {AddOutputs}},
    {"keys", "Files and keys", {AddCheck, AddSecure, AddBle}},
    {"magstripe", "Magnetic-stripe readers", {AddSwipes, AddMagFields}},
    {"sonar", "Sonar sensors", {AddRange}},
    {"fleet", "Many machines", {AddFleet}},
    {"expert", "For experts", {AddExtensions, AddRaw, AddSerial}},
};

// The library may not be the one that came with the program.
std::string Version() {
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  std::uint16_t build = 0;
  GetLibVersion(&major, &minor, &build);
  return std::string(kProgram) + " " TAVLYN_VERSION ", library " + std::to_string(major) + "." +
         std::to_string(minor) + "." + std::to_string(build);
}

}  // namespace

std::span<const Heading> Headings() { return kHeadings; }

std::shared_ptr<Program> WholeProgram() {
  auto program = std::make_shared<Program>(
      "Card readers, magnetic-stripe readers and sonar sensors from the command line", Version);
  for (const Heading& heading : kHeadings) {
    program->BeginHeading(heading.title);
    for (const auto add : heading.areas) {
      if (add != nullptr) add(*program);
    }
  }
  program->AddHelp();
  return program;
}

int Main(int argc, char** argv) {
  tavlyn::ShowAllLanguages();
  LetWritesFail();
  if (OutputIsMissing()) {
    const Failure closed(kBadFile, "the standard output is closed; >/dev/null drops what is shown");
    return ShowFailure(closed, "", false);
  }
  return WholeProgram()->Run(argc, argv);
}

}  // namespace tavlyn::ctl
