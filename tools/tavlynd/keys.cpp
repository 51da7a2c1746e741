#include "tools/tavlynd/keys.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "tools/broker_url.h"
#include "tools/printable.h"
#include "tools/tavlynd/commands.h"

namespace tavlyn::agent {
namespace {

constexpr std::size_t kLongestLevel = 64;
constexpr std::size_t kLongestPrefix = 200;
constexpr std::size_t kLongestText = 1000;
constexpr std::size_t kShortestSiteKey = 32;
constexpr unsigned kHighestPort = 256;

bool IsText(const std::string& text) { return text.size() <= kLongestText && Printable(text) == text; }

// Signs that mean something in topics, or in the rules of a broker about them.
bool IsPrefix(const std::string& text) {
  return !text.empty() && text.size() <= kLongestPrefix && text.find_first_of("+#$%") == std::string::npos &&
         IsText(text);
}
bool IsLevel(const std::string& text) {
  return IsPrefix(text) && text.size() <= kLongestLevel && text.find('/') == std::string::npos;
}
bool IsUrl(const std::string& text) { return ParseBrokerUrl(text).has_value(); }
bool IsPath(const std::string& text) { return text.starts_with('/') && IsText(text); }
bool IsSiteKey(const std::string& text) { return text.size() >= kShortestSiteKey && IsText(text); }
bool IsTls(const std::string& text) { return text == "1.2" || text == "1.3"; }
bool IsIds(const std::string& text) { return text == "plain" || text == "hashed" || text == "none"; }
bool IsProduct(const std::string& text) { return text == "reader" || text == "magstripe" || text == "sonar"; }
bool IsAllowable(const std::string& text) { return FindCommand(text) != nullptr; }

// A whole number without leading zeros, so that nothing has two names.
bool TakeNumber(std::string_view text, unsigned least, unsigned most) {
  unsigned number = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && stop == text.data() + text.size() && number >= least && number <= most &&
         (text.size() == 1 || !text.starts_with('0'));
}

bool IsSerial(const std::string& text) {
  std::string_view port = text;
  if (!port.starts_with("com")) return false;
  port.remove_prefix(3);
  if (port.ends_with(":ascii")) port.remove_suffix(6);
  return TakeNumber(port, 1, kHighestPort);
}

bool IsEthernet(const std::string& text) {
  std::string_view left = text;
  for (const char end : {'.', '.', '.', ':'}) {
    const std::size_t at = left.find(end);
    if (at == std::string_view::npos || !TakeNumber(left.substr(0, at), 0, 255)) return false;
    left.remove_prefix(at + 1);
  }
  return TakeNumber(left, 1, 65535);
}

using S = Settings;

constexpr const char* kTextMust = "a text of one line";
constexpr const char* kPathMust = "a path from the root, such as ";
constexpr const char* kLevelMust = "1 to 64 characters without + # $ % /";

// clang-format off
const Key kSettingKeys[] = {
    {"broker", "url", &S::url, "mqtts://HOST[:PORT], or mqtt:// without TLS", IsUrl, 0, 0, "\"mqtts://broker.example\"", false,
     "Where the broker is. The one key that must be set."},
    {"broker", "user", &S::user, kTextMust, IsText, 0, 0, "\"lobby/desk-4\"", false,
     "The name for the broker; SITE/HOST suits the example of access rules, mosquitto.acl."},
    {"broker", "password", &S::password, kTextMust, IsText, 0, 0, "\"...\"", true, "Its password."},
    {"broker", "password-file", &S::passwordFile, kPathMust, IsPath, 0, 0, "\"/etc/tavlyn/password\"", false,
     "A file whose first line is the password, in place of password."},
    {"broker", "client-id", &S::clientId, kTextMust, IsText, 0, 0, "\"tavlynd-lobby-desk-4\"", false,
     "By which the broker knows this agent again; without it tavlynd-SITE-HOST. No two agents may have the same."},
    {"broker", "ca", &S::ca, kPathMust, IsPath, 0, 0, "\"/etc/tavlyn/ca.pem\"", false,
     "The certificates that the broker's is checked against; without it those that the system trusts."},
    {"broker", "certificate", &S::certificate, kPathMust, IsPath, 0, 0, "\"/etc/tavlyn/agent.pem\"", false,
     "The certificate of this agent, for a broker that asks for one."},
    {"broker", "certificate-key", &S::certificateKey, kPathMust, IsPath, 0, 0, "\"/etc/tavlyn/agent.key\"", false,
     "Its private key, without a passphrase."},
    {"broker", "tls", &S::leastTls, "\"1.2\" or \"1.3\"", IsTls, 0, 0, nullptr, false,
     "The lowest version of TLS that is spoken."},
    {"broker", "plain", &S::plain, "", nullptr, 0, 0, nullptr, false,
     "Allows mqtt://, without TLS, to another machine: everyone in between can read the cards, and send commands."},
    {"broker", "keep-alive", &S::keepAlive, "", nullptr, 5, 3600, nullptr, false,
     "Seconds after which a broker that says nothing is asked whether it is there. It declares this agent offline after "
     "half as long again."},
    {"broker", "window", &S::window, "", nullptr, 1, 1000, nullptr, false,
     "Events that are on their way without having been acknowledged."},
    {"topics", "prefix", &S::prefix, "1 to 200 characters without + # $ %", IsPrefix, 0, 0, nullptr, false,
     "What all topics begin with."},
    {"topics", "site", &S::site, kLevelMust, IsLevel, 0, 0, "\"lobby\"", false, "The second level of all topics."},
    {"topics", "host", &S::host, kLevelMust, IsLevel, 0, 0, "\"desk-4\"", false,
     "The third level; without it the name of this machine."},
    {"devices", "usb", &S::usb, "\"reader\", \"magstripe\" or \"sonar\"", IsProduct, 0, 0, nullptr, false,
     "The products that are searched on USB."},
    {"devices", "serial", &S::serial, "\"com1\" to \"com256\", or \"com1:ascii\" for a reader that speaks text", IsSerial, 0, 0,
     "[\"com3\"]", false, "The serial ports at which a reader is searched."},
    {"devices", "baud", &S::baud, "", nullptr, 300, 921600, nullptr, false, "The speed of the serial ports."},
    {"devices", "ethernet", &S::ethernet, "an address with a port, \"10.0.0.5:10001\"", IsEthernet, 0, 0, "[\"10.0.0.5:10001\"]",
     false, "The Ethernet adapters behind which a reader is searched."},
    {"devices", "interval", &S::interval, "", nullptr, 20, 10000, nullptr, false,
     "Milliseconds between two looks at a device."},
    {"publish", "ids", &S::ids, "\"plain\", \"hashed\" or \"none\"", IsIds, 0, 0, nullptr, false,
     "What is published of the ID of a card: itself; in its place a hash, by which a card is recognised but not copied; "
     "or the number of bits alone."},
    {"publish", "site-key", &S::siteKey, "a text of 32 characters or more", IsSiteKey, 0, 0,
     "\"...\"", true, "The key of the hash, the same for all agents that are to give a card the same one."},
    {"commands", "allow", &S::allowed, nullptr, IsAllowable, 0, 0, nullptr, false,
     "The commands that are carried out."},
    {"commands", "rate", &S::rate, "", nullptr, 1, 6000, nullptr, false,
     "Commands a minute that a device takes; more are refused as busy."},
    {"commands", "largest-file", &S::largestFile, "", nullptr, 1, 128, nullptr, false,
     "KiB of a configuration file at most."},
    {"spool", "file", &S::spool, kPathMust, IsPath, 0, 0, nullptr, false,
     "Where events are kept until the broker has them."},
    {"spool", "days", &S::days, "", nullptr, 1, 3650, nullptr, false, "How long an event is kept."},
    {"spool", "megabytes", &S::megabytes, "", nullptr, 1, 100000, nullptr, false,
     "How large all of them may be; then the oldest are dropped, counted, and the count is published."},
};
// clang-format on

std::string Quoted(const std::string& text) { return '"' + text + '"'; }

struct AsWritten {
  std::string operator()(const std::string& text) const { return Quoted(text); }
  std::string operator()(Settings::Number number) const { return std::to_string(number); }
  std::string operator()(bool flag) const { return flag ? "true" : "false"; }
  std::string operator()(const Settings::Words& words) const {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : ", ") + Quoted(word);
    return "[" + text + "]";
  }
};

// A comment of lines that fit a terminal.
std::string Comment(std::string_view text) {
  constexpr std::size_t kWidth = 100;
  std::string comment;
  while (!text.empty()) {
    std::size_t end = text.size() <= kWidth ? text.size() : text.rfind(' ', kWidth);
    if (end == std::string_view::npos) end = text.size();
    comment += "# " + std::string(text.substr(0, end)) + "\n";
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return comment;
}

}  // namespace

std::span<const Key> Keys() { return kSettingKeys; }

std::string NameOf(const Key& key) { return std::string(key.section) + "." + key.name; }

std::string DefaultOf(const Key& key) {
  const Settings none;
  return std::visit([&](const auto member) { return AsWritten()(none.*member); }, key.member);
}

std::string ExampleOf(const Key& key) { return key.example == nullptr ? DefaultOf(key) : key.example; }

std::string MustOf(const Key& key) {
  if (std::holds_alternative<bool Settings::*>(key.member)) return "true or false";
  if (std::holds_alternative<Settings::Number Settings::*>(key.member)) {
    return "a whole number from " + std::to_string(key.least) + " to " + std::to_string(key.most);
  }
  if (key.fits == IsPath) return kPathMust + ExampleOf(key);
  const bool isList = std::holds_alternative<Settings::Words Settings::*>(key.member);
  return (isList ? "a list in brackets, each " : "") + (key.must == nullptr ? CommandNames() : key.must);
}

std::string ExampleFile() {
  std::string text;
  std::string_view section;
  for (const Key& key : Keys()) {
    if (section != key.section) {
      section = key.section;
      text += (text.empty() ? "[" : "\n[") + std::string(section) + "]\n";
    }
    const bool isNeeded = key.member == Key::Member(&Settings::url);
    text += Comment(std::string(key.meaning) + " (" + MustOf(key) + ")");
    text += (isNeeded ? "" : "#") + std::string(key.name) + " = " + ExampleOf(key) + "\n";
  }
  return text;
}

}  // namespace tavlyn::agent
