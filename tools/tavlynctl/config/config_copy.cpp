// config copy.
#include <string>

#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/config/loading.h"
#include "tools/tavlynctl/config/saving.h"
#include "tools/tavlynctl/every_device.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

struct CopyConfig {
  DeviceChoice from;
  DeviceChoice to;
  Overwriting over;

  void Take(Words& words) {
    words.Which("--from", from, "The device whose configuration is copied")->required();
    words.Which("--to", to, "The device that gets it; all: every other one of the same product")->required();
    over.TakeAll(words);
    words.DryRun(over.dryRun);
    words.Product();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    over.Require("this overwrites the configuration");
    const TemporaryFile file;
    const auto [source, name] = Save(file.Path(), request);
    const Loading loading(file.Path(), false, "the configuration of " + name);
    Request others = request;
    others.device = to;
    others.device.all = to.word == kAllDevices;
    return ForEachChosen(others, loading.Product(), [&, source = source, &name = name] {
      Json document = request.DeviceDocument();
      if (ActiveIndex() != source) return loading.Into(std::move(document), {request.command, over});
      if (!others.device.all) throw Failure(kUsage, name + " is both --from and --to");
      document["written"] = false;
      document["changes"] = Json::array();
      return document;
    });
  }

 private:
  static constexpr const char* kAllDevices = "all";

  struct Source {
    int index;
    std::string name;
  };
  [[nodiscard]] Source Save(const std::string& path, const Request& request) const {
    const Session session(request.link, request.products);
    session.Use(from);
    SaveConfigurationAt(path);
    return {ActiveIndex(), ActiveDeviceName()};
  }
};

}  // namespace

void AddConfigCopy(Program& program) {
  program.Add<CopyConfig>("config copy", "Gives devices the configuration of another one");
}

}  // namespace tavlyn::ctl
