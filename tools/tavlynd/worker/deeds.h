// What a parent may ask of a device.
#pragma once

#include "tools/tavlynctl/watch/watched.h"
#include "tools/tavlynd/lines.h"

namespace tavlyn::agent {

// {"request", "ok", "result" or "error", "took"}. Nothing that a command says or leaves out is more than a
// refusal.
Json Obey(const Json& command, ctl::Watch& watch);

}  // namespace tavlyn::agent
