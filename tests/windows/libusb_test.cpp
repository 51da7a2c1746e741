// The bulk driver's DLL: loaded from its one place, and only with a signature that verifies.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "platform/platform.h"
#include "platform/windows/system.h"
#include "tests/boundary/imports_windows.h"

// They need windows.h, which they do not include.
#include <softpub.h>
#include <wintrust.h>

namespace tavlyn::platform {
namespace {

constexpr char kPlace[] = "C:\\Windows\\System32\\libusb0.dll";
constexpr HidIds kReader{0x171B, 0x1004};

decltype(&GetProcAddress) systemAddress = nullptr;
decltype(&WinVerifyTrust) systemVerify = nullptr;
int verified = 0;
int onTheNetwork = 0;

// Counts the calls that do not ask it to stay off the network.
LONG WINAPI NotedVerify(HWND window, GUID* action, void* about) {
  const auto* data = static_cast<const WINTRUST_DATA*>(about);
  ++verified;
  if ((data->dwProvFlags & WTD_CACHE_ONLY_URL_RETRIEVAL) == 0) ++onTheNetwork;
  return systemVerify(window, action, about);
}

FARPROC WINAPI NotedAddress(HMODULE library, const char* name) {
  FARPROC found = systemAddress(library, name);
  if (std::strcmp(name, "WinVerifyTrust") != 0) return found;
  systemVerify = reinterpret_cast<decltype(systemVerify)>(reinterpret_cast<void*>(found));
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(NotedVerify));
}

class LibusbTest : public testing::Test {
 protected:
  // The verifier is looked up once.
  static void SetUpTestSuite() {
    systemAddress = GetProcAddress;
    ASSERT_TRUE(boundary::Replace(GetModuleHandleA(nullptr),
                                  {"GetProcAddress", reinterpret_cast<void*>(NotedAddress)}));
  }
  static void TearDownTestSuite() {
    boundary::Replace(GetModuleHandleA(nullptr), {"GetProcAddress", reinterpret_cast<void*>(systemAddress)});
  }

  void SetUp() override {
    verified = onTheNetwork = 0;
    ASSERT_EQ(GetModuleHandleA("libusb0.dll"), nullptr);
  }
  void TearDown() override {
    DeleteFileA(kPlace);
    EXPECT_EQ(onTheNetwork, 0);
  }

  void ExpectRefused() {
    EXPECT_FALSE(usb_.Load());
    EXPECT_EQ(GetModuleHandleA("libusb0.dll"), nullptr);
    EXPECT_EQ(usb_.FindBusses(), -1);
    EXPECT_EQ(usb_.FindDevices(), -1);
    EXPECT_EQ(usb_.Open(kReader), kNoHandle);
    EXPECT_EQ(usb_.ClaimInterface(1, 0), -1);
    EXPECT_NE(verified, 0);
  }

  void UseSigned();
  void CheckCalls();
  void OpenMany();

  Libusb& usb_ = TheHost().usb;
};

TEST_F(LibusbTest, AbsentFileIsRefused) { ExpectRefused(); }

// Where a search by name would look.
TEST_F(LibusbTest, FileInTheCurrentFolderIsRefused) {
  char before[MAX_PATH];
  char own[MAX_PATH];
  ASSERT_NE(GetCurrentDirectoryA(sizeof before, before), 0u);
  ASSERT_NE(GetTempPathA(sizeof own, own), 0u);
  ASSERT_TRUE(SetCurrentDirectoryA(own));
  EXPECT_TRUE(CopyFileA(TAVLYN_SIGNED, "libusb0.dll", FALSE));
  ExpectRefused();
  DeleteFileA("libusb0.dll");
  SetCurrentDirectoryA(before);
}

TEST_F(LibusbTest, UnsignedFileIsRefused) {
  ASSERT_TRUE(CopyFileA(TAVLYN_UNSIGNED, kPlace, FALSE));
  ExpectRefused();
}

TEST_F(LibusbTest, TextFileIsRefused) {
  std::ofstream(kPlace) << "not a library";
  ExpectRefused();
}

TEST_F(LibusbTest, SignedFileThatWasChangedIsRefused) {
  std::ifstream file(TAVLYN_SIGNED, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(file), {}};
  const std::size_t text = bytes.find("cannot be run in DOS mode");
  ASSERT_NE(std::string::npos, text);
  bytes[text] = 'C';
  std::ofstream(kPlace, std::ios::binary) << bytes;
  ExpectRefused();
}

TEST_F(LibusbTest, SignedFileThatDoesNotLoadIsRefused) {
  ExpectRefused();  // and the verifier has been looked up
  ASSERT_TRUE(CopyFileA(TAVLYN_SIGNED, kPlace, FALSE));
  const boundary::Redirected refused("kernel32", "LoadLibraryExA",
                                     boundary::ConstantAnswer<0>(LoadLibraryExA));
  EXPECT_TRUE(refused.Done());
  ExpectRefused();
}

void LibusbTest::UseSigned() {
  ASSERT_TRUE(CopyFileA(TAVLYN_SIGNED, kPlace, FALSE));
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
  std::array<std::uint8_t, 8> got{};
  EXPECT_EQ(usb_.BulkRead(device, 0x83, got, 250), 3);
  EXPECT_EQ(std::memcmp(sent.data(), got.data(), sent.size()), 0);
  EXPECT_EQ(usb_.ReleaseInterface(device, 0), 0);
  usb_.Close(device);
  usb_.Close(device);
  EXPECT_EQ(usb_.BulkRead(device, 0x83, got, 250), -1);
  CheckCalls();
}

void LibusbTest::CheckCalls() {
  const auto calls = reinterpret_cast<const char* (*)()>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("libusb0.dll"), "standin_calls")));
  ASSERT_NE(calls, nullptr);
  EXPECT_STREQ(calls(),
               "init;busy;open;claim 0;strerror;configuration 1;write 3 250;read 131 250;release 0;close;");
  ASSERT_TRUE(usb_.Load());
  EXPECT_STREQ(std::strstr(calls(), "close;") + std::strlen("close;"), "init;");
}

void LibusbTest::OpenMany() {
  std::set<Handle> open;
  for (int at = 0; at < 100; ++at) open.insert(usb_.Open(kReader));
  EXPECT_EQ(open.size(), 100U);
  EXPECT_EQ(open.count(kNoHandle), 0U);
  for (const Handle device : open) usb_.Close(device);
}

// In a process of its own, because what is bound stays bound.
TEST_F(LibusbTest, SignedFileIsLoadedAndItsReaderOpens) {
  const auto use = [this] {
    UseSigned();
    OpenMany();
    std::exit(HasFailure() ? 1 : 0);
  };
  EXPECT_EXIT(use(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace tavlyn::platform
