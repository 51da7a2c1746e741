// Finding card readers.
#pragma once

namespace tavlyn {

// Tries the links that DevTypeSrch allows, one after the other until one has found something.
bool SearchReaders();

// Serial ports only.
bool SearchReaderPorts();

}  // namespace tavlyn
