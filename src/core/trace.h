// The trace: one line per notable event, "<time stamp> <tag> <message>". Off unless the environment variable
// TAVLYNAPI_LOGGING was set when the library was loaded.
#pragma once

namespace tavlyn {

// Opens the trace file and turns the trace on when the variable is set. No failure here harms anyone.
void StartTrace();
// Closes it.
void StopTrace();

#if defined(__GNUC__)
__attribute__((format(printf, 2, 3)))
#endif
void LogLine(const char* tag, const char* format, ...);

// "ERROR CODE: %ld". It prints SearchErr whichever word the failure set; programs that parse traces rely on
// it.
void LogErrorCode(const char* tag);

// The usual pair behind a failure: the error code line and "Failed !!".
void LogFailure(const char* tag);

inline constexpr const char* kFailed = "Failed !!";
inline constexpr const char* kSuccess = "Success !!";

}  // namespace tavlyn
