// The stand-in for the system's hidapi, which the library loads too: its commands, and hidapi's own calls,
// which are what the library is compared with.
#pragma once

#include <hidapi/hidapi.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "sim/carriers/standin_control.h"

namespace tavlyn::bench {

struct HidApi {
  TavlynStandin run;
  decltype(&hid_enumerate) enumerate;
  decltype(&hid_free_enumeration) freeEnumeration;
  decltype(&hid_open_path) open;
  decltype(&hid_close) close;
  decltype(&hid_send_feature_report) send;
  decltype(&hid_get_feature_report) get;
};

// Ends the program if the stand-in is not there.
const HidApi& TheStandIn();

// How commands are given to any stand-in, which is loaded for it.
TavlynStandin CommandsOf(const char* library);

// Runs a command and returns its reply; ends the program if it fails.
std::string Do(const std::string& command, TavlynStandin standIn = TheStandIn().run);

// So many readers are plugged in, and nothing else; searches are for readers on USB.
void PlugReaders(int count);

// They are gone at the end of a benchmark; the next one begins with nothing plugged in.
class Readers {
 public:
  explicit Readers(int count) { PlugReaders(count); }
  ~Readers();
  Readers(const Readers&) = delete;
  Readers& operator=(const Readers&) = delete;
};

// The same readers opened through hidapi.
class OpenedDirectly {
 public:
  OpenedDirectly();
  ~OpenedDirectly();
  OpenedDirectly(const OpenedDirectly&) = delete;
  OpenedDirectly& operator=(const OpenedDirectly&) = delete;

  // The traffic of the exchange that Ping makes.
  bool Exchange(std::size_t device) const;
  [[nodiscard]] std::size_t Count() const { return devices_.size(); }

 private:
  std::vector<hid_device*> devices_;
};

}  // namespace tavlyn::bench
