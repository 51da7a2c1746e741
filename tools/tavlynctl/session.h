// A connect that lasts as long as the object, and the device that a command is about.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/tavlynctl/awaited.h"
#include "tools/tavlynctl/choice.h"
#include "tools/tavlynctl/device_lock.h"
#include "tools/tavlynctl/link.h"
#include "tools/tavlynctl/output.h"
#include "tools/tavlynctl/text_dialect.h"

namespace tavlyn::ctl {

// As GetProduct returns them; a sum of them is a choice.
inline constexpr std::uint32_t kReaders = 1;
inline constexpr std::uint32_t kMagstripes = 2;
inline constexpr std::uint32_t kSensors = 4;
inline constexpr std::uint32_t kAllProducts = kReaders | kMagstripes | kSensors;

// "card reader".
const char* ProductName(std::uint32_t product);

// Why there is no such device: searches for one of another product to say so.
Failure NotFound(const Link& link, std::uint32_t products);

// What a session does with products before the wanted ones: devices are numbered over all of them.
enum class Others { kCounted, kLeft };

class Session {
 public:
  // Searches one product after the other until one is found: the library's table never mixes them.
  explicit Session(const Link& link, std::uint32_t products = kReaders, Others others = Others::kCounted);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Searches for the products after that, until one is found; what was found before is disconnected. False if
  // there is nothing more.
  bool Next() const;

  // Makes the device active, whatever product it takes a search for, and keeps other runs of the program from
  // it; throws Failure if there is none of that name, none at all, none that may be opened, only another
  // product, or if another run has it.
  void Select(const DeviceChoice& choice) const;
  // Keeps other runs from the active device, for a command that selects by itself; throws Failure if one has
  // it.
  void Hold() const;
  // Why the active device's configuration could not be read; empty if it was read. A connect stops at the
  // first device that fails; those after it are read here.
  [[nodiscard]] std::string ReadProblem() const;
  // Selects, and throws Failure also if the configuration was not read.
  void Use(const DeviceChoice& choice) const;
  // The same, but accepts a reader in text whose configuration was not read: its cards can be read.
  void UseForCards(const DeviceChoice& choice) const;
  // The same for commands that exist only over reports; throws Failure for a reader on any other link.
  void UseReports(const DeviceChoice& choice) const;
  // Throws Failure if the active device's configuration was not read and cannot be read now.
  void RequireRead() const;
  // From now on the command waits for events, not for the library.
  void Settle() { awaited_.reset(); }

 private:
  // For the active device, if the text dialect is wanted.
  [[nodiscard]] InText StateInText() const;
  [[nodiscard]] bool IsSearched(std::uint32_t product) const;
  void Search(std::uint32_t product) const;
  [[nodiscard]] bool MoreOnUsb() const;
  void Restart() const;
  void Choose(const DeviceChoice& choice) const;
  [[nodiscard]] bool SelectHere(const DeviceName& name) const;
  void SelectNamed(const DeviceName& name) const;
  void SelectFirst(const DeviceChoice& choice) const;
  [[nodiscard]] std::vector<std::string> Candidates() const;

  Link link_;
  std::uint32_t products_;
  Others others_;
  // A command has one session, which goes on searching when it selects.
  mutable std::optional<Awaited> awaited_;
  mutable std::size_t next_ = 0;  // of the products in their order
  mutable DeviceLocks locks_;
  mutable bool allRead_ = true;
  mutable std::vector<InText> inText_;  // empty if the dialect is not wanted
};

// Of any device.
inline constexpr int kHighestConfiguration = 10;
// Throws Failure if the active device has no configuration with that index.
void CheckConfiguration(int index);

// Throws Failure if the active device is not a plus reader.
void RequirePlusReader();
bool DeviceIsReader();

// Makes the record calls act on one configuration as long as the object lasts. The reader is not told and
// stays on its current configuration.
class SelectedConfiguration {
 public:
  explicit SelectedConfiguration(int index);
  ~SelectedConfiguration();
  SelectedConfiguration(const SelectedConfiguration&) = delete;
  SelectedConfiguration& operator=(const SelectedConfiguration&) = delete;

 private:
  std::uint8_t before_;
};

// Of the active device, over all products: readers first, then magnetic-stripe readers, then sensors.
int ActiveIndex();
// "card reader 0 (7A31:3BFA Orvantis, /dev/hidraw0)", "card reader 0 (COM3:)", for the active device.
std::string ActiveDeviceName();
std::string ActiveDevicePath();
const char* ActiveProductName();
// "error word 0x20000: a read of the configuration failed", for the active device.
std::string ErrorText();
// "the beeper of card reader 0 (…) failed, error word …"
Failure Failed(const std::string& what);
// "… could not be read from card reader 0 (…), error word …"
Failure NotTransferred(const std::string& what);
// "card reader 0 (…) has no BLE radio"
Failure Lacks(const std::string& what);

}  // namespace tavlyn::ctl
