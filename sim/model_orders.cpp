#include "sim/model_orders.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <utility>

#include "sim/devices/hex.h"
#include "sim/devices/mag_card.h"
#include "sim/devices/magstripe.h"
#include "sim/devices/reader.h"
#include "sim/devices/sonar.h"

namespace tavlyn::sim {
namespace {

std::optional<double> ParseInches(const std::string& text) {
  std::istringstream stream(text);
  double inches = 0;
  if (!(stream >> inches) || !stream.eof() || !(inches >= 0) || inches > 1000) return std::nullopt;
  return inches;
}

// FROM:TO:MS
std::optional<Leg> ParseLeg(const std::string& text) {
  const std::size_t first = text.find(':');
  const std::size_t second = first == std::string::npos ? first : text.find(':', first + 1);
  if (second == std::string::npos) return std::nullopt;
  const auto from = ParseInches(text.substr(0, first));
  const auto to = ParseInches(text.substr(first + 1, second - first - 1));
  const auto milliseconds = ParseNumber<std::uint32_t>(text.substr(second + 1));
  if (!from || !to || !milliseconds) return std::nullopt;
  return Leg{*milliseconds, *from, *to};
}

bool PutCard(Reader& reader, const Words& words, std::string& reply) {
  const std::size_t colon = words[1].find(':');
  const auto id = ParseHex(words[1].substr(0, colon));
  const auto bits = colon == std::string::npos ? std::nullopt : ParseNumber<int>(words[1].substr(colon + 1));
  if (!id || !bits || *bits < 1 || *bits > 255) return Fail(reply, words[1] + ": a card is HEX:BITS");
  if (static_cast<std::size_t>(*bits) > 8 * id->size()) {
    return Fail(reply, words[1] + ": the bytes hold " + std::to_string(8 * id->size()) + " bits");
  }
  reader.PutCard(*id, *bits);
  return true;
}

bool TakeCard(Reader& reader, const Words&, std::string&) {
  reader.TakeCard();
  return true;
}

bool QueueInput(Reader& reader, const Words& words, std::string& reply) {
  const auto report = ParseHex(words[1]);
  if (!report) return Fail(reply, words[1] + ": a report is hexadecimal");
  reader.QueueInput(*report);
  return true;
}

bool Swipe(Magstripe& magstripe, const Words& words, std::string& reply) {
  std::string text = words[1];
  for (std::size_t i = 2; i < words.size(); ++i) text += ' ' + words[i];
  const auto card = ParseMagCard(text);
  if (!card) return Fail(reply, text + ": a stripe is %TRACK1?;TRACK2?+TRACK3?");
  magstripe.Swipe(*card);
  return true;
}

bool Stand(Sonar& sonar, const Words& words, std::string& reply) {
  const auto inches = ParseInches(words[1]);
  if (!inches) return Fail(reply, words[1] + ": a range is in inches");
  sonar.Stand(*inches);
  return true;
}

bool Walk(Sonar& sonar, const Words& words, std::string& reply) {
  std::vector<Leg> legs;
  for (std::size_t i = 1; i < words.size(); ++i) {
    const auto leg = ParseLeg(words[i]);
    if (!leg) return Fail(reply, words[i] + ": a leg is FROM:TO:MS");
    legs.push_back(*leg);
  }
  sonar.Go(std::move(legs));
  return true;
}

bool QueueId(Reader& reader, const Words& words, std::string& reply) {
  const std::size_t colon = words[1].find(':');
  const auto id = ParseHex(words[1].substr(0, colon));
  const auto rest = colon == std::string::npos ? Bytes{} : ParseHex(words[1].substr(colon + 1));
  QueuedCard card;
  if (!id || !rest || id->size() > card.id.size() || rest->size() > card.trailer.size()) {
    return Fail(reply, words[1] + ": a queued ID is HEX or HEX:HEX");
  }
  std::copy(id->begin(), id->end(), card.id.begin());
  std::copy(rest->begin(), rest->end(), card.trailer.begin());
  reader.state.queue.push_back(card);
  return true;
}

bool AddSample(Reader& reader, const Words& words, std::string& reply) {
  const std::size_t first = words[1].find(':');
  const std::size_t last = words[1].rfind(':');
  const auto type = ParseNumber<std::uint16_t>(words[1].substr(0, first), 16);
  const auto data = first == last ? std::nullopt : ParseHex(words[1].substr(first + 1, last - first - 1));
  const auto bits = first == last ? std::nullopt : ParseNumber<std::uint16_t>(words[1].substr(last + 1));
  if (!type || !data || !bits) return Fail(reply, words[1] + ": a sample is TYPE:HEX:BITS");
  reader.state.extensions.analyzed.push_back({*type, *bits, *data});
  return true;
}

bool Lack(Reader& reader, const Words& words, std::string& reply) {
  const auto command = ParseHex(words[1]);
  if (!command) return Fail(reply, words[1] + ": a command is hexadecimal");
  reader.state.lacks.push_back(*command);
  return true;
}

bool TellSights(Reader& reader, const Words&, std::string& reply) {
  for (const std::string& sight : reader.state.sights.Seen()) reply += sight + "\n";
  return true;
}

template <typename Kind>
bool Is(const Model& model) {
  return dynamic_cast<const Kind*>(&model) != nullptr;
}

template <typename Kind, bool (*kDeed)(Kind&, const Words&, std::string&)>
bool Do(Model& model, const Words& words, std::string& reply) {
  return kDeed(dynamic_cast<Kind&>(model), words, reply);
}

template <typename Kind, bool (*kDeed)(Kind&, const Words&, std::string&)>
constexpr ModelOrder Order(CommandText text, std::size_t words, bool andMore = false) {
  return {text, words, andMore, &Is<Kind>, &Do<Kind, kDeed>};
}

constexpr ModelOrder kOrders[] = {
    Order<Reader, PutCard>({"card", "HEX:BITS", "lays a card on the reader, lowest byte first: card 0102:13"},
                           2),
    Order<Reader, TakeCard>({"take", "", "takes the card away"}, 1),
    Order<Reader, QueueInput>({"input", "HEX", "queues an input report, its report ID first"}, 2),
    Order<Magstripe, Swipe>(
        {"swipe", "TRACKS", "swipes a card with these tracks: swipe %B12^DOE/JOHN^?;12=34?"}, 2, true),
    Order<Sonar, Stand>({"range", "INCHES", "somebody stands that far from the sensor"}, 2),
    Order<Sonar, Walk>({"walk", "FROM:TO:MS...", "somebody walks in front of it, leg by leg, and stays"}, 2,
                       true),
    Order<Reader, QueueId>({"queue", "HEX[:HEX]", "queues an ID that was read while nobody polled"}, 2),
    Order<Reader, AddSample>({"sample", "TYPE:HEX:BITS", "a record of the card analyzer"}, 2),
    Order<Reader, Lack>({"lack", "HEX", "the reader has no commands that begin with this"}, 2),
    Order<Reader, TellSights>(
        {"seen", "", "what a person saw and heard of the reader since it was first plugged in"}, 1),
};

}  // namespace

std::span<const ModelOrder> ModelOrders() { return kOrders; }

}  // namespace tavlyn::sim
