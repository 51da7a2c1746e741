#include "tests/support/serial_reader.h"

#include <algorithm>
#include <utility>

#include "links/link_socket.h"

namespace tavlyn::test {
namespace {

constexpr platform::Handle kSocket = 7;

}  // namespace

void FaScript::Receive(std::span<const std::uint8_t> bytes) {
  if (bytes.size() == 1 && bytes.front() == 0xFA) {
    classSeen_ = true;
    return;
  }
  if (!classSeen_) return;  // data after a frame that has been answered
  classSeen_ = false;
  if (replies.empty()) return;
  out_.insert(out_.end(), replies.front().begin(), replies.front().end());
  replies.pop_front();
}

std::size_t FaScript::Take(std::span<std::uint8_t> bytes) {
  const std::size_t count = std::min(bytes.size(), out_.size());
  const auto end = out_.begin() + static_cast<std::ptrdiff_t>(count);
  std::copy(out_.begin(), end, bytes.begin());
  out_.erase(out_.begin(), end);
  return count;
}

void SerialBench::AddLine(sim::ByteDevice& farEnd, std::uint32_t plusState) {
  shared.ActDev = shared.DevCnt++;
  tsDevEntry& entry = EntryOfActDev();
  entry.LinkKind = kBySerialPort;
  entry.ProductKind = kReader;
  entry.PlusState = plusState;
  auto port = std::make_unique<sim::VirtualComPort>(host.transcript, farEnd);
  com = port.get();
  entry.pSerialPort = new (std::nothrow) SerialPort(std::move(port));  // the entry owns it
  ForgetTraffic();
}

void SerialBench::AddReader(std::shared_ptr<sim::Reader> model, std::uint32_t plusState) {
  reader = std::move(model);
  line = std::make_unique<sim::ReaderFa>(reader);
  AddLine(*line, plusState);
}

void SerialBench::AddScript(std::deque<sim::Bytes> replies, std::uint32_t plusState) {
  script.replies = std::move(replies);
  AddLine(script, plusState);
}

void SerialBench::OpenSocket() { shared.link.LinkSocket = kSocket; }

Lines FrameLines(const std::string& header, const Lines& rest) {
  return Join({{"flush", "write FA", "sleep 50", "write " + header}, rest});
}

}  // namespace tavlyn::test
