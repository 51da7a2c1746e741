// keys load, secure read and secure write. Key material is shown only on request.
#include <cstdio>
#include <iostream>
#include <string>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/awaited.h"
#include "tools/tavlynctl/config/overwriting.h"
#include "tools/tavlynctl/config/template_file.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/process.h"
#include "tools/tavlynctl/program.h"

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

// Replaces a - by a line of standard input, so that a key is not seen in a process list; a terminal does not
// echo it either.
std::string GivenData(const std::string& word) {
  if (word != "-") return word;
  const HiddenInput hidden;
  if (hidden.IsTyped()) std::fprintf(stderr, "DATA is not shown while it is typed\n");
  std::string line;
  std::getline(std::cin, line);
  while (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

struct LoadKeys {
  Overwriting over;
  std::string path;

  void Take(Words& words) {
    over.TakeYes(words);
    words.Flag("--dry-run", over.dryRun, "Only test whether the file was damaged; needs no reader");
    words.File(path);
    words.DeviceToChange();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const bool dryRun = over.dryRun;
    over.Require("this overwrites items of the protected memory");
    const TestedFile file(path);
    file.Pass([](const std::string& held) { CheckTrailer(held, Trailer::kIni); });
    Json document = dryRun ? request.Document() : request.DeviceDocument();
    document["file"] = path;
    document["written"] = !dryRun;
    if (dryRun) return document;
    const Session session(request.link);
    session.Use(request.device);
    over.Confirm("write the items of " + path + " to the protected memory of " + ActiveDeviceName());
    NowDoing("writing the items of " + path);
    if (LoadIniFile(file.ToLoad()) != 1)
      throw NotTransferred("the last item of " + path + " was not written to");
    return document;
  }
};

constexpr const char* kHeaderText = "Four bytes, hexadecimal; the third is the length";

struct ReadSecure {
  bool showKeys = false;
  std::string headerText;

  void Take(Words& words) {
    words.Flag("--show-keys", showKeys, "Print the bytes of the item");
    words.Text("HEADER", headerText, kHeaderText);
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const Bytes header = ParseHeader(headerText);
    const Session session(request.link);
    session.Use(request.device);
    Bytes data(kLongestPayload + 1);
    if (ReadSecureData(header.data(), data.data()) != 1 || GetLastLibErr() != 0) {
      throw NotTransferred("the item " + HexText(header) + " could not be read from");
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
    words.DeviceToChange();
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
      throw NotTransferred("the item " + document["header"].get<std::string>() + " could not be written to");
    }
    return document;
  }
};

}  // namespace

void AddSecure(Program& program) {
  program.Group("keys", "Key files");
  program.Group("secure", "Single items of the protected memory");
  program.Add<LoadKeys>("keys load", "Writes the items of a key-load ini file");
  program.Add<ReadSecure>("secure read", "Reads one item of the protected memory");
  program.Add<WriteSecure>("secure write", "Writes one item of the protected memory");
}

}  // namespace tavlyn::ctl
