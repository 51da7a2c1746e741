#include "tools/tavlynctl/offers.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "api.h"
#include "tools/tavlynctl/fields.h"
#include "tools/tavlynctl/product_settings.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

using Typed = std::vector<std::string>;
using Candidates = std::vector<Candidate>;

// A name alone is offered too, as config takes it if only one record has it.
Candidates OfferFields(const Typed& /*words*/) {
  Candidates all;
  for (const Field& field : Fields()) {
    all.push_back({FullName(field), RangeText(field.bounds)});
    const bool isAlone = std::ranges::count_if(Fields(), [&](const Field& one) {
                           return std::string_view(one.name) == field.name;
                         }) == 1;
    if (isAlone) all.push_back({field.name, FullName(field) + " " + RangeText(field.bounds)});
  }
  for (const NamedSetting& setting : SettingNames()) {
    all.push_back({setting.name, ProductName(setting.product)});
  }
  return all;
}

Candidates WithSign(Candidates names) {
  for (Candidate& one : names) one.word += '=';
  return names;
}

// After the sign, the values of a field that is a flag.
Candidates OfferFieldValues(const Typed& words) {
  const std::string& begun = words.back();
  const std::size_t sign = begun.find('=');
  if (sign == std::string::npos) return WithSign(OfferFields(words));
  const std::string name = begun.substr(0, sign);
  for (const Field& field : Fields()) {
    if (field.save != Save::kFlag || (name != field.name && name != FullName(field))) continue;
    return {{name + "=0", "off"}, {name + "=1", "on"}};
  }
  return {};
}

Candidates OfferParts(const Typed& /*words*/) {
  Candidates all;
  for (const std::string& name : UserFieldParts()) all.push_back({name, "of a user field"});
  return WithSign(all);
}

Candidates OfferFiles(const Typed& /*words*/) { return {{kFileNames, ""}}; }

std::string ActiveDeviceText() {
  const char* serial = DeviceIsReader() ? GetSerialNumber() : nullptr;
  const bool has = serial != nullptr && *serial != '\0';
  return std::string(ActiveProductName()) + (has ? ", serial number " + std::string(serial) : "") + ", " +
         ActiveDevicePath();
}

// On USB alone: a search over ports or addresses takes too long for a key that is pressed in passing.
Candidates OfferDevices(const Typed& words) {
  const auto isFarAway = [](const std::string& word) {
    return word.starts_with("--com") || word.starts_with("--ip");
  };
  Candidates all;
  if (std::ranges::any_of(words, isFarAway)) return all;
  for (const std::uint32_t product : {kReaders, kMagstripes, kSensors}) {
    const Session session(Link{}, product);
    for (int index = 0; index < GetDevCnt(); ++index) {
      SetActDev(static_cast<std::int16_t>(index));
      const std::string word = std::to_string(index);
      const auto same = std::ranges::find(all, word, &Candidate::word);
      if (same == all.end()) {
        all.push_back({word, ActiveDeviceText()});
      } else {
        same->text += "; " + ActiveDeviceText();
      }
    }
  }
  return all;
}

constexpr Offer kOffers[] = {{"--device", OfferDevices},
                             {"FIELD", OfferFields},
                             {"FIELD=VALUE", OfferFieldValues},
                             {"NAME=VALUE", OfferParts},
                             {"FILE", OfferFiles}};

}  // namespace

std::span<const Offer> Offers() { return kOffers; }

}  // namespace tavlyn::ctl
