#include "tools/tavlynd/log.h"

#include <cstdlib>
#include <string>

#include "tools/printable.h"
#include "tools/tavlynd/settings.h"

namespace tavlyn::agent {

void Log(Priority priority, std::string_view text) {
  if (std::getenv("JOURNAL_STREAM") == nullptr) return tavlyn::Tell(kProgram, text);
  PrintLine(stderr, "<" + std::to_string(static_cast<int>(priority)) + ">" + std::string(text));
}

}  // namespace tavlyn::agent
