// File exports for callers that hand over a path character by character.
#include "api.h"
#include "core/state.h"

using namespace tavlyn;

std::uint32_t writeDevCfgToFile_char(std::int16_t index, std::uint8_t character) {
  return CollectPath(Buffers.savePath, index, character, WriteDevCfgToFile);
}

std::uint32_t readDevCfgFmFile_char(std::int16_t index, std::uint8_t character) {
  return CollectPath(Buffers.loadPath, index, character, ReadDevCfgFmFile);
}
