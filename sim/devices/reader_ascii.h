// The serial side of readers that also speak text. A carriage return ends each line:
//
//   RFID:VAR          all variables, one "RFID:key=value" per line
//   RFID:DEV.VER      the firmware version, "{0074.3.1}"
//   RFID:QID.ID       the card, "{age,1,0001,bits;id}", with 0 bits when there is none
//   RFID:CFG.RESET    factory settings
//   rfid:key=value    sets a variable, at once and permanently
//
// Values are 'c', '\xHH', True, False, 0xHH and decimal numbers. Every answer ends in the prompt; an empty
// line is not answered. Frames are answered too: a host finds the reader by a frame before it changes to
// text.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "sim/devices/faulty_line.h"
#include "sim/devices/reader_fa.h"

namespace tavlyn::sim {

// Faults by command match the line after its "RFID:".
class ReaderAscii final : public FaultyLine {
 public:
  explicit ReaderAscii(std::shared_ptr<Reader> reader);

  bool echoes = true;   // cmd.echo; the value at start-up
  bool prompts = true;  // cmd.prompt
  bool speaksFrames = true;

  Reader& Device() { return *reader_; }

  void Silence() override;

 private:
  void TakeByte(std::uint8_t byte) override;
  void TakeLine();
  [[nodiscard]] std::string Answer(const std::string& command);
  void Assign(const std::string& key, const std::string& text);

  std::shared_ptr<Reader> reader_;
  ReaderFa frames_;
  std::string line_;
};

}  // namespace tavlyn::sim
