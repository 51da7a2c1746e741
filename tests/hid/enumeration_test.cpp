// Finding HID device paths and deciding which are ours.
#include "hid/enumeration.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "api.h"
#include "core/state.h"
#include "hid/vidpid_table.h"
#include "links/link_socket.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using platform::HidClass;
using sim::InertInterface;
using sim::Reader;

constexpr UsbIdentity kReaders{{0x7A31, 0x3BFA}, HidClass::kHid, true};
constexpr UsbIdentity kMagstripes{{0x7A31, 0x1000}, HidClass::kKeyboard};
constexpr UsbIdentity kSonars{{0x18C8, 0x2BFA}, HidClass::kKeyboard};

// "path row" of each call of the callback.
Lines& Found() {
  static Lines found;
  return found;
}

void Note(const char* path, std::int32_t row) {
  Found().push_back(std::string(path) + ' ' + std::to_string(row));
}

std::shared_ptr<InertInterface> Device(std::uint16_t vid, std::uint16_t pid) {
  return std::make_shared<InertInterface>(vid, pid);
}

// Every case runs on a system that identifies paths without opening them, and on one that does not.
class EnumerationTest : public Bench, public ::testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    Bench::SetUp();
    host.hid.listsIds = GetParam();
    Found().clear();
    ForgetTraffic();
  }

  Lines Walk(const UsbIdentity& identity) {
    Found().clear();
    EXPECT_TRUE(EnumerateHid(identity, Note));
    return Found();
  }

  int CallsThatBegin(const std::string& text) {
    const Lines lines = host.transcript.Lines();
    return static_cast<int>(
        std::count_if(lines.begin(), lines.end(), [&](const auto& line) { return line.starts_with(text); }));
  }
};

INSTANTIATE_TEST_SUITE_P(Systems, EnumerationTest, ::testing::Values(true, false),
                         [](const auto& system) { return system.param ? "ThatList" : "ThatDoNot"; });

TEST_P(EnumerationTest, TheIdentityTellsTheClass) {
  const std::pair<UsbIdentity, const char*> cases[] = {
      {kReaderProduct.usb, "walk hid"},
      {kMagstripeProduct.usb, "walk keyboard"},
      {kSonarProduct.usb, "walk keyboard"},
      {{{0x7A31, 0x1001}}, "walk hid"},
  };
  for (const auto& [identity, line] : cases) {
    ForgetTraffic();
    EXPECT_EQ(Walk(identity), Lines{});
    EXPECT_EQ(host.transcript.Lines(), Lines{line});
  }
}

TEST_P(EnumerationTest, AWalkThatCannotBeginIsToldAndLogsNothing) {
  Plug(Reader::Plain());
  host.hid.walks = false;
  StartTrace();
  EXPECT_FALSE(EnumerateHid(kReaders, Note));
  EXPECT_EQ(Found(), Lines{});
  ExpectTrace({});
}

TEST_P(EnumerationTest, AConnectWhoseWalkCannotBeginFindsNothing) {
  Plug(Reader::Plain());
  host.hid.walks = false;
  SetDevTypeSrch(0);
  SetConnectProduct(1);
  StartTrace();
  EXPECT_EQ(USBConnect(nullptr), 0U);
  ExpectTrace({"USBConnect ENTER", "tavlyn_USBConnect USBConnect failed to find any devices",
               "tavlyn_USBConnect Failed !!", "USBConnect EXIT"});
  host.hid.walks = true;
  EXPECT_EQ(USBConnect(nullptr), 1U);
}

TEST_P(EnumerationTest, DevicesComeInTheSystemsOrder) {
  Plug(Reader::Plain(), "c");
  Plug(Device(0x1111, 0x2222), "a");
  Plug(Reader::Plain(), "b");
  EXPECT_EQ(Walk(kReaders), (Lines{"c -1", "b -1"}));
  EXPECT_EQ(host.hid.OpenHandles(), 0U);
}

