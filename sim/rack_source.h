// A rack in this process as a source of devices.
#pragma once

#include <mutex>

#include "sim/rack.h"
#include "sim/source.h"

namespace tavlyn::sim {

class RackSource final : public Source {
 public:
  std::vector<Listed> List() override;
  Outcome SetFeature(Key key, std::span<const std::uint8_t> report) override;
  Outcome GetFeature(Key key, std::span<std::uint8_t> report) override;
  Outcome TakeInput(Key key, std::vector<std::uint8_t>& report) override;
  std::vector<ListedLine> Lines() override;
  Outcome SendBytes(Key line, std::span<const std::uint8_t> bytes) override;
  Outcome TakeBytes(Key line, std::vector<std::uint8_t>& bytes) override;
  Outcome Silence(Key line) override;
  Outcome TakeCut(Key line) override;
  bool Run(const std::string& command, std::string& reply) override;

  // For its owner, before there are programs.
  Rack& Devices() { return rack_; }

 private:
  // 0 if the interface is not there.
  [[nodiscard]] int Number(Key key) const;
  // The line's number; 0 if it is not there.
  [[nodiscard]] int LineNumber(Key line);

  std::mutex mutex_;
  Rack rack_;
  Key generation_ = 0;  // upper half of a key; goes up whenever the rack starts counting from 1 again
};

}  // namespace tavlyn::sim
