// record.
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/trouble/simulator.h"

namespace tavlyn::ctl {
namespace {

struct Record {
  std::string file;
  bool ids = false;
  bool keys = false;
  std::vector<std::string> command;

  void Take(Words& words) {
    words.Text("FILE", file, "What to write; its owner alone may read it");
    words.Flag("--with-ids", ids, "The recording has the IDs of cards, else others stand in their place");
    words.Flag("--with-keys", keys, "The recording has keys, else they are covered");
    words.Text("COMMAND", command, "What to run, after --: any program that uses the library");
  }

  [[nodiscard]] Json Run(const Request& request) const {
    if (request.link.kind != LinkKind::kUsb) {
      throw Failure(kUsage, "what goes over serial ports and adapters is not recorded");
    }
    std::vector<std::string> words = {"--device", "attached", "--record", file};
    if (ids) words.emplace_back("--with-ids");
    if (keys) words.emplace_back("--with-keys");
    words.emplace_back("--");
    words.insert(words.end(), command.begin(), command.end());
    throw RunSimulator(words);
  }
};

}  // namespace

void AddRecord(Program& program) {
  program.Add<Record>("record", "Runs a program and keeps what goes between it and the HID devices");
}

}  // namespace tavlyn::ctl
