#include "sim/device_word.h"

#include <algorithm>
#include <chrono>
#include <sstream>

#include "sim/devices/magstripe.h"
#include "sim/devices/reader.h"
#include "sim/devices/sonar.h"
#include "sim/words.h"

namespace tavlyn::sim {
namespace {

std::uint64_t Milliseconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

// What follows the @: VID:PID, or the place of a line.
bool ParsePlace(const std::string& text, DeviceWord& word) {
  word.line = ParseLinePlace(text);
  if (word.line) return true;
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) return false;
  const auto vid = ParseNumber<std::uint16_t>(text.substr(0, colon), 16);
  const auto pid = ParseNumber<std::uint16_t>(text.substr(colon + 1), 16);
  if (!vid || !pid || *vid == 0) return false;
  word.vid = *vid;
  word.pid = *pid;
  return true;
}

bool HangsThere(Kind kind, LineKind line) {
  return kind == Kind::kReader || (kind == Kind::kMagstripe && line == LineKind::kCom);
}

std::shared_ptr<Magstripe> MakeMagstripe() {
  auto magstripe = std::make_shared<Magstripe>();
  magstripe->state.uptime = [plugged = Milliseconds()] { return Milliseconds() - plugged; };
  return magstripe;
}

std::shared_ptr<Sonar> MakeSonar() {
  auto sonar = std::make_shared<Sonar>();
  sonar->clock = Milliseconds;
  return sonar;
}

std::shared_ptr<Model> MakeKind(const DeviceWord& word) {
  if (word.kind == Kind::kMagstripe) return MakeMagstripe();
  if (word.kind == Kind::kSonar) return MakeSonar();
  if (IsKelda(word)) return Reader::Kelda(word.configurations);
  return word.configurations == 1 ? Reader::Plain() : Reader::Plus(word.configurations);
}

std::optional<DeviceWord> ParseKind(const std::string& text) {
  DeviceWord word;
  const std::size_t at = text.find('@');
  if (at != std::string::npos && !ParsePlace(text.substr(at + 1), word)) return std::nullopt;
  const std::string kind = text.substr(0, at);
  if (kind == "magstripe") word.kind = Kind::kMagstripe;
  if (kind == "sonar") word.kind = Kind::kSonar;
  if (word.line && !HangsThere(word.kind, word.line->kind)) return std::nullopt;
  if (word.line) word.line->magstripe = word.kind == Kind::kMagstripe;
  if (kind == "reader" || word.kind != Kind::kReader) return word;
  if (!kind.starts_with("plus:")) return std::nullopt;
  const auto count = ParseNumber<int>(kind.substr(5));
  if (!count || *count < 2 || *count > 11) return std::nullopt;
  word.configurations = *count;
  return word;
}

// The library keeps this many characters of a device text.
constexpr std::size_t kLongestSerial = 24;

bool IsSerial(const std::string& text) {
  const auto isPrintable = [](char c) { return c > ' ' && c < 0x7F; };
  return !text.empty() && text.size() <= kLongestSerial && std::ranges::all_of(text, isPrintable);
}

// What follows a comma.
bool TakeOwn(const std::string& text, DeviceWord& word) {
  const std::size_t valueAt = text.find('=') + 1;
  const std::string name = text.substr(0, valueAt);
  const std::string value = text.substr(valueAt);
  if (name == "serial=") word.serial = value;
  if (name == "luid=") word.luid = ParseNumber<std::uint16_t>(value);
  return name == "serial=" ? IsSerial(value) : name == "luid=" && word.luid.has_value();
}

// The serial number of the device with that number, counting on from the first device's.
std::string Counted(const std::string& first, std::size_t number) {
  const std::string last = std::to_string(ParseNumber<std::size_t>(first).value_or(0) + number - 1);
  return std::string(first.size() - std::min(first.size(), last.size()), '0') + last;
}

}  // namespace

std::optional<DeviceWord> ParseDevice(const std::string& text, std::string& problem) {
  std::istringstream parts(text);
  std::string part;
  std::getline(parts, part, ',');
  auto word = ParseKind(part);
  problem = text + ": no such kind of device; tavlynsim devices shows the kinds";
  while (word && std::getline(parts, part, ',')) {
    if (TakeOwn(part, *word)) continue;
    problem = part + ": serial= takes 1 to 24 characters, luid= a number from 0 to 65535";
    return std::nullopt;
  }
  return word;
}

bool IsKelda(const DeviceWord& word) {
  return word.kind == Kind::kReader && word.vid == kKeldaVid && word.pid == kKeldaPid;
}

std::shared_ptr<Model> MakeModel(const DeviceWord& word, std::size_t number) {
  auto model = MakeKind(word);
  if (word.vid != 0) {
    model->identity.vid = word.vid;
    model->identity.pid = word.pid;
  }
  model->SetSerial(word.serial.empty() ? Counted(model->identity.serial, number) : word.serial);
  model->SetLuid(word.luid.value_or(static_cast<std::uint16_t>(number)));
  return model;
}

}  // namespace tavlyn::sim
