// File exports for callers that hand over a path character by character.
#include "api.h"
#include "core/path_collector.h"

namespace {

constinit tavlyn::PathBuffer SavePath{};
constinit tavlyn::PathBuffer LoadPath{};

}  // namespace

std::uint32_t writeDevCfgToFile_char(std::int16_t index, std::uint8_t character) {
  return tavlyn::CollectPath(SavePath, index, character, WriteDevCfgToFile);
}

std::uint32_t readDevCfgFmFile_char(std::int16_t index, std::uint8_t character) {
  return tavlyn::CollectPath(LoadPath, index, character, ReadDevCfgFmFile);
}
