// keys load, secure read, secure write, ble save and ble load. Key material is shown only where it was asked
// for.
#include <array>

#include "api.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/hex_bytes.h"
#include "tools/tavlynctl/secrets.h"
#include "tools/tavlynctl/session.h"
#include "tools/tavlynctl/template_file.h"
#include "tools/tavlynctl/whole_file.h"

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

// In place of a -, what stands on the standard input, so that a key is not seen in a list of processes.
std::string GivenData(const std::string& word) { return word != "-" ? word : HiddenLine("DATA"); }

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

const BleKind& KindOf(const Options& options) { return options.keys ? kBleKeys : kBleData; }

// The library's word for it is the same as for a reader that fails.
void CheckBleKind(const std::string& path, const BleKind& kind) {
  if (HasText(path, kind.begin)) return;
  throw Failure(kBadFile, path + " holds no BLE " + kind.what);
}

Json BleDocument(const char* command, const Options& options) {
  Json document = NewDocument(command, options.device);
  document["file"] = options.files.front();
  document["block"] = KindOf(options).what;
  return document;
}

}  // namespace

Json LoadKeys(const Options& options) {
  const std::string& path = options.files.front();
  CheckTrailer(path, Trailer::kIni);
  Json document = options.dryRun ? NewDocument("keys load") : NewDocument("keys load", options.device);
  document["file"] = path;
  document["written"] = !options.dryRun;
  if (options.dryRun) return document;
  const Session session(options.link);
  session.Use(options.device);
  if (LoadIniFile(path.c_str()) != 1) throw Lost("the last item of " + path + " was not written to");
  return document;
}

Json ReadSecure(const Options& options) {
  const Bytes header = ParseHeader(options.header);
  const Session session(options.link);
  session.Use(options.device);
  Bytes data(kLongestPayload + 1);
  if (ReadSecureData(header.data(), data.data()) != 1 || GetLastLibErr() != 0) {
    throw Lost("the item " + HexText(header) + " could not be read from");
  }
  data.resize(header[kLengthAt]);
  Json document = NewDocument("secure read", options.device);
  document["header"] = HexText(header);
  document["length"] = data.size();
  if (options.showKeys) document["data"] = HexText(data);
  return document;
}

Json WriteSecure(const Options& options) {
  Bytes item = ParseHeader(options.header);
  const Bytes data = ParseHex(GivenData(options.data), "DATA");
  if (data.empty() || data.size() != item[kLengthAt]) {
    throw Failure(kUsage, "the third byte of HEADER is the length of DATA, 1 to 255");
  }
  const Session session(options.link);
  session.Use(options.device);
  Json document = NewDocument("secure write", options.device);
  document["header"] = HexText(item);
  document["length"] = data.size();
  item.insert(item.end(), data.begin(), data.end());
  if (WriteSecureData(item.data(), static_cast<std::uint32_t>(item.size())) != 1) {
    throw Lost("the item " + document["header"].get<std::string>() + " could not be written to");
  }
  return document;
}

// A save that could not be read is whole but holds zeros, and a load would take it.
Json SaveBle(const Options& options) {
  const NewFile file(options.files.front());
  const Session session(options.link);
  session.Use(options.device);
  const std::uint32_t saved = KindOf(options).save(file.Path().c_str());
  if (saved == 1 && GetLastLibErr() != 0) {
    throw Lost("the BLE " + std::string(KindOf(options).what) + " could not be read from");
  }
  // The library does not tell of a disk that is full.
  if (saved != 1 || CheckTamperedFile(file.Path().c_str(), 0) != 1) throw file.NotWhole();
  file.Keep();
  return BleDocument("ble save", options);
}

Json LoadBle(const Options& options) {
  const std::string& path = options.files.front();
  CheckTrailer(path, Trailer::kHwg);
  CheckBleKind(path, KindOf(options));
  const Session session(options.link);
  session.Use(options.device);
  if (KindOf(options).load(path.c_str()) != 1) throw Lost(path + " could not be loaded into");
  return BleDocument("ble load", options);
}

}  // namespace tavlyn::ctl
