#include "tools/tavlynctl/offers.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "api.h"
#include "tools/tavlynctl/choice.h"
#include "tools/tavlynctl/config/fields.h"
#include "tools/tavlynctl/config/meanings.h"
#include "tools/tavlynctl/config/product_settings.h"
#include "tools/tavlynctl/config/values.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

using Typed = std::vector<std::string>;
using Candidates = std::vector<Candidate>;

std::string MeaningText(const std::string& name) {
  const Meaning& meaning = MeaningOf(name);
  return std::string(meaning.text) + " (" + NameOf(meaning.unit) + ")";
}

// Of a field by its name alone, too.
const Meaning& MeaningNamed(const std::string& name) {
  return MeaningOf(FindSetting(name) ? name : FullName(FindField(name)));
}

// A name alone is offered too, as config takes it if only one record has it.
Candidates OfferFields(const Typed& /*words*/) {
  Candidates all;
  for (const Field& field : Fields()) {
    const std::string text = MeaningText(FullName(field));
    all.push_back({FullName(field), text});
    const bool isAlone = std::ranges::count_if(Fields(), [&](const Field& one) {
                           return std::string_view(one.name) == field.name;
                         }) == 1;
    if (isAlone) all.push_back({field.name, text});
  }
  for (const NamedSetting& setting : SettingNames()) {
    all.push_back({setting.name, MeaningText(setting.name)});
  }
  return all;
}

Candidates WithSign(Candidates names) {
  for (Candidate& one : names) one.word += '=';
  return names;
}

// After the sign, the words that the field or setting takes; a unit has none.
Candidates OfferFieldValues(const Typed& words) {
  const std::string& begun = words.back();
  const std::size_t sign = begun.find('=');
  if (sign == std::string::npos) return WithSign(OfferFields(words));
  const std::string name = begun.substr(0, sign);
  Candidates all;
  for (const Candidate& one : OfferFields(words)) {
    if (one.word != name) continue;
    const Meaning& meaning = MeaningNamed(name);
    for (const NamedNumber& value : WordsOf(meaning))
      all.push_back({begun.substr(0, sign + 1) + value.word, meaning.text});
  }
  return all;
}

// Records and the words of the table, as config explain takes them.
Candidates OfferTopics(const Typed& words) {
  Candidates all;
  for (const Group& group : Groups()) all.push_back({group.name, group.text});
  std::ranges::move(OfferFields(words), std::back_inserter(all));
  return all;
}

Candidates OfferParts(const Typed& /*words*/) {
  Candidates all;
  for (const std::string& name : UserFieldParts()) all.push_back({name, "of a user field"});
  return WithSign(all);
}

Candidates OfferFiles(const Typed& /*words*/) { return {{kFileNames, ""}}; }

// Devices may have a LUID in common.
void OfferName(Candidates& all, const std::string& word, const std::string& text) {
  const auto same = std::ranges::find(all, word, &Candidate::word);
  if (same == all.end()) {
    all.push_back({word, text});
  } else {
    same->text += "; " + text;
  }
}

// The active device by each of its names but its path, which the index is shown with.
void OfferDevice(Candidates& all) {
  const std::string serial = ActiveSerialNumber();
  const std::string text = std::string(ActiveProductName()) +
                           (serial.empty() ? "" : ", serial number " + serial) + ", " + ActiveDevicePath();
  OfferName(all, std::to_string(ActiveIndex()), text);
  if (!serial.empty()) OfferName(all, SerialNumberWord(serial), text);
  OfferName(all, "luid:" + std::to_string(GetLUID()), text);
}

// On USB alone: a search over ports or addresses takes too long for a key that is pressed in passing.
Candidates OfferDevices(const Typed& words) {
  const auto isFarAway = [](const std::string& word) {
    return word.starts_with("--com") || word.starts_with("--ip");
  };
  Candidates all;
  if (std::ranges::any_of(words, isFarAway)) return all;
  const Session session(Link{}, kAllProducts);
  do {
    for (std::int16_t index = 0; SetActDev(index) == 1; ++index) OfferDevice(all);
  } while (session.Next());
  return all;
}

constexpr Offer kOffers[] = {
    {"--device", OfferDevices}, {"FIELD", OfferFields},        {"FIELD=VALUE", OfferFieldValues},
    {"NAME=VALUE", OfferParts}, {"FILE", OfferFiles},          {"TOPIC", OfferTopics},
    {"--changed", OfferFiles},  {"--layouts", OfferFiles},     {"--password-file", OfferFiles},
    {"--ca", OfferFiles},       {"--certificate", OfferFiles}, {"--key", OfferFiles},
    {"--resume", OfferFiles}};

}  // namespace

std::span<const Offer> Offers() { return kOffers; }

}  // namespace tavlyn::ctl
