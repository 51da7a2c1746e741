// libusb-0.1 on Linux: which file is trusted, and what becomes of its devices.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "platform/linux/trusted_file.h"
#include "platform/platform.h"
#include "tests/boundary/missing_name.h"
#include "tests/boundary/own_root.h"
#include "tests/boundary/scratch_folder.h"
#include "tests/boundary/variable.h"

namespace tavlyn::boundary {
namespace {

namespace fs = std::filesystem;

using platform::Handle;
using platform::kNoHandle;

constexpr platform::HidIds kReader{0x171B, 0x1004};
constexpr uid_t kNobody = 65534;

// A folder of root's own with a copy of the stand-in, which the variable names.
class HostLibusb : public testing::Test {
 protected:
  void SetUp() override {
    if (getuid() != 0) GTEST_SKIP() << "only root can make a file that is trusted";
    fs::permissions(folder_, fs::perms(0755));
    file_ = folder_ / "libusb-0.1.so.4";
    fs::copy_file(TAVLYN_STANDIN_BULK, file_);
    fs::permissions(file_, fs::perms(0644));
    SetVariable("TAVLYNAPI_LIBUSB", file_.c_str());
  }
  void TearDown() override { SetVariable("TAVLYNAPI_LIBUSB", nullptr); }

  static bool IsLoaded(const fs::path& file) {
    void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (library != nullptr) dlclose(library);
    return library != nullptr;
  }
  void ExpectRefused(int line = __builtin_LINE()) {
    EXPECT_FALSE(usb_.Load()) << "from line " << line;
    EXPECT_FALSE(IsLoaded(file_)) << "from line " << line;
  }

