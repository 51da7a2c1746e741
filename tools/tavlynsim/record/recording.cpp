#include "tools/tavlynsim/record/recording.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <iterator>
#include <sstream>
#include <utility>

#include "sim/words.h"

namespace tavlyn::sim {
namespace {

constexpr std::string_view kHidName = "hid";
constexpr std::string_view kCoveredText = "**";
constexpr std::size_t kMostFeatureBytes = 4096;

struct NamedOutcome {
  Outcome outcome;
  std::string_view word;
};

constexpr NamedOutcome kOutcomes[] = {{Outcome::kRefused, "refused"}, {Outcome::kGone, "gone"}};

std::string Hexadecimal(unsigned number, int digits) {
  char text[16];
  std::snprintf(text, sizeof text, "%0*X", digits, number);
  return text;
}

// A text of a device as one word: blanks and whatever is not printable as %20.
std::string Word(const std::string& text) {
  std::string word;
  for (const char c : text) {
    const auto byte = static_cast<std::uint8_t>(c);
    const bool plain = byte > ' ' && byte < 0x7F && c != '%';
    word += plain ? std::string(1, c) : "%" + Hexadecimal(byte, 2);
  }
  return word;
}

std::optional<std::string> TextOfWord(const std::string& word) {
  std::string text;
  for (std::size_t at = 0; at < word.size(); ++at) {
    if (word[at] != '%') {
      text += word[at];
      continue;
    }
    const auto byte = ParseNumber<std::uint8_t>(word.substr(at + 1, 2), 16);
    if (!byte || at + 2 >= word.size()) return std::nullopt;
    text += static_cast<char>(*byte);
    at += 2;
  }
  return text;
}

// Two hexadecimal numbers of 16 bits with a colon between them.
bool ParsePair(const std::string& text, std::uint16_t& first, std::uint16_t& second) {
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) return false;
  const auto one = ParseNumber<std::uint16_t>(text.substr(0, colon), 16);
  const auto other = ParseNumber<std::uint16_t>(text.substr(colon + 1), 16);
  first = one.value_or(0);
  second = other.value_or(0);
  return one && other;
}

bool TakeUsages(const std::string& text, HidIdentity& identity) {
  std::istringstream pairs(text);
  for (std::string pair; std::getline(pairs, pair, ',');) {
    Usage usage;
    if (!ParsePair(pair, usage.page, usage.usage)) return false;
    identity.usages.push_back(usage);
  }
  return true;
}

template <typename Number>
bool TakeNumber(const std::string& text, std::size_t most, Number& number) {
  const auto value = ParseNumber<std::size_t>(text);
  if (!value || *value > most) return false;
  number = static_cast<Number>(*value);
  return true;
}

bool TakeText(const std::string& word, std::string& text) {
  const auto value = TextOfWord(word);
  text = value.value_or("");
  return value.has_value();
}

struct Property {
  std::string_view name;
  bool (*take)(const std::string& value, HidIdentity& identity);
};

constexpr Property kProperties[] = {
    {"report", [](const std::string& v, HidIdentity& id) { return TakeNumber(v, 0xFF, id.reportId); }},
    {"bytes",
     [](const std::string& v, HidIdentity& id) { return TakeNumber(v, kMostFeatureBytes, id.featureBytes); }},
    {"spare",
     [](const std::string& v, HidIdentity& id) { return TakeNumber(v, kMostFeatureBytes, id.spareBytes); }},
    {"usages", TakeUsages},
    {"serial", [](const std::string& v, HidIdentity& id) { return TakeText(v, id.serial); }},
    {"product", [](const std::string& v, HidIdentity& id) { return TakeText(v, id.product); }},
};

// 7A31:3BFA report=0 bytes=8 …
bool TakeIdentity(const Words& words, HidIdentity& identity) {
  if (words.empty() || !ParsePair(words[0], identity.vid, identity.pid)) return false;
  return std::all_of(words.begin() + 1, words.end(), [&](const std::string& word) {
    const std::size_t equals = word.find('=');
    const auto* property =
        std::ranges::find(kProperties, std::string_view(word).substr(0, equals), &Property::name);
    return equals != std::string::npos && property != std::end(kProperties) &&
           property->take(word.substr(equals + 1), identity);
  });
}

std::optional<std::int16_t> ParseShown(const std::string& word) {
  if (word == kCoveredText) return kCovered;
  const auto byte = ParseNumber<std::uint8_t>(word, 16);
  if (!byte || word.size() != 2) return std::nullopt;
  return *byte;
}

// The file, line by line.
class Parser {
 public:
  bool Take(const std::string& line, std::size_t number, std::string& problem) {
    std::istringstream stream(line);
    const Words words{std::istream_iterator<std::string>(stream), {}};
    if (words.empty() || words[0].starts_with('#')) return true;
    if (words.size() < 3) return Fail(problem, "a line has a time, a link and what happened there");
    if (!IsTime(words[0])) return Fail(problem, words[0] + " is not a time in seconds");
    const Words rest(words.begin() + 3, words.end());
    if (words[2] == "is") return TakeLink(words[1], rest, problem);
    RecordedLink* link = Find(words[1]);
    if (link == nullptr) return Fail(problem, words[1] + ": no line before says what it is");
    if ((words[2] == "went" || words[2] == "came") && rest.empty()) return true;
    return TakeExchange(*link, words[2], rest, number, problem);
  }

