// The card reader over feature reports of 8 bytes. A command report is followed by a fetch of its reply or,
// for commands that store something, by a data report: the next report of any kind is then taken as that
// data, unless a fetch comes first.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "sim/devices/device.h"
#include "sim/devices/faults.h"
#include "sim/devices/model.h"
#include "sim/devices/reader_state.h"

namespace tavlyn::sim {

class Reader final : public Model {
 public:
  explicit Reader(ReaderState initial);

  static std::shared_ptr<Reader> Plain();
  // A reader of 1 to 11 configurations.
  static std::shared_ptr<Reader> Plus(int configurations = 2);
  // The plus reader 7A31:3BFB: numbered reports, and an input report for each ID that is to be read. Its
  // keyboard is an interface of its own, an InertInterface.
  static std::shared_ptr<Reader> Kelda(int configurations = 2);

  ReaderState state;

  // bits 0 stands for eight per byte.
  void PutCard(Bytes id, int bits = 0);
  void TakeCard();
  void QueueInput(Bytes report);
  void Keep(Memory& memory) override;
  void Look() override { state.sights.Look(state.Working().blocks[2]); }
  void PowerCycle() override;

  void SetSerial(const std::string& serial) override;
  void SetLuid(std::uint16_t luid) override { state.luid = state.storedLuid = luid; }
  bool TakeInput(std::vector<std::uint8_t>& report) override;

 private:
  bool TakeReport(Payload report) override;
  // A fetch cancels a store that has had no data.
  void BeginFetch() override { dataMayFollow_ = false; }
  bool TakeCommand(const Block& report);

  bool dataMayFollow_ = false;
};

// A second interface that a device has beside the reader's, such as a keyboard: it can be listed and opened
// but has no feature report.
class InertInterface final : public HidDevice {
 public:
  InertInterface(std::uint16_t vid, std::uint16_t pid, Usage usage = {1, 6});

  HidIdentity identity;
  bool present = true;

  [[nodiscard]] const HidIdentity& Identity() const override { return identity; }
  bool SetFeature(std::span<const std::uint8_t>) override { return false; }
  bool GetFeature(std::span<std::uint8_t>) override { return false; }
  bool TakeInput(std::vector<std::uint8_t>&) override { return false; }
  [[nodiscard]] bool Present() const override { return present; }
};

}  // namespace tavlyn::sim
