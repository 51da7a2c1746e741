// ble: a reader's BLE radio, and what the reader stores for it.
#include <string>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/awaited.h"
#include "tools/tavlynctl/config/overwriting.h"
#include "tools/tavlynctl/config/template_file.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

constexpr std::uint16_t kNoRadio = 65535;
constexpr int kHighestRadioConfiguration = 3;

std::uint16_t BleConfiguration() {
  const std::uint16_t configuration = GetBTLEConfiguration();
  if (GetLastLibErr() != 0) throw Failed("the BLE radio");
  return configuration;
}

struct BleStatus {
  void Take(Words& words) { words.Device(); }

  [[nodiscard]] Json Run(const Request& request) const {
    const Session session(request.link);
    session.UseReports(request.device);
    const std::uint16_t configuration = BleConfiguration();
    Json document = request.DeviceDocument();
    document["present"] = configuration != kNoRadio;
    document["configuration"] = configuration != kNoRadio ? Json(configuration) : Json();
    return document;
  }
};

struct SetBle {
  int wanted = 0;

  void Take(Words& words) {
    words.Number("CONFIGURATION", wanted, 0, kHighestRadioConfiguration, "0 to 3")->required();
    words.DeviceToChange();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const Session session(request.link);
    session.UseReports(request.device);
    if (BleConfiguration() == kNoRadio) throw Lacks("BLE radio");
    if (SetBTLEConfiguration(static_cast<std::uint8_t>(wanted)) != 1) throw Failed("the BLE radio");
    // Only reading it back shows whether the reader accepted it.
    const std::uint16_t configuration = BleConfiguration();
    if (configuration != wanted) {
      throw Failure(kDeviceError,
                    ActiveDeviceName() + " keeps BLE configuration " + std::to_string(configuration));
    }
    Json document = request.DeviceDocument();
    document["configuration"] = configuration;
    return document;
  }
};

struct BleKind {
  const char* what;
  const char* begin;  // of its block in a file
  std::uint32_t (*save)(const char* path);
  std::uint32_t (*load)(const char* path);
};

constexpr BleKind kBleData = {"data", "BEGIN sFldBleData1", WriteBLEDataToFile, WriteBLEDataToReader};
constexpr BleKind kBleKeys = {"keys", "BEGIN sFldBleData2", WriteBLEKeyToFile, WriteBLEKeyToReader};

// The library's error word for it is the same as for a reader that fails.
void CheckBleKind(const std::string& path, const BleKind& kind) {
  if (HasText(path, kind.begin)) return;
  throw Failure(kBadFile, path + " holds no BLE " + kind.what);
}

// What save and load have in common.
struct BleFile {
  bool keys = false;  // instead of the data
  std::string path;

 protected:
  void TakeFile(Words& words) {
    words.Flag("--keys", keys, "The keys instead of the data");
    words.File(path);
  }

  [[nodiscard]] const BleKind& Kind() const { return keys ? kBleKeys : kBleData; }
  [[nodiscard]] Json Document(const Request& request) const {
    Json document = request.DeviceDocument();
    document["file"] = path;
    document["block"] = Kind().what;
    return document;
  }
};

struct SaveBle : BleFile {
  void Take(Words& words) {
    TakeFile(words);
    words.Device();
  }

  // If the reader could not be read, the file is complete but full of zeros, and a load would accept it.
  [[nodiscard]] Json Run(const Request& request) const {
    const NewFile file(path);
    const Session session(request.link);
    session.Use(request.device);
    const std::uint32_t saved = Kind().save(file.Path().c_str());
    if (saved == 1 && GetLastLibErr() != 0) {
      throw NotTransferred("the BLE " + std::string(Kind().what) + " could not be read from");
    }
    // The library does not report a full disk.
    if (saved != 1 || CheckTamperedFile(file.Path().c_str(), 0) != 1) throw file.NotWhole();
    file.Keep();
    return Document(request);
  }
};

struct LoadBle : BleFile {
  Overwriting over;

  void Take(Words& words) {
    TakeFile(words);
    over.TakeYes(words);
    words.DeviceToChange();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    over.Require("this overwrites what the reader keeps for its radio");
    const TestedFile file(path);
    file.Pass([&](const std::string& held) {
      CheckTrailer(held, Trailer::kHwg);
      CheckBleKind(held, Kind());
    });
    const Session session(request.link);
    session.Use(request.device);
    over.Confirm("overwrite the BLE " + std::string(Kind().what) + " of " + ActiveDeviceName());
    NowDoing("loading " + path);
    if (Kind().load(file.ToLoad()) != 1) throw NotTransferred(path + " could not be loaded into");
    return Document(request);
  }
};

}  // namespace

void AddBle(Program& program) {
  program.Group("ble", "The BLE radio of a reader, and what the reader keeps for it");
  program.Add<BleStatus>("ble status", "Whether a reader has a BLE radio, and its configuration");
  program.Add<SetBle>("ble set", "Sets the configuration of the radio, and reads it back");
  program.Add<SaveBle>("ble save", "Saves what a reader keeps for its radio as a file");
  program.Add<LoadBle>("ble load", "Loads such a file");
}

}  // namespace tavlyn::ctl
