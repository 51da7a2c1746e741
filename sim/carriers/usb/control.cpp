#include <algorithm>

#include "sim/carriers/usb/device.h"
#include "sim/devices/device.h"

namespace tavlyn::sim::usb {
namespace {

constexpr std::uint8_t kDeviceDescriptor = 0x01;
constexpr std::uint8_t kConfigurationDescriptor = 0x02;
constexpr std::uint8_t kStringDescriptor = 0x03;
constexpr std::uint8_t kInterfaceDescriptor = 0x04;
constexpr std::uint8_t kEndpointDescriptor = 0x05;
constexpr std::uint8_t kReportDescriptor = 0x22;

constexpr std::uint8_t kControlBytes = 64;  // in one packet of endpoint 0
constexpr std::uint8_t kBusPowered = 0x80;
constexpr std::uint8_t kPower = 50;  // in steps of 2 mA
constexpr std::size_t kLongestString = 126;

enum StringIndex : std::uint8_t { kNoString, kMaker, kProduct, kSerial };

void Append(Bytes& to, const Bytes& bytes) { to.insert(to.end(), bytes.begin(), bytes.end()); }

Bytes DeviceDescriptor(const Face& face) {
  const std::uint8_t serial = face.serial.empty() ? kNoString : kSerial;
  return {18,
          kDeviceDescriptor,
          0x10,
          0x01,
          face.cls,
          0,
          0,
          kControlBytes,
          Low(face.vid),
          High(face.vid),
          Low(face.pid),
          High(face.pid),
          0x00,
          0x01,
          kMaker,
          kProduct,
          serial,
          1};
}

Bytes ConfigurationDescriptor(const Face& face) {
  Bytes all{9, kConfigurationDescriptor, 0, 0, Low(face.interfaces.size()), 1, 0, kBusPowered, kPower};
  std::uint8_t number = 0;
  for (const Interface& interface : face.interfaces) {
    Append(all, {9, kInterfaceDescriptor, number++, 0, Low(interface.endpoints.size()), interface.cls,
                 interface.subclass, interface.protocol, 0});
    Append(all, interface.own);
    for (const Endpoint& endpoint : interface.endpoints) {
      Append(all, {7, kEndpointDescriptor, endpoint.address, endpoint.kind, endpoint.packetBytes, 0,
                   endpoint.interval});
    }
  }
  all[2] = Low(all.size());
  all[3] = High(all.size());
  return all;
}

Bytes StringDescriptor(const std::string& text) {
  Bytes all{0, kStringDescriptor};
  for (const char c : text.substr(0, kLongestString)) Append(all, {static_cast<std::uint8_t>(c), 0});
  all[0] = Low(all.size());
  return all;
}

bool GetString(const Face& face, std::size_t index, Bytes& data) {
  constexpr std::uint16_t kEnglish = 0x0409;
  switch (index) {
    case kNoString: data = {4, kStringDescriptor, Low(kEnglish), High(kEnglish)}; return true;
    case kMaker: data = StringDescriptor("Orvantis"); return true;
    case kProduct: data = StringDescriptor(face.product); return true;
    case kSerial: data = StringDescriptor(face.serial); return !face.serial.empty();
    default: return false;
  }
}

bool GetDescriptor(const Face& face, const Setup& setup, Bytes& data) {
  switch (High(setup.value)) {
    case kDeviceDescriptor: data = DeviceDescriptor(face); return true;
    case kConfigurationDescriptor: data = ConfigurationDescriptor(face); return Low(setup.value) == 0;
    case kStringDescriptor: return GetString(face, Low(setup.value), data);
    default: return false;
  }
}

bool GetReportDescriptor(const Face& face, const Setup& setup, Bytes& data) {
  if (High(setup.value) != kReportDescriptor || setup.index >= face.interfaces.size()) return false;
  data = face.interfaces[setup.index].report;
  return !data.empty();
}

bool GetStatus(const Face&, const Setup&, Bytes& data) {
  data = {0, 0};
  return true;
}

bool GetConfiguration(const Face&, const Setup&, Bytes& data) {
  data = {1};
  return true;
}

bool GetAlternative(const Face&, const Setup&, Bytes& data) {
  data = {0};
  return true;
}

bool Accept(const Face&, const Setup&, Bytes&) { return true; }

// No interface has another alternative than its first.
bool SetAlternative(const Face& face, const Setup& setup, Bytes&) {
  return setup.value == 0 && setup.index < face.interfaces.size();
}

struct Request {
  std::uint8_t type;
  std::uint8_t request;
  bool (*answer)(const Face& face, const Setup& setup, Bytes& data);
};

// Addresses, features and the one configuration need no state of the device's.
constexpr Request kRequests[] = {
    {0x80, 0x00, GetStatus},        {0x81, 0x00, GetStatus},     {0x82, 0x00, GetStatus},
    {0x00, 0x01, Accept},           {0x01, 0x01, Accept},        {0x02, 0x01, Accept},
    {0x00, 0x03, Accept},           {0x01, 0x03, Accept},        {0x02, 0x03, Accept},
    {0x00, 0x05, Accept},           {0x80, 0x06, GetDescriptor}, {0x81, 0x06, GetReportDescriptor},
    {0x80, 0x08, GetConfiguration}, {0x00, 0x09, Accept},        {0x81, 0x0A, GetAlternative},
    {0x01, 0x0B, SetAlternative},
};

}  // namespace

bool AnswerControl(Device& device, const Setup& setup, Bytes& data) {
  const auto* row = std::ranges::find_if(
      kRequests, [&](const Request& one) { return one.type == setup.type && one.request == setup.request; });
  const bool done =
      row != std::end(kRequests) ? row->answer(device.GetFace(), setup, data) : device.Control(setup, data);
  if ((setup.type & kIn) == 0 || !done) data.clear();
  data.resize(std::min<std::size_t>(data.size(), setup.length));
  return done;
}

}  // namespace tavlyn::sim::usb
