// Where a broker is: mqtt://HOST[:PORT], or mqtts:// with TLS.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tavlyn {

struct BrokerUrl {
  std::string host;  // without the brackets of an IPv6 address
  std::uint16_t port = 0;
  bool tls = false;
};

std::optional<BrokerUrl> ParseBrokerUrl(const std::string& text);
// What is sent there does not leave this machine.
bool IsLoopback(const std::string& host);

}  // namespace tavlyn
