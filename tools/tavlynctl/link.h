// Where a connect searches: on USB, on serial ports or at a network address.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace tavlyn::ctl {

enum class LinkKind { kUsb, kSerial, kEthernet };

using Ip = std::array<std::uint8_t, 4>;  // first octet first

struct Link {
  LinkKind kind = LinkKind::kUsb;
  std::uint16_t firstPort = 0;  // COM numbers
  std::uint16_t lastPort = 0;
  std::uint32_t baud = 9600;
  Ip ip{};
  std::uint16_t tcpPort = 0;
  bool ascii = false;  // the text dialect of serial readers
};

// The addresses from ip, whose fourth octet is the first one, to last.
struct IpRange {
  Ip ip{};
  std::uint8_t last = 0;
};

// The program's options that choose the link; they may also follow a command.
void AddLinkWords(CLI::App& app, Link& link);
// "3" or "3-8"; false for anything else, or outside 1 to 256.
bool TakePorts(const std::string& text, Link& link);
// "10.0.0.5:10001".
bool TakePeer(const std::string& text, Link& link);
// "10.0.0.5" or "10.0.0.5-20".
std::optional<IpRange> ParseRange(const std::string& text);

std::string Dotted(const Ip& ip);
// "on COM3 to COM8", "at 10.0.0.5:10001".
std::string Where(const Link& link);

}  // namespace tavlyn::ctl
