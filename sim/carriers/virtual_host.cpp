#include "sim/carriers/virtual_host.h"

#include <filesystem>

namespace tavlyn::sim {

void VirtualMutex::Note(const char* what) {
  Event event{EventKind::kMutex};
  event.text = what;
  transcript_.Add(event);
}

void VirtualMutex::Reset() {
  while (depth_ > 0) {
    --depth_;
    mutex_.unlock();
  }
  exists_ = false;
  misuses_.clear();
  onEdge = nullptr;
}

void VirtualMutex::Create() {
  if (exists_) misuses_.emplace_back("a mutex created twice");
  exists_ = true;
  Note("create");
}

void VirtualMutex::Lock() {
  mutex_.lock();
  if (!exists_) misuses_.emplace_back("a lock taken without a mutex");
  ++depth_;
  Note("lock");
  if (depth_ == 1 && onEdge) onEdge();
}

void VirtualMutex::Unlock() {
  if (depth_ == 0) {
    misuses_.emplace_back("a lock given back that was not held");
    return;
  }
  if (depth_ == 1 && onEdge) onEdge();
  --depth_;
  Note("unlock");
  mutex_.unlock();
}

void VirtualMutex::Close() {
  if (!exists_) misuses_.emplace_back("a mutex closed that does not exist");
  exists_ = false;
  Note("close");
}

void VirtualPlaces::Reset() {
  environment.clear();
  traceFile.clear();
  currentFolder.reset();
}

platform::Path VirtualPlaces::CurrentFolder() {
  if (currentFolder) return platform::Path("%s", currentFolder->c_str());
  std::error_code failure;
  const auto folder = std::filesystem::current_path(failure);
  return failure ? platform::Path() : platform::Path("%s", (folder / "").string().c_str());
}

VirtualHost& VirtualHost::Instance() {
  static VirtualHost host;
  return host;
}

void VirtualHost::Reset() {
  clock.Reset();
  mutex.Reset();
  hid.Reset();
  sockets.Reset();
  ports.Reset();
  usb.Reset();
  places.Reset();
  transcript.Clear();
}

std::vector<std::string> VirtualHost::Misuses() const {
  std::vector<std::string> all = hid.Misuses();
  all.insert(all.end(), mutex.Misuses().begin(), mutex.Misuses().end());
  return all;
}

}  // namespace tavlyn::sim
