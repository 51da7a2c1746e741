// A path handed over character by character, for callers that cannot pass a text.
#pragma once

#include <array>
#include <cstdint>

namespace tavlyn {

using PathBuffer = std::array<char, 257>;

// Index 0 clears the buffer and stores, 1 to 254 store, 255 runs; any other index does nothing and gives 0.
inline std::uint32_t CollectPath(PathBuffer& path, std::int16_t index, std::uint8_t character,
                                 std::uint32_t (*run)(const char*)) {
  constexpr std::int16_t kRun = 255;
  if (index == kRun) return run(path.data());
  if (index < 0 || index > kRun) return 0;
  if (index == 0) path.fill('\0');
  path[static_cast<std::size_t>(index)] = static_cast<char>(character);
  return 1;
}

}  // namespace tavlyn
