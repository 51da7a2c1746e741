// The trace: who gets the lines, when there are any, and what a line looks like.
#include "core/trace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "api.h"
#include "core/state.h"
#include "core/wire.h"
#include "tests/support/bench.h"
#include "tests/support/on_disk.h"

namespace tavlyn::test {
namespace {

constexpr const char* kVariable = "TAVLYNAPI_LOGGING";

// As they were passed to the marker function.
struct Marked {
  std::string text;
  std::uint64_t length;
};

std::vector<Marked>& AllMarked() {
  static std::vector<Marked> lines;
  return lines;
}

void Mark(const char* line, std::uint64_t length) { AllMarked().push_back({line, length}); }

class TraceTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    AllMarked().clear();
    SetConnectProduct(0);
  }

  void SetVariable() { host.places.environment.insert(kVariable); }
  void UnsetVariable() { host.places.environment.clear(); }

  static void SomeLines() { USBDisconnect(); }

  // The library does not flush its file.
  static std::string FileText(const std::filesystem::path& path) {
    std::fflush(nullptr);
    std::ifstream file(path, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
  }
};

TEST_F(TraceTest, WithTheVariableUnsetThereIsNoTrace) {
  EXPECT_EQ(SetMarkerFunction(Mark), 0U);
  SomeLines();
  EXPECT_TRUE(AllMarked().empty());
}

TEST_F(TraceTest, TheMarkerGetsEachLineWithItsLineFeedAndALengthWithoutTheTerminator) {
  SetVariable();
  EXPECT_NE(SetMarkerFunction(Mark), 0U);
  SomeLines();
  ASSERT_EQ(AllMarked().size(), 2U);
  EXPECT_EQ(AllMarked()[0].text, "20240305 06:07:08 USBDisconnect ENTER\n");
  EXPECT_EQ(AllMarked()[0].length, 38U);
  EXPECT_EQ(AllMarked()[1].text, "20240305 06:07:08 USBDisconnect EXIT\n");
  EXPECT_EQ(AllMarked()[1].length, 37U);
}

TEST_F(TraceTest, TheTimeStampIsTheMomentOfTheLine) {
  SetVariable();
  SetMarkerFunction(Mark);
  host.clock.localTime.tm_year = 99;
  host.clock.localTime.tm_mon = 11;
  host.clock.localTime.tm_mday = 31;
  host.clock.localTime.tm_hour = 23;
  host.clock.localTime.tm_min = 59;
  host.clock.localTime.tm_sec = 58;
  SomeLines();
  ASSERT_FALSE(AllMarked().empty());
  EXPECT_EQ(AllMarked()[0].text, "19991231 23:59:58 USBDisconnect ENTER\n");
  host.clock.localTime.tm_sec = 59;
  SomeLines();
  EXPECT_EQ(AllMarked()[2].text, "19991231 23:59:59 USBDisconnect ENTER\n");
}

TEST_F(TraceTest, ANullMarkerSwitchesTheTraceOff) {
  SetVariable();
  SetMarkerFunction(Mark);
  EXPECT_NE(SetMarkerFunction(nullptr), 0U);
  SomeLines();
  EXPECT_TRUE(AllMarked().empty());
  EXPECT_NE(SetMarkerFunction(Mark), 0U);
  SomeLines();
  EXPECT_EQ(AllMarked().size(), 2U);
}

TEST_F(TraceTest, WhatAMarkerThrowsEndsThere) {
  SetVariable();
  SetMarkerFunction([](const char* line, std::uint64_t length) {
    Mark(line, length);
    throw std::runtime_error("a marker of an application's");
  });
  EXPECT_NO_THROW(SomeLines());
  EXPECT_EQ(AllMarked().size(), 2U);
}

TEST_F(TraceTest, TheVariableIsLookedAtEachTime) {
  SetVariable();
  SetMarkerFunction(Mark);
  UnsetVariable();
  EXPECT_EQ(SetMarkerFunction(nullptr), 0U);
  SomeLines();
  EXPECT_EQ(AllMarked().size(), 2U) << "nothing was stored, so the marker stays";
}

TEST_F(TraceTest, AnotherVariableCountsForNothing) {
  host.places.environment.insert("TAVLYNAPI_LOGGIN");
  host.places.environment.insert("tavlynapi_logging");
  EXPECT_EQ(SetMarkerFunction(Mark), 0U);
}

TEST_F(TraceTest, AVariableSetAfterLoadMakesNoFile) {
  host.places.traceFile = (Folder() / "trace.log").string();
  SetVariable();
  SomeLines();
  SetMarkerFunction(Mark);
  SomeLines();
  EXPECT_EQ(AllMarked().size(), 2U);
  EXPECT_FALSE(std::filesystem::exists(Folder() / "trace.log"));
}

TEST_F(TraceTest, AMarkerDoesNotOutliveTheLibrary) {
  SetVariable();
  SetMarkerFunction(Mark);
  UnsetVariable();
  Reload();
  AllMarked().clear();
  SomeLines();
  EXPECT_TRUE(AllMarked().empty());
}

TEST_F(TraceTest, WithTheVariableSetAtLoadTheFileGetsTheLines) {
  const auto path = Folder() / "trace.log";
  host.places.traceFile = path.string();
  SetVariable();
  Reload();
  EXPECT_EQ(FileText(path), "");
  SetConnectProduct(0);
  USBConnect(nullptr);
  SomeLines();
  EXPECT_EQ(FileText(path), OnDisk("20240305 06:07:08 USBConnect ENTER\n"
                                   "20240305 06:07:08 USBConnect EXIT\n"
                                   "20240305 06:07:08 USBDisconnect ENTER\n"
                                   "20240305 06:07:08 USBDisconnect EXIT\n"));
}

TEST_F(TraceTest, TheFileIsAppendedTo) {
  const auto path = Folder() / "trace.log";
  std::ofstream(path) << "before\n";
  host.places.traceFile = path.string();
  SetVariable();
  Reload();
  SomeLines();
  EXPECT_EQ(FileText(path), OnDisk("before\n"
                                   "20240305 06:07:08 USBDisconnect ENTER\n"
                                   "20240305 06:07:08 USBDisconnect EXIT\n"));
}

TEST_F(TraceTest, AMarkerTakesTheLinesFromTheFile) {
  const auto path = Folder() / "trace.log";
  host.places.traceFile = path.string();
  SetVariable();
  Reload();
  SetMarkerFunction(Mark);
  SomeLines();
  EXPECT_EQ(AllMarked().size(), 2U);
  EXPECT_EQ(FileText(path), "");
}

TEST_F(TraceTest, AFileThatCannotBeOpenedHarmsNobody) {
  for (const std::string& path : {std::string(), (Folder() / "no" / "such" / "folder").string(),
                                  Folder().string(), std::string(5000, 'x')}) {
    host.places.traceFile = path;
    SetVariable();
    Reload();
    host.hid.Reset();
    host.hid.Load();
    Plug(sim::Reader::Plain());
    SetDevTypeSrch(0);
    EXPECT_EQ(USBConnect(nullptr), 1U);
    EXPECT_EQ(USBDisconnect(), 1U);
    EXPECT_NE(SetMarkerFunction(Mark), 0U) << "a marker may still be set";
    AllMarked().clear();
    SomeLines();
    EXPECT_EQ(AllMarked().size(), 2U);
  }
}

TEST_F(TraceTest, EveryErrorCodeLinePrintsTheSearchWord) {
  StartTrace();
  shared.SearchErr = 0x10000;
  LogErrorCode("some_tag");
  LogFailure("other_tag");
  shared.SearchErr = 0;
  DevTable[0].LastLibErr = 0x1000000;
  LogErrorCode("some_tag");
  ExpectTrace({"some_tag ERROR CODE: 65536", "other_tag ERROR CODE: 65536", "other_tag Failed !!",
               "some_tag ERROR CODE: 0"});
}

TEST_F(TraceTest, AVeryLongLineIsCut) {
  SetVariable();
  SetMarkerFunction(Mark);
  const std::string start = "20240305 06:07:08 tag ";
  // Text, line feed and terminator just fit, or lack room for one of them, or for more.
  for (const std::size_t whole : std::initializer_list<std::size_t>{2045, 2046, 2047, 2048, 2049, 100000}) {
    AllMarked().clear();
    LogLine("tag", "%s", std::string(whole - start.size(), 'x').c_str());
    ASSERT_EQ(AllMarked().size(), 1U);
    const Marked& line = AllMarked()[0];
    const std::size_t kept = std::min<std::size_t>(whole, 2046);
    EXPECT_EQ(line.text, start + std::string(kept - start.size(), 'x') + '\n') << whole;
    EXPECT_EQ(line.length, kept + 1) << whole;
  }
}

TEST_F(TraceTest, ALineThatJustFitsIsWhole) {
  SetVariable();
  SetMarkerFunction(Mark);
  const std::string text(1000, 'y');
  LogLine("tag", "%s", text.c_str());
  ASSERT_EQ(AllMarked().size(), 1U);
  EXPECT_EQ(AllMarked()[0].text, "20240305 06:07:08 tag " + text + '\n');
}

// A device may hold any bytes in its texts.
TEST_F(TraceTest, ATextOfADeviceMakesNoLineOfItsOwnAndSteersNoTerminal) {
  StartTrace();
  auto reader = sim::Reader::Plain();
  reader->state.model = "A\n\r\t\x1B[2J\x7F\x85\xC2\x9B\xE2\x80\xA8~";
  Plug(reader);
  SetConnectProduct(1);
  SetDevTypeSrch(0);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  const Lines lines = Trace();
  EXPECT_TRUE(
      std::ranges::count(lines, "tavlyn_ReadCfgOneConfig Model Number of Device is : A????[2J???????~"))
      << ::testing::PrintToString(lines);
  EXPECT_STREQ(getPartNumberString(), reader->state.model.c_str()) << "a program gets it as it is";
}

TEST_F(TraceTest, ATextWithConversionsInItIsPrintedAsItIs) {
  auto reader = sim::Reader::Plain();
  reader->state.model = "%n%s%d100%";
  Plug(reader);
  SetConnectProduct(1);
  SetDevTypeSrch(0);
  SetVariable();
  SetMarkerFunction(Mark);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  const auto model = std::find_if(AllMarked().begin(), AllMarked().end(), [](const Marked& line) {
    return line.text.find("Model Number") != std::string::npos;
  });
  ASSERT_NE(model, AllMarked().end());
  EXPECT_EQ(model->text,
            "20240305 06:07:08 tavlyn_ReadCfgOneConfig Model Number of Device is : %n%s%d100%\n");
}

// Unless its own variable is set too, the bytes are not in the trace.
TEST_F(TraceTest, BytesOfTheWireWithTheirOwnVariable) {
  SetVariable();
  SetMarkerFunction(Mark);
  LogWire(kReader, Direction::kSent, std::array<std::uint8_t, 2>{0, 0x8A});
  EXPECT_TRUE(AllMarked().empty());
  host.places.environment.insert("TAVLYNAPI_WIRE");
  SetMarkerFunction(Mark);
  const std::array<std::uint8_t, 3> bytes = {0, 0x8A, 0xFF};
  LogWire(kReader, Direction::kSent, bytes);
  LogWire(kMagstripe, Direction::kReceived, bytes, kOpcodeShown);
  LogWire(kSonar, Direction::kReceived, bytes, kNoneShown);
  LogWire(0, Direction::kReceived, {});
  LogWire(0, Direction::kSent, std::array<std::uint8_t, 513>{});
  ASSERT_EQ(AllMarked().size(), 5U);
  EXPECT_EQ(AllMarked()[0].text, "20240305 06:07:08 wire reader > 00 8A FF\n");
  EXPECT_EQ(AllMarked()[1].text, "20240305 06:07:08 wire magstripe < 00 8A **\n");
  EXPECT_EQ(AllMarked()[2].text, "20240305 06:07:08 wire sonar < ** ** **\n");
  EXPECT_EQ(AllMarked()[3].text, "20240305 06:07:08 wire device < nothing\n");
  EXPECT_TRUE(AllMarked()[4].text.ends_with(" 00 00 ...\n"));
}

}  // namespace
}  // namespace tavlyn::test
