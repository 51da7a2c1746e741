#include <fcntl.h>
#include <poll.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "sim/carriers/pseudo_terminal.h"
#include "tests/boundary/bare_port.h"
#include "tests/boundary/far_end.h"
#include "tests/boundary/library.h"

namespace tavlyn::boundary {

namespace fs = std::filesystem;

const std::uint16_t kDevicePort = 3;

namespace {

// Runs before the program has any threads.
[[maybe_unused]] const bool inOwnNetwork = [] {
  const bool left = LeaveForOwnNetwork();
  if (!left) std::fputs("no network of its own: fixed ports may meet another run's\n", stderr);
  return left;
}();

}  // namespace

int OpenHandles() {
  return static_cast<int>(std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

void Pause(Milliseconds length) { poll(nullptr, 0, static_cast<int>(length.count())); }

PortFolder::PortFolder() {
  std::string name = "/tmp/tavlyn-ports-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for ports");
  folder_ = name;
  fs::permissions(folder_, fs::perms(0755));
  SetVariable("TAVLYNAPI_PORT_DIR", folder_.c_str());
}

PortFolder::~PortFolder() {
  SetVariable("TAVLYNAPI_PORT_DIR", nullptr);
  fs::remove_all(folder_);
}

std::string PortFolder::PathOf(int number) const { return folder_ + "/com" + std::to_string(number); }

void PortFolder::AddFile(int number, const std::string& target) {
  fs::remove(PathOf(number));
  fs::create_symlink(target, PathOf(number));
}

PortDevice::PortDevice(PortFolder& folder, int number, sim::ByteDevice& device, sim::LineManner manner)
    : port_(std::make_unique<sim::PseudoTerminal>(device, folder.PathOf(number))),
      kept_(std::make_shared<Descriptor>(
          Checked(open(folder.PathOf(number).c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC), "port"))),
      attended_({port_.get()}) {
  With([&] { port_->Manner() = manner; });
}

}  // namespace tavlyn::boundary
