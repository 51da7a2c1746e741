// Passes the simulated devices on to a program, and notices when it first asks for a card.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "sim/rack_source.h"

namespace tavlyn::sim {

class Desk final : public Source {
 public:
  std::function<void()> onAsked;  // called before each request for a card reaches its reader
  bool announces = false;         // the reader is asked for a card only after an input report announced one

  // Before anybody asks for one.
  void Put(std::unique_ptr<Source> devices) { devices_ = std::move(devices); }
  std::unique_ptr<Source> TakeAway() { return std::move(devices_); }

  std::vector<Listed> List() override { return devices_->List(); }
  Outcome SetFeature(Key key, std::span<const std::uint8_t> report) override {
    if (onAsked && report.size() > 1 && AsksForId(report[1])) onAsked();
    return devices_->SetFeature(key, report);
  }
  Outcome GetFeature(Key key, std::span<std::uint8_t> report) override {
    return devices_->GetFeature(key, report);
  }
  Outcome TakeInput(Key key, std::vector<std::uint8_t>& report) override {
    if (onAsked && announces) onAsked();
    return devices_->TakeInput(key, report);
  }
  std::vector<ListedLine> Lines() override { return devices_->Lines(); }
  Outcome SendBytes(Key line, std::span<const std::uint8_t> bytes) override {
    if (onAsked && AsksForId(line, bytes)) onAsked();
    return devices_->SendBytes(line, bytes);
  }
  Outcome TakeBytes(Key line, std::vector<std::uint8_t>& bytes) override {
    return devices_->TakeBytes(line, bytes);
  }
  Outcome Silence(Key line) override { return devices_->Silence(line); }
  Outcome TakeCut(Key line) override { return devices_->TakeCut(line); }
  bool Run(const std::string& command, std::string& reply) override { return devices_->Run(command, reply); }

  // That of simulated devices, before they are recorded; null if there are others.
  [[nodiscard]] Rack* Simulated() const {
    auto* source = dynamic_cast<RackSource*>(devices_.get());
    return source != nullptr ? &source->Devices() : nullptr;
  }

 private:
  static constexpr bool AsksForId(std::uint8_t command) { return command == 0x8F || command == 0x8D; }

  // The request arrives in pieces, as a frame or as text.
  bool AsksForId(Key line, std::span<const std::uint8_t> bytes) {
    using namespace std::string_view_literals;
    constexpr std::size_t kLongest = 16;
    std::string& last = last_[line];
    last.append(bytes.begin(), bytes.end());
    const bool asks =
        last.find("\xFA\0\0\0"sv) != std::string::npos || last.find("QID.ID") != std::string::npos;
    if (last.size() > kLongest) last.erase(0, last.size() - kLongest);
    return asks;
  }

  std::unique_ptr<Source> devices_ = std::make_unique<RackSource>();
  std::map<Key, std::string> last_;  // the bytes that last arrived on each line
};

}  // namespace tavlyn::sim
