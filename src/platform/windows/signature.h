// Whether a file may be loaded into the process.
#pragma once

namespace tavlyn::platform {

// True when the file's Authenticode signature verifies.
bool VerifyFileSignature(const wchar_t* path);

}  // namespace tavlyn::platform
