// The same reader's serial side: frames of class byte FA, an instruction, two parameters and a length. The
// answer is the instruction's echo, data and a two-byte status, of which each command has its own selection;
// a refusal is a status in place of the echo. What comes outside a frame is noise.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <span>

#include "sim/devices/device.h"
#include "sim/devices/faults.h"
#include "sim/devices/reader.h"

namespace tavlyn::sim {

class ReaderFa final : public ByteDevice {
 public:
  explicit ReaderFa(std::shared_ptr<Reader> reader);

  // Counted per byte, in both directions; the reader's own faults act on its feature reports only.
  Faults faults;

  Reader& Device() { return *reader_; }

  // The line was quiet for long: an unfinished frame is dropped.
  void Silence();

  void Receive(std::span<const std::uint8_t> bytes) override;
  std::size_t Take(std::span<std::uint8_t> bytes) override;

 private:
  enum class Phase { kIdle, kHeader, kData };

  void TakeByte(std::uint8_t byte);
  void TakeFrame();
  void Run();
  void Send(std::span<const std::uint8_t> bytes);
  void SendStatus(std::uint16_t status);

  std::shared_ptr<Reader> reader_;
  Phase phase_ = Phase::kIdle;
  Bytes frame_;  // from the instruction on
  Bytes taken_;  // of the data phase
  std::deque<std::uint8_t> out_;
};

}  // namespace tavlyn::sim
