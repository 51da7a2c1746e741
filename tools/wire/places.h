// Where each word of a configuration is on the wire, made from the tables with which the library packs and
// unpacks. docs/protocol.md and "tavlynctl config explain" show it.
#pragma once

#include <string>
#include <vector>

namespace tavlyn::wire {

struct Place {
  std::vector<std::string> commands;  // that carry it, or the block of a reader
  std::string byte;                   // "b3", "1 to 8"
  std::string bits;                   // "0 to 3, read only"
  std::string key;                    // "TimeParms.iIDHoldTO", "LedColor[#]", "PingRateS"
  std::string part = {};              // of a setting that has several places: "LedColor[0]"
  unsigned mask = 0xFF;               // of a magnetic-stripe reader's byte: the most that it holds
};

std::string HexByte(unsigned byte);

std::vector<Place> ReaderPlaces();
std::string BlockName(unsigned number);
std::vector<Place> MagstripePlaces();
std::vector<Place> SonarPlaces();

}  // namespace tavlyn::wire
