// list, info and text.
#include "tools/tavlynctl/devices.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

constexpr std::uint16_t kProcessors = 3;
constexpr std::uint16_t kFirmwareWords = 5;
constexpr std::size_t kEsnBytes = 32;
constexpr std::uint32_t kLongestAnswer = 0xFFFF;

struct DeviceText {
  const char* key;
  const char* (*get)();
};

constexpr DeviceText kTexts[] = {
    {"serial_number", [] { return GetSerialNumber(); }}, {"platform", [] { return GetPlatformType(); }},
    {"firmware", [] { return GetFullFWVersion(); }},     {"firmware_file", [] { return GetFWFilename(); }},
    {"build_date", [] { return GetBuildDate(); }},       {"cpu", [] { return GetCPUInfo(); }},
    {"copyright", [] { return GetCopyrightInfo(); }}};

bool IsAnswer(std::uint32_t milliseconds) { return milliseconds <= kLongestAnswer; }

std::string NoAnswer() { return ActiveDeviceName() + " does not answer, " + ErrorText(); }

// The library also returns 0 if the device did not answer: so it is asked again, and pinged.
template <typename Get>
std::optional<unsigned> AnswerOf(Get get) {
  for (int tries = 0; tries < 2; ++tries) {
    if (const unsigned value = get(); value != 0) return value;
  }
  return IsAnswer(Ping()) ? std::optional(0U) : std::nullopt;
}

Json NumberOrNull(const std::optional<unsigned>& number) { return number ? Json(*number) : Json(); }

// The library has an empty text if the device did not report one.
Json TextOrNull(const char* text) { return text != nullptr && *text != '\0' ? Json(text) : Json(); }

// An entry of the library's table keeps the texts of an earlier device of another product.
Json PartNumber() { return GetProduct() == kSensors ? Json() : TextOrNull(getPartNumberString()); }

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

// Flag k becomes bit k again, as in the reader's mask.
unsigned HardwareMask(std::uint8_t* (*get)()) {
  constexpr std::size_t kFlags = 8;
  const std::unique_ptr<std::uint8_t, decltype(&std::free)> flags(get(), &std::free);
  unsigned mask = 0;
  for (std::size_t k = 0; flags != nullptr && k < kFlags; ++k) mask |= (flags.get()[k] & 1U) << k;
  return mask;
}

Json Hardware(std::uint8_t* (*get)()) {
  const auto mask = AnswerOf([get] { return HardwareMask(get); });
  return mask ? Json(Hex(*mask, 2)) : Json();
}

void DescribeTexts(Json& device) {
  device["part_number"] = PartNumber();
  for (const DeviceText& text : kTexts) device[text.key] = TextOrNull(text.get());
}

// Adds the active device to the list, and why it could not be read.
void ListDevice(const Session& session, Json& devices, std::string& problem) {
  std::string missing = session.ReadProblem();
  Json& device = devices.emplace_back(DeviceDescription(missing.empty()));
  if (missing.empty()) device["serial_number"] = TextOrNull(ActiveSerialNumber().c_str());
  // A reader's texts can fail without an error word.
  if (missing.empty() && DeviceIsReader() && device["part_number"].is_null() && !IsAnswer(Ping())) {
    missing = NoAnswer();
  }
  if (!missing.empty() && !problem.empty()) problem += "; ";
  problem += missing;
}

// What only readers report.
void DescribeReader(Json& device) {
  DescribeTexts(device);
  device["esn"] = Esn();
  device["installed_hardware"] = Hardware(InstalledHardware);
  device["supported_hardware"] = Hardware(SupportedHardware);
}

// The library keeps the two version words of the other products where a reader's firmware words are.
std::string VersionWord() { return Hex(GetFirmwareVersion(0, 1), 4); }

void DescribeCounts(Json& device) {
  device["uptime"] = NumberOrNull(AnswerOf(sorbaneGetSystemUptime));
  device["cards_read"] = NumberOrNull(AnswerOf(sorbaneGetSystemCardsRead));
}

struct List {
  void Take(Words& words) { words.Product(); }

  [[nodiscard]] Json Run(const Request& request) const {
    Json document = request.Document();
    Json& devices = document["devices"] = Json::array();
    std::string problem;
    const Session session(request.link, request.products);
    do {
      for (std::int16_t index = 0; SetActDev(index) == 1; ++index) ListDevice(session, devices, problem);
    } while (session.Next());
    if (devices.empty()) throw NotFound(request.link, request.products);
    if (problem.empty()) return document;
    throw Failure(kDeviceError, problem, std::move(document));
  }
};

struct Info {
  void Take(Words& words) {
    words.Device();
    words.Product();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const Session session(request.link, request.products);
    session.Select(request.device);
    // A search of serial ports only does not ask for the firmware words.
    if (request.link.kind == LinkKind::kSerial && DeviceIsReader()) SendGetFWVersion();
    session.Use(request.device);
    Json document = request.Document();
    Json& device = document["device"] = DeviceDescription();
    if (DeviceIsReader()) {
      DescribeReader(device);
    } else {
      device["version"] = VersionWord();
    }
    if (GetProduct() == kMagstripes) DescribeCounts(device);
    // A sonar sensor has no command for it.
    if (GetProduct() != kSensors) {
      const std::uint32_t answer = Ping();
      device["answer_ms"] = IsAnswer(answer) ? Json(answer) : Json();
      if (!IsAnswer(answer)) throw Failure(kDeviceError, NoAnswer(), std::move(document));
    }
    if (!DeviceIsReader()) return document;
    Json firmware = FirmwareWords();
    if (!firmware.empty()) device["firmware_words"] = std::move(firmware);
    return document;
  }
};

struct Texts {
  void Take(Words& words) { words.Device(); }

  [[nodiscard]] Json Run(const Request& request) const {
    const Session session(request.link);
    session.Use(request.device);
    Json document = request.DeviceDocument();
    DescribeTexts(document);
    const bool whole = std::ranges::none_of(document, [](const Json& text) { return text.is_null(); });
    if (whole || IsAnswer(Ping())) return document;
    throw Failure(kDeviceError, NoAnswer(), std::move(document));
  }
};

}  // namespace

Json DeviceDescription(bool wasRead) {
  const bool identified = wasRead || GetDID() != 0;
  const bool counted = wasRead || GetCardType() >= 0;
  return {{"index", ActiveIndex()},
          {"product", ActiveProductName()},
          {"part_number", PartNumber()},
          {"serial_number", Json()},
          {"identity", GetVidPidVendorName()},
          {"did", identified ? Json(Hex(GetDID(), 4)) : Json()},
          {"luid", identified ? Json(GetLUID()) : Json()},
          {"configurations", counted ? Json(GetMaxConfig() + 1) : Json()},
          {"path", ActiveDevicePath()}};
}

std::string FirmwareVersion() {
  if (!DeviceIsReader()) return VersionWord();
  const char* text = GetFullFWVersion();
  return text != nullptr ? text : "";
}

void AddDevices(Program& program) {
  program.Add<List>("list", "The devices that are found");
  program.Add<Info>("info", "What a device says about itself");
}

void AddTexts(Program& program) { program.Add<Texts>("text", "The texts stored in a reader"); }

}  // namespace tavlyn::ctl
