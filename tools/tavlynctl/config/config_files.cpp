// config save, config diff and check.
#include <optional>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/config/comparison.h"
#include "tools/tavlynctl/config/saving.h"
#include "tools/tavlynctl/config/template_file.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

struct SaveConfig {
  std::string path;
  bool secure = false;

  void Take(Words& words) {
    words.File(path);
    words.Flag("--secure", secure, "With a trailer that detects damage, not tampering");
    words.Product();
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const NewFile file(path);
    const Session session(request.link, request.products);
    session.Use(request.device);
    const int configurations = GetMaxConfig() + 1;
    SaveConfiguration(file, secure);
    file.Keep();
    Json document = request.DeviceDocument();
    document["file"] = path;
    document["configurations"] = configurations;
    document["secure"] = secure;
    return document;
  }
};

Side DeviceSide(const Request& request, std::uint32_t product, std::optional<int> only) {
  const Session session(request.link, product);
  session.Use(request.device);
  if (only) CheckConfiguration(*only);
  return ActiveDeviceSide();
}

struct DiffConfig {
  std::vector<std::string> paths;
  std::optional<int> only;
  bool exitCode = false;

  void Take(Words& words) {
    words.Files(paths, "One, compared with the device, or two");
    words.Number("--config", only, 0, kHighestConfiguration, "Only this configuration of a plus reader");
    words.Flag("--exit-code", exitCode, "End with 7 if there are differences");
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    if (paths.size() > 2) throw Failure(kUsage, "two files are compared, or a device and one file");
    const Side right = FileSide(paths.back());
    const Side left = paths.size() == 2 ? FileSide(paths.front()) : DeviceSide(request, right.product, only);
    if (left.product != right.product) {
      throw Failure(kUsage, left.name + " is for a " + ProductName(left.product) + ", " + right.name +
                                " for a " + ProductName(right.product));
    }
    Json document = request.Document();
    document["left"] = left.Description();
    document["right"] = right.Description();
    const Json& rows = document["differences"] = Differences(left, right, only);
    if (!exitCode || rows.empty()) return document;
    throw Failure(kDiffers, left.name + " and " + right.name + " differ", std::move(document));
  }
};

struct CheckFile {
  std::string path;
  bool ini = false;

  void Take(Words& words) {
    words.File(path);
    words.Flag("--ini", ini, "The file is a key-load ini file");
  }

  [[nodiscard]] Json Run(const Request& request) const {
    CheckTrailer(path, ini ? Trailer::kIni : Trailer::kHwg);
    if (!ini && !HasText(path, kBleBlock)) ReadTemplate(path);
    Json document = request.Document();
    document["file"] = path;
    document["intact"] = true;
    return document;
  }
};

}  // namespace

void AddConfigFiles(Program& program) {
  program.Add<SaveConfig>("config save", "Saves every configuration as a file");
  AddConfigLoad(program);
  AddConfigCopy(program);
  AddConfigEdit(program);
  program.Add<DiffConfig>("config diff", "Compares a device with a file, or two files");
  AddConfigHistory(program);
}

void AddCheck(Program& program) {
  program.Add<CheckFile>(
      "check", "Whether a file with a trailer was damaged since it was written; does not detect tampering");
}

}  // namespace tavlyn::ctl
