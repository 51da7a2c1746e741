#include "bench/stand_in.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

#include "api.h"

namespace tavlyn::bench {
namespace {

[[noreturn]] void Stop(const std::string& why) {
  std::fprintf(stderr, "%s\n", why.c_str());
  std::exit(1);
}

template <typename Function>
void Bind(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(library != nullptr ? dlsym(library, name) : nullptr);
  if (function == nullptr) Stop(std::string(name) + " is not there: the stand-in was not loaded");
}

constexpr const char* kHidApi = "libhidapi-hidraw.so.0";

HidApi Bound() {
  void* library = dlopen(kHidApi, RTLD_NOW);
  HidApi bound{};
  bound.run = CommandsOf(kHidApi);
  Bind(library, "hid_enumerate", bound.enumerate);
  Bind(library, "hid_free_enumeration", bound.freeEnumeration);
  Bind(library, "hid_open_path", bound.open);
  Bind(library, "hid_close", bound.close);
  Bind(library, "hid_send_feature_report", bound.send);
  Bind(library, "hid_get_feature_report", bound.get);
  return bound;
}

}  // namespace

const HidApi& TheStandIn() {
  static const HidApi bound = Bound();
  return bound;
}

TavlynStandin CommandsOf(const char* library) {
  TavlynStandin run = nullptr;
  Bind(dlopen(library, RTLD_NOW), TAVLYN_STANDIN, run);
  return run;
}

std::string Do(const std::string& command, TavlynStandin standIn) {
  std::array<char, 256> reply{};
  if (standIn(command.c_str(), reply.data(), reply.size()) < 0) Stop(command + ": " + reply.data());
  return reply.data();
}

void PlugReaders(int count) {
  Do("reset");
  for (int plugged = 0; plugged < count; ++plugged) Do("plug reader");
  Do("record off");
  SetConnectProduct(1);
  SetDevTypeSrch(0);
}

Readers::~Readers() {
  USBDisconnect();
  Do("reset");
}

OpenedDirectly::OpenedDirectly() {
  hid_device_info* listed = TheStandIn().enumerate(0, 0);
  for (const hid_device_info* at = listed; at != nullptr; at = at->next)
    devices_.push_back(TheStandIn().open(at->path));
  TheStandIn().freeEnumeration(listed);
}

OpenedDirectly::~OpenedDirectly() {
  for (hid_device* device : devices_) TheStandIn().close(device);
}

bool OpenedDirectly::Exchange(std::size_t device) const {
  std::array<std::uint8_t, 9> report{0, 0x8A};
  const bool sent = TheStandIn().send(devices_[device], report.data(), report.size()) >= 0;
  report = {};
  return TheStandIn().get(devices_[device], report.data(), report.size()) > 0 && sent;
}

}  // namespace tavlyn::bench
