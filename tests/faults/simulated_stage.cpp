#include "tests/faults/simulated_stage.h"

#include <utility>
#include <vector>

#include "api.h"
#include "sim/carriers/virtual_host.h"
#include "sim/devices/ethernet_adapter.h"
#include "sim/devices/magstripe.h"
#include "sim/devices/reader_ascii.h"
#include "sim/devices/reader_fa.h"
#include "sim/devices/sonar.h"
#include "tests/faults/faulty_host.h"

namespace tavlyn::faults {
namespace {

using sim::Reader;

constexpr const char* kPath = R"(\\?\hid#vid_7A31&pid_3BFA#1)";
constexpr const char* kSonarPath = R"(\\?\hid#vid_18C8&pid_2BFA#1)";

sim::VirtualHost& Host() { return sim::VirtualHost::Instance(); }

// With something to tell in every respect.
std::shared_ptr<Reader> Furnished(std::shared_ptr<Reader> reader) {
  reader->PutCard({0x11, 0x12, 0x13, 0x14, 0x15}, 37);
  reader->state.queue.emplace_back();
  reader->QueueInput({1, 5});
  return reader;
}

std::shared_ptr<sim::HidDevice> DeviceOf(Stage stage) {
  if (stage == kPlus) return Furnished(Reader::Plus(2));
  if (stage == kNumbered) return Furnished(Reader::Kelda(2));
  if (stage == kSonar) return std::make_shared<sim::Sonar>();
  if (stage != kMagstripe) return Furnished(Reader::Plain());
  auto stripe = std::make_shared<sim::Magstripe>();
  if (const auto card = sim::ParseMagCard("%B1234567890^CARD/TEST^2512?;1234567890=2512?"))
    stripe->Swipe(*card);
  return stripe;
}

std::shared_ptr<sim::ByteDevice> LineOf(Stage stage) {
  auto reader = Furnished(Reader::Plus(2));
  if (stage == kText) return std::make_shared<sim::ReaderAscii>(reader);
  auto line = std::make_shared<sim::ReaderFa>(reader);
  line->inPieces = stage == kBulk;
  return line;
}

std::vector<sim::VirtualSockets::Datagram> AnswersOf(platform::Address to, const sim::Bytes& datagram) {
  const auto answer = sim::AnswerDatagram({sim::kWedgeMac, kAdapter}, to.port, datagram);
  if (to.ip != kAdapter || !answer) return {};
  return {{to, *answer}};
}

}  // namespace

SimulatedStage::SimulatedStage(Stage stage) : stage_(stage) {
  Host().ports.clock = &Host().clock;
  if ((stage & (kReports | kMagstripe | kSonar)) != 0) {
    Host().hid.Plug(stage == kSonar ? kSonarPath : kPath, DeviceOf(stage));
  }
  Search();
  Refresh();
}

void SimulatedStage::Search() const {
  SetUnsupportedProductErrorCode(0);
  SetConnectProduct(stage_ == kMagstripe ? 2 : stage_ == kSonar ? 4 : 1);
  SetDevTypeSrch(0);
  if (stage_ == kCom || stage_ == kText) SetDevTypeSrch(1);
  if (stage_ == kTcp) SetDevTypeSrch(2);
  SetComSrchRange(kComNumber, kComNumber);
  if (stage_ == kTcp) SetIpPort(kAdapter[0], kAdapter[1], kAdapter[2], kAdapter[3], kAdapterPort);
  UseAsciiCommandProtocol(stage_ == kText ? 1 : 0);
}

void SimulatedStage::Refresh() {
  if ((stage_ & (kReports | kMagstripe | kSonar)) != 0) {
    Host().hid.Find(stage_ == kSonar ? kSonarPath : kPath)->device = DeviceOf(stage_);
    return;
  }
  line_ = LineOf(stage_);
  Attach();
}

void SimulatedStage::Attach() {
  sim::VirtualHost& host = Host();
  host.ports.onTimeout = [this] { line_->Silence(); };
  if (stage_ == kCom || stage_ == kText) host.ports.present[kComNumber] = line_.get();
  if (stage_ == kTcp || stage_ == kUdp) {
    host.sockets.device = line_.get();
    host.sockets.datagrams.clear();
    host.sockets.onDatagram = AnswersOf;
    host.sockets.hostAddress = {10, 0, 0, 9};
    host.sockets.accepts = [](platform::Address peer) {
      return peer.ip == kAdapter && peer.port == kAdapterPort;
    };
  }
  if (stage_ != kBulk) return;
  host.usb.loads = host.usb.present = true;
  host.usb.device = line_.get();
}

int SimulatedStage::Open() {
  return static_cast<int>(Host().hid.OpenHandles() + Host().ports.inUse.size()) + Host().usb.openHandles +
         Trouble::Instance().sockets;
}

}  // namespace tavlyn::faults
