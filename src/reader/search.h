// Finding card readers.
#pragma once

#include <cstdint>

#include "core/product.h"
#include "links/com_search.h"

namespace tavlyn {

inline constexpr UsbIdentity kReaderUsb{kReaderPair, platform::HidClass::kHid, true};

// Tries the links that DevTypeSrch allows, one after the other until one has found something.
bool SearchReaders();

// Serial ports only.
bool SearchReaderPorts();
ComSearch ReaderPortSearch();

std::uint32_t CheckReaderArrival(const char* path);

}  // namespace tavlyn