  Recording recording;

 private:
  static bool IsTime(const std::string& word) {
    return std::ranges::all_of(word, [](unsigned char c) { return std::isdigit(c) != 0 || c == '.'; });
  }

  RecordedLink* Find(const std::string& name) {
    for (auto& [key, link] : recording.devices) {
      if (link.name == name) return &link;
    }
    const auto line = std::ranges::find(recording.lines, name, &RecordedLink::name);
    return line == recording.lines.end() ? nullptr : &*line;
  }

  bool TakeLink(const std::string& name, const Words& words, std::string& problem) {
    if (Find(name) != nullptr) return Fail(problem, name + " has been there before");
    RecordedLink link;
    link.name = name;
    if (name.starts_with(kHidName)) {
      const auto key = ParseNumber<Key>(name.substr(kHidName.size()));
      if (!key || *key == 0) return Fail(problem, name + ": devices are numbered from 1");
      if (!TakeIdentity(words, link.identity)) return Fail(problem, name + ": that is no identity");
      recording.devices.emplace(*key, std::move(link));
      return true;
    }
    link.place = ParseLinePlace(name);
    if (!link.place) return Fail(problem, name + " is no link");
    const std::string what = words.size() == 1 ? words[0] : "";
    if (what != "reader" && what != "magstripe") return Fail(problem, name + " is a reader or a magstripe");
    link.place->magstripe = what == "magstripe";
    recording.lines.push_back(std::move(link));
    return true;
  }

  static bool TakeExchange(RecordedLink& link, const std::string& way, const Words& words, std::size_t number,
                           std::string& problem) {
    if (way != ">" && way != "<" && way != "!")
      return Fail(problem, way + " is none of is, <, >, !, went, came");
    Exchange exchange{static_cast<Way>(way[0])};
    exchange.line = number;
    for (const std::string& word : words) {
      const auto* outcome = std::ranges::find(kOutcomes, word, &NamedOutcome::word);
      const auto byte = ParseShown(word);
      const bool isLast = &word == &words.back();
      if (outcome != std::end(kOutcomes) && isLast) {
        exchange.outcome = outcome->outcome;
      } else if (byte) {
        exchange.bytes.push_back(*byte);
      } else {
        return Fail(problem, word + " is not a byte of two hexadecimal digits");
      }
    }
    link.exchanges.push_back(std::move(exchange));
    return true;
  }
};

}  // namespace

Shown ShownBytes(std::span<const std::uint8_t> bytes) { return {bytes.begin(), bytes.end()}; }

std::string NameOf(Key interface) { return std::string(kHidName) + std::to_string(interface); }

std::string NameOf(const LinePlace& place) {
  const std::string number = std::to_string(place.number);
  switch (place.kind) {
    case LineKind::kCom: return "com" + number;
    case LineKind::kComAscii: return "com" + number + ":ascii";
    case LineKind::kBulk: return "bulk";
    case LineKind::kAcm: return "acm";
    case LineKind::kEthernet: break;
  }
  std::string address;
  for (const std::uint8_t octet : place.ip) address += (address.empty() ? "" : ".") + std::to_string(octet);
  return address + ":" + number;
}

std::string LineOf(const std::string& link, const HidIdentity& identity) {
  std::string usages;
  for (const Usage& one : identity.usages) {
    usages += (usages.empty() ? "" : ",") + Hexadecimal(one.page, 4) + ":" + Hexadecimal(one.usage, 4);
  }
  return link + " is " + Hexadecimal(identity.vid, 4) + ":" + Hexadecimal(identity.pid, 4) +
         " report=" + std::to_string(identity.reportId) + " bytes=" + std::to_string(identity.featureBytes) +
         " spare=" + std::to_string(identity.spareBytes) + " usages=" + usages +
         " serial=" + Word(identity.serial) + " product=" + Word(identity.product);
}

std::string LineOf(const std::string& link, const LinePlace& place) {
  return link + " is " + (place.magstripe ? "magstripe" : "reader");
}

std::string LineOf(const std::string& link, const Exchange& exchange) {
  std::string line = link + " " + static_cast<char>(exchange.way);
  for (const std::int16_t byte : exchange.bytes) {
    line += " ";
    line += byte == kCovered ? std::string(kCoveredText) : Hexadecimal(static_cast<unsigned>(byte), 2);
  }
  const auto* outcome = std::ranges::find(kOutcomes, exchange.outcome, &NamedOutcome::outcome);
  if (outcome != std::end(kOutcomes)) line.append(" ").append(outcome->word);
  return line;
}

std::optional<Recording> ParseRecording(std::string_view text, std::string& problem) {
  Parser parser;
  std::size_t number = 0;
  for (std::size_t end = 0; (end = text.find('\n')) != std::string_view::npos; text.remove_prefix(end + 1)) {
    std::string line(text.substr(0, end));
    if (line.ends_with('\r')) line.pop_back();
    ++number;
    std::string reason = "this is no recording of version 1, which begins \"tavlyn-recording 1\"";
    if (number == 1 ? line == kRecordingStart : parser.Take(line, number, reason)) continue;
    problem = std::to_string(number) + ": " + reason;
    return std::nullopt;
  }
  if (number != 0) return std::move(parser.recording);
  problem = "1: the file is empty";
  return std::nullopt;
}

}  // namespace tavlyn::sim
