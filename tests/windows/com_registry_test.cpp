// The registry's device tree, with this test's own devices.
#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"
#include "platform/windows/system.h"
#include "tests/boundary/imports_windows.h"

namespace tavlyn::platform {
namespace {

using std::string_literals::operator""s;

const std::string kUsb = "SYSTEM\\CurrentControlSet\\Enum\\USB\\";
const std::string kPcmcia = "SYSTEM\\CurrentControlSet\\Enum\\PCMCIA\\";
const std::string kPort = kUsb + "VID_7A31&PID_2301";
const std::string kParameters = "\\Device Parameters";

// The byte calls do not accept paths as long as some of these.
std::wstring Wide(const std::string& text) { return {text.begin(), text.end()}; }

class ComRegistryTest : public testing::Test {
 protected:
  void TearDown() override {
    for (const std::string& device : devices_) RegDeleteTreeW(HKEY_LOCAL_MACHINE, Wide(device).c_str());
  }

  // Everything below the device's own key goes away with the test.
  void Put(const std::string& device, const std::string& below, const std::string& name, DWORD type,
           std::string_view data) {
    devices_.insert(device);
    HKEY key = nullptr;
    const std::wstring path = Wide(device + below);
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                                             nullptr, &key, nullptr));
    EXPECT_EQ(ERROR_SUCCESS,
              RegSetValueExA(key, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(data.data()),
                             static_cast<DWORD>(data.size())));
    RegCloseKey(key);
  }

  void PutText(const std::string& device, const std::string& below, const std::string& name,
               const std::string& text) {
    Put(device, below, name, REG_SZ, {text.c_str(), text.size() + 1});
  }

  // Another instance of the port, with that text as its name.
  void PutPort(const std::string& text) {
    PutText(kPort, "\\SER" + std::to_string(++instances_) + kParameters, "PortName", text);
  }

  static std::vector<int> Found() {
    std::array<std::uint8_t, 257> flags{};
    TheHost().ports.FindVirtual(flags);
    std::vector<int> found;
    for (std::size_t i = 0; i < flags.size(); ++i) {
      if (flags[i] != 0) found.push_back(static_cast<int>(i));
    }
    return found;
  }

  std::set<std::string> devices_;
  int instances_ = 0;
};

TEST_F(ComRegistryTest, NothingThereIsNothingFound) { EXPECT_EQ(std::vector<int>(), Found()); }

TEST_F(ComRegistryTest, PortsOfTheFamilyAreFoundInAnyCase) {
  PutText(kPort, "\\A" + kParameters, "PortName", "COM12");
  PutText(kUsb + "vid_7a31&pid_23ff&mi_00", "\\B" + kParameters, "pORTnAME", "COM256");
  PutText(kUsb + "VID_7A31&PID_3BFA", "\\C" + kParameters, "PortName", "COM20");
  PutText(kUsb + "VID_7A32&PID_2301", "\\D" + kParameters, "PortName", "COM21");
  EXPECT_EQ(Found(), (std::vector{12, 256}));
}

TEST_F(ComRegistryTest, EveryCardIsFound) {
  PutText(kPcmcia + "SOME_CARD-1234", "\\1" + kParameters, "PortName", "COM30");
  EXPECT_EQ(Found(), std::vector{30});
}

TEST_F(ComRegistryTest, OnlyNumbersOfPortsCount) {
  for (const char* text : {"COM0", "COM257", "COM300", "COM-7", "COM", "COMx", "com8", "LPT2", "", "7",
                           "COM99999999999", "COM4294967300"}) {
    PutPort(text);
  }
  EXPECT_EQ(std::vector<int>(), Found());
  PutPort("COM1");
  PutPort("COM14 (spare)");
  EXPECT_EQ(Found(), (std::vector{1, 14}));
}

TEST_F(ComRegistryTest, TextLongerThanItsBufferIsPassedOver) {
  PutPort("COM5" + std::string(27, ' '));
  PutPort("COM6" + std::string(28, ' '));
  EXPECT_EQ(Found(), std::vector{5});
}

TEST_F(ComRegistryTest, ValuesOfOtherKindsAreReadAsTheyLie) {
  const std::string instance = "\\A" + kParameters;
  Put(kPort, instance, "PortName", REG_BINARY, "COM15");
  Put(kPort, "\\B" + kParameters, "PortName", REG_DWORD, "\x07\0\0\0"s);
  Put(kPort, "\\C" + kParameters, "PortName", REG_MULTI_SZ, "COM16\0COM17\0"s);
  Put(kPort, "\\D" + kParameters, "PortName", REG_NONE, "");
  PutText(kPort, instance, "", "COM18");
  PutText(kPort, instance, "PortNames", "COM19");
  PutText(kPort, instance, "FriendlyName", "COM20");
  PutText(kPort, instance, std::string(900, 'n'), "COM21");
  EXPECT_EQ(Found(), (std::vector{15, 16}));
}

TEST_F(ComRegistryTest, OnlyParametersAreLookedInto) {
  PutText(kPort, "", "PortName", "COM40");
  PutText(kPort, "\\A", "PortName", "COM41");
  PutText(kPort, "\\B\\Other Parameters", "PortName", "COM42");
  PutText(kPort, "\\C" + kParameters + "\\Deeper" + kParameters, "PortName", "COM43");
  EXPECT_EQ(Found(), (std::vector{40, 43}));
}

TEST_F(ComRegistryTest, WhatCannotBeListedIsPassedOver) {
  PutPort("COM12");
  const struct {
    const char* name;
    void* refusal;
  } kCalls[] = {
      {"RegQueryInfoKeyA", boundary::ConstantAnswer<ERROR_ACCESS_DENIED>(RegQueryInfoKeyA)},
      {"RegEnumKeyExA", boundary::ConstantAnswer<ERROR_ACCESS_DENIED>(RegEnumKeyExA)},
      {"RegEnumValueA", boundary::ConstantAnswer<ERROR_ACCESS_DENIED>(RegEnumValueA)},
  };
  for (const auto& call : kCalls) {
    const boundary::Redirected refused("advapi32", call.name, call.refusal);
    EXPECT_TRUE(refused.Done() && Found().empty()) << call.name;
  }
  EXPECT_EQ(Found(), std::vector{12});
}

// Names that are cut to their buffer must not make the search loop.
TEST_F(ComRegistryTest, LongNamesComeToAnEnd) {
  const std::size_t room = 256 - kPort.size() - 1 - kParameters.size();
  const std::string longName = std::string(1, '\\').append(room, 'L');
  PutText(kPort, longName + kParameters + longName + kParameters, "PortName", "COM50");
  PutText(kPort, longName + kParameters, "PortName", "COM51");
  PutText(kUsb + "VID_7A31&PID_2302" + std::string(230, 'x'), "\\A" + kParameters, "PortName", "COM52");
  EXPECT_EQ(Found(), std::vector{51});
}

}  // namespace
}  // namespace tavlyn::platform
