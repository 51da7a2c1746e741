#include "tools/tavlynsim/scenario/settings.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

#include "core/mirror.h"
#include "core/sonar_fields.h"
#include "magstripe/layout.h"
#include "sim/devices/magstripe.h"
#include "sim/devices/sonar.h"
#include "sim/words.h"
#include "sonar/layout.h"

namespace tavlyn::sim {
namespace {

// The byte of a sonar sensor's page that has a word.
std::uint8_t& ByteOf(SonarPages& pages, std::size_t word) {
  for (std::size_t page = 0; page < sonar::kPageCount; ++page) {
    const auto& bytes = sonar::kPages[page].bytes;
    const auto at = std::ranges::find(bytes, word, [](const auto& one) { return std::size_t{one.word}; });
    if (at != bytes.end()) return pages[page][static_cast<std::size_t>(at - bytes.begin())];
  }
  return pages[0][0];  // each word is in a page
}

int ValueOf(const sonar::Field& field, std::uint8_t byte) {
  return field.inches ? static_cast<int>(std::lround(byte / sonar::kUnitsPerInch)) : byte * field.step;
}

std::uint8_t ByteFor(const sonar::Field& field, int value) {
  return static_cast<std::uint8_t>(field.inches ? std::lround(value * sonar::kUnitsPerInch)
                                                : value / field.step);
}

// What the rows of a magnetic-stripe reader's text file name their places by.
struct MagEntry {
  std::uint16_t LUID = 0;
  tsSorbaneCfg cfg{};
};

template <typename Place>
int Reach(Place& place, std::optional<int> value) {
  if (value) place = static_cast<std::remove_reference_t<Place>>(*value);
  return place;
}

using ReachSetting = int (*)(MagEntry& entry, magstripe::Indices at, std::optional<int> value);
constexpr ReachSetting kReachSettings[] = {
#define SETTING(key, count, inners, place, form, comment)                \
  [](MagEntry& entry, magstripe::Indices at, std::optional<int> value) { \
    [[maybe_unused]] tsSorbaneCfg& cfg = entry.cfg;                      \
    [[maybe_unused]] tsSorbaneField& field = cfg.UserField[at.outer];    \
    return Reach(place, value);                                          \
  },
#include "magstripe/text_file.inc"
};

magstripe::Payload PayloadOf(std::span<const std::uint8_t> bytes) {
  magstripe::Payload payload{};
  std::ranges::copy(bytes, payload.begin());
  return payload;
}

void Fill(std::span<std::uint8_t> bytes, const magstripe::Payload& payload) {
  std::copy_n(payload.begin(), bytes.size(), bytes.begin());
}

std::span<std::uint8_t> PartOf(UserField& field, std::size_t part) {
  if (part == 0) return field.first;
  return part == 1 ? std::span<std::uint8_t>(field.second) : field.control;
}

MagEntry Unpacked(MagSettings settings) {
  MagEntry entry;
  magstripe::UnpackSystem(PayloadOf(settings.system), entry.cfg);
  magstripe::UnpackLeds(PayloadOf(settings.leds), entry.cfg);
  for (std::size_t field = 0; field < kUserFields; ++field) {
    for (std::size_t part = 0; part < magstripe::kFieldParts.size(); ++part) {
      magstripe::UnpackField(magstripe::kFieldParts[part], PayloadOf(PartOf(settings.fields[field], part)),
                             entry.cfg.UserField[field]);
    }
  }
  entry.LUID = entry.cfg.LUID;
  return entry;
}

MagSettings Packed(MagEntry entry) {
  MagSettings settings{};
  entry.cfg.LUID = entry.LUID;
  Fill(settings.system, magstripe::PackSystem(entry.cfg));
  Fill(settings.leds, magstripe::PackLeds(entry.cfg));
  for (std::size_t field = 0; field < kUserFields; ++field) {
    for (std::size_t part = 0; part < magstripe::kFieldParts.size(); ++part) {
      Fill(PartOf(settings.fields[field], part),
           magstripe::PackField(magstripe::kFieldParts[part], entry.cfg.UserField[field]));
    }
  }
  return settings;
}

}  // namespace

std::optional<DeviceSetting> FindSetting(const std::string& name) {
  const auto* field = std::ranges::find(sonar::kFields, name, &sonar::Field::key);
  if (field != sonar::kFields.end())
    return DeviceSetting{true, static_cast<std::size_t>(field - sonar::kFields.begin()), {}};
  for (std::size_t row = 0; row < magstripe::kSettings.size(); ++row) {
    if (const auto at = magstripe::IndicesIn(magstripe::kSettings[row], name))
      return DeviceSetting{false, row, *at};
  }
  return std::nullopt;
}

std::string NameOf(const DeviceSetting& setting) {
  if (setting.isSonars) return sonar::kFields[setting.row].key;
  return magstripe::KeyOf(magstripe::kSettings[setting.row], setting.at).data();
}

std::optional<int> StoredSetting(const Model& model, const DeviceSetting& setting) {
  if (const auto* reader = dynamic_cast<const Magstripe*>(&model); reader != nullptr && !setting.isSonars) {
    MagEntry entry = Unpacked(reader->state.stored);
    return kReachSettings[setting.row](entry, setting.at, std::nullopt);
  }
  const auto* sensor = dynamic_cast<const Sonar*>(&model);
  if (sensor == nullptr || !setting.isSonars) return std::nullopt;
  SonarPages pages = sensor->state.stored;
  return ValueOf(sonar::kFields[setting.row], ByteOf(pages, setting.row));
}

bool StoreSetting(Model& model, const DeviceSetting& setting, const std::string& value,
                  std::string& problem) {
  const auto before = StoredSetting(model, setting);
  const auto number = ParseNumber<int>(value);
  if (!before) return Fail(problem, NameOf(setting) + ": this device has no such setting");
  if (!number) return Fail(problem, value + ": " + NameOf(setting) + " is a number");
  if (setting.isSonars) {
    SonarState& state = dynamic_cast<Sonar&>(model).state;
    for (SonarPages* pages : {&state.working, &state.stored})
      ByteOf(*pages, setting.row) = ByteFor(sonar::kFields[setting.row], *number);
  } else {
    MagstripeState& state = dynamic_cast<Magstripe&>(model).state;
    MagEntry entry = Unpacked(state.stored);
    kReachSettings[setting.row](entry, setting.at, *number);
    state.working = state.stored = Packed(entry);
  }
  return StoredSetting(model, setting) == *number ||
         Fail(problem, value + ": no value that " + NameOf(setting) + " can have");
}

}  // namespace tavlyn::sim
