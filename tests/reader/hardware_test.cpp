// A reader's hardware, and the baud code that a serial reader stores.
#include <cstdlib>
#include <memory>
#include <vector>

#include "api.h"
#include "core/state.h"
#include "tests/support/dirty.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

using Flags = std::vector<int>;

// The flags of one call, its memory freed as a C program would; empty for null.
Flags Take(std::uint8_t* (*call)()) {
  const std::unique_ptr<std::uint8_t, decltype(&std::free)> flags(call(), &std::free);
  return flags != nullptr ? Flags(flags.get(), flags.get() + 8) : Flags{};
}

class Hardware : public SerialBench {
 protected:
  static std::shared_ptr<Reader> Model() {
    auto model = Reader::Plain();
    model->state.installedHardware = 0x81;
    model->state.supportedHardware = 0xFE;
    return model;
  }
  static const Flags kInstalled;
  static const Flags kSupported;
  static const Flags kNothing;
};

const Flags Hardware::kInstalled = {1, 0, 0, 0, 0, 0, 0, 1};
const Flags Hardware::kSupported = {0, 1, 1, 1, 1, 1, 1, 1};
const Flags Hardware::kNothing = {0, 0, 0, 0, 0, 0, 0, 0};

TEST_F(Hardware, MasksComeOverReports) {
  Connected(Model());
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(Take(InstalledHardware), kInstalled);
  ExpectTraffic({"set 89 05", "get"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(Take(SupportedHardware), kSupported);
  ExpectTraffic({"set 89 05", "get"});
}

TEST_F(Hardware, MasksComeOverASerialLink) {
  AddReader(Model());
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(Take(InstalledHardware), kInstalled);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(Take(SupportedHardware), kSupported);
  AddScript({{0x09, 0xFF, 0x01, 0xFF, 0xFF, 0xFF, 0x02, 0xFF, 0xFF}, {0x09, 0, 0, 0, 0, 0, 0x02, 0, 0}});
  EXPECT_EQ(Take(InstalledHardware), (Flags{1, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Take(SupportedHardware), (Flags{0, 1, 0, 0, 0, 0, 0, 0}));
}

TEST_F(Hardware, EachCallGivesMemoryOfItsOwn) {
  Connected(Model());
  std::uint8_t* first = InstalledHardware();
  std::uint8_t* second = InstalledHardware();
  EXPECT_NE(first, second);
  std::free(first);
  std::free(second);
}

TEST_F(Hardware, AReaderThatDoesNotAnswerHasNone) {
  reader = Connected(Model());
  reader->faults.RefuseReply({0x89, 0x05}, 1);
  EXPECT_EQ(Take(InstalledHardware), kNothing);
  EXPECT_EQ(GetLastLibErr(), 0U);
  ForgetTraffic();
  reader->Unplug();
  EXPECT_EQ(Take(SupportedHardware), kNothing);
  EXPECT_EQ(GetLastLibErr(), 0x202U) << "the channel's own word";
  ExpectTraffic(Refused("89 05"));
}

TEST_F(Hardware, ASilentOrShortSerialAnswerGivesNone) {
  AddScript({{}, {0x09, 0x00, 0xFF, 0x00}, {0x6A, 0x82}});
  EXPECT_EQ(Take(InstalledHardware), kNothing);
  EXPECT_EQ(Take(InstalledHardware), kNothing) << "fewer than eight bytes";
  EXPECT_EQ(Take(SupportedHardware), kNothing) << "a refusal";
  EXPECT_EQ(GetLastLibErr(), 0U);
}

using BaudCode = SerialBench;

TEST_F(BaudCode, IsReadWithoutAStatus) {
  AddReader(Reader::Plain());
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(ReadBaudRate(), 3U);
  ExpectTraffic(FrameLines("0D 01 00 00", {"read 0D", "read 03"}));
  line->faults.RefuseCommand({0x0D, 0x01}, 1);
  EXPECT_EQ(ReadBaudRate(), 65535U);
  ExpectTraffic(FrameLines("0D 01 00 00", {"read 6D", "read 00"}));
  EXPECT_EQ(GetLastLibErr(), 5U);
}

TEST_F(BaudCode, IsWrittenOnceByItsLowByte) {
  AddReader(Reader::Plain());
  EXPECT_EQ(WriteBaudRate(0x1205), 1U);
  ExpectTraffic(FrameLines("0D 81 05 00", {"read 0D", "read 90 00"}));
  EXPECT_EQ(reader->state.baudCode, 5);
  line->faults.RefuseCommand({0x0D, 0x81}, 1);
  EXPECT_EQ(WriteBaudRate(6), 0U);
  ExpectTraffic(FrameLines("0D 81 06 00", {"read 6D", "read 00"}));
}

TEST_F(BaudCode, OnlyASerialLinkHasOne) {
  AddReader(Reader::Plain());
  EntryOfActDev().LinkKind = kByReports;
  EXPECT_EQ(ReadBaudRate(), 65535U);
  EXPECT_EQ(WriteBaudRate(5), 0U);
  EntryOfActDev().LinkKind = kBySerialPort;
  ExpectTraffic({});
}

TEST_F(BaudCode, TheKindOfProductIsNotTested) {
  AddReader(Reader::Plain());
  EntryOfActDev().ProductKind = kMagstripe;
  EXPECT_EQ(ReadBaudRate(), 3U);
  EXPECT_EQ(WriteBaudRate(4), 1U);
}

}  // namespace
}  // namespace tavlyn::test
