// A device for each stage of tests/faults/operations.h, on stand-ins and real wires, fresh whenever one is
// wanted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "sim/devices/device.h"
#include "tests/boundary/bulk_standin.h"
#include "tests/boundary/far_end.h"
#include "tests/boundary/library.h"
#include "tests/faults/operations.h"

namespace tavlyn::boundary {

// A line whose far end can be replaced while the wire stays.
struct Renewed final : sim::ByteDevice {
  std::shared_ptr<sim::ByteDevice> device;

  void Receive(std::span<const std::uint8_t> bytes) override { device->Receive(bytes); }
  std::size_t Take(std::span<std::uint8_t> bytes) override { return device->Take(bytes); }
  void Silence() override { device->Silence(); }
  bool TakeCut() override { return device->TakeCut(); }
};

class BuiltStage {
 public:
  // From now on connects look for this device.
  BuiltStage(faults::Stage stage, const Library& library);
  ~BuiltStage();
  BuiltStage(const BuiltStage&) = delete;
  BuiltStage& operator=(const BuiltStage&) = delete;

  // False if this machine cannot have it.
  [[nodiscard]] bool Exists() const { return exists_; }
  // Replaces the device by one that nobody has touched. Nothing may have it open.
  void Refresh();

 private:
  faults::Stage stage_;
  const Library& library_;
  PortFolder ports_;
  Renewed line_;
  std::unique_ptr<PortDevice> port_;
  std::unique_ptr<TcpDevice> adapter_;
  std::optional<BulkStandin> usb_;
  bool exists_ = true;
};

}  // namespace tavlyn::boundary
