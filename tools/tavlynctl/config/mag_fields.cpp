// magfield: the user fields of a magnetic-stripe reader.
#include <algorithm>

#include "api.h"
#include "magstripe/layout.h"
#include "tools/nearest.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/config/backups.h"
#include "tools/tavlynctl/config/changes.h"
#include "tools/tavlynctl/config/meanings.h"
#include "tools/tavlynctl/config/product_settings.h"
#include "tools/tavlynctl/config/values.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

const std::string kKeys = "keys";

struct Part {
  const char* name;
  const char* key;  // of its setting
  std::uint8_t tsSorbaneField::*member;
  std::uint32_t (*get)(std::uint16_t field);
  std::uint32_t (*set)(std::uint16_t field, int value);
};

template <auto kSet>
std::uint32_t SetFlag(std::uint16_t field, int value) {
  return kSet(field, static_cast<std::int16_t>(value));
}

template <auto kSet>
std::uint32_t SetByte(std::uint16_t field, int value) {
  return kSet(field, static_cast<std::uint8_t>(value));
}

constexpr Part kParts[] = {
    {"enable", "UserField[#].Enable", &tsSorbaneField::Enable, sorbaneGetFieldEnable,
     SetFlag<sorbaneSetFieldEnable>},
    {"skip", "UserField[#].Skip", &tsSorbaneField::Skip, sorbaneGetFieldSkip, SetFlag<sorbaneSetFieldSkip>},
    {"track", "UserField[#].Track", &tsSorbaneField::Track, sorbaneGetFieldTrack,
     SetByte<sorbaneSetFieldTrack>},
    {"field", "UserField[#].Field", &tsSorbaneField::Field, sorbaneGetFieldMagField,
     SetByte<sorbaneSetFieldMagField>},
    {"offset", "UserField[#].ByteOffset", &tsSorbaneField::ByteOffset, sorbaneGetFieldOffset,
     SetByte<sorbaneSetFieldOffset>},
    {"length", "UserField[#].Length", &tsSorbaneField::Length, sorbaneGetFieldLength,
     SetByte<sorbaneSetFieldLength>},
    {"term", "UserField[#].Termination", &tsSorbaneField::Termination, sorbaneGetFieldTerm,
     SetByte<sorbaneSetFieldTerm>},
    {"separators", "UserField[#].ShowSepSen", &tsSorbaneField::ShowSepSen, sorbaneGetFieldShowSepSen,
     SetFlag<sorbaneSetFieldShowSepSen>},
    {"lrc", "UserField[#].ShowLRC", &tsSorbaneField::ShowLRC, sorbaneGetFieldShowLRC,
     SetFlag<sorbaneSetFieldShowLRC>},
    {"ignore_lrc", "UserField[#].IgnoreLRC", &tsSorbaneField::IgnoreLRC, sorbaneGetFieldIgnoreLRC,
     SetFlag<sorbaneSetFieldIgnoreLRC>},
};

// The largest value that its bits on the wire can hold.
int MostOf(const Part& part) {
  for (const magstripe::FieldPart& travelling : magstripe::kFieldParts) {
    for (const magstripe::FieldBits& bits : travelling.bits) {
      if (bits.member == part.member) return bits.mask;
    }
  }
  return 0;
}

// The key bytes in use.
std::string KeysOf(std::uint16_t field) {
  std::string text;
  const std::uint32_t count = std::min<std::uint32_t>(sorbaneGetFieldKeyCount(field), magstripe::kFieldKeys);
  for (std::uint32_t at = 0; at < count; ++at) {
    text += Hex(sorbaneGetFieldKeydata(field, static_cast<std::uint16_t>(at)), 2);
  }
  return text;
}

void SetKeys(std::uint16_t field, const std::string& text) {
  const Bytes bytes = ParseHex(text, kKeys.c_str());
  sorbaneSetFieldKeyCount(field, static_cast<std::uint8_t>(bytes.size()));
  std::uint16_t at = 0;
  for (const std::uint8_t byte : bytes) sorbaneSetFieldKeydata(field, at++, byte);
}

Json PartsOfField(std::uint16_t field) {
  Json parts = Json::object();
  for (const Part& part : kParts) parts[part.name] = part.get(field);
  parts[kKeys] = KeysOf(field);
  return parts;
}

