// What is published, as JSON objects with the number of their schema.
#pragma once

#include <cstdint>
#include <string>

#include "tools/tavlynd/lines.h"
#include "tools/tavlynd/settings.h"

namespace tavlyn::agent {

// card, gone, swipe or presence, as a worker said it; the number of the event begins it.
std::string EventPayload(const Settings& settings, const std::string& device, const Json& said,
                         std::int64_t sequence);
// online, lost or offline
std::string StatePayload(const char* state, std::int64_t now);
// Of a device that a worker has described.
std::string InfoPayload(const std::string& link, const Json& device);
std::string AgentInfoPayload(const Settings& settings, std::int64_t dropped);

// As workers reply: with "ok", and "result" or "error".
Json ReplyWith(const Settings& settings, const std::string& request, const Json& outcome);
Json Refusal(const std::string& request, const char* code, const std::string& text);
std::string TextOf(const Json& payload);

}  // namespace tavlyn::agent
