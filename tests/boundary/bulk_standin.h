// The stand-in for libusb-0.1 in this process, while it lives. A library that is loaded meanwhile, or that
// connects, finds its devices.
#pragma once

#include <stdexcept>
#include <string>

#include "sim/carriers/standin_control.h"
#include "tests/boundary/library.h"
#include "tests/boundary/loader.h"

namespace tavlyn::boundary {

class BulkStandin {
 public:
  BulkStandin() : standin_(LoadByName(TAVLYN_STANDIN_USB)) {
    if (standin_ == nullptr) throw std::runtime_error("no stand-in for libusb");
    run_ = reinterpret_cast<TavlynStandin>(FindSymbol(standin_, TAVLYN_STANDIN));
    SetVariable("TAVLYNAPI_LIBUSB", TAVLYN_STANDIN_USB);
    Do("record off");
  }
  ~BulkStandin() {
    Do("reset");
    SetVariable("TAVLYNAPI_LIBUSB", nullptr);
    Unload(standin_);
  }
  BulkStandin(const BulkStandin&) = delete;
  BulkStandin& operator=(const BulkStandin&) = delete;

  void Do(const std::string& command) const { run_(command.c_str(), nullptr, 0); }

 private:
  void* standin_;
  TavlynStandin run_ = nullptr;
};

// Why a test may be skipped when no bulk device is found.
inline constexpr const char* kNotTrusted =
    TAVLYN_STANDIN_USB " is not trusted: only root may be able to write to it";

}  // namespace tavlyn::boundary
