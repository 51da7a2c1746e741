// Connects to a reader on a line and shows its cards: com N, ascii N, ip A.B.C.D PORT, usb.
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>
#include <thread>

#include "api.h"

namespace {

// Longer than the library leaves a reader alone after each exchange.
constexpr std::chrono::milliseconds kGate(270);

void ChooseLine(std::span<char*> words) {
  const std::string_view kind = words[0];
  SetConnectProduct(1);
  if (kind == "ip") {
    unsigned ip[4] = {};
    std::sscanf(words[1], "%u.%u.%u.%u", &ip[0], &ip[1], &ip[2], &ip[3]);
    SetDevTypeSrch(2);
    SetIpPort(static_cast<std::uint8_t>(ip[0]), static_cast<std::uint8_t>(ip[1]),
              static_cast<std::uint8_t>(ip[2]), static_cast<std::uint8_t>(ip[3]),
              static_cast<std::uint16_t>(std::atoi(words[2])));
  } else if (kind == "usb") {
    SetDevTypeSrch(0);
  } else {
    const auto number = static_cast<std::uint16_t>(std::atoi(words[1]));
    SetDevTypeSrch(1);
    SetComSrchRange(number, number);
  }
}

// In text the configuration is read and written back first.
bool TurnToText() { return UseAsciiCommandProtocol(1) == 1 && ReadCfg() == 1 && WriteCfg() == 1; }

}  // namespace

int main(int argc, char** argv) {
  const std::span words(argv + 1, static_cast<std::size_t>(argc - 1));
  ChooseLine(words);
  std::uint32_t did = 0;
  if (USBConnect(&did) != 1) {
    std::puts("nothing there");
    return 2;
  }
  if (std::strcmp(words[0], "ascii") == 0 && !TurnToText()) return 3;
  std::array<std::uint8_t, 8> id{};
  for (int reads = 0; reads < 2; ++reads) {
    std::this_thread::sleep_for(kGate);
    const int bits = GetActiveID(id.data(), 8);
    std::printf("%04X %d bits %02X%02X\n", static_cast<unsigned>(did), bits, static_cast<unsigned>(id[1]),
                static_cast<unsigned>(id[0]));
  }
  USBDisconnect();
  return 0;
}
