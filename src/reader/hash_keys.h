// The two keys of 16 bytes that are sent with a commit.
#pragma once

#include "core/mirror.h"

namespace tavlyn::reader {

// Sends the keys that are set, or both while security is enhanced. A failure does not stop the transfer.
void SendHashKeys(const tsCfgSlot& slot);

}  // namespace tavlyn::reader
