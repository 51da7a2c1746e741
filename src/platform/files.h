// Files on disk. They are not simulated: the tests have files, too. Each call gives a file of the C library,
// or null when it could not be opened or the path is null.
#pragma once

#include <cstdio>

namespace tavlyn::platform {

// A folder is no file, whatever the mode.
std::FILE* OpenFile(const char* path, const char* mode);

// For writing from its start. A new one is its owner's alone; one that is there keeps who may read it.
std::FILE* OpenPrivateFile(const char* path);

// For reading what stands at a place where anyone may have put it: only what has an end and opens at once,
// and nothing while the process has rights that its caller has not.
std::FILE* OpenFoundFile(const char* path);

// For adding lines: the owner's alone when new, not handed to other programs, and never at the far end of a
// link.
std::FILE* OpenTraceFile(const char* path);

// Whether it has an end, as a device or a pipe need not have.
bool IsRegularFile(std::FILE* file);

}  // namespace tavlyn::platform
