#include "tools/tavlynd/settings_file.h"

#include <toml++/toml.h>

#include <algorithm>
#include <cctype>
#include <sstream>
#include <string_view>

#include "tools/broker_url.h"
#include "tools/nearest.h"
#include "tools/printable.h"
#include "tools/tavlynd/keys.h"

namespace tavlyn::agent {
namespace {

class Reading {
 public:
  ReadSettings Read(const toml::table& file) {
    for (const auto& [name, node] : file) TakeSection(std::string(name.str()), node, name.source());
    CheckTogether();
    std::ranges::stable_sort(read_.mistakes, {}, &Mistake::line);
    return std::move(read_);
  }

 private:
  void Tell(unsigned line, const std::string& text) { read_.mistakes.push_back({line, text}); }

  void TakeSection(const std::string& name, const toml::node& node, const toml::source_region& where) {
    std::vector<std::string> sections;
    for (const Key& key : Keys()) {
      if (sections.empty() || sections.back() != key.section) sections.emplace_back(key.section);
    }
    const unsigned line = where.begin.line;
    if (std::ranges::find(sections, name) == sections.end()) {
      return Tell(line, "there is no section [" + Printable(name) + "]" + DidYouMean(name, sections));
    }
    if (!node.is_table())
      return Tell(line, "[" + name + "] is a section, keys follow it on lines of their own");
    for (const auto& [key, value] : *node.as_table()) {
      TakeKey(name, std::string(key.str()), value, key.source().begin.line);
    }
  }

  void TakeKey(const std::string& section, const std::string& name, const toml::node& node, unsigned line) {
    std::vector<std::string> names;
    for (const Key& key : Keys()) {
      if (section != key.section) continue;
      if (name == key.name) return Take(key, node, line);
      names.emplace_back(key.name);
    }
    Tell(line, "[" + section + "] has no key " + Printable(name) + DidYouMean(name, names));
  }

  void Take(const Key& key, const toml::node& node, unsigned line) {
    lines_.emplace_back(&key, line);
    const bool taken =
        std::visit([&](const auto member) { return Store(key, node, read_.settings.*member); }, key.member);
    if (!taken) Tell(line, std::string(key.name) + " must be " + MustOf(key));
  }

  static bool Store(const Key& key, const toml::node& node, std::string& text) {
    const auto value = node.value_exact<std::string>();
    if (!value || !key.fits(*value)) return false;
    text = *value;
    return true;
  }
  static bool Store(const Key& key, const toml::node& node, Settings::Number& number) {
    const auto value = node.value_exact<Settings::Number>();
    if (!value || *value < key.least || *value > key.most) return false;
    number = *value;
    return true;
  }
  static bool Store(const Key& /*key*/, const toml::node& node, bool& flag) {
    const auto value = node.value_exact<bool>();
    if (value) flag = *value;
    return value.has_value();
  }
  // No word twice: a device that is searched twice would be found twice.
  static bool Store(const Key& key, const toml::node& node, Settings::Words& words) {
    if (!node.is_array()) return false;
    Settings::Words taken;
    for (const toml::node& one : *node.as_array()) {
      std::string word;
      if (!Store(key, one, word) || std::ranges::find(taken, word) != taken.end()) return false;
      taken.push_back(std::move(word));
    }
    words = std::move(taken);
    return true;
  }

  // Where it is set, or 0.
  [[nodiscard]] unsigned LineOf(const Key::Member& member) const {
    const auto found =
        std::ranges::find_if(lines_, [&](const auto& one) { return one.first->member == member; });
    return found == lines_.end() ? 0 : found->second;
  }

  void CheckTogether() {
    const Settings& now = read_.settings;
    const unsigned urlLine = LineOf(&Settings::url);
    if (urlLine == 0) Tell(0, "[broker] needs url, such as url = \"mqtts://broker.example\"");
    const auto url = ParseBrokerUrl(now.url);
    if (url && !url->tls && !IsLoopback(url->host) && !now.plain) {
      Tell(urlLine, "without TLS everyone between here and " + url->host +
                        " can read the cards, and send commands; write mqtts://, or plain = true below it");
    }
    if (url && !url->tls && !(now.ca.empty() && now.certificate.empty())) {
      Tell(urlLine, "mqtt:// is without TLS, and without ca and certificate; write mqtts://, or remove them");
    }
    if (now.certificate.empty() != now.certificateKey.empty()) {
      const bool isKey = now.certificate.empty();
      Tell(LineOf(isKey ? &Settings::certificateKey : &Settings::certificate),
           std::string("certificate and certificate-key belong together; add ") +
               (isKey ? "certificate" : "certificate-key"));
    }
    if (!now.password.empty() && !now.passwordFile.empty()) {
      Tell(LineOf(&Settings::passwordFile), "password is set too; remove one of them");
    }
    if (now.user.empty() && !(now.password.empty() && now.passwordFile.empty())) {
      Tell(LineOf(now.password.empty() ? &Settings::passwordFile : &Settings::password),
           "a password is of no use without user");
    }
    if (now.ids == "hashed" && LineOf(&Settings::siteKey) == 0) {
      Tell(LineOf(&Settings::ids), "hashed IDs need site-key; \"openssl rand -hex 32\" makes one");
    }
    if (now.usb.empty() && now.serial.empty() && now.ethernet.empty()) {
      Tell(LineOf(&Settings::usb), "nothing is searched; name a product, a serial port or an adapter");
    }
  }

  ReadSettings read_;
  std::vector<std::pair<const Key*, unsigned>> lines_;
};

// The parser of toml++ 3.3 does not stand every character beyond ASCII outside a text. In lines that are
// comments they are replaced; the first other line that has one, or 0.
unsigned MakePlain(std::string& text) {
  unsigned line = 1;
  bool isComment = false;
  bool isBegun = false;
  for (char& c : text) {
    if (!isBegun && c != ' ' && c != '\t') {
      isBegun = true;
      isComment = c == '#';
    }
    if ((static_cast<unsigned char>(c) & 0x80U) != 0) {
      if (!isComment) return line;
      c = '?';
    }
    if (c != '\n') continue;
    ++line;
    isBegun = isComment = false;
  }
  return 0;
}

// What begins like a word is mostly a text whose quotes were forgotten.
std::string HintOfQuotes(const std::string& text, unsigned line) {
  std::istringstream lines(text);
  std::string wrong;
  while (line-- > 0) std::getline(lines, wrong);
  const std::size_t equals = wrong.find('=');
  const std::size_t value = wrong.find_first_not_of(" \t[", std::min(equals, wrong.size() - 1) + 1);
  if (equals == std::string::npos || value == std::string::npos) return "";
  const auto first = static_cast<unsigned char>(wrong[value]);
  return std::isalpha(first) != 0 || first == '/'
             ? "; a text needs quotes, \"" + Printable(wrong.substr(value)) + "\""
             : "";
}

}  // namespace

ReadSettings ParseSettings(const std::string& text) try {
  std::string plain = text;
  if (const unsigned line = MakePlain(plain); line != 0) {
    return {{}, {{line, "a character beyond ASCII; in a text write its number, \"caf\\u00E9\""}}};
  }
  return Reading().Read(toml::parse(plain));
} catch (const toml::parse_error& error) {
  const unsigned line = error.source().begin.line;
  return {{}, {{line, Printable(error.description()) + HintOfQuotes(text, line)}}};
}

std::string MistakeLine(const std::string& path, const Mistake& mistake) {
  const std::string line = mistake.line == 0 ? "" : std::to_string(mistake.line) + ":";
  return path + ":" + line + " " + mistake.text;
}

}  // namespace tavlyn::agent
