// A reader's hardware, the interface class, names of serial readers.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "api.h"
#include "core/state.h"
#include "tests/support/cfg_marks.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

TEST(HidGuid, IsThatOfKeyboards) {
  constexpr std::array<std::uint8_t, 16> kExpected = {0xC3, 0x96, 0x4B, 0x88, 0xEF, 0x56, 0xD1, 0x11,
                                                      0xBC, 0x8C, 0x00, 0xA0, 0xC9, 0x14, 0x05, 0xDD};
  std::array<std::uint8_t, 17> guid{};
  guid.fill('?');
  EXPECT_EQ(GetHIDGuid(guid.data()), 1U);
  EXPECT_TRUE(std::equal(kExpected.begin(), kExpected.end(), guid.begin()));
  EXPECT_EQ(guid[16], '?');
  EXPECT_EQ(GetHIDGuid(nullptr), 1U);
}

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

using SerialNames = SerialBench;

TEST_F(SerialNames, AReaderAtCom3IsDevice3) {
  AddReader(Reader::Plain());
  Port().SetPortNum(3);
  std::strcpy(Entry().DevName, "COM3:");
  std::array<char, 511> name{};
  EXPECT_EQ(GetDevName(name.data()), 3U);
  EXPECT_STREQ(name.data(), "COM3:");
  EXPECT_EQ(GetDevName(nullptr), 3U);
  EXPECT_EQ(orv_GetDevName(name.data()), 3U);
}

TEST_F(SerialNames, TheTextsComeOverASerialLinkWithoutAnErrorWord) {
  AddReader(Reader::Plain());
  Entry().LastLibErr = 5;
  EXPECT_STREQ(GetSerialNumber(), "0400123456");
  reader->state.lacks.push_back({0x8C, 0x04});
  EXPECT_STREQ(GetSerialNumber(), "");
  EXPECT_EQ(GetLastLibErr(), 5U);
}

}  // namespace
}  // namespace tavlyn::test
