// config explain: what the words of a configuration are. Needs no device.
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/sonar_fields.h"
#include "core/text.h"
#include "magstripe/text_file.h"
#include "tools/nearest.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/config/fields.h"
#include "tools/tavlynctl/config/meanings.h"
#include "tools/tavlynctl/config/values.h"
#include "tools/tavlynctl/program.h"
#include "tools/wire/places.h"

namespace tavlyn::ctl {
namespace {

// What the tables of the library say of a word.
struct Facts {
  std::optional<int> least;
  std::optional<int> most;
  int step = 1;
  bool settable = true;
  std::string keyword;  // in files; empty for none
};

const Group& GroupAround(const Meaning& meaning) {
  return *std::ranges::find(Groups(), std::string_view(meaning.group), &Group::name);
}

void TakeBounds(const Bounds& bounds, Facts& facts) {
  if (!bounds.Limit()) return;
  facts.least = std::max<int>(bounds.least, 0);
  facts.most = bounds.most;
}

Facts FactsOfField(const Meaning& meaning) {
  const auto field = std::ranges::find(Fields(), meaning.key, FullName);
  Facts facts;
  if (field == Fields().end()) {
    facts.settable = false;
    facts.keyword = meaning.key;
    return facts;
  }
  facts.step = field->step;
  facts.settable = field->save != Save::kUnsaved;
  if (facts.settable) facts.keyword = field->keyword;
  TakeBounds(field->bounds, facts);
  return facts;
}

Facts FactsOfSensor(const Meaning& meaning) {
  const auto* field = std::ranges::find(sonar::kFields, std::string_view(meaning.key),
                                        [](const sonar::Field& one) { return std::string_view(one.key); });
  Facts facts;
  facts.step = field->step;
  facts.settable = !field->readOnly;
  facts.keyword = meaning.key;
  TakeBounds(field->bounds, facts);
  return facts;
}

Facts FactsOfStripe(const Meaning& meaning) {
  Facts facts;
  facts.keyword = meaning.key;
  const auto places = wire::MagstripePlaces();
  const auto place = std::ranges::find(places, meaning.key, &wire::Place::key);
  // A word of two bytes has no bounds of its own.
  if (place == places.end() || place->bits == "low byte") return facts;
  facts.least = 0;
  facts.most = static_cast<int>(place->mask);
  return facts;
}

Facts FactsOf(const Meaning& meaning) {
  switch (GroupAround(meaning).product) {
    case kMagstripes: return FactsOfStripe(meaning);
    case kSensors: return FactsOfSensor(meaning);
    default: return FactsOfField(meaning);
  }
}

Json PlacesOf(const Meaning& meaning) {
  static const std::vector<wire::Place> kAll = [] {
    std::vector<wire::Place> all = wire::ReaderPlaces();
    for (const auto& more : {wire::MagstripePlaces(), wire::SonarPlaces()}) {
      all.insert(all.end(), more.begin(), more.end());
    }
    return all;
  }();
  Json places = Json::array();
  for (const wire::Place& place : kAll) {
    if (place.key != meaning.key) continue;
    Json row{{"in", place.commands}, {"byte", place.byte}, {"bits", place.bits}};
    if (!place.part.empty()) row["of"] = place.part;
    places.push_back(std::move(row));
  }
  return places;
}

// How many there are of a setting: "0 to 10".
Json IndicesOf(const Meaning& meaning) {
  Json indices = Json::array();
  for (const magstripe::Setting& one : magstripe::kSettings) {
    if (std::string_view(one.key) != meaning.key) continue;
    for (const int count : {one.count, one.inners}) {
      if (count > 1) indices.push_back("0 to " + std::to_string(count - 1));
    }
  }
  return indices;
}

Json Explained(const Meaning& meaning) {
  const Facts facts = FactsOf(meaning);
  Json row{{"name", meaning.key},
           {"product", ProductName(GroupAround(meaning).product)},
           {"record", meaning.group},
           {"meaning", meaning.text},
           {"note", meaning.note},
           {"unit", NameOf(meaning.unit)},
           {"called", *meaning.called == '\0' ? Json() : Json(meaning.called)},
           {"least", facts.least ? Json(*facts.least) : Json()},
           {"most", facts.most ? Json(*facts.most) : Json()},
           {"step", facts.step},
           {"values", Json::object()},
           {"settable", facts.settable},
           {"keyword", facts.keyword.empty() ? Json() : Json(facts.keyword)}};
  for (const NamedNumber& one : WordsOf(meaning)) row["values"][one.word] = one.number;
  if (Json indices = IndicesOf(meaning); !indices.empty()) row["indices"] = std::move(indices);
  row["wire"] = PlacesOf(meaning);
  return row;
}

// For people.
std::string PlaceText(const Json& place) {
  std::string text;
  for (const Json& one : place["in"]) text += one.get<std::string>() + " ";
  text.back() = ',';
  text += " " + (place["byte"].get<std::string>().starts_with('b') ? "" : std::string("byte "));
  text += place["byte"].get<std::string>();
  const auto bits = place["bits"].get<std::string>();
  if (!bits.empty()) text += (bits[0] >= '0' && bits[0] <= '9' ? ", bit " : ", ") + bits;
  return text + (place.contains("of") ? ": " + place["of"].get<std::string>() : "");
}

std::string RangeOf(const Json& row) {
  if (row["most"].is_null()) return "";
  std::string text = row["least"].dump() + " to " + row["most"].dump();
  if (row["step"] != 1) text += " in steps of " + row["step"].dump() + ", rounded down";
  return text;
}

Json ExplainedText(const Meaning& meaning, const Json& row) {
  Json shown{{"meaning", row["meaning"]}};
  const auto add = [&](const char* label, const std::string& text) {
    if (!text.empty()) shown[label] = text;
  };
  add("note", meaning.note);
  add("unit", NameOf(meaning.unit));
  add("takes", row["settable"] == true ? WhatItTakes(meaning).substr(std::string_view("takes ").size())
                                       : "nothing: config set does not change it");
  add("range", RangeOf(row));
  add("in programs", meaning.called);
  shown["of"] = row["product"].get<std::string>() + ", " + meaning.group;
  if (row.contains("indices")) shown["indices"] = row["indices"].front();
  shown["in files"] = row["keyword"];
  std::vector<std::string> places;
  for (const Json& place : row["wire"]) places.push_back(PlaceText(place));
  shown["on the wire"] = places.empty() ? Json("nowhere: it is the library's own") : Json(places);
  return shown;
}

bool Holds(std::string_view text, std::string_view word) {
  const auto same = [](char a, char b) { return AsciiLower(a) == AsciiLower(b); };
  return word.empty() || std::search(text.begin(), text.end(), word.begin(), word.end(), same) != text.end();
}

bool IsNamed(const Meaning& meaning, std::string_view word) {
  const std::string_view key = meaning.key;
  if (IsOfKey(word, key)) return true;
  const std::size_t dot = key.find('.');
  if (SameText(word, key)) return true;
  return dot != std::string_view::npos && SameText(word, key.substr(dot + 1));
}

bool IsAbout(const Meaning& meaning, std::string_view word) {
  const auto words = WordsOf(meaning);
  const bool named = meaning.unit == Unit::kChoice && std::ranges::any_of(words, [&](const NamedNumber& one) {
                       return Holds(one.word, word);
                     });
  return named || Holds(meaning.key, word) || Holds(meaning.text, word) || Holds(meaning.note, word) ||
         Holds(FactsOf(meaning).keyword, word);
}

Failure NothingAbout(const std::string& word) {
  std::vector<std::string> names;
  for (const Group& group : Groups()) names.emplace_back(group.name);
  for (const Meaning& meaning : Meanings()) {
    const std::string_view key = meaning.key;
    names.emplace_back(key);
    names.emplace_back(key.substr(key.find('.') + 1));
    for (std::size_t at = 0; at < std::string_view(meaning.text).size();) {
      const std::string_view text = meaning.text;
      const std::size_t end = std::min(text.find(' ', at), text.size());
      if (end - at > 3) names.emplace_back(text.substr(at, end - at));
      at = end + 1;
    }
  }
  return {kUsage, "nothing is about " + word + DidYouMean(word, names)};
}

// The words of a record, or the one of that name, or all that are about it.
void AddAbout(const std::string& word, std::vector<bool>& wanted) {
  const auto add = [&](const auto& fits) {
    bool any = false;
    for (std::size_t at = 0; at < wanted.size(); ++at) {
      if (!fits(Meanings()[at])) continue;
      wanted[at] = true;
      any = true;
    }
    return any;
  };
  if (add([&](const Meaning& one) { return SameText(word, one.group); })) return;
  if (add([&](const Meaning& one) { return IsNamed(one, word); })) return;
  if (add([&](const Meaning& one) { return IsAbout(one, word); })) return;
  throw NothingAbout(word);
}

Json Overview(bool asJson, Json document) {
  Json& records = document["records"] = asJson ? Json::array() : Json::object();
  for (const Group& group : Groups()) {
    const auto fields = std::ranges::count(Meanings(), std::string_view(group.name), &Meaning::group);
    if (asJson) {
      records.push_back({{"product", ProductName(group.product)},
                         {"record", group.name},
                         {"fields", fields},
                         {"meaning", group.text}});
    } else {
      records[ProductName(group.product)][group.name] = group.text;
    }
  }
  return document;
}

struct ExplainConfig {
  std::vector<std::string> about;

