// The serial-to-network adapter that puts a reader on Ethernet: how it answers searches for adapters, and
// what it does with the bytes of its one TCP connection.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "sim/devices/faulty_line.h"
#include "sim/devices/reader_fa.h"

namespace tavlyn::sim {

inline constexpr std::uint16_t kDiscoveryPort = 11000;
inline constexpr std::uint16_t kQueryPort = 30718;

using MacAddress = std::array<std::uint8_t, 6>;

// Makers of adapters, by the first bytes of their MAC addresses. The first maker's adapters answer on the
// discovery port, the others on the query port.
inline constexpr MacAddress kWedgeMac = {0x7C, 0x31, 0xA6, 0x01, 0x02, 0x03};
inline constexpr MacAddress kBridgeMac = {0x00, 0x20, 0x4A, 0x04, 0x05, 0x06};
inline constexpr MacAddress kNewBridgeMac = {0x00, 0x1D, 0x4B, 0x07, 0x08, 0x09};
inline constexpr MacAddress kOtherBridgeMac = {0x00, 0x80, 0xA3, 0x0A, 0x0B, 0x0C};

struct AdapterIdentity {
  MacAddress mac = kWedgeMac;
  std::array<std::uint8_t, 4> ip{};
};

// The answer to a datagram received on that port; none if the adapter ignores it.
std::optional<Bytes> AnswerDatagram(const AdapterIdentity& identity, std::uint16_t port,
                                    std::span<const std::uint8_t> datagram);

// Text frames carry feature reports: "#HUSB/FR/001L08:" and a payload is a report for the reader, "#Req/FR:"
// fetches one. All other bytes are the reader's serial line.
class EthernetAdapter final : public FaultyLine {
 public:
  explicit EthernetAdapter(std::shared_ptr<Reader> reader) : reader_(std::move(reader)), serial_(reader_) {}

  bool passesSerial = true;
  bool takesTextFrames = true;

  Reader& Device() { return *reader_; }
  // Faults by command and by byte of the serial line behind the adapter; the network's faults are the
  // adapter's.
  ReaderFa& SerialLine() { return serial_; }

  void Silence() override;

 private:
  void TakeByte(std::uint8_t byte) override;
  void ToSerial(std::span<const std::uint8_t> bytes);
  // False while more bytes of the frame may come.
  bool TakeFrame();
  void SendReport();

  std::shared_ptr<Reader> reader_;
  ReaderFa serial_;
  Bytes frame_;              // the part of a text frame received so far
  std::size_t payload_ = 8;  // length of the last report; the next fetch has the same
};

}  // namespace tavlyn::sim
