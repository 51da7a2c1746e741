// What exports keep from one call to the next for callers that take or give bytes one by one, or are handed a
// pointer. One of each for the whole process.
#pragma once

#include <array>
#include <cstdint>

#include "core/id_cache.h"
#include "core/path_collector.h"

namespace tavlyn {

// The last four are passed on and named by their index alone: what they mean is the reader's affair.
struct IdRecord {
  std::array<std::uint8_t, kIdBytes> id;
  std::int16_t at32;
  std::uint16_t at33;
  std::uint8_t at34;
  std::uint8_t at35;
};

struct CallBuffers {
  PathBuffer savePath;
  PathBuffer loadPath;
  PathBuffer arrivalPath;
  PathBuffer removalPath;
  // Copied when a program asks for character 0, so that it can read on while the table changes.
  std::array<char, 25> partNumber;
  // Position 0 is the report ID's; the last one is never sent.
  std::array<std::uint8_t, 10> RawCmd;
  std::array<std::uint8_t, 10> RawReply;
  std::array<char, 41> rawText;
  std::array<char, 25> readerText;
  std::array<std::uint8_t, 32> readerEsn;
  std::array<std::uint8_t, 256> cardData;
  std::array<std::uint8_t, 1024> portRead;
  std::array<std::uint8_t, 1024> portQuickRead;
  IdRecord QueuedID;
};
inline constinit CallBuffers Buffers{};

}  // namespace tavlyn
