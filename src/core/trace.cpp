#include "core/trace.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "api.h"
#include "core/state.h"
#include "platform/contained.h"
#include "platform/files.h"
#include "platform/platform.h"

namespace tavlyn {
namespace {

constexpr const char* kVariable = "TAVLYNAPI_LOGGING";

constinit tavlyn_marker_function MarkerFunc = nullptr;
constinit std::FILE* LogStream = nullptr;

// Not flushed: lines reach the disk when the stream's buffer does, so that a traced poll stays cheap.
void WriteToStream(const char* line, std::uint64_t /*length*/) {
  if (LogStream != nullptr) std::fputs(line, LogStream);
}

// A text of a device could otherwise make a line of its own, or steer the terminal that shows it.
bool IsUnprintable(char c) { return c < ' ' || c > '~'; }

}  // namespace

void StartTrace() {
  MarkerFunc = nullptr;
  LogStream = stdout;
  if (!platform::TheHost().places.EnvironmentIsSet(kVariable)) return;
  // A file that cannot be opened leaves no stream; the lines are then made and dropped.
  LogStream = platform::OpenTraceFile(platform::TheHost().places.TraceFile().c_str());
  MarkerFunc = WriteToStream;
}

void StopTrace() {
  MarkerFunc = nullptr;
  if (LogStream != nullptr && LogStream != stdout) std::fclose(LogStream);
  LogStream = nullptr;
}

void LogLine(const char* tag, const char* format, ...) {
  // Another thread may set it, or end the process, meanwhile.
  const tavlyn_marker_function marker = MarkerFunc;
  if (marker == nullptr) return;
  char line[2048];
  const std::tm now = platform::TheHost().clock.LocalTime();
  std::size_t used = std::strftime(line, sizeof line, "%Y%m%d %H:%M:%S", &now);
  const auto add = [&](int count) {
    if (count > 0) used += static_cast<std::size_t>(count);
    if (used > sizeof line - 2) used = sizeof line - 2;
  };
  add(std::snprintf(line + used, sizeof line - used, " %s ", tag));
  const std::size_t message = used;
  std::va_list arguments;
  va_start(arguments, format);
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): va_start above does initialise it
  const int printed = std::vsnprintf(line + used, sizeof line - used, format, arguments);
  va_end(arguments);
  add(printed);
  std::replace_if(line + message, line + used, IsUnprintable, '?');
  line[used++] = '\n';
  line[used] = '\0';
  platform::Contained([&] { marker(line, used); });
}

void LogErrorCode(const char* tag) { LogLine(tag, "ERROR CODE: %ld", static_cast<long>(SearchErr)); }

void LogFailure(const char* tag) {
  LogErrorCode(tag);
  LogLine(tag, kFailed);
}

}  // namespace tavlyn

extern "C" std::uint32_t SetMarkerFunction(tavlyn_marker_function function) {
  if (!tavlyn::platform::TheHost().places.EnvironmentIsSet(tavlyn::kVariable)) return 0;
  tavlyn::MarkerFunc = function;
  return 1;
}
