// The same reader's serial side: frames of class byte FA, an instruction, two parameters and a length. The
// answer consists of the instruction's echo, data and a two-byte status; each command has its own selection
// of these. A refusal is a status in place of the echo. Anything outside a frame is noise.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "sim/devices/faulty_line.h"
#include "sim/devices/reader.h"

namespace tavlyn::sim {

class ReaderFa final : public FaultyLine {
 public:
  explicit ReaderFa(std::shared_ptr<Reader> reader);

  Reader& Device() { return *reader_; }
  // Whether the next byte belongs to a frame that has begun.
  [[nodiscard]] bool InFrame() const { return phase_ != Phase::kIdle; }

  void Silence() override;

 private:
  enum class Phase { kIdle, kHeader, kData };

  void TakeByte(std::uint8_t byte) override;
  void TakeFrame();
  void Run();
  void SendStatus(std::uint16_t status);

  std::shared_ptr<Reader> reader_;
  Phase phase_ = Phase::kIdle;
  Bytes frame_;  // from the instruction on
  Bytes taken_;  // of the data phase
};

}  // namespace tavlyn::sim
