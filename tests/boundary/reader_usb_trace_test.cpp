// The trace of a connect: the file, and the marker function that takes its place.
#include <cstdio>
#include <fstream>

#include "tests/boundary/reader_usb.h"

namespace tavlyn::boundary {
namespace {

class ReaderUsbTrace : public ReaderUsb {
 protected:
  void SetUp() override {
    file_ = ChooseTraceFile();
    SetVariable("TAVLYNAPI_LOGGING", "");
    Load();
  }

  void TearDown() override {
    ReaderUsb::TearDown();
    SetVariable("TAVLYNAPI_LOGGING", nullptr);
  }

  // The library never flushes its trace; the streams of the process are flushed here.
  std::vector<std::string> TraceLines() {
    std::fflush(nullptr);
    std::ifstream file(file_);
    std::ostringstream text;
    text << file.rdbuf();
    return Lines(text.str());
  }

  std::string file_;
};

TEST_F(ReaderUsbTrace, FileHoldsOneStampedLineForEachEvent) {
  const std::size_t before = TraceLines().size();
  Do("plug reader");
  ASSERT_EQ(Connect(), 1u);
  CALL(*library_, USBDisconnect)();
  const std::vector<std::string> all = TraceLines();
  std::vector<std::string> events;
  for (std::size_t i = before; i < all.size(); ++i) {
    ASSERT_GT(all[i].size(), 18u);
    EXPECT_EQ(all[i][8], ' ');
    EXPECT_EQ(all[i][11], ':');
    EXPECT_EQ(all[i][17], ' ');
    events.push_back(all[i].substr(18));
  }
  const std::vector<std::string> expected{
      "USBConnect ENTER",
      "USBConnect Success !!",
      "tavlyn_ReadCfgOneConfig Model Number of Device is : RDR-80581AKU",
      "USBConnect Firmware: CPU0 Application in hex is  0",
      "USBConnect Firmware: CPU1 Application in hex is  0",
      "USBConnect TavlynAPI Library version is 7.9.2",
      "USBConnect EXIT",
      "USBDisconnect ENTER",
      "UsbDriver_Close ENTER",
      "UsbDriver_Close EXIT",
      "USBDisconnect Handle closed successfully",
      "USBDisconnect EXIT",
  };
  EXPECT_EQ(events, expected);
}

std::vector<std::string> marked;

void Mark(const char* line, std::uint64_t length) { marked.emplace_back(line, length); }

TEST_F(ReaderUsbTrace, MarkerFunctionTakesTheLines) {
  marked.clear();
  const std::size_t before = TraceLines().size();
  EXPECT_EQ(CALL(*library_, SetMarkerFunction)(Mark), 1u);
  CALL(*library_, USBDisconnect)();
  CALL(*library_, SetMarkerFunction)(nullptr);
  CALL(*library_, USBDisconnect)();
  ASSERT_EQ(marked.size(), 2u);
  EXPECT_EQ(marked[0].substr(18), "USBDisconnect ENTER\n");
  EXPECT_EQ(marked[1].substr(18), "USBDisconnect EXIT\n");
  EXPECT_EQ(TraceLines().size(), before);
}

TEST_F(ReaderUsb, NoMarkerWithoutTheVariable) { EXPECT_EQ(CALL(*library_, SetMarkerFunction)(Mark), 0u); }

}  // namespace
}  // namespace tavlyn::boundary
