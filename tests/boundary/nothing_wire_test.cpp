// A connect with nothing attached, and with libusb-0.1 as Debian ships it.
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "tests/boundary/wire.h"

namespace tavlyn::boundary {
namespace {

// Two sweeps over 254 addresses, with a pause of 2 ms for each.
constexpr int kDefaultPauses = 2 * 254 * 2;

class NothingAttached : public Wire {
 protected:
  void SetUp() override {
    Wire::SetUp();
    CALL(library_, SetConnectProduct)(7);
  }
};

TEST_F(NothingAttached, DefaultConnectTakesItsPausesAndNoMore) {
  const auto before = Slept();
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(0u, CALL(library_, USBConnect)(&did_)); }), kDefaultPauses);
  EXPECT_EQ(Slept() - before, Milliseconds(kDefaultPauses));
}

TEST_F(NothingAttached, DefaultConnectAsksNobody) {
  EXPECT_EQ(CALL(library_, USBConnect)(&did_), 0u);
  EXPECT_EQ(did_, kNotWritten);
  EXPECT_EQ(NewConnects(), 0);
  EXPECT_EQ(NewDatagrams(), 0);
  // Questions that must not be asked are counted where they would arrive.
  const Ip ip{127, 3, 2, 1};
  EXPECT_EQ(ConnectTo(ip, ClosedTcpPort(ip)), 0u);
  EXPECT_EQ(NewConnects(), 2);
  EXPECT_EQ(NewDatagrams(), 8);
}

// Debian's own, on a machine whose bus is empty or holds other devices.
class RealLibusb : public Wire {
 protected:
  static std::string File() {
    for (const char* folder : {"/usr/lib/" TAVLYN_MULTIARCH, "/usr/lib64"}) {
      const std::string file = std::string(folder) + "/libusb-0.1.so.4";
      if (std::filesystem::exists(file)) return std::filesystem::canonical(file).string();
    }
    return {};
  }
  static bool IsLoaded(const std::string& file) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
      if (line.ends_with(file)) return true;
    }
    return false;
  }
};

TEST_F(RealLibusb, LoadsAndFindsNothing) {
  const std::string file = File();
  if (file.empty()) GTEST_SKIP() << "libusb-0.1 is not installed";
  struct stat status {};
  ASSERT_EQ(stat(file.c_str(), &status), 0);
  if (status.st_uid != 0) GTEST_SKIP() << file << " does not belong to root as seen here, and is not trusted";
  PortDevice device(ports_, 3, line_);
  CALL(library_, SetDevTypeSrch)(1);
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(CALL(library_, USBConnect)(&did_), 1u) << "the reader on a port is still found";
    EXPECT_TRUE(IsLoaded(file));
    EXPECT_EQ(Name(), "COM3:");
    CALL(library_, USBDisconnect)();
  }
}

// A copy that anyone could have put there.
TEST_F(RealLibusb, UntrustedCopyIsNotLoaded) {
  const std::string file = File();
  if (file.empty()) GTEST_SKIP() << "libusb-0.1 is not installed";
  const std::string copy = ports_.PathOf(0);
  std::filesystem::copy_file(file, copy);
  std::filesystem::permissions(copy, std::filesystem::perms(0666));
  SetVariable("TAVLYNAPI_LIBUSB", copy.c_str());
  CALL(library_, SetDevTypeSrch)(1);
  EXPECT_EQ(CALL(library_, USBConnect)(&did_), 0u);
  EXPECT_FALSE(IsLoaded(copy));
  SetVariable("TAVLYNAPI_LIBUSB", nullptr);
}

}  // namespace
}  // namespace tavlyn::boundary
