#include "tools/broker_url.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace tavlyn {
namespace {

struct Scheme {
  std::string_view begin;
  std::uint16_t port;
  bool tls;
};

constexpr Scheme kSchemes[] = {{"mqtt://", 1883, false}, {"mqtts://", 8883, true}};

constexpr std::size_t kLongestHost = 255;

// Letters, digits, dots and hyphens; in brackets an IPv6 address, also with its zone.
bool IsHost(std::string_view host, bool inBrackets) {
  const std::string_view others = inBrackets ? ":.%-" : ".-_";
  const auto fits = [&](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
           others.find(c) != std::string_view::npos;
  };
  return !host.empty() && host.size() <= kLongestHost && std::ranges::all_of(host, fits);
}

bool TakePort(std::string_view digits, std::uint16_t& port) {
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, port);
  return error == std::errc() && stop == end && port > 0;
}

}  // namespace

std::optional<BrokerUrl> ParseBrokerUrl(const std::string& text) {
  const auto scheme =
      std::ranges::find_if(kSchemes, [&](const Scheme& one) { return text.starts_with(one.begin); });
  if (scheme == std::end(kSchemes)) return std::nullopt;
  std::string_view left = std::string_view(text).substr(scheme->begin.size());
  if (left.ends_with('/')) left.remove_suffix(1);
  const bool inBrackets = left.starts_with('[');
  const std::size_t hostEnd = inBrackets ? left.find(']') : left.find(':');
  if (inBrackets && hostEnd == std::string_view::npos) return std::nullopt;
  const std::string_view host = inBrackets ? left.substr(1, hostEnd - 1) : left.substr(0, hostEnd);
  left.remove_prefix(inBrackets ? hostEnd + 1 : std::min(hostEnd, left.size()));
  BrokerUrl url{std::string(host), scheme->port, scheme->tls};
  if (!IsHost(host, inBrackets)) return std::nullopt;
  if (left.empty()) return url;
  if (!left.starts_with(':') || !TakePort(left.substr(1), url.port)) return std::nullopt;
  return url;
}

bool IsLoopback(const std::string& host) {
  const bool isAddress = host.find_first_not_of("0123456789.") == std::string::npos;
  return host == "localhost" || host == "::1" || (isAddress && host.starts_with("127."));
}

}  // namespace tavlyn
