// keys load, secure read, secure write, ble save and ble load. Key material is shown only where it was asked
// for.
#include <cstdio>
#include <iostream>
#include <string>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/process.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/template_file.h"

namespace tavlyn::ctl {
namespace {

constexpr std::size_t kHeaderBytes = 4;
constexpr std::size_t kLengthAt = 2;
constexpr std::size_t kLongestPayload = 255;

Bytes ParseHeader(const std::string& text) {
  Bytes header = ParseHex(text, "HEADER");
  if (header.size() != kHeaderBytes) throw Failure(kUsage, "HEADER has four bytes");
  return header;
}

// In place of a -, a line of the standard input, so that a key is not seen in a list of processes; nor does a
// terminal show it.
std::string GivenData(const std::string& word) {
  if (word != "-") return word;
  const HiddenInput hidden;
  if (hidden.IsTyped()) std::fprintf(stderr, "DATA is not shown while it is typed\n");
  std::string line;
  std::getline(std::cin, line);
  while (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

Failure Lost(const std::string& what) {
  return {kDeviceError, what + " " + ActiveDeviceName() + ", " + ErrorText()};
}

struct BleKind {
  const char* what;
  const char* begin;  // of its block in a file
  std::uint32_t (*save)(const char* path);
  std::uint32_t (*load)(const char* path);
};

constexpr BleKind kBleData = {"data", "BEGIN sFldBleData1", WriteBLEDataToFile, WriteBLEDataToReader};
constexpr BleKind kBleKeys = {"keys", "BEGIN sFldBleData2", WriteBLEKeyToFile, WriteBLEKeyToReader};

// The library's word for it is the same as for a reader that fails.
void CheckBleKind(const std::string& path, const BleKind& kind) {
  if (HasText(path, kind.begin)) return;
  throw Failure(kBadFile, path + " holds no BLE " + kind.what);
}

struct LoadKeys {
  bool dryRun = false;
  std::string path;

  void Take(Words& words) {
    words.Flag("--dry-run", dryRun, "Only test whether the file was damaged");
    words.File(path);
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    CheckTrailer(path, Trailer::kIni);
    Json document = dryRun ? request.Document() : request.DeviceDocument();
    document["file"] = path;
    document["written"] = !dryRun;
    if (dryRun) return document;
    const Session session(request.link);
    session.Use(request.device);
    if (LoadIniFile(path.c_str()) != 1) throw Lost("the last item of " + path + " was not written to");
    return document;
  }
};

constexpr const char* kHeaderText = "Four bytes, hexadecimal; the third is the length";

struct ReadSecure {
  bool showKeys = false;
  std::string headerText;

  void Take(Words& words) {
    words.Flag("--show-keys", showKeys, "Print its bytes");
    words.Text("HEADER", headerText, kHeaderText);
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const Bytes header = ParseHeader(headerText);
    const Session session(request.link);
    session.Use(request.device);
    Bytes data(kLongestPayload + 1);
    if (ReadSecureData(header.data(), data.data()) != 1 || GetLastLibErr() != 0) {
      throw Lost("the item " + HexText(header) + " could not be read from");
    }
    data.resize(header[kLengthAt]);
    Json document = request.DeviceDocument();
    document["header"] = HexText(header);
    document["length"] = data.size();
    if (showKeys) document["data"] = HexText(data);
    return document;
  }
};

struct WriteSecure {
  std::string headerText;
  std::string dataText;

  void Take(Words& words) {
    words.Text("HEADER", headerText, kHeaderText);
    words.Text("DATA", dataText,
               "-: from the standard input, where no list of processes shows it; or hexadecimal");
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    Bytes item = ParseHeader(headerText);
    const Bytes data = ParseHex(GivenData(dataText), "DATA");
    if (data.empty() || data.size() != item[kLengthAt]) {
      throw Failure(kUsage, "the third byte of HEADER is the length of DATA, 1 to 255");
    }
    const Session session(request.link);
    session.Use(request.device);
    Json document = request.DeviceDocument();
    document["header"] = HexText(item);
    document["length"] = data.size();
    item.insert(item.end(), data.begin(), data.end());
    if (WriteSecureData(item.data(), static_cast<std::uint32_t>(item.size())) != 1) {
      throw Lost("the item " + document["header"].get<std::string>() + " could not be written to");
    }
    return document;
  }
};

// What both ways have in common.
struct BleFile {
  bool keys = false;  // not the data
  std::string path;

  void Take(Words& words) {
    words.Flag("--keys", keys, "Keys in place of data");
    words.File(path);
    words.Device();
  }

 protected:
  [[nodiscard]] const BleKind& Kind() const { return keys ? kBleKeys : kBleData; }
  [[nodiscard]] Json Document(const Request& request) const {
    Json document = request.DeviceDocument();
    document["file"] = path;
    document["block"] = Kind().what;
    return document;
  }
};

struct SaveBle : BleFile {
  // A save that could not be read is whole but holds zeros, and a load would take it.
  [[nodiscard]] Json Run(const Request& request) const {
    const NewFile file(path);
    const Session session(request.link);
    session.Use(request.device);
    const std::uint32_t saved = Kind().save(file.Path().c_str());
    if (saved == 1 && GetLastLibErr() != 0) {
      throw Lost("the BLE " + std::string(Kind().what) + " could not be read from");
    }
    // The library does not tell of a disk that is full.
    if (saved != 1 || CheckTamperedFile(file.Path().c_str(), 0) != 1) throw file.NotWhole();
    file.Keep();
    return Document(request);
  }
};

struct LoadBle : BleFile {
  [[nodiscard]] Json Run(const Request& request) const {
    CheckTrailer(path, Trailer::kHwg);
    CheckBleKind(path, Kind());
    const Session session(request.link);
    session.Use(request.device);
    if (Kind().load(path.c_str()) != 1) throw Lost(path + " could not be loaded into");
    return Document(request);
  }
};

}  // namespace

void AddSecure(Program& program) {
  program.Group("keys", "Key files");
  program.Group("secure", "Single items of the protected memory");
  program.Add<LoadKeys>("keys load", "Writes the items of a key-load ini file");
  program.Add<ReadSecure>("secure read", "Reads one item");
  program.Add<WriteSecure>("secure write", "Writes one item");
}

void AddBleFiles(Program& program) {
  program.Add<SaveBle>("ble save", "Saves what the reader keeps as a file");
  program.Add<LoadBle>("ble load", "Loads such a file");
}

}  // namespace tavlyn::ctl
