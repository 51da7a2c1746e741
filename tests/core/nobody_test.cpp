// What each export returns when there is nobody to ask, because no device is active or only one of a kind
// that no family has. It then asks and changes nothing.
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "api.h"
#include "core/front/load.h"
#include "core/state.h"
#include "tests/support/answers.h"

namespace tavlyn::test {
namespace {

struct Answers {
  const char* withNoDevice;
  const char* ofNoFamily;
  const char* exports;
};

// All others are unsupported in both cases. "any" reports on the process or on the table of devices, which
// has not changed; "own" asks a device or stores something all the same.
const Answers kAnswers[] = {
    {"0", "0",
     "BeepNow CheckTamperedFile CheckTransparentMode ChkDelRemoval DisableTransparentMode "
     "DumpRawFeatureReports EnableTransparentMode Get64BytesInPackets GetActConfig GetActDev "
     "getActiveID_byte GetCardCount GetDevType GetMaxConfig GetModuleState GetMyIpAddress GetRawRepDataI "
     "LoadIniFile orv_GetDevType PlusBlockMove QuickReadSerialPort quickReadSerialPort_char "
     "ReadDevCfgFromSecureFile ReadSecureData ReadSerialPort readSerialPort_char Set64BytesInPackets "
     "SetActConfig SetCardAnalyzerControlState SetCardTypePriority SetComLinux SetMarkerFunction "
     "SetModuleState WriteSecureData WriteSerialPort"},
    {"null", "null",
     "GetCardAnalyzerData getESN InstalledHardware sorbaneGetTrackData sorbaneGetTrackFieldOffset "
     "SupportedHardware"},
    {"-1", "-1", "GetCardPriority GetCardType GetDevByLUID"},
    {"unsupported, signed", "unsupported, signed",
     "GetEnhanceSecurityFlag GetIdleParms GetObjRangeInfo GetSonarParms GetWalkAwayParms GetWalkUpParms "
     "HaltKBSends SetIdleParms SetSonarParms SetWalkAwayParms SetWalkUpParms"},
    {"1", "1", "SetConnectProduct SetIpPort WriteBLEDataToFile WriteBLEKeyToFile WriteDevCfgToSecureFile"},
    {"2", "2", "getLibraryVersion_Build"},
    {"5", "5", "GetCardAnalyzerStatus"},
    {"7", "7", "getLibraryVersion_Major"},
    {"9", "9", "getLibraryVersion_Minor"},
    {"92", "92", "GetRawPayload_index"},
    {"nothing", "nothing",
     "SetBaudRate SetEnhanceSecurityFlag SetSerialTimeouts SetUnsupportedProductErrorCode"},
    {"-1", "65535", "ReadBaudRate"},
    {"0", "any", "getDevName_char getPartNumberString_char SetActDev"},
    {"0", "own", "WriteEV1FileRefrence WriteSEKeyRefrence"},
    {"0", "unsupported", "ReadCfg WriteCfg"},
    {"0", "unsupported, signed", "GetFirmwareVersion"},
    {"65535", "own", "GetBeeperVolume GetBTLEConfiguration IsBTLEPresent"},
    {"any", "0", "getVidPidVendorName_char"},
    {"nothing", "own", "SendGetFWVersion"},
    {"null", "any", "GetFullFWVersion GetFWFilename getPartNumberString"},
    {"own", "0", "ComConnectPort"},
    {"unsupported", "0", "WriteBaudRate"},
    {"unsupported", "own", "GetDevName orv_GetDevName SetBeeperVolume SetBTLEConfiguration"},
    {"unsupported, signed", "any", "GetLastLibErr"},
    {"any", "any",
     "chkAddArrival_char chkDelRemoval_char GetDevCnt GetDID getLibraryVersion_Beta GetLUID GetProduct "
     "GetSN GetVidPidFilterCompare GetVidPidFilterMask GetVidPidVendorName IsCardTypeInList Ping "
     "readDevCfgFmFile_char SetComSrchRange SetDevTypeSrch SetRawPayload VirtualComSearchRange "
     "writeDevCfgToFile_char"},
    {"own", "own",
     "ComConnect FindXport GetBuildDate GetCopyrightInfo GetCPUInfo GetHIDGuid GetLibVersion "
     "GetPlatformType GetSerialNumber SetLUID sorbaneClearOverrun USBConnect usbConnect USBDisconnect"},
};

using Pair = std::pair<std::string, std::string>;

std::map<std::string, Pair, std::less<>> PairsByName() {
  std::map<std::string, Pair, std::less<>> cells;
  for (const Answers& answers : kAnswers) {
    std::istringstream names(answers.exports);
    for (std::string name; names >> name;) cells[name] = {answers.withNoDevice, answers.ofNoFamily};
  }
  return cells;
}

class Nobody : public AnswersBench {
 protected:
  static constexpr std::size_t kNumbersTried = 4;

  // After a reader with several configurations, the last of which is the active one.
  void Begin() {
    Unload();
    host.Reset();
    Load();
    Connected(sim::Reader::Plus(3));
    EXPECT_EQ(SetActConfig(2), 1U);
    SetUnsupportedProductErrorCode(kUnsupported);
  }

  void ExpectCell(const Export& exported, const std::string& cell, std::uint32_t word) {
    if (cell == "own") return;
    const std::optional<Outcome> told = ResultIn(cell);
    for (const Variant& variant : VariantsOf(exported, kNumbersTried)) {
      const Outcome outcome = AnswerOfIdle(exported, variant, word);
      EXPECT_TRUE(!told || outcome == *told)
          << TextOf(exported, variant) << " gave " << std::hex << outcome.value;
    }
  }

  // For each export, after the step that leaves nobody to ask.
  template <typename Leave>
  void ExpectAnswers(std::string Pair::*cell, std::uint32_t (*wordOf)(std::string_view), Leave leave) {
    EnterFolder();
    const auto cells = PairsByName();
    for (const Export& exported : Exports()) {
      Begin();
      leave();
      const auto row = cells.find(exported.name);
      ExpectCell(exported, row != cells.end() ? row->second.*cell : "unsupported", wordOf(exported.name));
    }
    EXPECT_TRUE(std::filesystem::is_empty(Folder()));
  }
};

TEST_F(Nobody, WithNoDevice) {
  ExpectAnswers(&Pair::first, WordOfNoDevice, [] { shared.DevCnt = 0; });
}

TEST_F(Nobody, OfAKindThatNoFamilyHas) {
  for (const std::uint32_t kind : {0U, 3U, 5U, 0xFFFFFFFFU}) {
    ExpectAnswers(&Pair::second, WordOfOtherProduct, [kind] { DevTable[0].ProductKind = kind; });
  }
}

}  // namespace
}  // namespace tavlyn::test
