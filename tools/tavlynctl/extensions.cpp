// analyzer, module, transparent and ble status and set.
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "api.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

constexpr std::uint32_t kNoStatus = 0xFFFFFFFF;
constexpr std::uint16_t kNoRadio = 65535;
constexpr std::uint16_t kReports = 0;

enum Mode : std::uint16_t { kOff = 0, kOn = 1, kUnknownMode = 2 };

struct Free {
  void operator()(CardAnalyzerRecord* records) const { std::free(records); }
};

void Use(const Session& session, const Options& options) {
  session.Use(options.device);
  if (GetDevType() != kReports) {
    throw Failure(kUsage, ActiveDeviceName() + " can be asked for this as a HID device alone");
  }
}

Failure NoAnswer(const std::string& what) {
  return {kDeviceError, what + " of " + ActiveDeviceName() + " failed, " + ErrorText()};
}

Failure Lacks(const std::string& what) { return {kUsage, ActiveDeviceName() + " has no " + what}; }

void DescribeAnalyzer(Json& document) {
  const std::uint32_t status = GetCardAnalyzerStatus();
  if (status == kNoStatus)
    throw GetLastLibErr() == 0 ? Lacks("card analyzer") : NoAnswer("the card analyzer");
  document["status"] = status;
  document["records"] = GetCardCount();
}

Json SetAnalyzer(const char* command, std::uint8_t state, const Options& options) {
  const Session session(options.link);
  Use(session, options);
  if (SetCardAnalyzerControlState(state) != 1) throw NoAnswer("the card analyzer");
  Json document = NewDocument(command, options.device);
  document["state"] = state;
  DescribeAnalyzer(document);
  return document;
}

// The bits as 0 and 1, highest first, with a gap between bytes.
std::string Drawing(const CardAnalyzerRecord& record) {
  constexpr std::size_t kArea = sizeof record.CardBits;
  std::string text;
  for (std::size_t bit = std::min<std::size_t>(record.BitCount, kArea * 8); bit-- > 0;) {
    text += (record.CardBits[kArea - 1 - bit / 8] >> bit % 8 & 1) != 0 ? '1' : '0';
    if (bit % 8 == 0 && bit != 0) text += ' ';
  }
  return text;
}

std::string Number(const CardAnalyzerRecord& record) {
  constexpr std::size_t kArea = sizeof record.CardBits;
  std::string text;
  const std::size_t bytes = std::min<std::size_t>((record.BitCount + 7) / 8, kArea);
  for (std::size_t at = kArea - bytes; at < kArea; ++at) text += Hex(record.CardBits[at], 2);
  return text;
}

std::uint16_t ModuleOf(const Options& options) { return static_cast<std::uint16_t>(options.index); }

Failure NoModule(const Options& options) {
  const std::string module = "module " + std::to_string(options.index);
  return GetLastLibErr() == 0 ? Lacks(module) : NoAnswer(module);
}

Json DescribeModule(const char* command, const Options& options) {
  std::uint16_t state = 0;
  if (GetModuleState(ModuleOf(options), &state) == 0) throw NoModule(options);
  Json document = NewDocument(command, options.device);
  document["module"] = options.index;
  document["on"] = state == 1;
  return document;
}

constexpr const char* kMode = "transparent mode";

Json DescribeMode(std::uint16_t mode, const Options& options) {
  if (mode == kUnknownMode) throw Lacks(kMode);
  if (GetLastLibErr() != 0) throw NoAnswer(kMode);
  Json document = NewDocument("transparent", options.device);
  document["on"] = mode == kOn;
  return document;
}

std::uint16_t Configuration() {
  const std::uint16_t configuration = GetBTLEConfiguration();
  if (GetLastLibErr() != 0) throw NoAnswer("the BLE radio");
  return configuration;
}

}  // namespace

Json StartAnalyzer(const Options& options) {
  return SetAnalyzer("analyzer start", static_cast<std::uint8_t>(options.state), options);
}

Json StopAnalyzer(const Options& options) { return SetAnalyzer("analyzer stop", 0, options); }

Json AnalyzerStatus(const Options& options) {
  const Session session(options.link);
  Use(session, options);
  Json document = NewDocument("analyzer status", options.device);
  DescribeAnalyzer(document);
  return document;
}

Json ListAnalyzed(const Options& options) {
  const Session session(options.link);
  Use(session, options);
  Json document = NewDocument("analyzer list", options.device);
  DescribeAnalyzer(document);
  const std::unique_ptr<CardAnalyzerRecord[], Free> records(GetCardAnalyzerData());
  if (records == nullptr) throw NoAnswer("the list of the card analyzer");
  document["records"] = Json::array();
  for (std::uint32_t at = 0; at < GetCardCount(); ++at) {
    const CardAnalyzerRecord& record = records[at];
    document["records"].push_back({{"number", at},
                                   {"type", Hex(record.RecType, 4)},
                                   {"bits", record.BitCount},
                                   {"id", Number(record)},
                                   {"binary", Drawing(record)}});
  }
  if (GetLastLibErr() == 0) return document;
  throw Failure(kDeviceError, NoAnswer("the last record").what(), std::move(document));
}

Json GetModule(const Options& options) {
  const Session session(options.link);
  Use(session, options);
  return DescribeModule("module get", options);
}

Json SetModule(const Options& options) {
  const Session session(options.link);
  Use(session, options);
  if (SetModuleState(ModuleOf(options), options.choice == "on" ? 1 : 0) == 0) throw NoModule(options);
  return DescribeModule("module set", options);
}

Json TransparentMode(const Options& options) {
  const Session session(options.link);
  Use(session, options);
  if (options.choice == "status") return DescribeMode(CheckTransparentMode(), options);
  const std::uint32_t commit = options.store ? 1 : 0;
  const bool on = options.choice == "on";
  const std::uint16_t done = on ? EnableTransparentMode(commit) : DisableTransparentMode(commit);
  if (done == kUnknownMode) throw Lacks(kMode);
  if (done == kOff) throw NoAnswer(kMode);
  Json document = DescribeMode(CheckTransparentMode(), options);
  document["stored"] = options.store;
  return document;
}

Json BleStatus(const Options& options) {
  const Session session(options.link);
  Use(session, options);
  const std::uint16_t configuration = Configuration();
  Json document = NewDocument("ble status", options.device);
  document["present"] = configuration != kNoRadio;
  document["configuration"] = configuration != kNoRadio ? Json(configuration) : Json();
  return document;
}

Json SetBle(const Options& options) {
  const Session session(options.link);
  Use(session, options);
  if (Configuration() == kNoRadio) throw Lacks("BLE radio");
  if (SetBTLEConfiguration(static_cast<std::uint8_t>(options.index)) != 1) throw NoAnswer("the BLE radio");
  // Whether the reader has taken it is told by reading it back alone.
  const std::uint16_t configuration = Configuration();
  if (configuration != options.index) {
    throw Failure(kDeviceError,
                  ActiveDeviceName() + " keeps BLE configuration " + std::to_string(configuration));
  }
  Json document = NewDocument("ble set", options.device);
  document["configuration"] = configuration;
  return document;
}

}  // namespace tavlyn::ctl