TEST_P(EnumerationTest, OnlyTheFirst127InterfacesAreLookedAt) {
  for (int i = 0; i < 125; ++i) Plug(Device(0x1111, 0x2222));
  Plug(Reader::Plain(), "at-126");
  Plug(Reader::Plain(), "at-127");
  for (int i = 127; i < 200; ++i) Plug(Reader::Plain());
  EXPECT_EQ(Walk(kReaders), (Lines{"at-126 -1", "at-127 -1"}));
}

TEST_P(EnumerationTest, A127thInterfaceIsLookedAtAlsoWhenOthersAreSkipped) {
  for (int i = 0; i < 126; ++i) Plug(Reader::Plain()).skipped = true;
  Plug(Reader::Plain(), "at-127");
  Plug(Reader::Plain(), "at-128");
  EXPECT_EQ(Walk(kReaders), Lines{"at-127 -1"});
}

TEST_P(EnumerationTest, ASkippedMemberDoesNotEndTheWalk) {
  Plug(Reader::Plain(), "a");
  Plug(Reader::Plain(), "b").skipped = true;
  Plug(Reader::Plain(), "c");
  EXPECT_EQ(Walk(kReaders), (Lines{"a -1", "c -1"}));
}

TEST_P(EnumerationTest, APathThatDoesNotOpenIsPassedOver) {
  Plug(Reader::Plain(), "a").opens = false;
  Plug(Reader::Plain(), "b");
  EXPECT_EQ(Walk(kReaders), Lines{"b -1"});
}

TEST_P(EnumerationTest, AForeignDeviceIsNotOursAndListedIsNeverOpened) {
  Plug(Device(0x1111, 0x3BFA), "foreign");
  Plug(Device(0x7A31, 0x0001), "sister");
  StartTrace();
  EXPECT_EQ(Walk(kReaders), Lines{});
  EXPECT_EQ(CallsThatBegin("open"), GetParam() ? 0 : 2);
  EXPECT_EQ(CallsThatBegin("close"), GetParam() ? 0 : 2);
  ExpectTrace({});
}

TEST_P(EnumerationTest, ACheckOpensWithoutOverlapAndClosesWithoutALine) {
  Plug(Reader::Plain(), "a");
  StartTrace();
  EXPECT_EQ(Walk(kReaders), Lines{"a -1"});
  EXPECT_EQ(Difference({"walk hid", "open a -> 1", "attributes 1", "close 1"}, host.transcript.Lines()), "");
  ExpectTrace({});
}

TEST_P(EnumerationTest, ADeviceThatTellsNoAttributesIsNotOurs) {
  Plug(Reader::Plain(), "a").tellsAttributes = false;
  ParseVidPidLine(R"(VID="1234" PID="5678" VENDORNAME="X")");
  EXPECT_EQ(Walk(kReaders), Lines{});
  EXPECT_EQ(host.hid.OpenHandles(), 0U);
}

TEST_P(EnumerationTest, ProductId104IsOursInEverySearchWithoutARow) {
  Plug(Device(0x1234, 0x0104), "any");
  for (const UsbIdentity& identity : {kReaders, kMagstripes, kSonars, UsbIdentity{{1, 2}}}) {
    EXPECT_EQ(Walk(identity), Lines{"any -1"});
  }
  LoadVidPidTable();
  ParseVidPidLine(R"(VID="1234" PID="0104" VENDORNAME="in the table")");
  StartTrace();
  EXPECT_EQ(Walk(kReaders), Lines{"any -1"}) << "the table is not asked";
  ExpectTrace({});
}

TEST_P(EnumerationTest, WithAnEmptyTableOnlyTheExactPairPasses) {
  Plug(Device(0x171B, 0x2001), "velmar");
  Plug(Reader::Plain(), "main");
  Plug(Device(0, 0), "nobody");
  EXPECT_EQ(Walk(kReaders), Lines{"main -1"});
}

