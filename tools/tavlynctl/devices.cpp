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

// A place of the library's table keeps the texts of a device of another product that was there before.
Json PartNumber() { return GetProduct() == kSensors ? Json() : TextOrNull(getPartNumberString()); }

// Of the active device.
Json Description() {
  return {{"index", GetActDev()},
          {"product", ActiveProduct()},
          {"part_number", PartNumber()},
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
  device["part_number"] = PartNumber();
  for (const Text& text : kTexts) device[text.key] = TextOrNull(text.get());
}

namespace {

// Adds the devices of a product to the list, and why some could not be read.
void ListProduct(std::uint32_t product, const Link& link, Json& devices, std::string& problem) {
  const Session session(link, product);
  for (int index = 0; index < GetDevCnt(); ++index) {
    session.Select(index);
    const std::string unread = session.ReadProblem();
    if (!unread.empty() && !problem.empty()) problem += "; ";
    problem += unread;
    devices.push_back(Description());
  }
}

// What readers alone tell.
void DescribeReader(Json& device) {
  DescribeTexts(device);
  device["esn"] = Esn();
  device["installed_hardware"] = HardwareMask(InstalledHardware);
  device["supported_hardware"] = HardwareMask(SupportedHardware);
}

// The library keeps the two version words of the other products where a reader's firmware words are.
void DescribeVersion(Json& device) { device["version"] = Hex(GetFirmwareVersion(0, 1), 4); }

void DescribeCounts(Json& device) {
  device["uptime"] = sorbaneGetSystemUptime();
  device["cards_read"] = sorbaneGetSystemCardsRead();
}

}  // namespace

Json List(const Options& options) {
  Json document = NewDocument("list");
  Json& devices = document["devices"] = Json::array();
  std::string problem;
  for (const std::uint32_t product : {kReaders, kMagstripes, kSensors}) {
    if ((options.products & product) != 0) ListProduct(product, options.link, devices, problem);
  }
  if (devices.empty()) throw NotFound(options.link, options.products);
  if (problem.empty()) return document;
  throw Failure(kDeviceError, problem, std::move(document));
}

Json Info(const Options& options) {
  const Session session(options.link, options.products);
  session.Select(options.device);
  // A search of serial ports alone does not ask for the firmware words.
  if (options.link.kind == LinkKind::kSerial && ReaderIsActive()) SendGetFWVersion();
  session.Use(options.device);
  Json document = NewDocument("info");
  Json& device = document["device"] = Description();
  if (ReaderIsActive()) {
    DescribeReader(device);
  } else {
    DescribeVersion(device);
  }
  if (GetProduct() == kMagstripes) DescribeCounts(device);
  // A sonar sensor has no command for it.
  if (GetProduct() != kSensors) {
    const std::uint32_t answer = Ping();
    device["answer_ms"] = answer <= kLongestAnswer ? Json(answer) : Json();
  }
  if (!ReaderIsActive()) return document;
  Json words = FirmwareWords();
  if (!words.empty()) device["firmware_words"] = std::move(words);
  return document;
}

}  // namespace tavlyn::ctl
