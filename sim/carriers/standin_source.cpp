#include "sim/carriers/standin_source.h"

#include <cstdlib>
#include <string>

#include "sim/carriers/socket_source.h"
#include "sim/carriers/wire.h"
#include "sim/rack_source.h"

namespace tavlyn::sim {
namespace {

Source* MakeSource() {
  const char* socket = std::getenv(wire::kSocketVariable);
  if (socket != nullptr) return new SocketSource(socket);
  return new RackSource;
}

}  // namespace

// Deliberately never destroyed: programs close their devices in their own last steps.
Source& StandinSource() {
  static Source* const source = MakeSource();
  return *source;
}

int RunStandin(const char* command, char* reply, std::size_t size) {
  std::string text;
  const bool done = StandinSource().Run(command, text);
  if (size != 0) reply[text.copy(reply, size - 1)] = '\0';
  return done ? static_cast<int>(text.size()) : -1;
}

}  // namespace tavlyn::sim
