// The simulated operating system of the unit tests: every interface of platform.h in virtual time, scripted
// by public fields, with a transcript of all that the library did. platform::TheHost() returns this one.
#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "sim/carriers/virtual_clock.h"
#include "sim/carriers/virtual_com_ports.h"
#include "sim/carriers/virtual_hid.h"
#include "sim/carriers/virtual_libusb.h"
#include "sim/carriers/virtual_sockets.h"
#include "sim/transcript.h"

namespace tavlyn::sim {

class VirtualMutex final : public platform::RecursiveMutex {
 public:
  explicit VirtualMutex(Transcript& transcript) : transcript_(transcript) {}
  void Reset();
  [[nodiscard]] bool Exists() const { return exists_; }
  [[nodiscard]] int Depth() const { return depth_; }  // locks not yet released
  [[nodiscard]] const std::vector<std::string>& Misuses() const { return misuses_; }

  void Create() override;
  void Lock() override;
  void Unlock() override;
  void Close() override;

  // Called with the outermost lock just taken, and when it is about to be given back.
  std::function<void()> onEdge;

 private:
  void Note(const char* what);

  Transcript& transcript_;
  std::recursive_mutex mutex_;
  bool exists_ = false;
  int depth_ = 0;
  std::vector<std::string> misuses_;
};

class VirtualPlaces final : public platform::Places {
 public:
  std::set<std::string, std::less<>> environment;  // the variables that are set
  std::string traceFile;
  std::optional<std::string> currentFolder;  // unset: the process's own

  void Reset();
  bool EnvironmentIsSet(const char* name) override { return environment.contains(name); }
  platform::Path TraceFile() override { return platform::Path("%s", traceFile.c_str()); }
  platform::Path CurrentFolder() override;
};

class VirtualHost {
 public:
  // The one that platform::TheHost() returns.
  static VirtualHost& Instance();

  Transcript transcript;
  VirtualClock clock{transcript};
  VirtualMutex mutex{transcript};
  VirtualHid hid{transcript};
  VirtualSockets sockets{transcript};
  VirtualComPorts ports{transcript};
  VirtualLibusb usb{transcript};
  VirtualPlaces places;

  // An empty, well-behaved system; handles count from 1 again.
  void Reset();
  [[nodiscard]] std::vector<std::string> Misuses() const;
};

}  // namespace tavlyn::sim
