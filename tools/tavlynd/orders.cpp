#include "tools/tavlynd/orders.h"

#include <algorithm>

#include "tools/printable.h"
#include "tools/tavlynd/commands.h"
#include "tools/tavlynd/payloads.h"

namespace tavlyn::agent {
namespace {

constexpr std::size_t kLongestRequest = 64;
constexpr std::size_t kBesideFile = 4096;
// A line end takes two bytes in JSON.
constexpr std::size_t kBytesOfCharacter = 2;
constexpr double kMinute = 60'000;

bool IsRequest(const std::string& text) {
  return !text.empty() && text.size() <= kLongestRequest && Printable(text) == text;
}

Order Refused(const std::string& request, const char* code, const std::string& text) {
  return {request, Json(), Refusal(request, code, text)};
}

}  // namespace

Order ReadOrder(std::string_view payload, const Settings& settings) {
  const auto largest = static_cast<std::size_t>(settings.largestFile) * 1024;
  const std::string bound = std::to_string(settings.largestFile) + " KiB";
  if (payload.size() > largest * kBytesOfCharacter + kBesideFile) {
    return Refused("", "too-large", "a file may have " + bound);
  }
  Json command = ParseObject(payload);
  if (command.is_null()) return Refused("", "bad-request", "the message is no JSON object");
  const std::string request = TextIn(command, "request");
  if (!IsRequest(request)) {
    return Refused("", "bad-request", "request must be a text of 1 to 64 characters");
  }
  if (command.contains("schema") && command["schema"] != 1) {
    return Refused(request, "bad-request", "the schema must be 1");
  }
  const std::string name = TextIn(command, "do");
  if (FindCommand(name) == nullptr)
    return Refused(request, "bad-request", "do must be one of " + CommandNames());
  if (std::ranges::find(settings.allowed, name) == settings.allowed.end()) {
    return Refused(request, "not-allowed", name + " is not among commands.allow");
  }
  if (TextIn(command, "file").size() > largest)
    return Refused(request, "too-large", "a file may have " + bound);
  return {request, std::move(command), Json()};
}

bool Rate::Take(const std::string& device, std::int64_t perMinute, std::int64_t now) {
  const auto most = static_cast<double>(perMinute);
  Allowance& its = devices_.try_emplace(device, Allowance{most, now}).first->second;
  its.left = std::min(most, its.left + static_cast<double>(now - its.time) * most / kMinute);
  its.time = now;
  if (its.left < 1) return false;
  its.left -= 1;
  return true;
}

}  // namespace tavlyn::agent
