#include "tools/tavlynctl/link.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <string_view>

#include "tools/command_line.h"

namespace tavlyn::ctl {
namespace {

constexpr unsigned kHighestComPort = 256;
constexpr unsigned kHighestOctet = 255;
constexpr unsigned kHighestTcpPort = 65535;

// Takes numbers and signs off the front of a text.
class AddressScan {
 public:
  explicit AddressScan(std::string_view text) : left_(text) {}

  [[nodiscard]] bool Number(unsigned lowest, unsigned highest, unsigned& number) {
    const auto [end, error] = std::from_chars(left_.data(), left_.data() + left_.size(), number);
    if (error != std::errc() || number < lowest || number > highest) return false;
    left_.remove_prefix(static_cast<std::size_t>(end - left_.data()));
    return true;
  }

  bool Sign(char sign) {
    if (!left_.starts_with(sign)) return false;
    left_.remove_prefix(1);
    return true;
  }

  [[nodiscard]] bool Address(Ip& ip) {
    for (std::size_t at = 0; at < ip.size(); ++at) {
      unsigned octet = 0;
      if ((at > 0 && !Sign('.')) || !Number(0, kHighestOctet, octet)) return false;
      ip[at] = static_cast<std::uint8_t>(octet);
    }
    return true;
  }

  [[nodiscard]] bool AtEnd() const { return left_.empty(); }

 private:
  std::string_view left_;
};

}  // namespace

bool TakePorts(const std::string& text, Link& link) {
  AddressScan scan(text);
  unsigned first = 0;
  if (!scan.Number(1, kHighestComPort, first)) return false;
  unsigned last = first;
  if (scan.Sign('-') && !scan.Number(first, kHighestComPort, last)) return false;
  link.kind = LinkKind::kSerial;
  link.firstPort = static_cast<std::uint16_t>(first);
  link.lastPort = static_cast<std::uint16_t>(last);
  return scan.AtEnd();
}

bool TakePeer(const std::string& text, Link& link) {
  AddressScan scan(text);
  unsigned port = 0;
  if (!scan.Address(link.ip) || !scan.Sign(':') || !scan.Number(1, kHighestTcpPort, port)) return false;
  link.kind = LinkKind::kEthernet;
  link.tcpPort = static_cast<std::uint16_t>(port);
  return scan.AtEnd();
}

void AddLinkWords(CLI::App& app, Link& link) {
  app.fallthrough();
  const auto add = [&](const char* name, bool (*take)(const std::string&, Link&), const char* kind,
                       const char* text) {
    return app.add_option_function<std::string>(
        name,
        [&link, take, name, kind](const std::string& word) {
          if (!take(word, link)) throw CLI::ValidationError(name, word + " is not " + kind);
        },
        text);
  };
  CLI::Option* com = add("--com", TakePorts, "a port from 1 to 256, or LO-HI of such ports",
                         "Search only this COM port, or these ports (1 to 256)")
                         ->type_name("N|LO-HI");
  add("--ip", TakePeer, "an address with a port, A.B.C.D:PORT",
      "Search only behind the Ethernet adapter of this address")
      ->type_name("A.B.C.D:PORT")
      ->excludes(com);
  app.add_option("--baud", link.baud, "Speed of the COM ports, for --com (9600)")
      ->check(WholeNumber(1))
      ->needs(com)
      ->type_name("RATE");
  app.add_flag("--ascii", link.ascii, "Speak the text dialect of serial readers, for --com and --ip");
}

std::optional<IpRange> ParseRange(const std::string& text) {
  AddressScan scan(text);
  IpRange range;
  if (!scan.Address(range.ip)) return std::nullopt;
  unsigned last = range.ip[3];
  if (scan.Sign('-') && !scan.Number(last, kHighestOctet, last)) return std::nullopt;
  if (!scan.AtEnd()) return std::nullopt;
  range.last = static_cast<std::uint8_t>(last);
  return range;
}

std::string Dotted(const Ip& ip) {
  std::string text;
  for (const std::uint8_t octet : ip) text += (text.empty() ? "" : ".") + std::to_string(octet);
  return text;
}

std::string Where(const Link& link) {
  if (link.kind == LinkKind::kUsb) return "on USB";
  if (link.kind == LinkKind::kEthernet) return "at " + Dotted(link.ip) + ":" + std::to_string(link.tcpPort);
  const std::string first = "on COM" + std::to_string(link.firstPort);
  return link.firstPort == link.lastPort ? first : first + " to COM" + std::to_string(link.lastPort);
}

}  // namespace tavlyn::ctl
