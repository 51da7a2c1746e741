// Two runs of tavlynctl do not use one device at the same time: the library cannot tell their exchanges
// apart. The locks are advisory; other programs do not know them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// What this run is called to others: "tavlynctl watch".
void SetLockHolder(const std::string& name);

// One device, by its path. It ends with the process too, however that ends.
class DeviceLock {
 public:
  explicit DeviceLock(std::string path) : path_(std::move(path)) {}
  ~DeviceLock();
  DeviceLock(const DeviceLock&) = delete;
  DeviceLock& operator=(const DeviceLock&) = delete;

  // Does not wait. True also where no lock can be had: it is no reason not to work.
  bool Try(const std::string& holder);
  [[nodiscard]] const std::string& Path() const { return path_; }
  // Who had it at the last try: "tavlynctl watch (process 1234)".
  [[nodiscard]] const std::string& Holder() const { return holder_; }

 private:
  // Of the system; Windows has no node to lock.
  bool TryFile(const std::string& holder);
  bool TryNode();
  void Release();

  const std::string path_;
  std::string holder_;
  std::string fileName_;
  std::intptr_t file_ = -1;
  std::intptr_t node_ = -1;
};

// Those of a session, or of a watch.
class DeviceLocks {
 public:
  // Does not wait: empty if it is held now, or was, otherwise who has it.
  std::string Try(const std::string& path);
  // Waits for a short command of another run. Throws Failure with the name of the device and its holder.
  void Take(const std::string& path, const std::string& device);
  // Lets go of the others.
  void Keep(const std::vector<std::string>& paths);

 private:
  std::vector<std::unique_ptr<DeviceLock>> held_;
};

Failure InUse(const std::string& device, const std::string& holder);

// The name of the file of a device's lock.
std::string LockFileName(const std::string& path);

}  // namespace tavlyn::ctl
