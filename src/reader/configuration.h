// What the files that read and write configurations share.
#pragma once

#include <cstdint>

#include "core/mirror.h"

namespace tavlyn::reader {

// Makes a plus reader use configuration n. ActConfig becomes n whether or not the reader agrees.
bool SelectConfig(std::uint8_t n);

// Whether the reader stores a configuration in 20 ms instead of 1200 ms, as those with the volume command do.
bool IsFastStoreReader();

// The card types that a plus reader knows.
void ReadCardTypeList();
// Sends card type and priority of the active slot.
bool WriteCardType();

// Sends the hash keys that are set, or both while security is enhanced. A failure does not stop the transfer.
void SendHashKeys(const tsCfgSlot& slot);

}  // namespace tavlyn::reader
