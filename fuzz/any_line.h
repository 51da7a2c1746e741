// The far end of a line. At first it is a model; after Turn it answers each command with the fuzzer's bytes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <span>

#include "fuzz/input.h"
#include "sim/devices/device.h"

namespace tavlyn::fuzz {

class AnyLine : public sim::ByteDevice {
 public:
  AnyLine(sim::ByteDevice& model, Input& answers) : answers_(answers), model_(model) {}

  // piece: the most bytes that arrive at once; 0 for any number.
  void Turn(std::size_t piece) {
    turned_ = true;
    piece_ = piece;
  }
  void Receive(std::span<const std::uint8_t> bytes) final {
    if (!turned_) return model_.Receive(bytes);
    for (const std::uint8_t byte : bytes) TakeByte(byte);
  }
  std::size_t Take(std::span<std::uint8_t> bytes) final {
    if (!turned_) return model_.Take(bytes);
    std::size_t count = std::min(bytes.size(), out_.size());
    if (piece_ != 0) count = std::min(count, piece_);
    const auto end = out_.begin() + static_cast<std::ptrdiff_t>(count);
    std::copy(out_.begin(), end, bytes.begin());
    out_.erase(out_.begin(), end);
    return count;
  }

 protected:
  virtual void TakeByte(std::uint8_t byte) = 0;
  void Send(std::span<const std::uint8_t> bytes) { out_.insert(out_.end(), bytes.begin(), bytes.end()); }

  Input& answers_;

 private:
  sim::ByteDevice& model_;
  bool turned_ = false;
  std::size_t piece_ = 0;
  std::deque<std::uint8_t> out_;
};

// Frames: one byte says what the answer to the next frame is. With bit 7 as many plain bytes as its other
// bits say; without, the echo of the frame's instruction, that many bytes and the status of success.
class AnyFrameLine final : public AnyLine {
 public:
  using AnyLine::AnyLine;

 private:
  void TakeByte(std::uint8_t byte) override {
    if (!classSeen_) {
      classSeen_ = byte == 0xFA;
      return;
    }
    classSeen_ = false;
    const std::uint8_t form = answers_.Byte();
    const bool isWhole = (form & 0x80) == 0;
    if (isWhole) Send({&byte, 1});
    Send(answers_.Take(form & 0x7F));
    if (isWhole) Send(kSuccess);
  }

  static constexpr std::uint8_t kSuccess[] = {0x90, 0};
  bool classSeen_ = false;
};

// Text: each line is answered with the fuzzer's bytes up to the next NUL.
class AnyTextLine final : public AnyLine {
 public:
  using AnyLine::AnyLine;

 private:
  void TakeByte(std::uint8_t byte) override {
    const bool ends = byte == '\r' && last_ != '\r';
    last_ = byte;
    if (!ends) return;
    const std::string_view text = answers_.Text('\0');
    Send({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  }

  std::uint8_t last_ = '\r';
};

}  // namespace tavlyn::fuzz
