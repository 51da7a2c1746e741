#include "sim/devices/reader.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "sim/devices/reader_actions.h"
#include "sim/devices/reader_extensions.h"

namespace tavlyn::sim {
namespace {

constexpr std::uint16_t kVid = 0x7A31;
constexpr std::uint16_t kReaderPid = 0x3BFA;
constexpr std::uint16_t kKeldaPid = 0x3BFB;
constexpr Usage kKeyboard{1, 6};
constexpr Usage kVendorReader{0xFFA0, 0xA000};
constexpr std::size_t kSpareBytes = 1;  // programs write a BLE key in longer reports

HidIdentity IdentityOf(std::uint16_t pid, Usage usage, std::uint8_t reportId, std::string product) {
  return {kVid, pid, {usage}, reportId, sizeof(Block), std::move(product), "0400123456", kSpareBytes};
}

}  // namespace

Reader::Reader(ReaderState initial)
    : Model(IdentityOf(kReaderPid, kKeyboard, 0, "Orvantis card reader")), state(std::move(initial)) {}

std::shared_ptr<Reader> Reader::Plain() { return std::make_shared<Reader>(PlainReaderState()); }

std::shared_ptr<Reader> Reader::Plus(int configurations) {
  return std::make_shared<Reader>(PlusReaderState(configurations));
}

std::shared_ptr<Reader> Reader::Kelda(int configurations) {
  auto reader = Plus(configurations);
  reader->identity = IdentityOf(kKeldaPid, kVendorReader, 1, "Orvantis Kelda");
  return reader;
}

void Reader::PutCard(Bytes id, int bits) {
  state.card.bits = static_cast<std::uint8_t>(bits != 0 ? bits : static_cast<int>(id.size() * 8));
  state.card.id = std::move(id);
  AnalyzeCard(state);
}

void Reader::TakeCard() { state.card = {}; }

void Reader::QueueInput(Bytes report) { state.inputs.push_back(std::move(report)); }

void Reader::PowerCycle() {
  LoseWorkingMemory(state);
  SetCommand({});
  SetReply({});
  dataMayFollow_ = false;
}

// The electronic serial number has no padding.
void Reader::SetSerial(const std::string& serial) {
  Model::SetSerial(serial);
  state.texts[kSerialNumber] = serial;
  const std::size_t length = std::min(serial.size(), state.esn.size());
  std::copy_n(serial.begin(), length, state.esn.end() - static_cast<std::ptrdiff_t>(length));
}

bool Reader::TakeInput(std::vector<std::uint8_t>& report) {
  if (!Present() || state.inputs.empty()) return false;
  report = std::move(state.inputs.front());
  state.inputs.pop_front();
  return true;
}

InertInterface::InertInterface(std::uint16_t vid, std::uint16_t pid, Usage usage) {
  identity.vid = vid;
  identity.pid = pid;
  identity.usages = {usage};
  identity.featureBytes = 0;
}

}  // namespace tavlyn::sim
