// Any message on a topic of commands: it is a command that is allowed, or the refusal says why; what is
// published of it is JSON again.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/require.h"
#include "tools/tavlynd/orders.h"
#include "tools/tavlynd/payloads.h"
#include "tools/tavlynd/topics.h"

namespace tavlyn::fuzz {
namespace {

// A worker's word may be as strange.
void Publish(const agent::Settings& settings, const std::string& text) {
  const agent::Json said = agent::ParseObject(text);
  if (said.is_null()) return;
  Require(!agent::ParseObject(agent::EventPayload(settings, "device", said, 1)).is_null());
  Require(!agent::ParseObject(agent::TextOf(agent::ReplyWith(settings, "request", said))).is_null());
}

void Name(const std::string& text) {
  const std::string level = agent::Level(text);
  Require(!level.empty() && level.find_first_of("+#/$") == std::string::npos && agent::Level(level) == level);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavlyn;
  const std::string text(reinterpret_cast<const char*>(data), size);
  agent::Settings settings;
  settings.largestFile = 1;
  settings.ids = size % 2 == 0 ? "plain" : "hashed";
  const agent::Order order = agent::ReadOrder(text, settings);
  fuzz::Require(order.command.is_null() != order.refusal.is_null());
  if (order.refusal.is_null()) {
    fuzz::Require(std::ranges::find(settings.allowed, agent::TextIn(order.command, "do")) !=
                  settings.allowed.end());
    fuzz::Require(!order.request.empty());
  }
  fuzz::Publish(settings, text);
  fuzz::Name(text);
  return 0;
}
