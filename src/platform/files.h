// Files on disk. They are not simulated: tests use real files. Each call returns a file of the C library, or
// null when it could not be opened or the path is null.
#pragma once

#include <cstdio>

namespace tavlyn::platform {

// Does not open folders, whatever the mode.
std::FILE* OpenFile(const char* path, const char* mode);

// Opens a file for writing from its start. A new file is accessible to its owner alone; an existing one keeps
// its permissions.
std::FILE* OpenPrivateFile(const char* path);

// Opens a file for reading that anyone may have put there: only one that has an end and opens at once, and
// none while the process has rights that its caller does not have.
std::FILE* OpenFoundFile(const char* path);

// Opens a file for adding lines: accessible to its owner alone when new, not inherited by other programs, and
// never through a link.
std::FILE* OpenTraceFile(const char* path);

// Whether the file is sure to have an end, unlike a device or a pipe.
bool IsRegularFile(std::FILE* file);

}  // namespace tavlyn::platform
