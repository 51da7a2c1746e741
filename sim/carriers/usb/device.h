// A simulated device as a USB host sees it: what its descriptors say, and what its endpoints do.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tavlyn::sim::usb {

using Bytes = std::vector<std::uint8_t>;

inline constexpr std::uint8_t kIn = 0x80;  // in an endpoint's address and in the type of a request
inline constexpr std::uint8_t kBulk = 2;
inline constexpr std::uint8_t kInterrupt = 3;

inline constexpr std::uint8_t kCommunicationClass = 0x02;
inline constexpr std::uint8_t kHidClass = 0x03;
inline constexpr std::uint8_t kDataClass = 0x0A;
inline constexpr std::uint8_t kVendorClass = 0xFF;

struct Endpoint {
  std::uint8_t address;
  std::uint8_t kind;
  std::uint8_t packetBytes;
  std::uint8_t interval;  // milliseconds
};

struct Interface {
  std::uint8_t cls = 0;
  std::uint8_t subclass = 0;
  std::uint8_t protocol = 0;
  Bytes own{};     // descriptors of its class, which follow that of the interface
  Bytes report{};  // its report descriptor, if it is a HID interface
  std::vector<Endpoint> endpoints{};
};

struct Face {
  std::uint16_t vid = 0;
  std::uint16_t pid = 0;
  std::uint8_t cls = 0;  // 0: the interfaces say it
  std::string product{};
  std::string serial{};
  std::vector<Interface> interfaces{};
};

// The first packet of a control transfer.
struct Setup {
  std::uint8_t type = 0;
  std::uint8_t request = 0;
  std::uint16_t value = 0;
  std::uint16_t index = 0;
  std::uint16_t length = 0;
};

class Device {
 public:
  virtual ~Device() = default;
  [[nodiscard]] virtual const Face& GetFace() const = 0;
  // A request that is not one of those that every device has. data is what came with it, or becomes the
  // answer, which is cut to the length asked for. False stalls.
  virtual bool Control(const Setup& setup, Bytes& data) = 0;
  // Called for endpoints of the face only.
  virtual void Out(std::uint8_t endpoint, std::span<const std::uint8_t> bytes) = 0;
  // Up to that many bytes; none while there is nothing to send.
  virtual Bytes In(std::uint8_t endpoint, std::size_t most) = 0;
  [[nodiscard]] virtual bool Present() const = 0;
};

// A control transfer: the requests that every device has, and the device's own.
bool AnswerControl(Device& device, const Setup& setup, Bytes& data);

}  // namespace tavlyn::sim::usb
