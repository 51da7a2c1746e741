// Every command of the card reader, once: its feature report and its FA frame.
//
//   report    b1 b2 …           b0 is the report ID, filled in below; unused bytes are 0
//   FA frame  FA INS P1 P2 P3   P3 is the length of the data that follows or that is expected
//
// x and y stand for the arguments of a command, in the order in which they are passed.
#pragma once

#include <array>
#include <cstdint>

namespace tavlyn {

// How an FA exchange goes on after its header; see fa_frames.h.
enum class Fa : std::uint8_t { kNone, kRecvData, kSendData, kRecv8, kRecvN, kSendStatus };

struct Command {
  std::array<std::int16_t, 6> report;  // b1 onward
  std::array<std::int16_t, 6> fa;      // INS P1 P2 P3, and for one command two bytes more
  Fa routine = Fa::kNone;
  std::uint8_t hint = 0;     // FaRecvData: data bytes expected plus one, where P3 does not tell
  std::uint8_t faBytes = 4;  // sent after CLA
};

namespace command {

inline constexpr std::int16_t x = -1;
inline constexpr std::int16_t y = -2;

// clang-format off
//                                      report                     FA
inline constexpr Command kReadBlock    {{x},                       {0x01, y,    0x00, 0x08}, Fa::kRecvData};  // x = 80 + y
inline constexpr Command kWriteBlock   {{x},                       {0x81, y,    0x00, 0x08}, Fa::kSendData};
inline constexpr Command kReadCardType {{0x84},                    {}};
inline constexpr Command kWriteCardType{{0x84},                    {0x81, 0x04, 0x00, 0x08}, Fa::kSendData};
inline constexpr Command kSepFields    {{0x85, x,    0x00, 0x10},  {}};
inline constexpr Command kSepFieldsFa  {{},                        {x,    0x00, 0x00, y},    Fa::kRecvData};  // x = 09, or 0A for readers with extended fields
inline constexpr Command kWriteSepFa   {{},                        {x,    0x00, 0x00, y},    Fa::kSendData};  // x = 0A, or 8A for readers with extended fields
inline constexpr Command kWriteHashKey {{0x85, x,    y},           {0x8A, 0x00, y,    0x10}, Fa::kSendData};  // x = half of the key, y = which key
inline constexpr Command kCardData     {{0x88, 0x01, x},           {}};
inline constexpr Command kQueryConfig  {{0x89, 0x01},              {0x09, 0x01, 0x00, 0x00}, Fa::kRecvData, 8};
inline constexpr Command kSelectConfig {{0x89, 0x81, x},           {0x09, 0x81, x,    0x00}, Fa::kRecvData, 8};
inline constexpr Command kMoveBank     {{0x89, 0x82, x, y, 0, 0xFF}, {0x09, 0x82, x, y, 0x00, 0xFF}, Fa::kRecvData, 6, 6};
inline constexpr Command kFirmwareWord {{0x89, 0x03, x,    y},     {0x09, 0x03, x,    y},    Fa::kRecvData, 8};
inline constexpr Command kCardTypePage {{0x89, 0x04, x},           {0x09, 0x04, x,    0x00}};
inline constexpr Command kReadItem     {{0x89, 0x10, 0x00, x},     {}};  // x = block of the item, 0 its header
inline constexpr Command kWriteItem    {{0x89, 0x90, 0x00, x},     {}};  // the same, FF its end
inline constexpr Command kHardware     {{0x89, 0x05},              {0x09, 0x05, 0x00, 0x00}, Fa::kRecv8};
inline constexpr Command kIdentity     {{0x8A},                    {0x04, 0x00, 0x00, 0x04}, Fa::kRecvData};
inline constexpr Command kWriteLuid    {{0x8A},                    {0x06, 0x00, 0x00, 0x02}, Fa::kSendData};
inline constexpr Command kPing         {{0x8A},                    {0x04, 0xED, 0xED, 0x04}, Fa::kRecvData};  // ED ED: a fixed probe
inline constexpr Command kModelNumber  {{0x8C, 0x01, y},           {0x0C, 0x01, y,    0x00}, Fa::kRecv8};
inline constexpr Command kQueuedId     {{0x8C, 0x02, x,    y},     {0x0C, 0x02, x,    y},    Fa::kRecv8};  // x = page, y = options
inline constexpr Command kBeep         {{0x8C, 0x03, x},           {0x0C, 0x03, x,    0x00}, Fa::kSendStatus};
inline constexpr Command kDeviceText   {{0x8C, 0x04, x,    y},     {0x0C, 0x04, x,    y},    Fa::kRecv8};
inline constexpr Command kEsn          {{0x8C, 0x05, x},           {}};
inline constexpr Command kReadVolume   {{0x8C, 0x06},              {0x0C, 0x06, 0x00, 0x00}, Fa::kRecvN, 1};
inline constexpr Command kAskMode      {{0x8C, 0x00},              {}};  // transparent mode
inline constexpr Command kSetMode      {{0x8C, 0x80, x},           {}};
inline constexpr Command kReadBle      {{0x8C, 0x07},              {}};
inline constexpr Command kWriteBle     {{0x8C, 0x87, x},           {}};
inline constexpr Command kAnalyzerState{{0x8C, 0x08},              {}};
inline constexpr Command kSetAnalyzer  {{0x8C, 0x88, x},           {}};
inline constexpr Command kAnalyzerData {{0x8C, 0x09, x,    y},     {}};  // x = record, y = block of its data, 0 its head
inline constexpr Command kReadModule   {{0x8C, 0x0B, 0x01, x},     {}};
inline constexpr Command kWriteModule  {{0x8C, 0x0B, 0x02, x,   y}, {}};
inline constexpr Command kId256        {{0x8D, x},                 {0x00, 0x00, 0x00, 0x24}, Fa::kRecvData};
inline constexpr Command kBitCount     {{0x8E},                    {}};
inline constexpr Command kId64         {{0x8F},                    {0x00, 0x00, 0x00, 0x0C}, Fa::kRecvData};
inline constexpr Command kCommit       {{0x90, x},                 {0x02, x,    0x00, 0x00}, Fa::kSendStatus};
inline constexpr Command kFactoryReset {{0xA0},                    {0x03, 0x00, 0x00, 0x00}, Fa::kSendStatus};
inline constexpr Command kWriteVolume  {{0x8C, 0x86, x},           {0x0C, 0x86, x,    0x00}, Fa::kRecvData};
inline constexpr Command kReadBaud     {{},                        {0x0D, 0x01, 0x00, 0x00}, Fa::kRecvN, 1};
inline constexpr Command kWriteBaud    {{},                        {0x0D, 0x81, x,    0x00}, Fa::kRecvData};
// clang-format on

}  // namespace command

// The bytes of a command with its arguments in place.
constexpr std::array<std::uint8_t, 6> Fill(const std::array<std::int16_t, 6>& bytes, std::uint8_t x,
                                           std::uint8_t y) {
  std::array<std::uint8_t, 6> filled{};
  for (std::size_t at = 0; at < filled.size(); ++at) {
    filled[at] = bytes[at] == command::x   ? x
                 : bytes[at] == command::y ? y
                                           : static_cast<std::uint8_t>(bytes[at]);
  }
  return filled;
}

}  // namespace tavlyn
