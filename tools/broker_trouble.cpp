#include "tools/broker_trouble.h"

#include <algorithm>
#include <utility>

#include "tools/broker_url.h"

namespace tavlyn {
namespace {

constexpr std::size_t kMostSaid = 4000;

enum class Line { kAny, kTls, kPlain };

// The first row whose words were said; what is in braces is what the user calls it.
struct Sign {
  std::string_view said;
  Line line;
  const char* meaning;
};

constexpr const char* kNoTlsThere =
    "nothing there speaks TLS; does the broker run, and is its port right? TLS has one of its own, mostly "
    "8883";
constexpr const char* kNotNewEnough = "it speaks no version of TLS that {leastTls} allows";
constexpr const char* kWantsCertificate = "it wants a certificate of its clients; set {certificate}";
constexpr const char* kEndedTls =
    "it has ended the connection; its log says why. If it wants a certificate of its clients, set "
    "{certificate}";
constexpr const char* kWrongLogin = "it knows no such user with this password; see {login}";

constexpr Sign kSigns[] = {
    {"host name verification failed", Line::kTls,
     "its certificate is not for {host}; the URL must have a name that is in the certificate"},
    {"[verdict 9]", Line::kTls, "its certificate is not valid yet; is the clock of this machine right?"},
    {"[verdict 10]", Line::kTls, "its certificate has expired; the broker needs a new one"},
    {"certificate verify failed", Line::kTls,
     "its certificate is not trusted here; {ca} must name the certificate of the authority that made it"},
    {"Unable to load CA certificates", Line::kTls, "{ca} names a file that has no certificate in PEM"},
    {"key values mismatch", Line::kTls, "the key is that of another certificate; see {certificate}"},
    {"Unable to load client", Line::kTls,
     "certificate or key cannot be used; see {certificate}: files in PEM, the key without a passphrase"},
    {"alert certificate required", Line::kTls, kWantsCertificate},
    {"alert handshake failure", Line::kTls, kWantsCertificate},
    {"protocol version", Line::kTls, kNotNewEnough},
    {"unsupported protocol", Line::kTls, kNotNewEnough},
    {" alert ", Line::kTls,
     "it refuses the certificate of this program; is it still valid, and of an authority that the broker "
     "trusts? See {certificate}"},
    {"wrong version number", Line::kTls, kNoTlsThere},
    {"unexpected eof", Line::kTls, kNoTlsThere},
    {"Protocol error", Line::kTls, kEndedTls},
    {"Broken pipe", Line::kTls, kEndedTls},
    {"connection was lost", Line::kTls, kEndedTls},
    {"connection was lost", Line::kPlain,
     "it has ended the connection; its log says why. If it speaks TLS at this port, write mqtts://"},
    {"Connection refused", Line::kTls, kNoTlsThere},
    {"Connection refused", Line::kPlain,
     "nothing listens there; does the broker run, and is its port right?"},
    {"Lookup error", Line::kAny, "there is no address for {host}; is it spelt right?"},
    {"not authorised", Line::kAny, kWrongLogin},
    {"bad user name or password", Line::kAny, kWrongLogin},
};

void Replace(std::string& text, std::string_view what, std::string_view with) {
  const std::size_t at = text.find(what);
  if (at != std::string::npos) text.replace(at, what.size(), with);
}

}  // namespace

void BrokerTrouble::Note(std::string_view line, long verdict) {
  if (said_.size() > kMostSaid) return;
  said_ += line;
  said_ += " [verdict " + std::to_string(verdict) + "]\n";
}

void BrokerTrouble::Forget() { said_.clear(); }

std::string BrokerTrouble::Text(const std::string& url, const std::string& reason) const {
  const auto place = ParseBrokerUrl(url);
  const std::string said = said_ + reason;
  const bool isTls = place && place->tls;
  const auto* const found = std::ranges::find_if(kSigns, [&](const Sign& one) {
    const bool isForLine = one.line == Line::kAny || (one.line == Line::kTls) == isTls;
    return isForLine && said.find(one.said) != std::string::npos;
  });
  if (found == std::end(kSigns)) return reason.ends_with('.') ? reason.substr(0, reason.size() - 1) : reason;
  std::string text = found->meaning;
  Replace(text, "{host}", place ? place->host : url);
  Replace(text, "{ca}", words_.ca);
  Replace(text, "{certificate}", words_.certificate);
  Replace(text, "{leastTls}", words_.leastTls);
  Replace(text, "{login}", words_.login);
  return text;
}

}  // namespace tavlyn
