// A serial reader that speaks the text dialect, at the far end of the active entry's line.
#pragma once

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

#include "api.h"
#include "tests/support/beside.h"

namespace tavlyn::test {

inline const std::string kAsciiPrompt = "Orvantis>";
inline const std::string kAsciiBegin = "\rRFID:cmd.echo=0\rRFID:cmd.prompt=1\r";
inline const std::string kAsciiList = "RFID:VAR\r";
inline const std::string kAsciiVersion = "\rRFID:DEV.VER\r";
inline const std::string kAsciiId = "\rRFID:QID.ID\r";

// Records what it is sent and answers each query once its line is complete.
class AsciiReader final : public sim::ByteDevice {
 public:
  std::string variables;
  std::string version;
  std::string id;
  std::string acknowledge = kAsciiPrompt;  // after each assignment
  std::string received;

  void Receive(std::span<const std::uint8_t> bytes) override {
    for (const std::uint8_t byte : bytes) {
      received += static_cast<char>(byte);
      if (byte != '\r') {
        line_ += static_cast<char>(byte);
        continue;
      }
      if (line_ == "RFID:VAR") Send(variables);
      if (line_ == "RFID:DEV.VER") Send(version);
      if (line_ == "RFID:QID.ID") Send(id);
      if (line_.starts_with("rfid:")) Send(acknowledge);
      line_.clear();
    }
  }

  std::size_t Take(std::span<std::uint8_t> bytes) override {
    const std::size_t count = std::min(bytes.size(), out_.size());
    std::copy_n(out_.begin(), count, bytes.begin());
    out_.erase(out_.begin(), out_.begin() + static_cast<std::ptrdiff_t>(count));
    return count;
  }

 private:
  void Send(const std::string& text) { out_.insert(out_.end(), text.begin(), text.end()); }

  std::string line_;
  std::deque<std::uint8_t> out_;
};

// The writes of a paced text.
inline Lines TextLines(const std::string& text) {
  Lines lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t left = text.size() - at;
    const std::size_t piece = left >= 3 ? 2 : left;
    lines.push_back("write " +
                    sim::HexText(sim::Bytes(text.begin() + static_cast<std::ptrdiff_t>(at),
                                            text.begin() + static_cast<std::ptrdiff_t>(at + piece))));
    lines.emplace_back("sleep 1");
    at += piece;
  }
  return lines;
}

// A listing of variables, padded to that size; the prompt is at its end.
inline std::string Listing(const std::string& lines, std::size_t size = 1000) {
  std::string text = lines;
  const std::size_t filled = size - kAsciiPrompt.size();
  if (text.size() < filled) text += std::string(filled - text.size(), '.');
  return text + kAsciiPrompt;
}

class AsciiBench : public BesideLine {
 protected:
  void SetUp() override {
    BesideLine::SetUp();
    AddLine(ascii);
    com->clock = &host.clock;
    com->timeouts = Port().Timeouts();
    UseAsciiCommandProtocol(1);
  }
  static tsCfgSlot& Slot() { return EntryOfActDev().ActiveSlot(); }
  static std::int16_t& Field(FieldId id) { return Slot()[id]; }

  AsciiReader ascii;
};

}  // namespace tavlyn::test
