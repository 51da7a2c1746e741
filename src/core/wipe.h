// Memory that may have held keys, or the text of files with keys, is overwritten when it is not needed any
// more.
#pragma once

#include <cstddef>

namespace tavlyn {

// In a way that no compiler leaves out.
inline void Wipe(void* memory, std::size_t bytes) {
  auto* at = static_cast<volatile unsigned char*>(memory);
  for (; bytes > 0; --bytes) *at++ = 0;
}

// An array that is wiped at its end.
template <typename Array>
struct Wiped : Array {
  ~Wiped() { Wipe(this->data(), this->size() * sizeof(typename Array::value_type)); }
};

}  // namespace tavlyn
