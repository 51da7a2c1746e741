// Which COM numbers count as the maker's virtual ports and as PCMCIA cards on Linux, with a made-up sysfs.
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "tests/boundary/far_end.h"
#include "tests/boundary/own_root.h"
#include "tests/boundary/variable.h"

namespace tavlyn::boundary {
namespace {

namespace fs = std::filesystem;

using Numbers = std::vector<int>;

class HostVirtualPorts : public testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(root_.Of("sys/bus/pcmcia"));
    fs::create_directories(root_.Of("sys/bus/usb"));
  }

  // COM n is the node of that name, with its device at that place in the device tree.
  void AddPort(int number, const std::string& node, const std::string& device) {
    AddNode(root_.Of(node), device);
    ports_.AddFile(number, root_.Of(node).string());
  }
  void AddNode(const fs::path& node, const std::string& device) {
    fs::create_directories(node.parent_path());
    std::ofstream(node) << "";
    fs::create_directories(Device(device));
    const fs::path of = root_.Of("sys/class/tty") / node.filename();
    fs::create_directories(of);
    fs::create_directory_symlink(Device(device), of / "device");
  }
  void Identify(const std::string& device, const std::string& vendor, const std::string& product) {
    fs::create_directories(Device(device));
    std::ofstream(Device(device) / "idVendor") << vendor << '\n';
    std::ofstream(Device(device) / "idProduct") << product << '\n';
  }
  void PutOnBus(const std::string& device, const std::string& bus) {
    fs::create_directory_symlink(root_.Of("sys/bus") / bus, Device(device) / "subsystem");
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
  [[nodiscard]] fs::path Device(const std::string& device) const { return root_.Of("sys/devices") / device; }

 protected:
  PortFolder ports_;
  OwnRoot root_;
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

TEST_F(HostVirtualPorts, HalfAnIdentityIsNone) {
  AddPort(5, "ttyACM5", "usb1/1-5/1-5:1.0");
  Identify("usb1/1-5", "7a31", "2301");
  fs::remove(root_.Of("sys/devices/usb1/1-5/idProduct"));
  Identify("usb1", "7a31", "2302");
  EXPECT_EQ(Found(), Numbers{5}) << "the hub decides";
}

TEST_F(HostVirtualPorts, OnlyNumbersUpTo256ArePorts) {
  Identify("usb1/1-1", "7a31", "2301");
  for (const int number : {0, 256, 257, 65536 + 4})
    AddPort(number, "tty" + std::to_string(number), "usb1/1-1");
  for (const char* name : {"com", "comma", "Com7", "lpt7"}) {
    fs::create_symlink(root_.Of("tty256"), fs::path(ports_.PathOf(7)).replace_filename(name));
  }
  EXPECT_EQ(Found(), Numbers{256});
}

TEST_F(HostVirtualPorts, AFolderThatCannotBeListedIsTriedNameByName) {
  if (getuid() != 0) GTEST_SKIP() << "only root can become someone else";
  AddPort(9, "ttyACM9", "usb1/1-9/1-9:1.0");
  Identify("usb1/1-9", "7a31", "2301");
  fs::permissions(root_.Of(""), fs::perms(0755));
  fs::permissions(fs::path(ports_.PathOf(9)).parent_path(), fs::perms(0711));
  constexpr uid_t kAnyUser = 65534;
  ASSERT_EQ(seteuid(kAnyUser), 0);
  const Numbers found = Found();
  ASSERT_EQ(seteuid(0), 0);
  EXPECT_EQ(found, Numbers{9});
}

TEST_F(HostVirtualPorts, WithoutAFolderOfItsOwnTheSystemsNodesArePorts) {
  Identify("usb1/1-1", "7a31", "2301");
  AddNode(root_.Of("dev/ttyS0"), "usb1/1-1");
  AddNode(root_.Of("dev/ttyS4"), "usb1/1-1");
  AddNode(root_.Of("dev/ttyS255"), "usb1/1-1");
  AddNode(root_.Of("dev/ttyS256"), "usb1/1-1");
  AddNode(root_.Of("dev/ttyACM6"), "usb1/1-1");
  const Variable none("TAVLYNAPI_PORT_DIR", nullptr);
  EXPECT_EQ(Found(), (Numbers{1, 5, 256}));
  fs::create_directories(root_.Of("dev/tavlyn"));
  fs::create_symlink(root_.Of("dev/ttyACM6"), root_.Of("dev/tavlyn/com7"));
  EXPECT_EQ(Found(), (Numbers{1, 5, 7, 256}));
  // A node of the library's own comes before the system's.
  AddNode(root_.Of("dev/ttyUSB1"), "platform/serial8250");
  fs::create_symlink(root_.Of("dev/ttyUSB1"), root_.Of("dev/tavlyn/com5"));
  EXPECT_EQ(Found(), (Numbers{1, 7, 256}));
}

}  // namespace
}  // namespace tavlyn::boundary
