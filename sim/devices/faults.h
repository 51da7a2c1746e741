// Misbehaviour on demand. A model asks its Faults before each exchange (a feature report in either direction,
// or one byte of a serial stream) how to misbehave. Exchanges count from 1 since the last Restart.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <span>
#include <vector>

namespace tavlyn::sim {

using Bytes = std::vector<std::uint8_t>;

enum class Fault {
  kNone,
  kRefuse,  // a report stalls; a byte is lost
  kDrop,    // a command is accepted but not run; a fetch, or a byte, is lost
  kDelay,   // the reply is not ready: the fetch returns the previous reply; reports only
  kGarble,  // every bit is inverted on the way
  kVanish,  // the device is gone from this exchange on
};

class Faults {
 public:
  static constexpr int kAlways = std::numeric_limits<int>::max();

  void RefuseAt(int exchange, int times = 1) { Arm(Fault::kRefuse, exchange, times); }
  void RefuseFrom(int exchange) { Arm(Fault::kRefuse, exchange, kAlways); }
  void RefuseNext(int times = 1) { RefuseAt(exchanges_ + 1, times); }
  void GarbleAt(int exchange, int times = 1) { Arm(Fault::kGarble, exchange, times); }
  void DropAt(int exchange, int times = 1) { Arm(Fault::kDrop, exchange, times); }
  void DelayAt(int exchange, int times = 1) { Arm(Fault::kDelay, exchange, times); }
  void VanishAt(int exchange) { ArmAt(Fault::kVanish, exchange); }
  // Any fault, once; but a device that vanishes stays away.
  void ArmAt(Fault fault, int exchange) { Arm(fault, exchange, fault == Fault::kVanish ? kAlways : 1); }

  // By command, matched by its leading bytes: the report's payload, or INS P1 P2 P3 of a frame. The longest
  // match counts; of equals, the latest.
  void RefuseCommand(std::initializer_list<std::uint8_t> prefix, int times = kAlways);
  // The command is accepted, but its fetch is refused; on a serial stream the device stays silent.
  void RefuseReply(std::initializer_list<std::uint8_t> prefix, int times = kAlways);
  // These bytes instead of the device's own answer.
  void AnswerWith(std::initializer_list<std::uint8_t> prefix, Bytes answer, int times = kAlways);

  // A vanished device is back.
  void EndVanishing();
  // Forgets every fault and starts counting again; a vanished device is back.
  void Restart() { *this = Faults{}; }

  [[nodiscard]] int Exchanges() const { return exchanges_; }
  [[nodiscard]] bool Vanished() const { return vanished_; }

  // For the models.
  Fault Next();
  bool TakeCommandRefusal(std::span<const std::uint8_t> command);
  bool TakeReplyRefusal(std::span<const std::uint8_t> command);
  std::optional<Bytes> TakeAnswer(std::span<const std::uint8_t> command);

 private:
  struct Armed {
    Fault fault;
    int first;
    int times;
  };
  enum class Effect { kCommand, kReply, kAnswer };
  struct ByCommand {
    Effect effect;
    Bytes prefix;
    int left;
    Bytes answer;
  };

  void Arm(Fault fault, int exchange, int times) { armed_.push_back({fault, exchange, times}); }
  void ArmCommand(Effect effect, std::initializer_list<std::uint8_t> prefix, int times, Bytes answer);
  ByCommand* Take(Effect effect, std::span<const std::uint8_t> command);

  std::vector<Armed> armed_;
  std::vector<ByCommand> byCommand_;
  int exchanges_ = 0;
  bool vanished_ = false;
};

bool StartsWith(std::span<const std::uint8_t> bytes, std::span<const std::uint8_t> prefix);

// The bytes of a garbled exchange.
void Garble(std::span<std::uint8_t> bytes);

}  // namespace tavlyn::sim
