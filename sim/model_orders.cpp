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

template <typename Kind>
bool Is(const Model& model) {
  return dynamic_cast<const Kind*>(&model) != nullptr;
}

template <typename Kind, bool (*kDeed)(Kind&, const Words&, std::string&)>
bool Do(Model& model, const Words& words, std::string& reply) {
  return kDeed(dynamic_cast<Kind&>(model), words, reply);
}

template <typename Kind, bool (*kDeed)(Kind&, const Words&, std::string&)>
constexpr ModelOrder Order(const char* name, std::size_t words, bool andMore = false) {
  return {name, words, andMore, &Is<Kind>, &Do<Kind, kDeed>};
}

constexpr ModelOrder kOrders[] = {
    Order<Reader, PutCard>("card", 2),         Order<Reader, TakeCard>("take", 1),
    Order<Reader, QueueInput>("input", 2),     Order<Reader, QueueId>("queue", 2),
    Order<Reader, AddSample>("sample", 2),     Order<Reader, Lack>("lack", 2),
    Order<Magstripe, Swipe>("swipe", 2, true), Order<Sonar, Stand>("range", 2),
    Order<Sonar, Walk>("walk", 2, true),
};

}  // namespace

const ModelOrder* FindModelOrder(const std::string& name) {
  const auto* found = std::ranges::find(kOrders, name, &ModelOrder::name);
  return found == std::end(kOrders) ? nullptr : found;
}

}  // namespace tavlyn::sim
