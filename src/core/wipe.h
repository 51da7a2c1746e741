// Memory that may have held keys, or the text of files with keys, is overwritten when it is no longer needed.
#pragma once

#include <cstddef>

namespace tavlyn {

// Overwrites memory in a way that no compiler leaves out.
inline void Wipe(void* memory, std::size_t bytes) {
  auto* at = static_cast<volatile unsigned char*>(memory);
  for (; bytes > 0; --bytes) *at++ = 0;
}

// An array that is wiped when it is destroyed.
template <typename Array>
struct Wiped : Array {
  ~Wiped() { Wipe(this->data(), this->size() * sizeof(typename Array::value_type)); }
};

}  // namespace tavlyn
