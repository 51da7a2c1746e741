// Which COM numbers count as the maker's virtual ports and as PCMCIA cards on Linux, with a made-up sysfs.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "tests/boundary/far_end.h"

namespace {

// Prepended to every path below /sys.
std::string sysRoot;

}  // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" char* realpath(const char* path, char* resolved) noexcept {
  static const auto real = reinterpret_cast<char* (*)(const char*, char*)>(dlsym(RTLD_NEXT, "realpath"));
  const std::string asked = path != nullptr ? path : "";
  return real(asked.starts_with("/sys/") ? (sysRoot + asked).c_str() : path, resolved);
}

namespace tavlyn::boundary {
namespace {

namespace fs = std::filesystem;

using Numbers = std::vector<int>;

class HostVirtualPorts : public testing::Test {
 protected:
  void SetUp() override {
    std::string folder = (fs::temp_directory_path() / "tavlyn-sys-XXXXXX").string();
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    root_ = folder;
    sysRoot = folder;
    fs::create_directories(root_ / "sys/bus/pcmcia");
    fs::create_directories(root_ / "sys/bus/usb");
  }
  void TearDown() override {
    sysRoot.clear();
    fs::remove_all(root_);
  }

  // COM n is the node of that name, with its device at that place in the device tree.
  void AddPort(int number, const std::string& node, const std::string& device) {
    std::ofstream(root_ / node) << "";
    ports_.AddFile(number, (root_ / node).string());
    fs::create_directories(Device(device));
    fs::create_directories(root_ / "sys/class/tty" / node);
    fs::create_directory_symlink(Device(device), root_ / "sys/class/tty" / node / "device");
  }
  void Identify(const std::string& device, const std::string& vendor, const std::string& product) {
    fs::create_directories(Device(device));
    std::ofstream(Device(device) / "idVendor") << vendor << '\n';
    std::ofstream(Device(device) / "idProduct") << product << '\n';
  }
  void PutOnBus(const std::string& device, const std::string& bus) {
    fs::create_directory_symlink(root_ / "sys/bus" / bus, Device(device) / "subsystem");
  }
  static Numbers Found() {
    std::array<std::uint8_t, 257> flags{};
    platform::TheHost().ports.FindVirtual(flags);
    Numbers numbers;
    for (std::size_t at = 0; at < flags.size(); ++at) {
      if (flags.at(at) != 0) numbers.push_back(static_cast<int>(at));
    }
    return numbers;
  }

 private:
  [[nodiscard]] fs::path Device(const std::string& device) const { return root_ / "sys/devices" / device; }

  PortFolder ports_;
  fs::path root_;
};

TEST_F(HostVirtualPorts, FamilyOfProductsCounts) {
  AddPort(1, "ttyACM0", "usb1/1-1/1-1:1.0");
  Identify("usb1/1-1", "7a31", "2300");
  AddPort(256, "ttyUSB0", "usb1/1-2/1-2:1.0/ttyUSB0");
  Identify("usb1/1-2", "7a31", "23ff");
  PutOnBus("usb1/1-2/1-2:1.0", "usb");
  AddPort(3, "ttyACM3", "usb1/1-3/1-3:1.0");
  Identify("usb1/1-3", "7a31", "3bfa");
  AddPort(4, "ttyACM4", "usb1/1-4/1-4:1.0");
  Identify("usb1/1-4", "7a32", "2301");
  AddPort(5, "ttyACM5", "usb1/1-5/1-5:1.0");
  Identify("usb1/1-5", "7a31", "1230");
  EXPECT_EQ(Found(), (Numbers{1, 256}));
}

// The hub that a device is connected to says nothing about the device.
TEST_F(HostVirtualPorts, NearestIdentityDecides) {
  Identify("usb1/1-1", "7a31", "2301");
  AddPort(2, "ttyACM0", "usb1/1-1/1-1.1/1-1.1:1.0");
  Identify("usb1/1-1/1-1.1", "0403", "6001");
  EXPECT_EQ(Found(), Numbers{});
}

TEST_F(HostVirtualPorts, EveryCardCounts) {
  AddPort(7, "ttyS4", "pci0/pcmcia_socket0/0.0");
  PutOnBus("pci0/pcmcia_socket0/0.0", "pcmcia");
  EXPECT_EQ(Found(), Numbers{7});
}

TEST_F(HostVirtualPorts, PortsWithoutADeviceAreNone) {
  AddPort(8, "ttyS0", "platform/serial8250");
  AddPort(9, "ttyACM9", "usb1/1-9/1-9:1.0");
  Identify("usb1/1-9", "not a number", "2301");
  EXPECT_EQ(Found(), Numbers{});
}

}  // namespace
}  // namespace tavlyn::boundary