TEST_P(EnumerationTest, ADeviceOfTheTableComesWithItsRow) {
  LoadVidPidTable();
  Plug(Device(0x171B, 0x2001), "velmar");
  Plug(Device(0x7A31, 0x3B4C), "cdc");
  Plug(Reader::Plain(), "main");
  Plug(Device(0x19E5, 0x2021), "quill");
  StartTrace();
  EXPECT_EQ(Walk(kReaders), (Lines{"velmar 0", "cdc 8", "main -1", "quill 4"}));
  ExpectTrace({"UsbDriver_IsDevOurs Connected Device Vendor ID: 5915",
               "UsbDriver_IsDevOurs Connected Device Product ID: 8193",
               "UsbDriver_IsDevOurs Connected Device Vendor ID: 31281",
               "UsbDriver_IsDevOurs Connected Device Product ID: 15180",
               "UsbDriver_IsDevOurs Connected Device Vendor ID: 6629",
               "UsbDriver_IsDevOurs Connected Device Product ID: 8225"});
}

TEST_P(EnumerationTest, OtherSearchesDoNotLookAtTheTable) {
  LoadVidPidTable();
  Plug(Device(0x171B, 0x2001), "velmar");
  Plug(Device(0x7A31, 0x1000), "stripe");
  Plug(Device(0x18C8, 0x2BFA), "sonar");
  EXPECT_EQ(Walk(kMagstripes), Lines{"stripe -1"});
  EXPECT_EQ(Walk(kSonars), Lines{"sonar -1"});
}

TEST_P(EnumerationTest, OfTheReportIdReaderOnlyTheVendorInterfacePasses) {
  LoadVidPidTable();
  Plug(Device(0x7A31, 0x3BFB), "keyboard");
  Plug(Reader::Kelda(), "vendor");
  StartTrace();
  EXPECT_EQ(Walk(kReaders), Lines{"vendor 2"});
  ExpectTrace(Times(2, {"UsbDriver_IsDevOurs Connected Device Vendor ID: 31281",
                        "UsbDriver_IsDevOurs Connected Device Product ID: 15355"}));
  EXPECT_EQ(host.hid.OpenHandles(), 0U);
}

TEST_P(EnumerationTest, OnlyThatVeryUsagePasses) {
  LoadVidPidTable();
  const sim::Usage wrong[] = {{0xFFA0, 0xA001}, {0xFFA1, 0xA000}, {0xA000, 0xFFA0}, {0, 0}};
  for (const sim::Usage usage : wrong) {
    Plug(std::make_shared<InertInterface>(std::uint16_t{0x7A31}, std::uint16_t{0x3BFB}, usage));
  }
  EXPECT_EQ(Walk(kReaders), Lines{});
}

TEST_P(EnumerationTest, OtherDevicesOfTheTableAreNotAskedForTheirUsage) {
  LoadVidPidTable();
  Plug(Device(0x7A31, 0x3B1E), "ble").tellsUsages = false;
  EXPECT_EQ(Walk(kReaders), Lines{"ble 3"});
  EXPECT_EQ(CallsThatBegin("usage"), 0);
}

TEST_P(EnumerationTest, UnreadableUsagesLeaveTheHandleOpen) {
  LoadVidPidTable();
  Plug(Reader::Kelda(), "mute").tellsUsages = false;
  Plug(Reader::Plain(), "main");
  EXPECT_EQ(Walk(kReaders), Lines{"main -1"});
  EXPECT_EQ(host.hid.OpenHandles(), 1U) << "that of the mute one";
}

TEST_P(EnumerationTest, TheRowIsMinusOneUnlessARowWasTried) {
  LoadVidPidTable();
  Plug(Reader::Plain(), "main");
  Plug(Device(0x1111, 0x2222), "foreign");
  Plug(Device(0x171B, 0x2001), "velmar");
  Plug(Device(0x7A31, 0x3BFB), "keyboard");
  const auto rowOf = [](const char* path) {
    std::int32_t row = 99;
    UsbDriver_IsDevOurs(path, kReaders, &row);
    return row;
  };
  EXPECT_EQ(rowOf("main"), -1);
  EXPECT_EQ(rowOf("foreign"), -1);
  EXPECT_EQ(rowOf("velmar"), 0);
  EXPECT_EQ(rowOf("keyboard"), 2) << "the last one tried, though it is not ours";
  EXPECT_EQ(rowOf("nowhere"), 99) << "did not open";
}

