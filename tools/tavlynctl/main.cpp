// Card readers, magnetic-stripe readers and sonar sensors from the command line.
#include <string>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/process.h"
#include "tools/tavlynctl/program.h"
#include "tools/terminal.h"

namespace {

using namespace tavlyn::ctl;

// The library may not be the one that came with the program.
std::string Version() {
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  std::uint16_t build = 0;
  GetLibVersion(&major, &minor, &build);
  return std::string(kProgram) + " " TAVLYN_VERSION ", library " + std::to_string(major) + "." +
         std::to_string(minor) + "." + std::to_string(build);
}

// In the order in which --help lists their commands.
constexpr void (*kAreas[])(Program&) = {
    AddDevices, AddReads,  AddConfig, AddOutputs,   AddCardTypes, AddExtensions, AddBle,  AddRaw,
    AddTexts,   AddSecure, AddSwipes, AddMagFields, AddRange,     AddSerial,     AddFind, AddCheck};

}  // namespace

int main(int argc, char** argv) {
  tavlyn::ShowAllLanguages();
  LetWritesFail();
  if (OutputIsMissing()) {
    const Failure closed(kBadFile, "the standard output is closed; >/dev/null drops what is shown");
    return ShowFailure(closed, "", false);
  }
  Program program("Card readers, magnetic-stripe readers and sonar sensors from the command line", Version);
  for (const auto add : kAreas) add(program);
  return program.Run(argc, argv);
}
