#include "sim/kept_state.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "sim/devices/hex.h"
#include "sim/words.h"

namespace tavlyn::sim {
namespace {

constexpr const char* kHeader = "tavlynsim state ";
constexpr const char* kVersion = "1";
constexpr const char* kRemark =
    "# What simulated devices keep without power: tavlynsim run or serve --state writes this file.\n";
constexpr std::size_t kGroupBytes = 8;

struct StatedDevice {
  std::string kind;
  std::string serial;
  int line = 0;
  std::vector<Memory::Piece> pieces;

  [[nodiscard]] std::string Words() const { return kind + " " + serial; }
};

// Reads the lines one by one; the first problem ends it.
class StateReader {
 public:
  std::vector<StatedDevice> devices;
  Memory::Problem problem;

  void Read(const std::string& text) {
    std::istringstream lines(text);
    std::string line;
    while (problem.text.empty() && std::getline(lines, line)) {
      problem.line = ++line_;
      if (line_ == 1) {
        TakeHeader(line);
      } else if (!line.starts_with('#')) {
        TakeLine(line);
      }
    }
    if (!problem.text.empty()) return;
    if (line_ == 0) TakeHeader({});
    if (problem.text.empty() && !ended_) problem = {line_, "the file ends too early"};
  }

 private:
  void TakeHeader(const std::string& line) {
    const std::string header = kHeader;
    if (!line.starts_with(header)) {
      problem = {1, "this is not the state of simulated devices"};
    } else if (line != header + kVersion) {
      problem.text = "version " + line.substr(header.size()) + " is none that this tavlynsim knows";
    }
  }

  void TakeLine(const std::string& line) {
    std::istringstream stream(line);
    Words words;
    for (std::string word; stream >> word;) words.push_back(word);
    if (words.empty()) return;
    if (ended_) {
      problem.text = "there is more after the end";
    } else if (words[0] == "end" && words.size() == 1) {
      ended_ = true;
    } else if (words[0] == "device") {
      TakeDevice(words);
    } else {
      TakePiece(words);
    }
  }

  void TakeDevice(const Words& words) {
    if (words.size() != 3) problem.text = "a device has a kind and a serial number";
    if (words.size() == 3) devices.push_back({words[1], words[2], line_, {}});
  }

  void TakePiece(const Words& words) {
    if (devices.empty()) {
      problem.text = "a device comes first";
      return;
    }
    Memory::Piece piece{words[0], {}, line_};
    for (std::size_t i = 1; i < words.size(); ++i) {
      const auto bytes = ParseHex(words[i]);
      // It may be a key and is not repeated.
      if (!bytes) problem.text = words[0] + " is hexadecimal, two digits for each byte";
      if (bytes) piece.bytes.insert(piece.bytes.end(), bytes->begin(), bytes->end());
    }
    auto& pieces = devices.back().pieces;
    if (std::ranges::find(pieces, words[0], &Memory::Piece::name) != pieces.end()) {
      problem.text = words[0] + " is there twice";
    }
    pieces.push_back(std::move(piece));
  }

  int line_ = 0;
  bool ended_ = false;
};

Memory::Problem TakeDevices(const std::vector<StatedDevice>& stated, const std::vector<KeptDevice>& devices) {
  for (std::size_t i = 0; i < stated.size() && i < devices.size(); ++i) {
    const std::string words = devices[i].kind + " " + devices[i].serial;
    if (stated[i].Words() == words) continue;
    std::string told = "device " + std::to_string(i + 1) + " is ";
    told.append(stated[i].Words()).append(" here, and ").append(words).append(" on the command line");
    return {stated[i].line, told};
  }
  if (stated.size() != devices.size()) {
    const std::string count = "the devices here are " + std::to_string(stated.size());
    return {stated.empty() ? 1 : stated.back().line,
            count + ", those on the command line " + std::to_string(devices.size())};
  }
  for (std::size_t i = 0; i < stated.size(); ++i) {
    Memory memory(stated[i].pieces, stated[i].line);
    devices[i].model->Keep(memory);
    if (Memory::Problem found = memory.Found(); !found.text.empty()) return found;
  }
  return {};
}

}  // namespace

std::string KeptText(const KeptDevice& device) {
  Memory memory;
  device.model->Keep(memory);
  std::string text = "device " + device.kind + " " + device.serial + "\n";
  for (const Memory::Piece& piece : memory.Pieces()) {
    text += piece.name;
    for (std::size_t at = 0; at < piece.bytes.size(); at += kGroupBytes) {
      const std::span left = std::span(piece.bytes).subspan(at);
      text += " " + HexDigits(left.first(std::min(kGroupBytes, left.size())));
    }
    text += "\n";
  }
  return text;
}

std::string StateText(const std::vector<std::string>& parts) {
  std::string text = std::string(kHeader) + kVersion + "\n" + kRemark;
  for (const std::string& part : parts) text += part;
  return text + "end\n";
}

Memory::Problem TakeState(const std::string& text, const std::vector<KeptDevice>& devices) {
  StateReader reader;
  reader.Read(text);
  return reader.problem.text.empty() ? TakeDevices(reader.devices, devices) : reader.problem;
}

}  // namespace tavlyn::sim
