#include "sim/devices/reader_state.h"

#include <numeric>

namespace tavlyn::sim {
namespace {

// A 26-bit card: both parity bits stripped, 8 bits of facility code and 16 of ID, sent as "123:45678".
Settings FactorySettings(std::uint8_t featureBits) {
  Settings settings;
  settings.blocks[0] = {3, 5, 0x11, 16, 26, ':', 0x28, 0x1C};
  settings.blocks[1] = {0, 25, 20, 40, 1, 1, 0x40, featureBits};
  settings.blocks[2] = {0x01, 0x10, 0, 0, 0, 0, 0, 0};
  settings.separated[0] = 12;  // twelve pages, the short form
  settings.separated[3] = 12;
  return settings;
}

ReaderState CommonState() {
  ReaderState state;
  state.luid = state.storedLuid = 0x0001;
  state.did = 0x7431;
  state.model = "RDR-80581AKU";
  state.texts = {{kSerialNumber, "0400123456"},
                 {kPlatform, "Desktop USB"},
                 {kFullFirmwareVersion, "LNC 16.07.2 build 94"},
                 {kBuildDate, "Mar  5 2024 06:07:08"},
                 {kCopyright, "(c) Orvantis"},
                 {kFirmwareFile, "orvantis_80581_16_07_2_build_94.bin"},
                 {kCpuInfo, "M4 at 96 MHz"}};
  std::iota(state.esn.begin(), state.esn.end(), std::uint8_t{0x40});
  state.volume = 2;
  state.installedHardware = 0x05;
  state.supportedHardware = 0x0F;
  state.baudCode = 3;
  state.extensions.modules = {{1, true}, {2, false}};
  return state;
}

}  // namespace

ReaderState PlainReaderState() {
  ReaderState state = CommonState();
  state.configurations.assign(1, Configuration::Of(FactorySettings(0x20)));
  return state;
}

ReaderState PlusReaderState(int configurations) {
  ReaderState state = CommonState();
  state.plus = true;
  state.configurations.clear();
  for (int i = 0; i < configurations; ++i) {
    Settings settings = FactorySettings(0xE0);
    settings.cardType = static_cast<std::uint16_t>(0xEF04 + 0x0100 * i);
    settings.highPriority = i == 0;
    state.configurations.push_back(Configuration::Of(settings));
  }
  state.firmware = {{{0x10072005, 0x10070101, 0, 0, 0}, {0x20010009, 0, 0, 0, 0}, {0, 0, 0, 0, 0}}};
  state.extensions.hasTransparentMode = true;
  state.extensions.hasBle = true;
  state.cardTypes = {0xEF04, 0xF004, 0xF102, 0xFA01, 0x7D01};
  return state;
}

}  // namespace tavlyn::sim
