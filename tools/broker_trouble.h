// Why there is no connection to a broker, in words that say what to do. libmosquitto has one error for all
// that goes wrong with TLS; the rest is in its log, and in what OpenSSL thinks of the broker's certificate.
#pragma once

#include <string>
#include <string_view>

namespace tavlyn {

// How users of a program write what they have to look at.
struct BrokerWords {
  const char* ca;
  const char* certificate;
  const char* leastTls;
  const char* login;
};

class BrokerTrouble {
 public:
  explicit BrokerTrouble(const BrokerWords& words) : words_(words) {}

  // A line of the log; verdict: SSL_get_verify_result at that moment, 0 without TLS.
  void Note(std::string_view line, long verdict);
  // Before the next attempt.
  void Forget();
  // reason: libmosquitto's or the system's words for the error.
  [[nodiscard]] std::string Text(const std::string& url, const std::string& reason) const;

 private:
  BrokerWords words_;
  std::string said_;
};

}  // namespace tavlyn
