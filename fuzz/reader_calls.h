// What a program does with a card reader, whatever the reader answers.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string_view>

#include "fuzz/connected.h"
#include "fuzz/memory_file.h"

namespace tavlyn::fuzz {

inline void ReadIds() {
  std::array<std::uint8_t, 32> id{};
  for (const int length : {8, 32, 1, 0}) GetActiveID(id.data(), static_cast<std::int16_t>(length));
  sim::VirtualHost::Instance().clock.tick += 1000;
  GetActiveID32(id.data(), static_cast<std::int16_t>(id.size()));
  std::array<std::uint8_t, 8> small{};
  GetActiveID32(small.data(), static_cast<std::int16_t>(small.size()));
}

inline void ReadTexts() {
  for (const auto text : {GetSerialNumber, GetPlatformType, GetBuildDate, GetCopyrightInfo, GetCPUInfo})
    Require(std::string_view(text()).size() <= 24);
  Require(std::string_view(GetFWFilename()).size() <= 64);
  Require(std::string_view(GetFullFWVersion()).size() <= 24);
  Require(std::string_view(getPartNumberString()).size() <= 24);
  std::array<std::uint8_t, 32> number{};
  if (const std::uint8_t* esn = getESN(); esn != nullptr) std::copy_n(esn, number.size(), number.begin());
}

inline void UseOutputs() {
  GetBeeperVolume();
  SetBeeperVolume(1);
  BeepNow(2, 1);
  tsLEDCtrl leds{};
  GetLEDCtrl(&leds);
  SetLEDCtrl(&leds);
}

inline void UseFiles() {
  WriteDevCfgToFile(MemoryFile::Path());
  Require(ReadDevCfgFmFile(MemoryFile::Path()) <= 1);
}

// Reads every record of the analyzer's list in full.
inline void UseExtensions() {
  GetQueuedID(1, 1);
  for (std::int16_t index = -1; index <= 36; ++index) GetQueuedID_index(index);
  Require(std::string_view(SetRawPayload(0x8C, 0, 0, 0, 0, 0, 0, 0)).size() == 23);
  std::uint16_t state = 0;
  GetModuleState(1, &state);
  Require(state <= 1);
  Require(CheckTransparentMode() <= 2 && EnableTransparentMode(1) <= 2);
  const std::uint16_t ble = GetBTLEConfiguration();
  Require(ble <= 3 || ble == 65535);
  SetCardAnalyzerControlState(1);
  const std::uint32_t status = GetCardAnalyzerStatus();
  Require(status <= 255 || status == 0xFFFFFFFF);
  CardAnalyzerRecord* records = GetCardAnalyzerData();
  // Only readers on feature reports have them.
  Require((records != nullptr) == !OnSerialPort());
  for (const CardAnalyzerRecord& record : std::span(records, records != nullptr ? GetCardCount() : 0)) {
    Require(record.RecType <= 0xFFFF && record.BitCount <= 0xFFFF);
    const std::size_t unused = 32 - std::min<std::size_t>((record.BitCount + 7) / 8, 32);
    Require(
        std::ranges::all_of(std::span(record.CardBits).first(unused), [](auto byte) { return byte == 0; }));
  }
  std::free(records);
}

// Each bit of calls leaves some calls out.
inline void TalkToReader(std::uint8_t calls) {
  const auto wants = [calls](int bit) { return (calls >> bit & 1) == 0; };
  if (wants(0)) ReadIds();
  if (wants(1)) ReadTexts();
  if (wants(2)) ReadCfg();
  if (wants(3)) WriteCfg();
  if (wants(4)) UseFiles();
  if (wants(5)) ResetFactoryDflts();
  if (wants(6)) UseOutputs();
  if (wants(7)) UseExtensions();
  CheckState();
}

}  // namespace tavlyn::fuzz
