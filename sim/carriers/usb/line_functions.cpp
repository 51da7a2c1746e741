#include "sim/carriers/usb/line_functions.h"

#include <algorithm>

namespace tavlyn::sim::usb {
namespace {

constexpr std::uint8_t kBulkOut = 0x03;
constexpr std::uint8_t kNotices = kIn | 1;
constexpr std::uint8_t kSerialOut = 0x02;
constexpr std::uint8_t kSerialIn = kIn | 2;

constexpr std::size_t kCodingBytes = 7;

const Face& BulkFace() {
  static const Face face{
      0x171B,
      0x1004,
      kVendorClass,
      "Corvane",
      "",
      {
          {kVendorClass, 0, 0, {}, {}, {{kBulkOut, kBulk, 64, 0}, {kIn | kBulkOut, kBulk, 64, 0}}},
      }};
  return face;
}

// Two interfaces, as the class wants it: what the port is, and what goes over it.
const Face& SerialFace() {
  static const Bytes kOwn{5, 0x24, 0, 0x10, 0x01,  // version 1.1
                          5, 0x24, 1, 0,    1,     // calls are not its business, data is on interface 1
                          4, 0x24, 2, 2,           // knows line coding and control lines
                          5, 0x24, 6, 0,    1};    // both are one port
  static const Face face{
      0x7A31,
      0x2301,
      kCommunicationClass,
      "Serial port",
      "",
      {
          {kCommunicationClass, 2, 1, kOwn, {}, {{kNotices, kInterrupt, 8, 255}}},
          {kDataClass, 0, 0, {}, {}, {{kSerialOut, kBulk, 64, 0}, {kSerialIn, kBulk, 64, 0}}},
      }};
  return face;
}

}  // namespace

const Face& BulkFunction::GetFace() const { return BulkFace(); }

Bytes BulkFunction::In(std::uint8_t, std::size_t most) {
  Bytes bytes(most);
  bytes.resize(line_.Take(bytes));
  cut_ = cut_ || line_.TakeCut();
  return bytes;
}

const Face& SerialFunction::GetFace() const { return SerialFace(); }

bool SerialFunction::Control(const Setup& setup, Bytes& data) {
  constexpr int kToInterface = 0x2100;
  constexpr int kFromInterface = 0xA100;
  if (setup.index != 0) return false;
  switch (setup.type << 8 | setup.request) {
    case kToInterface | 0x20:
      if (data.size() != kCodingBytes) return false;
      coding_ = data;
      return true;
    case kFromInterface | 0x21: data = coding_; return true;
    case kToInterface | 0x22:
      // Without DTR no program has the port open.
      if ((setup.value & 1) == 0) line_.Hangup();
      return true;
    default: return false;
  }
}

void SerialFunction::Out(std::uint8_t, std::span<const std::uint8_t> bytes) {
  line_.Receive(bytes, std::chrono::steady_clock::now());
}

Bytes SerialFunction::In(std::uint8_t endpoint, std::size_t most) {
  if (endpoint != kSerialIn) return {};  // there is nothing to give notice of
  line_.manner = manner_;
  const auto now = std::chrono::steady_clock::now();
  const auto due = line_.Due(now);
  Bytes bytes(due.begin(), due.begin() + static_cast<std::ptrdiff_t>(std::min(due.size(), most)));
  line_.Sent(bytes.size(), now);
  cut_ = cut_ || line_.TakeCut();
  return bytes;
}

}  // namespace tavlyn::sim::usb