const Part& FindPart(const std::string& name) {
  const auto* part = std::ranges::find_if(kParts, [&](const Part& one) { return name == one.name; });
  if (part != std::end(kParts)) return *part;
  std::string known;
  for (const Part& one : kParts) known += std::string(one.name) + ", ";
  throw Failure(kUsage, "a user field has no part " + name + "; its parts are " + known + kKeys +
                            DidYouMean(name, UserFieldParts()));
}

int ParseValue(const Part& part, const std::string& text) {
  const Meaning& meaning = MeaningOf(part.key);
  const auto value = NumberOf(meaning, text);
  if (!value) throw Failure(kUsage, part.name + ("=" + text) + ": it " + WhatItTakes(meaning));
  if (*value >= 0 && *value <= MostOf(part)) return *value;
  throw Failure(kUsage, std::string(part.name) + " takes 0 to " + std::to_string(MostOf(part)));
}

// From words "NAME=VALUE".
Json ParseWords(const std::vector<std::string>& words) {
  Json wanted = Json::object();
  for (const std::string& word : words) {
    const std::size_t sign = word.find('=');
    if (sign == std::string::npos) throw Failure(kUsage, word + " is not of the form NAME=VALUE");
    const std::string name = word.substr(0, sign);
    const std::string value = word.substr(sign + 1);
    if (name != kKeys) {
      const Part& part = FindPart(name);
      wanted[name] = ParseValue(part, value);
      continue;
    }
    const Bytes bytes = ParseHex(value, kKeys.c_str());
    if (bytes.size() > magstripe::kFieldKeys) {
      throw Failure(kUsage, "a user field has " + std::to_string(magstripe::kFieldKeys) + " key bytes");
    }
    wanted[name] = HexText(bytes);
  }
  return wanted;
}

void Store(std::uint16_t field, const Json& wanted) {
  for (const auto& [name, value] : wanted.items()) {
    if (name == kKeys) {
      SetKeys(field, value.get<std::string>());
    } else {
      FindPart(name).set(field, value.get<int>());
    }
  }
}

struct ShowMagFields {
  int only = 0;  // 0: all

  void Take(Words& words) {
    words.Number("NUMBER", only, 1, magstripe::kUserFields, "Only this one");
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const Session session(request.link, kMagstripes);
    session.Use(request.device);
    Json document = request.DeviceDocument();
    Json& fields = document["fields"] = Json::array();
    for (std::uint16_t field = 1; field <= magstripe::kUserFields; ++field) {
      if (only != 0 && only != field) continue;
      Json row{{"number", field}};
      row.update(PartsOfField(field));
      fields.push_back(std::move(row));
    }
    return document;
  }
};

struct SetMagField {
  int number = 0;
  std::vector<std::string> assignments;
  bool dryRun = false;

  void Take(Words& words) {
    words.Number("NUMBER", number, 1, magstripe::kUserFields, "User field")->required();
    words.Text("NAME=VALUE", assignments, "As magfield shows them; keys in hexadecimal");
    words.DryRun(dryRun);
    words.DeviceToChange();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const auto field = static_cast<std::uint16_t>(number);
    const Json wanted = ParseWords(assignments);
    const Session session(request.link, kMagstripes);
    session.Use(request.device);
    const SettingsPlan plan{PartsOfField(field), wanted, [&] { return PartsOfField(field); }};
    const Backup backup(request.command, Backup::NeedOf(dryRun));
    Store(field, wanted);
    Json document = request.DeviceDocument();
    document["number"] = field;
    return ApplyAndVerifySettings(std::move(document), plan, dryRun, [&](const Json&) {
      backup.Keep();
      Commit();
    });
  }
};

}  // namespace

std::vector<std::string> UserFieldParts() {
  std::vector<std::string> names;
  for (const Part& part : kParts) names.emplace_back(part.name);
  names.push_back(kKeys);
  return names;
}

void AddMagFields(Program& program) {
  program.Add<ShowMagFields>("magfield", "The user fields of a magnetic-stripe reader");
  program.Add<SetMagField>("magfield set", "Sets parts of a user field, and reads them back");
}

}  // namespace tavlyn::ctl