TEST_P(EnumerationTest, AFailedUsageGoesOnWithTheNextRowOfThePair) {
  ParseVidPidLine(R"(VID="7A31" PID="3BFB" VENDORNAME="first")");
  ParseVidPidLine(R"(VID="1234" PID="5678" VENDORNAME="other")");
  ParseVidPidLine(R"(VID="7A31" PID="3BFB" VENDORNAME="second")");
  Plug(Device(0x7A31, 0x3BFB), "keyboard");
  Plug(Reader::Kelda(), "vendor");
  StartTrace();
  std::int32_t row = 99;
  EXPECT_FALSE(UsbDriver_IsDevOurs("keyboard", kReaders, &row));
  EXPECT_EQ(row, 2);
  EXPECT_EQ(Trace().size(), 4U);
  EXPECT_TRUE(UsbDriver_IsDevOurs("vendor", kReaders, &row));
  EXPECT_EQ(row, 0) << "the first row that passes";
  EXPECT_EQ(Trace().size(), 6U);
}

TEST_P(EnumerationTest, OtherPairsLeaveTheRowAlone) {
  LoadVidPidTable();
  Plug(Device(0x7A31, 0x1000), "stripe");
  std::int32_t row = 99;
  EXPECT_TRUE(UsbDriver_IsDevOurs("stripe", kMagstripes, &row));
  EXPECT_EQ(row, 99);
  EXPECT_FALSE(UsbDriver_IsDevOurs("stripe", kSonars, &row));
  EXPECT_EQ(row, 99);
}

TEST_P(EnumerationTest, ARowAndAPathMayBeNull) {
  LoadVidPidTable();
  Plug(Reader::Kelda(), "vendor");
  EXPECT_TRUE(UsbDriver_IsDevOurs("vendor", kReaders, nullptr));
  EXPECT_FALSE(UsbDriver_IsDevOurs(nullptr, kReaders, nullptr));
  EXPECT_FALSE(UsbDriver_IsDevOurs("", kReaders, nullptr));
  Plug(Device(0x1111, 0x2222), "foreign");
  EXPECT_FALSE(UsbDriver_IsDevOurs("foreign", kReaders, nullptr));
}

TEST_P(EnumerationTest, ACallbackThatThrowsDoesNotEndTheWalk) {
  Plug(Reader::Plain(), "a");
  Plug(Reader::Plain(), "b");
  EXPECT_TRUE(EnumerateHid(kReaders, [](const char* path, std::int32_t row) {
    Note(path, row);
    throw std::runtime_error("no");
  }));
  EXPECT_EQ(Found(), (Lines{"a -1", "b -1"}));
}

TEST_P(EnumerationTest, AnUnpluggedDeviceIsNotListed) {
  auto reader = Reader::Plain();
  Plug(reader, "a");
  reader->Unplug();
  EXPECT_EQ(Walk(kReaders), Lines{});
}

TEST_P(EnumerationTest, ClosingADeviceWritesTwoLinesBeforeTheHandleIsClosed) {
  Plug(Reader::Plain(), "a");
  const platform::Handle open = OpenDevice("a");
  EXPECT_EQ(OpenDevice("nowhere"), platform::kNoHandle);
  EXPECT_EQ(OpenDeviceOverlapped("nowhere"), platform::kNoHandle);
  ForgetTraffic();
  StartTrace();
  shared.link.TunnelLink = 1;
  shared.link.LinkSocket = 5;
  CloseDevice(open);
  ExpectTrace({"UsbDriver_Close ENTER", "UsbDriver_Close EXIT"});
  EXPECT_EQ(Difference({"close socket 5", "close 1"}, host.transcript.Lines()), "");
  EXPECT_EQ(shared.link.TunnelLink, 1) << "the flag stays";
}

}  // namespace
}  // namespace tavlyn::test
