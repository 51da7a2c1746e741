// The HID side of the simulated system: interfaces that tests plug in, and the handles opened on them.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "sim/devices/device.h"
#include "sim/transcript.h"

namespace tavlyn::sim {

// One listed interface and how the system treats it.
struct Interface {
  std::string path;
  std::shared_ptr<HidDevice> device;
  bool inHidClass = true;
  bool inKeyboardClass = false;  // set by Plug when the device has the keyboard usage
  bool opens = true;
  bool skipped = false;  // its walk member yields no path
  bool tellsAttributes = true;
  bool tellsUsages = true;
  bool plugged = true;
};

class VirtualHid final : public platform::HidSystem {
 public:
  explicit VirtualHid(Transcript& transcript) : transcript_(transcript) {}

  // How the system as a whole behaves.
  bool loads = true;
  bool walks = true;
  bool listsIds = true;  // as Linux does; off as on Windows

  // Adds an interface at the end of the walk; the reference stays valid until Reset.
  Interface& Plug(std::string path, std::shared_ptr<HidDevice> device);
  // The interface is no longer listed, and open handles on it fail from now on.
  void Unplug(const std::string& path);
  [[nodiscard]] std::size_t OpenHandles() const;
  // Null if no interface of this path is listed now.
  [[nodiscard]] Interface* Find(const char* path) const;
  void Reset();
  // Things that a caller of the platform must not do, such as a walk inside a walk.
  [[nodiscard]] const std::vector<std::string>& Misuses() const { return misuses_; }

  bool Load() override;
  void Unload() override;
  bool BeginWalk(platform::HidClass cls) override;
  platform::WalkStep Member(int index, const char*& path) override;
  void EndWalk() override;
  bool ListedIds(const char* path, platform::HidIds& ids) override;
  platform::Handle Open(const char* path, platform::OpenMode mode) override;
  void Close(platform::Handle device) override;
  platform::HidIds Attributes(platform::Handle device) override;
  platform::UsageMatch TopUsage(platform::Handle device, platform::HidUsage wanted) override;
  bool GetFeature(platform::Handle device, std::span<std::uint8_t> report) override;
  bool SetFeature(platform::Handle device, std::span<const std::uint8_t> report) override;
  platform::Drain DrainInput(platform::Handle device, std::span<std::uint8_t> report) override;

 private:
  using Shared = std::shared_ptr<Interface>;

  [[nodiscard]] bool IsOpen(platform::Handle device) const;
  // Null when the handle is not open or its interface is gone.
  [[nodiscard]] Interface* Reach(platform::Handle device) const;
  static bool IsListed(const Interface& interface);

  Transcript& transcript_;
  std::vector<Shared> interfaces_;
  std::vector<Shared> handles_;  // handle n is entry n-1; null once closed
  std::optional<std::vector<Shared>> walk_;
  bool loaded_ = false;
  std::vector<std::string> misuses_;
};

}  // namespace tavlyn::sim
