// What a device keeps without power, as named pieces. A model lists it once; the same list hands the memory
// out and takes it in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sim/devices/device.h"
#include "sim/devices/faults.h"

namespace tavlyn::sim {

class Memory {
 public:
  struct Piece {
    std::string name;
    Bytes bytes;
    int line = 0;  // of the file that it is from
    bool taken = false;
  };

  // To be filled by a model.
  Memory() = default;
  // To be taken over by a model. line: where problems are that no piece has.
  Memory(std::vector<Piece> pieces, int line) : pieces_(std::move(pieces)), takes_(true), line_(line) {}

  [[nodiscard]] bool IsTaken() const { return takes_; }
  [[nodiscard]] const std::vector<Piece>& Pieces() const { return pieces_; }

  void Pass(const std::string& name, std::span<std::uint8_t> bytes);
  // Of any length up to a byte's worth.
  void PassAny(const std::string& name, Bytes& bytes);
  // As a word, its low byte first.
  template <typename Number>
  void PassNumber(const std::string& name, Number& number, std::size_t most = 0xFFFF) {
    std::uint8_t word[2] = {Low(number), High(number)};
    Pass(name, word);
    const std::size_t value = word[0] | static_cast<std::size_t>(word[1]) << 8U;
    if (value > most) return Blame(name, "is at most " + std::to_string(most));
    number = static_cast<Number>(value);
  }
  // Of what is to be taken: the names that begin so.
  [[nodiscard]] std::vector<std::string> NamesWith(std::string_view beginning) const;

  // Once everything has been passed: the first problem of what was to be taken, and its line; empty if there
  // is none.
  struct Problem {
    int line = 0;
    std::string text;
  };
  [[nodiscard]] Problem Found() const;

 private:
  // Null, with the problem, if there is none.
  Piece* Find(const std::string& name);
  void Blame(const std::string& name, const std::string& what);

  std::vector<Piece> pieces_;
  bool takes_ = false;
  int line_ = 0;
  Problem problem_;
};

}  // namespace tavlyn::sim
