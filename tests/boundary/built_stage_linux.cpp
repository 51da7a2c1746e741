#include <string>

#include "api.h"
#include "sim/devices/reader_ascii.h"
#include "sim/devices/reader_fa.h"
#include "tests/boundary/built_stage.h"

namespace tavlyn::boundary {
namespace {

using faults::kAdapter;

std::shared_ptr<sim::Reader> WithCard() {
  auto reader = sim::Reader::Plus(2);
  reader->PutCard({0x11, 0x12, 0x13}, 24);
  return reader;
}

std::shared_ptr<sim::ByteDevice> LineOf(faults::Stage stage) {
  if (stage == faults::kText) return std::make_shared<sim::ReaderAscii>(WithCard());
  return std::make_shared<sim::ReaderFa>(WithCard());
}

// Null for a device on a line.
const char* WordOf(faults::Stage stage) {
  switch (stage) {
    case faults::kPlain: return "plug reader";
    case faults::kPlus: return "plug plus:2";
    case faults::kNumbered: return "plug plus:2@7A31:3BFB";
    case faults::kMagstripe: return "plug magstripe";
    case faults::kSonar: return "plug sonar";
    default: return nullptr;
  }
}

}  // namespace

BuiltStage::BuiltStage(faults::Stage stage, const Library& library) : stage_(stage), library_(library) {
  line_.device = LineOf(stage);
  SetUnsupportedProductErrorCode(0);
  SetConnectProduct(stage == faults::kMagstripe ? 2 : stage == faults::kSonar ? 4 : 1);
  SetDevTypeSrch(0);
  if (stage == faults::kCom || stage == faults::kText) SetDevTypeSrch(1);
  if (stage == faults::kTcp) SetDevTypeSrch(2);
  SetComSrchRange(faults::kComNumber, faults::kComNumber);
  VirtualComSearchRange(1, 256);
  UseAsciiCommandProtocol(stage == faults::kText ? 1 : 0);
  if (stage == faults::kBulk) usb_.emplace();
  if (stage == faults::kCom || stage == faults::kText) {
    port_ = std::make_unique<PortDevice>(ports_, faults::kComNumber, line_);
  }
  if (stage == faults::kTcp || stage == faults::kUdp) {
    adapter_ = std::make_unique<TcpDevice>(kAdapter, line_);
    SetIpPort(kAdapter[0], kAdapter[1], kAdapter[2], kAdapter[3], adapter_->Port());
  }
  Refresh();
  // Only root may be able to write to the stand-in.
  exists_ = stage != faults::kBulk || USBConnect(nullptr) == 1;
  USBDisconnect();
}

BuiltStage::~BuiltStage() {
  USBDisconnect();
  library_.Standin("reset");
}

void BuiltStage::Refresh() {
  line_.device = LineOf(stage_);
  library_.Standin("reset");
  library_.Standin("record off");
  if (const char* word = WordOf(stage_)) library_.Standin(word);
  if (!usb_) return;
  for (const char* command : {"reset", "plug plus:2@bulk", "record off"}) usb_->Do(command);
}

}  // namespace tavlyn::boundary
