#include "core/trace.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "api.h"
#include "core/state.h"
#include "platform/contained.h"
#include "platform/files.h"
#include "platform/platform.h"

namespace tavlyn {
namespace {

constexpr const char* kVariable = "TAVLYNAPI_LOGGING";
constexpr const char* kWireVariable = "TAVLYNAPI_WIRE";

// Not flushed: lines reach the disk when the stream's buffer does, so that a traced poll stays cheap.
void WriteToStream(const char* line, std::uint64_t /*length*/) {
  if (shared.trace.LogStream != nullptr) std::fputs(line, shared.trace.LogStream);
}

void LookWhetherWireIsWanted() {
  shared.trace.bWire = platform::TheHost().places.EnvironmentIsSet(kWireVariable);
}

// Text from a device could otherwise forge a line of the trace, or control the terminal that shows it.
bool IsUnprintable(char c) { return c < ' ' || c > '~'; }

}  // namespace

void StartTrace() {
  shared.trace.MarkerFunc = nullptr;
  shared.trace.LogStream = stdout;
  if (!platform::TheHost().places.EnvironmentIsSet(kVariable)) return;
  // A file that cannot be opened leaves no stream; the lines are then formatted and dropped.
  shared.trace.LogStream = platform::OpenTraceFile(platform::TheHost().places.TraceFile().c_str());
  shared.trace.MarkerFunc = WriteToStream;
  LookWhetherWireIsWanted();
}

void StopTrace() {
  shared.trace.MarkerFunc = nullptr;
  if (shared.trace.LogStream != nullptr && shared.trace.LogStream != stdout)
    std::fclose(shared.trace.LogStream);
  shared.trace.LogStream = nullptr;
}

void LogLine(const char* tag, const char* format, ...) {
  // Read only once: another thread may set it, or end the process, meanwhile.
  const tavlyn_marker_function marker = shared.trace.MarkerFunc;
  if (marker == nullptr) return;
  char line[2048];
  const std::tm now = platform::TheHost().clock.LocalTime();
  std::size_t used = std::strftime(line, sizeof line, "%Y%m%d %H:%M:%S", &now);
  const auto add = [&](int count) {
    if (count > 0) used += static_cast<std::size_t>(count);
    used = std::min(used, sizeof line - 2);
  };
  add(std::snprintf(line + used, sizeof line - used, " %s ", tag));
  const std::size_t message = used;
  std::va_list arguments;
  va_start(arguments, format);
  const int printed = std::vsnprintf(line + used, sizeof line - used, format, arguments);
  va_end(arguments);
  add(printed);
  std::replace_if(line + message, line + used, IsUnprintable, '?');
  line[used++] = '\n';
  line[used] = '\0';
  platform::Contained([&] { marker(line, used); });
}

void LogErrorCode(const char* tag) { LogLine(tag, "ERROR CODE: %ld", static_cast<long>(shared.SearchErr)); }

void LogFailure(const char* tag) {
  LogErrorCode(tag);
  LogLine(tag, kFailed);
}

bool Fail(const char* tag, std::uint32_t error) {
  EntryOfActDev().LastLibErr |= error;
  LogFailure(tag);
  return false;
}

}  // namespace tavlyn

extern "C" std::uint32_t SetMarkerFunction(tavlyn_marker_function function) {
  if (!tavlyn::platform::TheHost().places.EnvironmentIsSet(tavlyn::kVariable)) return 0;
  tavlyn::LookWhetherWireIsWanted();
  tavlyn::shared.trace.MarkerFunc = function;
  return 1;
}
