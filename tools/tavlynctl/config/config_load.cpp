// config load.
#include <string>

#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/config/loading.h"
#include "tools/tavlynctl/every_device.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

struct LoadConfig {
  std::string path;
  bool secure = false;
  bool strict = false;
  Overwriting over;

  void Take(Words& words) {
    words.File(path);
    words.Flag("--secure", secure, "Refuse a file without a trailer");
    words.Flag("--strict", strict, "Refuse a file if any part of it would be ignored");
    over.TakeAll(words);
    words.DryRun(over.dryRun);
    words.DeviceToChange();
    words.All();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    over.Require("this overwrites the configuration");
    const Loading loading(path, secure, path);
    return ForEachChosen(request, loading.Product(), [&] {
      Json document = request.DeviceDocument();
      document["file"] = path;
      return loading.Into(std::move(document), {request.command, over, strict});
    });
  }
};

}  // namespace

void AddConfigLoad(Program& program) {
  program.Add<LoadConfig>("config load", "Loads a file, and reads the device back");
}

}  // namespace tavlyn::ctl
