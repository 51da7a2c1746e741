// A library that stays connected to some simulated readers: each run finds it as it was after the connect,
// which would otherwise take most of a run.
#pragma once

#include <array>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "fuzz/connected.h"
#include "sim/devices/reader.h"

namespace tavlyn::fuzz {

class KeptReaders {
 public:
  using Readers = std::vector<std::shared_ptr<sim::Reader>>;

  explicit KeptReaders(Readers readers) : readers_(std::move(readers)) {
    for (const auto& reader : readers_) host.hid.Plug("device-" + std::to_string(++plugged_), reader);
    SetDevTypeSrch(0);
    SetConnectProduct(1);
    Require(USBConnect(nullptr) == 1);
    for (std::size_t at = 0; at < readers_.size(); ++at) {
      Require(SetActDev(static_cast<std::int16_t>(at)) == 1 && ReadCfg() == 1);
      kept_.push_back({DevTable[at], readers_[at]->state});
    }
    shared_ = shared;
  }

  // Makes that reader the active device; the library and the reader are as they were after the connect.
  sim::Reader& Use(std::size_t at) {
    CheckState();
    Reader(used_).state = kept_[used_].state;
    DevTable[used_] = kept_[used_].entry;
    shared = shared_;
    // Ends what the last run has left unfinished.
    std::array<std::uint8_t, 8> reply{};
    Reader(at).GetFeature(reply);
    SetActDev(static_cast<std::int16_t>(at));
    used_ = at;
    return Reader(at);
  }

 private:
  struct Kept {
    tsDevEntry entry;
    sim::ReaderState state;
  };

  sim::Reader& Reader(std::size_t at) { return *readers_[at]; }

  Loaded loaded_;
  sim::VirtualHost& host = loaded_.host;
  Readers readers_;
  int plugged_ = 0;
  std::vector<Kept> kept_;
  Shared shared_;
  std::size_t used_ = 0;
};

}  // namespace tavlyn::fuzz
