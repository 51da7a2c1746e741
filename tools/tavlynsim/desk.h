// The simulated devices on their way to a program, watched for its first question about a card.
#pragma once

#include <functional>
#include <utility>

#include "sim/carriers/rack_source.h"

namespace tavlyn::sim {

class Desk final : public Source {
 public:
  std::function<void()> onAsked;  // called before each question for a card reaches its reader
  bool announces = false;         // the reader is asked for a card only after an input report told of one

  std::vector<Listed> List() override { return rack_.List(); }
  Outcome SetFeature(Key key, std::span<const std::uint8_t> report) override {
    if (onAsked && report.size() > 1 && AsksForId(report[1])) onAsked();
    return rack_.SetFeature(key, report);
  }
  Outcome GetFeature(Key key, std::span<std::uint8_t> report) override {
    return rack_.GetFeature(key, report);
  }
  Outcome TakeInput(Key key, std::vector<std::uint8_t>& report) override {
    if (onAsked && announces) onAsked();
    return rack_.TakeInput(key, report);
  }
  bool Run(const std::string& command, std::string& reply) override { return rack_.Run(command, reply); }

 private:
  static constexpr bool AsksForId(std::uint8_t command) { return command == 0x8F || command == 0x8D; }

  RackSource rack_;
};

}  // namespace tavlyn::sim
