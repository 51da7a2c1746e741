// Every export that the public headers declare, called with plain, null and extreme arguments in several
// situations: none does harm, and none takes the lock or leaves an error word that it should not.
#include "tests/support/every_export.h"

#include <map>
#include <set>
#include <string>
#include <string_view>

#include "core/state.h"
#include "tests/support/situations.h"

namespace tavlyn::test {
namespace {

class EveryExport : public InSituation, public ::testing::WithParamInterface<Situation> {};

TEST_P(EveryExport, DoesNoHarm) {
  EnterFolder();
  for (const Export& exported : Exports()) {
    Begin(GetParam());
    for (const Variant& variant : VariantsOf(exported, kNumberCount)) {
      SCOPED_TRACE(TextOf(exported, variant));
      CallWith(exported, variant);
      ForgetTraffic();
      ASSERT_EQ(host.mutex.Depth(), 0);
      ASSERT_EQ(host.Misuses(), Lines{});
      ASSERT_GE(GetActDev(), 0);
      ASSERT_LT(GetActDev(), kTableEntries);
    }
  }
}

// Those that take the lock, and those that use them: saves and loads of files, and the reset of a sonar
// sensor. All others run unlocked.
const std::set<std::string_view> kLocking = {"BeepNow",
                                             "ComConnect",
                                             "ComConnectPort",
                                             "GetActiveID",
                                             "GetActiveID32",
                                             "ReadCfg",
                                             "ReadDevCfgFmFile",
                                             "ReadDevCfgFromSecureFile",
                                             "ResetFactoryDflts",
                                             "USBConnect",
                                             "USBDisconnect",
                                             "WriteCfg",
                                             "WriteDevCfgToFile",
                                             "WriteDevCfgToSecureFile",
                                             "getActiveID",
                                             "getActiveID32",
                                             "readDevCfgFmFile_char",
                                             "usbConnect",
                                             "writeDevCfgToFile_char"};

TEST_P(EveryExport, TakesTheLockOnlyIfItIsOneOfAFew) {
  EnterFolder();
  for (const Export& exported : Exports()) {
    if (kLocking.contains(exported.name)) continue;
    Begin(GetParam());
    ForgetTraffic();
    for (const Variant& variant : VariantsOf(exported, 3)) CallWith(exported, variant);
    for (const std::string& each : host.transcript.Lines()) {
      EXPECT_FALSE(each.starts_with("mutex")) << exported.name << ": " << each;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Situations, EveryExport, ::testing::ValuesIn(kSituations),
                         [](const auto& instance) { return instance.param.name; });

using WithNoDevice = Bench;

// They use entry 0 unchecked.
const std::map<std::string_view, std::uint32_t> kLeftWords = {
    {"GetBuildDate", 0x20202},
    {"GetCPUInfo", 0x20202},
    {"GetCopyrightInfo", 0x20202},
    {"GetPlatformType", 0x20202},
    {"GetSerialNumber", 0x20202},
    {"LoadIniFile", 0x91000007},
    {"ReadDevCfgFromSecureFile", 0x91000007},
    {"WriteBLEDataToReader", 0x91000007},
    {"WriteBLEKeyToReader", 0x91000007},
    {"sorbaneClearOverrun", 0x202},
};

TEST_F(WithNoDevice, OnlyAFewExportsLeaveAnErrorWord) {
  constexpr std::uint32_t kBefore = 7;
  EnterFolder();
  for (const Export& exported : Exports()) {
    const auto left = kLeftWords.find(exported.name);
    for (const Variant& variant : VariantsOf(exported, 3)) {
      Reload();
      DevTable[0].LastLibErr = kBefore;
      CallWith(exported, variant);
      EXPECT_EQ(DevTable[0].LastLibErr, left != kLeftWords.end() ? left->second : kBefore)
          << TextOf(exported, variant);
    }
  }
}

}  // namespace
}  // namespace tavlyn::test
