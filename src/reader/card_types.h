// The card types that a plus reader knows.
#pragma once

namespace tavlyn::reader {

void ReadCardTypeList();

// Sends card type and priority of the active slot.
bool WriteCardType();

}  // namespace tavlyn::reader
