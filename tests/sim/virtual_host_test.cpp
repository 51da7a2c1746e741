// The simulated operating system, and the notation in which tests write its traffic down.
#include "sim/carriers/virtual_host.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "sim/devices/reader.h"
#include "sim/devices/reader_fa.h"
#include "tests/support/traffic.h"

namespace tavlyn::test {
namespace {

using platform::Drain;
using platform::Handle;
using platform::HidClass;
using platform::HidIds;
using platform::kNoHandle;
using platform::OpenMode;
using platform::UsageMatch;
using platform::WalkStep;
using sim::Bytes;
using sim::Reader;

class VirtualHost : public ::testing::Test {
 protected:
  VirtualHost() { world.Reset(); }
  sim::VirtualHost& world = sim::VirtualHost::Instance();
  platform::Host& host = platform::TheHost();

  Lines Walk(HidClass cls) {
    Lines paths;
    if (!host.hid.BeginWalk(cls)) return {"no walk"};
    const char* path = nullptr;
    for (int i = 0;; ++i) {
      const WalkStep step = host.hid.Member(i, path);
      if (step == WalkStep::kEnd) break;
      paths.push_back(step == WalkStep::kSkip ? "skipped" : path);
    }
    host.hid.EndWalk();
    return paths;
  }
};

TEST_F(VirtualHost, SleepMovesTheTick) {
  const auto before = host.clock.Tick();
  host.clock.Sleep(80);
  host.clock.Sleep(20);
  EXPECT_EQ(host.clock.Tick(), before + 100);
  EXPECT_EQ(TotalSleep(world.transcript.Events()), 100U);
  EXPECT_EQ(host.clock.LocalTime().tm_year, 124);
}

TEST_F(VirtualHost, WalksTheInterfacesOfAClassInOrder) {
  host.hid.Load();
  const auto reader = Reader::Kelda();
  world.hid.Plug("b", reader);
  world.hid.Plug("a", std::make_shared<sim::InertInterface>(0x7A31, 0x3BFB));
  world.hid.Plug("c", Reader::Plain()).skipped = true;
  EXPECT_EQ(Walk(HidClass::kHid), (Lines{"b", "a", "skipped"}));
  EXPECT_EQ(Walk(HidClass::kKeyboard), (Lines{"a", "skipped"}));
  reader->Unplug();
  EXPECT_EQ(Walk(HidClass::kHid), (Lines{"a", "skipped"}));
  world.hid.walks = false;
  EXPECT_EQ(Walk(HidClass::kHid), Lines{"no walk"});
  EXPECT_EQ(world.Misuses(), Lines{});
}

TEST_F(VirtualHost, NothingWorksWithoutTheHidLibraries) {
  world.hid.Plug("a", Reader::Plain());
  world.hid.loads = false;
  EXPECT_FALSE(host.hid.Load());
  EXPECT_EQ(Walk(HidClass::kHid), Lines{"no walk"});
  EXPECT_EQ(host.hid.Open("a", OpenMode::kShared), kNoHandle);
}

TEST_F(VirtualHost, HandsOutEachHandleOnce) {
  host.hid.Load();
  world.hid.Plug("a", Reader::Plain());
  world.hid.Plug("closed", Reader::Plain()).opens = false;
  EXPECT_EQ(host.hid.Open("a", OpenMode::kShared), Handle{1});
  host.hid.Close(1);
  host.hid.Close(1);
  EXPECT_EQ(host.hid.Open("closed", OpenMode::kShared), kNoHandle);
  EXPECT_EQ(host.hid.Open("nowhere", OpenMode::kShared), kNoHandle);
  EXPECT_EQ(host.hid.Open("a", OpenMode::kOverlapped), Handle{2});
  EXPECT_EQ(world.hid.OpenHandles(), 1U);
  EXPECT_EQ(Difference({"load", "open a -> 1", "close 1", "close 1 refused", "open closed refused",
                        "open nowhere refused", "open overlapped a -> 2"},
                       world.transcript.Lines()),
            "");
}

TEST_F(VirtualHost, TellsIdentityAndUsages) {
  host.hid.Load();
  auto& listed = world.hid.Plug("a", Reader::Kelda());
  HidIds ids;
  EXPECT_TRUE(host.hid.ListedIds("a", ids));
  EXPECT_EQ(ids.pid, 0x3BFB);
  world.hid.listsIds = false;
  EXPECT_FALSE(host.hid.ListedIds("a", ids));
  const Handle open = host.hid.Open("a", OpenMode::kShared);
  EXPECT_EQ(host.hid.Attributes(open).vid, 0x7A31);
  EXPECT_EQ(host.hid.TopUsage(open, {0xFFA0, 0xA000}), UsageMatch::kYes);
  EXPECT_EQ(host.hid.TopUsage(open, {1, 6}), UsageMatch::kNo);
  listed.tellsUsages = listed.tellsAttributes = false;
  EXPECT_EQ(host.hid.TopUsage(open, {1, 6}), UsageMatch::kUnreadable);
  EXPECT_EQ(host.hid.Attributes(open).vid, 0);
}

TEST_F(VirtualHost, CarriesReportsWithTheirId) {
  host.hid.Load();
  world.hid.Plug("a", Reader::Kelda());
  const Handle open = host.hid.Open("a", OpenMode::kShared);
  Bytes report{1, 0x8C, 0x06, 0, 0, 0, 0, 0, 0};
  EXPECT_TRUE(host.hid.SetFeature(open, report));
  EXPECT_TRUE(host.hid.GetFeature(open, report));
  EXPECT_EQ(report, (Bytes{1, 0x8C, 0x06, 2, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Difference({"set [1] 8C 06", "get [1] 8C 06 02"}, TrafficOf(world.transcript.Events())), "");
}

TEST_F(VirtualHost, RefusesReportsOfAnotherIdOrLength) {
  host.hid.Load();
  world.hid.Plug("a", Reader::Plain());
  const Handle open = host.hid.Open("a", OpenMode::kShared);
  Bytes wrongId{1, 0x8A, 0, 0, 0, 0, 0, 0, 0};
  EXPECT_FALSE(host.hid.SetFeature(open, wrongId));
  EXPECT_FALSE(host.hid.GetFeature(open, wrongId));
  Bytes tooLong(11);
  EXPECT_FALSE(host.hid.SetFeature(open, tooLong));
  EXPECT_FALSE(host.hid.GetFeature(open, tooLong));
  EXPECT_FALSE(host.hid.SetFeature(open, {}));
  EXPECT_FALSE(host.hid.SetFeature(kNoHandle, Bytes(9)));
  EXPECT_FALSE(host.hid.SetFeature(0, Bytes(9)));
}

TEST_F(VirtualHost, AnUnpluggedDeviceFailsOnItsOldHandle) {
  host.hid.Load();
  world.hid.Plug("a", Reader::Plain());
  const Handle open = host.hid.Open("a", OpenMode::kShared);
  world.hid.Unplug("a");
  Bytes report(9);
  EXPECT_FALSE(host.hid.SetFeature(open, report));
  EXPECT_EQ(host.hid.DrainInput(open, report), Drain::kGone);
  EXPECT_EQ(host.hid.Open("a", OpenMode::kShared), kNoHandle);
}

TEST_F(VirtualHost, DrainsOneReportAndDropsTheRest) {
  host.hid.Load();
  const auto reader = Reader::Kelda();
  world.hid.Plug("a", reader);
  const Handle open = host.hid.Open("a", OpenMode::kOverlapped);
  Bytes report(9);
  EXPECT_EQ(host.hid.DrainInput(open, report), Drain::kNothing);
  reader->QueueInput({1, 0x11});
  reader->QueueInput({1, 0x22});
  EXPECT_EQ(host.hid.DrainInput(open, report), Drain::kDrained);
  EXPECT_EQ(report[1], 0x11);
  EXPECT_EQ(host.hid.DrainInput(open, report), Drain::kNothing);
  EXPECT_EQ(
      Difference({"drain nothing", "drain 01 11", "drain nothing"}, TrafficOf(world.transcript.Events())),
      "");
}

TEST_F(VirtualHost, NotesMisuse) {
  host.hid.Load();
  const char* path = nullptr;
  host.hid.Member(0, path);
  host.hid.BeginWalk(HidClass::kHid);
  host.hid.BeginWalk(HidClass::kHid);
  host.hid.EndWalk();
  host.hid.EndWalk();
  host.mutex.Unlock();
  host.mutex.Close();
  EXPECT_EQ(world.Misuses().size(), 5U);
}

TEST_F(VirtualHost, TheLockIsRecursive) {
  host.mutex.Create();
  host.mutex.Lock();
  host.mutex.Lock();
  EXPECT_EQ(world.mutex.Depth(), 2);
  host.mutex.Unlock();
  host.mutex.Unlock();
  host.mutex.Close();
  EXPECT_EQ(world.Misuses(), Lines{});
}

TEST_F(VirtualHost, PlaysASocketFromAScript) {
  world.sockets.toReceive = {Bytes{0x41, 0x42, 0x43}, std::nullopt, Bytes{}};
  Bytes buffer(2);
  EXPECT_EQ(host.sockets.Send(7, Bytes{0x23}), 1);
  EXPECT_EQ(host.sockets.Recv(7, buffer), 2);
  EXPECT_EQ(host.sockets.Recv(7, buffer), -1);
  EXPECT_EQ(host.sockets.Recv(7, buffer), 0);
  EXPECT_EQ(host.sockets.Recv(7, buffer), -1);
  world.sockets.sendResult = -1;
  world.sockets.closeResult = -1;
  EXPECT_EQ(host.sockets.Send(7, Bytes{0x24}), -1);
  EXPECT_EQ(host.sockets.Close(7), -1);
  EXPECT_EQ(world.sockets.sent, (std::vector<Bytes>{{0x23}, {0x24}}));
  EXPECT_EQ(Difference({"send 23", "recv 41 42", "recv refused", "recv", "recv refused", "send 24 refused"},
                       TrafficOf(world.transcript.Events())),
            "");
}

TEST_F(VirtualHost, AComPortLeadsToADevice) {
  sim::ReaderFa reader(Reader::Plain());
  sim::VirtualComPort port(world.transcript, reader);
  port.onTimeout = [&] { reader.Silence(); };
  Bytes buffer(2);
  EXPECT_EQ(port.Write(Bytes{0xFA}), 1U);
  EXPECT_EQ(port.Write(Bytes{0x0C, 0x06, 0, 0}), 4U);
  EXPECT_EQ(port.Read(buffer), 2U);
  EXPECT_EQ(buffer, (Bytes{0x0C, 2}));
  port.Write(Bytes{0xFA, 0x0C});
  EXPECT_EQ(port.Read(buffer), 0U);
  port.Write(Bytes{0xFA, 0x0C, 0x06, 0, 0});
  port.PurgeInput();
  EXPECT_EQ(port.Read(buffer), 0U);
  EXPECT_EQ(Difference({"write FA", "write 0C 06 00 00", "read 0C 02", "write FA 0C", "read",
                        "write FA 0C 06 00 00", "purge", "read"},
                       TrafficOf(world.transcript.Events())),
            "");
}

TEST_F(VirtualHost, AComPortPlaysAScript) {
  sim::VirtualComPort port(world.transcript);
  port.toRead = {1, 2, 3};
  port.writeLimit = 1;
  Bytes buffer(2);
  EXPECT_EQ(port.Write(Bytes{8, 9}), 1U);
  EXPECT_EQ(port.Read(buffer), 2U);
  EXPECT_EQ(port.Read(buffer), 1U);
  EXPECT_EQ(port.written, Bytes{8});
}

TEST_F(VirtualHost, AComPortIsOpenedOnceAtATime) {
  world.ports.present[3] = nullptr;
  auto port = host.ports.Open(3, {}, {});
  ASSERT_NE(port, nullptr);
  EXPECT_EQ(host.ports.Open(3, {}, {}), nullptr);
  EXPECT_EQ(host.ports.Open(4, {}, {}), nullptr);
  port->SetTimeouts({1, 2, 3, 4, 5});
  port.reset();
  port = host.ports.Open(3, {}, {});
  ASSERT_NE(port, nullptr);
  port->CloseQuietly();
  port.reset();
  EXPECT_EQ(Difference({"open COM3", "open COM3 refused", "open COM4 refused", "time-outs 1 2 3 4 5",
                        "close COM3", "open COM3", "close COM3 quietly"},
                       world.transcript.Lines()),
            "");
}

TEST_F(VirtualHost, AReadThatComesShortTakesItsTime) {
  world.ports.present[3] = nullptr;
  world.ports.clock = &world.clock;
  const auto port = host.ports.Open(3, {}, {11, 3, 100, 0, 0});
  auto& script = dynamic_cast<sim::VirtualComPort&>(*port);
  Bytes buffer(2);
  const auto before = world.clock.tick;
  script.toRead = {1, 2, 3};
  EXPECT_EQ(port->Read(buffer), 2U);
  EXPECT_EQ(world.clock.tick, before) << "all there at once";
  EXPECT_EQ(port->Read(buffer), 1U);
  EXPECT_EQ(world.clock.tick, before + 11) << "silence behind a byte";
  EXPECT_EQ(port->Read(buffer), 0U);
  EXPECT_EQ(world.clock.tick, before + 11 + 106) << "silence alone";
}

TEST_F(VirtualHost, DatagramsAndTheStreamDoNotMix) {
  world.sockets.onDatagram = [](platform::Address to, const Bytes&) {
    return std::vector<sim::VirtualSockets::Datagram>{{to, {1, 2, 3}}};
  };
  world.sockets.toReceive = {Bytes{9}};
  const Handle udp = host.sockets.OpenUdp();
  const Handle tcp = host.sockets.OpenTcp();
  host.sockets.SetReceiveTimeout(udp, 50);
  Bytes buffer(4);
  EXPECT_EQ(host.sockets.Recv(udp, buffer), -1);
  EXPECT_EQ(host.sockets.SendTo(udp, Bytes{7}, {{10, 0, 0, 5}, 11000}), 1);
  EXPECT_EQ(host.sockets.SendTo(udp, Bytes{7}, {{0, 0, 0, 5}, 11000}), -1);
  EXPECT_EQ(host.sockets.Recv(tcp, buffer), 1);
  EXPECT_EQ(host.sockets.Recv(udp, buffer), 3);
  EXPECT_EQ(host.sockets.Connect(tcp, {{10, 0, 0, 5}, 1}), -1);
  EXPECT_EQ(Difference({"socket udp -> 1001", "socket tcp -> 1002", "option 1001 timeout 50", "recv refused",
                        "sendto 10.0.0.5:11000 07", "sendto 0.0.0.5:11000 07 refused", "recv 09",
                        "recv 01 02 03", "connect 10.0.0.5:1 refused"},
                       world.transcript.Lines()),
            "");
}

TEST_F(VirtualHost, LibusbHasAtMostOneDevice) {
  EXPECT_EQ(host.usb.Open({0x171B, 0x1004}), kNoHandle);
  world.usb.loads = world.usb.present = true;
  EXPECT_EQ(host.usb.Open({0x171B, 0x1005}), kNoHandle);
  const Handle device = host.usb.Open({0x171B, 0x1004});
  EXPECT_NE(device, kNoHandle);
  EXPECT_EQ(world.usb.openHandles, 1);
  world.usb.toRead = {{1, 2, 3}, {}};
  Bytes buffer(2);
  EXPECT_EQ(host.usb.BulkRead(device, 0x83, buffer, 250), 2);
  EXPECT_EQ(host.usb.BulkRead(device, 0x83, buffer, 250), -1);
  EXPECT_EQ(host.usb.BulkWrite(device, 3, buffer, 99), 2);
  EXPECT_EQ(world.usb.transfers.back(), (sim::VirtualLibusb::Transfer{false, 3, 2, 99}));
  host.usb.Close(device);
  EXPECT_EQ(world.usb.openHandles, 0);
}

TEST_F(VirtualHost, PlacesAreWhereTheTestSays) {
  EXPECT_FALSE(host.places.EnvironmentIsSet("TAVLYNAPI_LOGGING"));
  world.places.environment = {"TAVLYNAPI_LOGGING"};
  EXPECT_TRUE(host.places.EnvironmentIsSet("TAVLYNAPI_LOGGING"));
  EXPECT_TRUE(host.places.CurrentFolder().View().ends_with(std::filesystem::path::preferred_separator));
  world.places.currentFolder = "";
  EXPECT_TRUE(host.places.CurrentFolder().IsEmpty());
}

TEST(Traffic, ShowsWhatDiffers) {
  EXPECT_EQ(Difference({"set 80", "get"}, {"set 80", "get 01 02"}), "");
  EXPECT_EQ(Difference({"set 80", "get"}, {"set 80", "get refused"}), "  set 80\n- get\n+ get refused\n");
  EXPECT_EQ(Difference({"set 80", "get", "set 81"}, {"set 80", "set 81", "sleep 5"}),
            "  set 80\n- get\n  set 81\n+ sleep 5\n");
  EXPECT_EQ(Difference({}, {"set 80"}), "+ set 80\n");
}

TEST(Traffic, BuildsLongExpectations) {
  EXPECT_EQ(Join({Times(2, {"set 80 refused", "sleep 80"}), {"set 80"}}),
            (Lines{"set 80 refused", "sleep 80", "set 80 refused", "sleep 80", "set 80"}));
}

}  // namespace
}  // namespace tavlyn::test
