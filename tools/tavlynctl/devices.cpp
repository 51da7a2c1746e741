// list and info.
#include <array>
#include <cstdlib>
#include <memory>

#include "api.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

constexpr std::uint16_t kProcessors = 3;
constexpr std::uint16_t kFirmwareWords = 5;
constexpr std::size_t kEsnBytes = 32;
constexpr std::uint32_t kLongestAnswer = 0xFFFF;

struct Text {
  const char* key;
  const char* (*get)();
};

constexpr Text kTexts[] = {
    {"serial_number", [] { return GetSerialNumber(); }}, {"platform", [] { return GetPlatformType(); }},
    {"firmware", [] { return GetFullFWVersion(); }},     {"firmware_file", [] { return GetFWFilename(); }},
    {"build_date", [] { return GetBuildDate(); }},       {"cpu", [] { return GetCPUInfo(); }},
    {"copyright", [] { return GetCopyrightInfo(); }}};

Json TextOrNull(const char* text) { return text != nullptr ? Json(text) : Json(); }

// Of the active device.
Json Description() {
  return {{"index", GetActDev()},
          {"product", ActiveProduct()},
          {"part_number", TextOrNull(getPartNumberString())},
          {"identity", GetVidPidVendorName()},
          {"did", Hex(GetDID(), 4)},
          {"luid", GetLUID()},
          {"configurations", GetMaxConfig() + 1},
          {"path", ActiveDevicePath()}};
}

Json FirmwareWords() {
  Json rows = Json::array();
  for (std::uint16_t cpu = 0; cpu < kProcessors; ++cpu) {
    Json words = Json::array();
    for (std::uint16_t i = 0; i < kFirmwareWords; ++i) {
      const std::uint32_t word = GetFirmwareVersion(cpu, i);
      if (word != 0) words.push_back(Hex(word, 8));
    }
    if (!words.empty()) rows.push_back({{"cpu", cpu}, {"words", words}});
  }
  return rows;
}

Json Esn() {
  const std::uint8_t* esn = getESN();
  if (esn == nullptr) return {};
  std::string text;
  for (std::size_t i = 0; i < kEsnBytes; ++i) text += Hex(esn[i], 2);
  return text;
}

// Flag k becomes bit k again, as in the reader's own mask.
Json HardwareMask(std::uint8_t* (*get)()) {
  constexpr std::size_t kFlags = 8;
  const std::unique_ptr<std::uint8_t, decltype(&std::free)> flags(get(), &std::free);
  if (flags == nullptr) return {};
  unsigned mask = 0;
  for (std::size_t k = 0; k < kFlags; ++k) mask |= (flags.get()[k] & 1U) << k;
  return Hex(mask, 2);
}

}  // namespace

void DescribeTexts(Json& device) {
  device["part_number"] = TextOrNull(getPartNumberString());
  for (const Text& text : kTexts) device[text.key] = TextOrNull(text.get());
}

Json List(const Options& options) {
  const Session session(options.link);
  Json document = NewDocument("list");
  document["devices"] = Json::array();
  std::string problem;
  for (int index = 0; index < GetDevCnt(); ++index) {
    Session::Select(index);
    const std::string unread = session.ReadProblem();
    if (!unread.empty() && !problem.empty()) problem += "; ";
    problem += unread;
    document["devices"].push_back(Description());
  }
  if (problem.empty()) return document;
  Show(document, options.json);
  throw Failure(kDeviceError, problem);
}

Json Info(const Options& options) {
  const Session session(options.link);
  // A search of serial ports alone does not ask for the firmware words.
  if (options.link.kind == LinkKind::kSerial) SendGetFWVersion();
  session.Use(options.device);
  Json document = NewDocument("info");
  Json& device = document["device"] = Description();
  DescribeTexts(device);
  device["esn"] = Esn();
  device["installed_hardware"] = HardwareMask(InstalledHardware);
  device["supported_hardware"] = HardwareMask(SupportedHardware);
  const std::uint32_t answer = Ping();
  device["answer_ms"] = answer <= kLongestAnswer ? Json(answer) : Json();
  Json words = FirmwareWords();
  if (!words.empty()) device["firmware_words"] = std::move(words);
  return document;
}

}  // namespace tavlyn::ctl
