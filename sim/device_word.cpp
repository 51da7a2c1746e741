#include "sim/device_word.h"

#include <chrono>

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

// What stands behind the @: VID:PID, or the place of a line.
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

}  // namespace

std::optional<DeviceWord> ParseDevice(const std::string& text) {
  DeviceWord word;
  const std::size_t at = text.find('@');
  if (at != std::string::npos && !ParsePlace(text.substr(at + 1), word)) return std::nullopt;
  const std::string kind = text.substr(0, at);
  if (kind == "magstripe") word.kind = Kind::kMagstripe;
  if (kind == "sonar") word.kind = Kind::kSonar;
  if (word.line && !HangsThere(word.kind, word.line->kind)) return std::nullopt;
  if (kind == "reader" || word.kind != Kind::kReader) return word;
  if (!kind.starts_with("plus:")) return std::nullopt;
  const auto count = ParseNumber<int>(kind.substr(5));
  if (!count || *count < 2 || *count > 11) return std::nullopt;
  word.configurations = *count;
  return word;
}

bool IsKelda(const DeviceWord& word) {
  return word.kind == Kind::kReader && word.vid == kKeldaVid && word.pid == kKeldaPid;
}

std::shared_ptr<Model> MakeModel(const DeviceWord& word) {
  auto model = MakeKind(word);
  if (word.vid != 0) {
    model->identity.vid = word.vid;
    model->identity.pid = word.pid;
  }
  return model;
}

}  // namespace tavlyn::sim
