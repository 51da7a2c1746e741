// Where a key stands after each deed with keys, on each way to a reader: in the program's mirror if the
// mirror keeps it, and nowhere else in its memory; and never in the trace, nor does an ID.
#include <regex>

#include "tests/adversary/own_memory.h"
#include "tests/boundary/simulated_run.h"
#include "tests/files/saved_text.h"

namespace tavlyn::adversary {
namespace {

namespace fs = std::filesystem;
using boundary::Holds;

const std::string kUsb = "";
const std::string kMirror = "libtavlynapi.so." TAVLYN_VERSION " 32 1\n";

struct Case {
  const char* name;
  std::string devices;
  std::string words;
  std::string left;  // what stays in the program's memory
  bool sent = true;  // a reader that is spoken to in text is not sent its keys
};

void PrintTo(const Case& tested, std::ostream* out) { *out << tested.words; }

const std::vector<Case> kCases = {
    {"HashKeysByReports", kUsb, "usb hash-keys", kMirror},
    {"HashKeysOverAPort", "--device reader@com3", "com hash-keys", kMirror},
    {"HashKeysToABulkDevice", "--device reader@bulk", "usb hash-keys", kMirror},
    {"HashKeysInText", "--device reader@com3:ascii", "text hash-keys", kMirror, false},
    {"HashKeysBesideATemplate", kUsb, "usb template", kMirror},
    {"HashKeysAfterAnUnload", kUsb, "usb unload", ""},
    {"WrittenItem", kUsb, "usb write-item", ""},
    {"ReadItem", kUsb, "usb read-item", ""},
    {"References", kUsb, "usb references", ""},
    {"KeyFile", kUsb, "usb key-file keys", ""},
    {"LoadedBleKey", kUsb, "usb ble-load ble", ""},
    {"SavedBleKey", kUsb, "usb ble-save ble", ""},
};

class WithKeyFiles : public boundary::SimulatedRun {
 protected:
  void SetUp() override {
    for (const auto& [marker, number] : {std::pair(Marker::kFirst, ".1"), std::pair(Marker::kSecond, ".2")}) {
      const std::string items = "[Blob1]\r\nhdr=02 01 20 00\r\ndata=" + MarkerText(marker, 32, " ") + "\r\n";
      std::ofstream(folder_ / (std::string("keys") + number), std::ios::binary)
          << items << "[EOF]\r\niEndOfIniFile=" << boundary::Sum(items) << "\r\n";
      const std::string ble = BleText(MarkerText(marker, kMarkerBytes, "."));
      std::ofstream(folder_ / (std::string("ble") + number))
          << ble << "iEndOfHwgFile=" << boundary::Sum(ble) << "\n";
    }
  }

  static std::string BleText(std::string bytes) {
    for (std::size_t at = 23; at < bytes.size(); at += 24) bytes[at] = '\n';
    return test::kTitleLine + ("\n\n\n\n\n\n\nBEGIN sFldBleData2\n\n/ BleData2[] =\n" + bytes) +
           "\n\nEND sFldBleData2\n/--- iEndOfHwgFile\n";
  }
};

class KeysLeft : public WithKeyFiles, public testing::WithParamInterface<Case> {};

INSTANTIATE_TEST_SUITE_P(Deeds, KeysLeft, testing::ValuesIn(kCases),
                         [](const auto& one) { return std::string(one.param.name); });

// Everything that a trace may say.
const std::regex kTraced(
    "\\d{8} \\d\\d:\\d\\d:\\d\\d [\\w:]+ (ENTER|EXIT|Success !!|Failed !!|ERROR CODE: -?\\d+|ERROR CODE "
    "0x00040000|"
    "Handle closed successfully|(USBConnect|CommCnct) failed to find any devices|Header Verifiaction failed|"
    "Card BitCount: \\d{1,3}|Connected Device (Vendor|Product) ID: \\d+|"
    "Firmware: CPU[01] Application in hex is  [0-9a-f]+|TavlynAPI Library version is [\\d.]+|"
    "Model Number of Device is : RDR-80581AKU)");

void ExpectNoSecret(const fs::path& file) {
  std::ifstream trace(file);
  std::size_t lines = 0;
  for (std::string line; std::getline(trace, line); ++lines)
    EXPECT_TRUE(std::regex_match(line, kTraced)) << line;
  EXPECT_GT(lines, 1U);
}

const std::string kTrace = "export TAVLYNAPI_LOGGING=1 XDG_STATE_HOME=$PWD; ";
constexpr const char* kTraceFile = "TavlynLogs/TavlynApiSdk.log";

TEST_P(KeysLeft, NowhereElse) {
  if (!kMayBeSearched) GTEST_SKIP() << "a sanitizer keeps memory that was given back";
  const Case& tested = GetParam();
  const auto ended = Run(tested.devices, {kTrace + KEY_CLIENT " " + tested.words, "typed traffic"});
  EXPECT_EQ(ended[0].status, 0) << ended[0].err;
  EXPECT_EQ(ended[0].out, tested.left);
  EXPECT_EQ(Holds(simulatorTold_, MarkerText(Marker::kFirst, 4, " ")), tested.sent) << simulatorTold_;
  ExpectNoSecret(folder_ / kTraceFile);
}

// Where every four bytes of a key would be seen, in whatever pieces they travel.
TEST_P(KeysLeft, NotInTheBytesOnTheWire) {
  if (!kMayBeSearched) GTEST_SKIP() << "the client searches its memory";
  constexpr std::size_t kKeyBytes = 32;
  constexpr std::size_t kSeen = 4;
  constexpr std::size_t kPair = 3;  // characters of a byte
  const Case& tested = GetParam();
  Run(tested.devices, {kTrace + "export TAVLYNAPI_WIRE=1; " KEY_CLIENT " " + tested.words});
  const std::string trace = boundary::TextOf(folder_ / kTraceFile);
  EXPECT_TRUE(Holds(trace, " wire reader > ")) << trace;
  for (const Marker marker : {Marker::kFirst, Marker::kSecond}) {
    const std::string key = MarkerText(marker, kKeyBytes, " ");
    for (std::size_t at = 0; at + kSeen <= kKeyBytes; ++at) {
      EXPECT_FALSE(Holds(trace, key.substr(kPair * at, kPair * kSeen - 1))) << at << "\n" << trace;
    }
  }
}

using TraceTells = WithKeyFiles;

TEST_F(TraceTells, NoId) {
  const auto ended = Run("--do 'card " + MarkerText(Marker::kFirst, 8, "") + ":64' --do 'queue " +
                             MarkerText(Marker::kFirst, 8, "") + "'",
                         {kTrace + KEY_CLIENT " usb read-ids"});
  EXPECT_EQ(ended[0].status, 0) << ended[0].out;
  EXPECT_TRUE(Holds(boundary::TextOf(folder_ / kTraceFile), "Card BitCount: 64\n"));
  ExpectNoSecret(folder_ / kTraceFile);
}

TEST_F(TraceTells, NoKeyOfADeedThatFails) {
  const auto ended = Run("--do 'lack 89' --do 'lack 84'",
                         {kTrace + KEY_CLIENT " usb write-item", kTrace + KEY_CLIENT " usb references",
                          kTrace + KEY_CLIENT " usb key-file keys"});
  for (const boundary::Ended& one : ended) EXPECT_TRUE(Holds(one.out, "failed")) << one.out;
  ExpectNoSecret(folder_ / kTraceFile);
}

}  // namespace
}  // namespace tavlyn::adversary
