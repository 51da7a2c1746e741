// The trace: one line per notable event, "<time stamp> <tag> <message>". Off unless the environment variable
// TAVLYNAPI_LOGGING was set when the library was loaded.
#pragma once

#include <cstdint>

namespace tavlyn {

// Opens the trace file and turns the trace on when the variable is set. Failures are ignored.
void StartTrace();
// Closes the trace file.
void StopTrace();

[[gnu::format(printf, 2, 3)]] void LogLine(const char* tag, const char* format, ...);

// "ERROR CODE: %ld". It prints SearchErr whichever word the failure set; programs that parse traces rely on
// it.
void LogErrorCode(const char* tag);

// The usual pair after a failure: the error code line and "Failed !!".
void LogFailure(const char* tag);
// The same, with an error bit for the active device. Always false, which most callers return in turn.
bool Fail(const char* tag, std::uint32_t error);

inline constexpr const char* kFailed = "Failed !!";
inline constexpr const char* kSuccess = "Success !!";

}  // namespace tavlyn
