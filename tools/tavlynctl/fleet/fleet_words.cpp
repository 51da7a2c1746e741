#include "tools/tavlynctl/fleet/fleet_words.h"

#include <algorithm>
#include <string_view>

#include "tools/broker_url.h"

namespace tavlyn::ctl {
namespace {

constexpr std::ptrdiff_t kLevels = 3;
constexpr int kMostPatience = 3600;

std::string ProblemOfUrl(const std::string& text) {
  return ParseBrokerUrl(text) ? "" : "must be mqtts://HOST[:PORT], or mqtt:// without TLS";
}

// Three levels, each a + or a name without wildcards.
std::string ProblemOfTo(const std::string& text) {
  bool fits = std::ranges::count(text, '/') == kLevels - 1 && text.find('#') == std::string::npos;
  for (std::size_t begin = 0; fits && begin <= text.size();) {
    const std::size_t end = std::min(text.find('/', begin), text.size());
    const std::string_view level = std::string_view(text).substr(begin, end - begin);
    fits = level == "+" || (!level.empty() && level.find('+') == std::string_view::npos);
    begin = end + 1;
  }
  return fits ? "" : "must be SITE/HOST/DEVICE, with a + for each that may be any";
}

std::string ProblemOfPrefix(const std::string& text) {
  return text.empty() || text.find_first_of("+#") != std::string::npos ? "must be a topic without + and #"
                                                                       : "";
}

}  // namespace

void FleetWords::Take(Words& words) {
  words.Text("--broker", url, "Where the broker is: mqtts://HOST[:PORT], or mqtt:// without TLS")
      ->check(CLI::Validator(ProblemOfUrl, ""))
      ->option_text("URL");
  words.Text("--to", to, "Which devices: SITE/HOST/DEVICE, with a + for each that may be any (+/+/+)")
      ->required(false)
      ->check(CLI::Validator(ProblemOfTo, ""))
      ->option_text("TOPIC");
  words.Text("--prefix", prefix, "What all topics begin with (tavlyn)")
      ->required(false)
      ->check(CLI::Validator(ProblemOfPrefix, ""))
      ->option_text("TOPIC");
  struct Named {
    const char* name;
    std::string* value;
    const char* text;
    const char* kind;
  };
  const Named rest[] = {
      {"--user", &user, "The name for the broker", "NAME"},
      {"--password-file", &passwordFile, "Its password, the first line of this file", "FILE"},
      {"--ca", &ca, "The certificates that the broker's is checked against, else those of the system",
       "FILE"},
      {"--certificate", &certificate, "Your certificate, for a broker that asks for one", "FILE"},
      {"--key", &key, "Its private key, without a passphrase", "FILE"},
  };
  for (const Named& one : rest) {
    words.Text(one.name, *one.value, one.text)->required(false)->option_text(one.kind);
  }
  words.Flag("--plain", plain,
             "Allow mqtt://, without TLS, to another machine: all in between can read along");
}

void FleetWords::Check() const {
  const auto place = ParseBrokerUrl(url);
  if (!place->tls && !plain && !IsLoopback(place->host)) {
    throw Failure(kUsage,
                  "mqtt:// to " + place->host +
                      " can be read by everyone in between; mqtts:// is with TLS, --plain allows this");
  }
  if (!place->tls && !(ca.empty() && certificate.empty())) {
    throw Failure(kUsage, "mqtt:// is without TLS, and without certificates; write mqtts://");
  }
  if (!passwordFile.empty() && user.empty()) {
    throw Failure(kUsage, "--password-file is of no use without --user");
  }
  if (certificate.empty() != key.empty()) throw Failure(kUsage, "--certificate and --key belong together");
}

void TakePatience(Words& words, double& seconds) {
  words.Text("--patience", seconds, "How many seconds a device may take to reply (10)")
      ->required(false)
      ->check(Seconds(kMostPatience))
      ->option_text("S");
}

std::string FleetWords::Topic(const char* end) const { return prefix + '/' + to + '/' + end; }

std::string FleetWords::AgentTopic(const char* end) const {
  return prefix + '/' + to.substr(0, to.rfind('/')) + "/agent/" + end;
}

}  // namespace tavlyn::ctl
