#include "sim/devices/ethernet_adapter.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace tavlyn::sim {
namespace {

constexpr std::array<std::uint8_t, 10> kDiscovery = {'R', 'F', 'I', 'D', 'D', 'I', 'S', 'C', 0x01, 0x00};
constexpr std::array<std::uint8_t, 4> kQuery = {0x00, 0x00, 0x00, 0xF6};
constexpr std::string_view kReportHeader = "#HUSB/FR/001L";
constexpr std::size_t kReportHeaderBytes = 16;  // including two digits and a colon
constexpr std::string_view kFetch = "#Req/FR:";
constexpr char kTextFrameStart = '#';

template <typename Part>
void Put(Bytes& reply, std::size_t at, const Part& part) {
  std::copy(part.begin(), part.end(), reply.begin() + static_cast<std::ptrdiff_t>(at));
}

Bytes DiscoveryReply(const AdapterIdentity& identity) {
  constexpr std::array<std::uint8_t, 4> kVersion = {0xF4, 0xF0, 0xF2, 0xF0};
  Bytes reply(128);
  Put(reply, 0, kDiscovery);
  reply[8] = 0x02;
  Put(reply, 10, kVersion);
  Put(reply, 14, std::string_view("-Kestrin/Wedge"));
  Put(reply, 29, identity.mac);
  Put(reply, 36, identity.ip);
  return reply;
}

Bytes QueryReply(const AdapterIdentity& identity) {
  Bytes reply(30);
  reply[3] = 0xF7;
  Put(reply, 24, identity.mac);
  return reply;
}

bool BeginsLike(std::span<const std::uint8_t> bytes, std::string_view text) {
  const std::size_t count = std::min(bytes.size(), text.size());
  return std::equal(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(count), bytes.begin());
}

}  // namespace

std::optional<Bytes> AnswerDatagram(const AdapterIdentity& identity, std::uint16_t port,
                                    std::span<const std::uint8_t> datagram) {
  const bool wedge = StartsWith(identity.mac, std::span(kWedgeMac).first(3));
  if (wedge && port == kDiscoveryPort && std::ranges::equal(datagram, kDiscovery)) {
    return DiscoveryReply(identity);
  }
  if (!wedge && port == kQueryPort && std::ranges::equal(datagram, kQuery)) return QueryReply(identity);
  return std::nullopt;
}

void EthernetAdapter::Silence() {
  frame_.clear();
  serial_.Silence();
}

void EthernetAdapter::TakeByte(std::uint8_t byte) {
  if (frame_.empty() && (byte != kTextFrameStart || !takesTextFrames)) return ToSerial({&byte, 1});
  frame_.push_back(byte);
  if (TakeFrame()) frame_.clear();
}

void EthernetAdapter::ToSerial(std::span<const std::uint8_t> bytes) {
  if (!passesSerial) return;
  serial_.Receive(bytes);
  PassOn(serial_);
}

bool EthernetAdapter::TakeFrame() {
  if (BeginsLike(frame_, kFetch)) {
    if (frame_.size() < kFetch.size()) return false;
    SendReport();
    return true;
  }
  if (!BeginsLike(frame_, kReportHeader)) {
    ToSerial(frame_);  // not a frame, only bytes of the serial line that begin like one
    return true;
  }
  if (frame_.size() < kReportHeaderBytes) return false;
  const std::uint8_t* digits = frame_.data() + kReportHeader.size();
  payload_ = static_cast<std::size_t>((digits[0] - '0') * 10 + (digits[1] - '0')) % 100;
  if (frame_.size() < kReportHeaderBytes + payload_) return false;
  reader_->SetFeature(std::span<const std::uint8_t>(frame_).subspan(kReportHeaderBytes));
  return true;
}

// A report that the reader refuses is not answered at all.
void EthernetAdapter::SendReport() {
  Bytes report(payload_);
  if (!reader_->GetFeature(report)) return;
  char header[kReportHeaderBytes + 1];
  std::snprintf(header, sizeof header, "#DUSB/FR/001L%02u:", static_cast<unsigned>(payload_ % 100));
  const HidIdentity& identity = reader_->Identity();
  Bytes reply(header, header + kReportHeaderBytes);
  reply.insert(reply.end(), {High(identity.vid), Low(identity.vid), High(identity.pid), Low(identity.pid)});
  reply.insert(reply.end(), report.begin(), report.end());
  Send(reply);
}

}  // namespace tavlyn::sim