  const ScratchFolder own_;
  const fs::path& folder_ = own_.Path();
  fs::path file_;
  platform::Libusb& usb_ = platform::TheHost().usb;
};

TEST_F(HostLibusb, OnlyRootMayWriteTheFile) {
  for (const unsigned mode : {0664U, 0646U, 0666U}) {
    fs::permissions(file_, fs::perms(mode));
    ExpectRefused();
  }
  fs::permissions(file_, fs::perms(0644));
  ASSERT_EQ(chown(file_.c_str(), kNobody, 0), 0);
  ExpectRefused();
}

TEST_F(HostLibusb, OnlyRootMayWriteTheFolder) {
  for (const unsigned mode : {0775U, 0757U, 01777U}) {
    fs::permissions(folder_, fs::perms(mode));
    ExpectRefused();
  }
  fs::permissions(folder_, fs::perms(0755));
  ASSERT_EQ(chown(folder_.c_str(), kNobody, 0), 0);
  ExpectRefused();
}

TEST_F(HostLibusb, WhatIsNoFileIsRefused) {
  fs::remove(file_);
  ExpectRefused();
  fs::create_directory(file_);
  ExpectRefused();
  SetVariable("TAVLYNAPI_LIBUSB", "");
  ExpectRefused();
}

// What counts is the file that would be loaded, not the link to it.
TEST_F(HostLibusb, LinkIsFollowedBeforeTheTest) {
  const fs::path link = folder_ / "writable" / "libusb.so";
  fs::create_directory(link.parent_path());
  fs::permissions(link.parent_path(), fs::perms(0777));
  fs::rename(file_, link);
  fs::create_symlink(link, file_);
  ExpectRefused();
  EXPECT_FALSE(IsLoaded(link));
  fs::remove(file_);
  fs::rename(link, file_);
  fs::create_symlink(file_, link);
  SetVariable("TAVLYNAPI_LIBUSB", link.c_str());
  EXPECT_TRUE(usb_.Load());
  EXPECT_TRUE(IsLoaded(file_));
}

// Whoever may write to any of them can replace what is below it with another folder and file.
TEST_F(HostLibusb, OnlyRootMayWriteTheFoldersAbove) {
  const fs::path inner = folder_ / "above" / "inner";
  fs::create_directories(inner);
  fs::rename(file_, inner / "libusb.so");
  file_ = inner / "libusb.so";
  SetVariable("TAVLYNAPI_LIBUSB", file_.c_str());
  for (const fs::path& above : {inner.parent_path(), folder_}) {
    for (const unsigned mode : {0775U, 0757U, 0777U}) {
      fs::permissions(above, fs::perms(mode));
      ExpectRefused();
    }
    fs::permissions(above, fs::perms(0755));
    ASSERT_EQ(chown(above.c_str(), kNobody, 0), 0);
    ExpectRefused();
    ASSERT_EQ(chown(above.c_str(), 0, 0), 0);
  }
  // Like the system's folder for temporary files, which this one is in.
  fs::permissions(inner.parent_path(), fs::perms(01777));
  EXPECT_TRUE(usb_.Load());
}

// Whatever its mode says about who may write it.
TEST_F(HostLibusb, TheOwnerOfASharedFolderMayExchangeWhatIsInIt) {
  const fs::path inner = folder_ / "inner";
  fs::create_directory(inner);
  fs::rename(file_, inner / "libusb.so");
  file_ = inner / "libusb.so";
  SetVariable("TAVLYNAPI_LIBUSB", file_.c_str());
  fs::permissions(folder_, fs::perms(01777));
  ASSERT_EQ(chown(folder_.c_str(), kNobody, 0), 0);
  ExpectRefused();
}

// It may be gone by the time that it is tested.
TEST(TrustedFile, IsThereByAWholePath) {
  const auto isTrusted = [](const char* path) { return platform::IsTrustedFile(platform::Path("%s", path)); };
  EXPECT_FALSE(isTrusted(""));
  EXPECT_FALSE(isTrusted("libusb-0.1.so.4"));
  EXPECT_FALSE(isTrusted("/there/is/no/such/file"));
  EXPECT_FALSE(isTrusted("/"));
}

TEST_F(HostLibusb, ATrustedFileThatIsNoLibraryIsNotLoaded) {
  std::ofstream(file_, std::ios::trunc) << "no library";
  ExpectRefused();
}

// In their order, as long as there is one.
TEST_F(HostLibusb, WithoutTheVariableTheSystemsFoldersAreSearched) {
  SetVariable("TAVLYNAPI_LIBUSB", nullptr);
  const OwnRoot root;
  ExpectRefused();
  for (const char* folder :
       {"lib", "usr/lib", "lib64", "usr/lib64", "lib/" TAVLYN_MULTIARCH, "usr/lib/" TAVLYN_MULTIARCH}) {
    fs::create_directories(root.Of(folder));
    const fs::path found = root.Of(folder) / "libusb-0.1.so.4";
    fs::copy_file(file_, found);
    EXPECT_TRUE(usb_.Load());
    EXPECT_TRUE(IsLoaded(found)) << folder;
  }
}

TEST_F(HostLibusb, EachFunctionThatIsMissingFailsAlone) {
  struct Missing {
    const char* name;
    bool opens;
    std::array<std::int32_t, 5> results;  // of claim, configuration, write, read, release
  };
  constexpr std::array<Missing, 8> kCases = {{{"usb_get_busses", false, {-1, -1, -1, -1, -1}},
                                              {"usb_open", false, {-1, -1, -1, -1, -1}},
                                              {"usb_claim_interface", true, {-1, 0, 1, 1, 0}},
                                              {"usb_set_configuration", true, {0, -1, 1, 1, 0}},
                                              {"usb_bulk_write", true, {0, 0, -1, 0, 0}},
                                              {"usb_bulk_read", true, {0, 0, 1, -1, 0}},
                                              {"usb_release_interface", true, {0, 0, 1, 1, -1}},
                                              {"usb_close", true, {0, 0, 1, 1, 0}}}};
  for (const Missing& one : kCases) {
    const WithoutName file(TAVLYN_STANDIN_BULK, one.name);
    const Variable chosen("TAVLYNAPI_LIBUSB", file.Path().c_str());
    ASSERT_TRUE(usb_.Load()) << one.name;
    EXPECT_EQ(usb_.FindDevices(), 3);
    const Handle device = usb_.Open(kReader);
    EXPECT_EQ(device != kNoHandle, one.opens) << one.name;
    std::array<std::uint8_t, 1> byte{};
    const std::int32_t claimed = usb_.ClaimInterface(device, 0);
    const std::int32_t configured = usb_.SetConfiguration(device, 1);
    const std::int32_t written = usb_.BulkWrite(device, 3, byte, 250);
    const std::int32_t read = usb_.BulkRead(device, 0x83, byte, 250);
    const std::int32_t released = usb_.ReleaseInterface(device, 0);
    EXPECT_EQ((std::array{claimed, configured, written, read, released}), one.results) << one.name;
    usb_.Close(device);
    EXPECT_EQ(usb_.ClaimInterface(device, 0), -1) << one.name;
  }
}

TEST_F(HostLibusb, ClosedDevicesMoveNothing) {
  ASSERT_TRUE(usb_.Load());
  std::array<std::uint8_t, 1> byte{};
  EXPECT_EQ(usb_.ClaimInterface(kNoHandle, 0), -1);
  EXPECT_EQ(usb_.SetConfiguration(kNoHandle, 1), -1);
  EXPECT_EQ(usb_.BulkWrite(kNoHandle, 3, byte, 250), -1);
  EXPECT_EQ(usb_.BulkRead(kNoHandle, 0x83, byte, 250), -1);
  EXPECT_EQ(usb_.ReleaseInterface(kNoHandle, 0), -1);
}

TEST_F(HostLibusb, BothPartsOfAnIdentityCount) {
  ASSERT_TRUE(usb_.Load());
  EXPECT_EQ(usb_.FindDevices(), 3);
  EXPECT_EQ(usb_.Open({0x171C, 0x1004}), kNoHandle);
  EXPECT_EQ(usb_.Open({0x171B, 0x1006}), kNoHandle);
}

TEST_F(HostLibusb, NamesThatAreMissingFail) {
  Dl_info own{};
  ASSERT_NE(dladdr(dlsym(RTLD_DEFAULT, "getuid"), &own), 0);
  SetVariable("TAVLYNAPI_LIBUSB", own.dli_fname);
  ASSERT_TRUE(usb_.Load()) << own.dli_fname << " has none of them";
  EXPECT_EQ(usb_.FindBusses(), -1);
  EXPECT_EQ(usb_.FindDevices(), -1);
  EXPECT_EQ(usb_.Open(kReader), kNoHandle);
  EXPECT_EQ(usb_.ClaimInterface(1, 0), -1);
}

TEST_F(HostLibusb, ThereIsNoLimitOfOurOwn) {
  ASSERT_TRUE(usb_.Load());
  EXPECT_EQ(usb_.FindDevices(), 3);
  std::set<Handle> open;
  for (int at = 0; at < 100; ++at) open.insert(usb_.Open(kReader));
  EXPECT_EQ(open.size(), 100U);
  EXPECT_EQ(open.count(kNoHandle), 0U);
  for (const Handle device : open) {
    EXPECT_EQ(usb_.ClaimInterface(device, 0), 0);
    usb_.Close(device);
    EXPECT_EQ(usb_.ClaimInterface(device, 0), -1);
  }
}

TEST_F(HostLibusb, DeviceThatOpensOnALaterBusIsUsed) {
  ASSERT_TRUE(usb_.Load());
  EXPECT_EQ(usb_.FindBusses(), 2);
  EXPECT_EQ(usb_.FindDevices(), 3);
  EXPECT_EQ(usb_.Open({0x171B, 0x1005}), kNoHandle);
  const Handle device = usb_.Open(kReader);
  ASSERT_NE(device, kNoHandle);
  EXPECT_EQ(usb_.ClaimInterface(device, 0), 0);
  EXPECT_EQ(usb_.SetConfiguration(device, 1), 0);
  const std::array<std::uint8_t, 3> sent{0xFA, 0x04, 0xED};
  EXPECT_EQ(usb_.BulkWrite(device, 0x03, sent, 250), 3);
  std::array<std::uint8_t, 3> got{};
  EXPECT_EQ(usb_.BulkRead(device, 0x83, got, 250), 3);
  EXPECT_EQ(got, sent);
  EXPECT_EQ(usb_.ReleaseInterface(device, 0), 0);
  usb_.Close(device);
  usb_.Close(device);
  EXPECT_EQ(usb_.BulkRead(device, 0x83, got, 250), -1);
  const Handle again = usb_.Open(kReader);
  EXPECT_NE(device, again) << "a number is never given out twice";
  usb_.Close(again);

  void* library = dlopen(file_.c_str(), RTLD_NOW | RTLD_NOLOAD);
  ASSERT_NE(library, nullptr);
  const auto calls = reinterpret_cast<const char* (*)()>(dlsym(library, "standin_calls"));
  ASSERT_NE(calls, nullptr);
  EXPECT_STREQ(calls(),
               "init;busy;open;claim 0;strerror;configuration 1;write 3 250;read 131 250;release "
               "0;close;busy;open;close;");
  dlclose(library);
  // They stay bound even if the file can no longer be trusted.
  fs::permissions(file_, fs::perms(0666));
  EXPECT_FALSE(usb_.Load());
  EXPECT_EQ(usb_.FindBusses(), 2);
}

}  // namespace
}  // namespace tavlyn::boundary