  void Take(Words& words) {
    words
        .Text("TOPIC", about,
              "A field or setting, a record, or any word that names or meanings have: beep, parity, hold")
        ->required(false);
  }

  [[nodiscard]] Json Run(const Request& request) const {
    if (about.empty()) return Overview(request.json, request.Document());
    std::vector<bool> wanted(Meanings().size());
    for (const std::string& word : about) AddAbout(word, wanted);
    const bool isAll = request.json || std::ranges::count(wanted, true) <= static_cast<long>(about.size());
    Json document = request.Document();
    Json& fields = document["fields"] = request.json ? Json::array() : Json::object();
    for (std::size_t at = 0; at < wanted.size(); ++at) {
      if (!wanted[at]) continue;
      const Meaning& meaning = Meanings()[at];
      if (!isAll) {
        fields[meaning.key] = meaning.text;
        continue;
      }
      Json row = Explained(meaning);
      if (request.json) {
        fields.push_back(std::move(row));
      } else {
        fields[meaning.key] = ExplainedText(meaning, row);
      }
    }
    return document;
  }
};

}  // namespace

void AddConfigExplain(Program& program) {
  program.Add<ExplainConfig>("config explain",
                             "What fields and settings mean: unit, range, keyword, bits on the wire");
}

}  // namespace tavlyn::ctl
