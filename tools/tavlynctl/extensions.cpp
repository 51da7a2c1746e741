// analyzer, module and transparent.
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

constexpr std::uint32_t kNoStatus = 0xFFFFFFFF;

enum Mode : std::uint16_t { kOff = 0, kOn = 1, kUnknownMode = 2 };

struct Free {
  void operator()(CardAnalyzerRecord* records) const { std::free(records); }
};

void DescribeAnalyzer(Json& document) {
  const std::uint32_t status = GetCardAnalyzerStatus();
  if (status == kNoStatus) throw GetLastLibErr() == 0 ? Lacks("card analyzer") : Failed("the card analyzer");
  document["status"] = status;
  document["records"] = GetCardCount();
}

Json SetAnalyzer(std::uint8_t state, const Request& request) {
  const Session session(request.link);
  session.UseReports(request.device);
  if (SetCardAnalyzerControlState(state) != 1) throw Failed("the card analyzer");
  Json document = request.DeviceDocument();
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

struct StartAnalyzer {
  int state = 1;

  void Take(Words& words) {
    words.Number("STATE", state, 0, 255, "State to set (1)");
    words.DeviceToChange();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    return SetAnalyzer(static_cast<std::uint8_t>(state), request);
  }
};

struct StopAnalyzer {
  void Take(Words& words) { words.DeviceToChange(); }

  [[nodiscard]] Json Run(const Request& request) const { return SetAnalyzer(0, request); }
};

struct AnalyzerStatus {
  void Take(Words& words) { words.Device(); }

  [[nodiscard]] Json Run(const Request& request) const {
    const Session session(request.link);
    session.UseReports(request.device);
    Json document = request.DeviceDocument();
    DescribeAnalyzer(document);
    return document;
  }
};

struct ListAnalyzed {
  void Take(Words& words) { words.Device(); }

  [[nodiscard]] Json Run(const Request& request) const {
    const Session session(request.link);
    session.UseReports(request.device);
    Json document = request.DeviceDocument();
    DescribeAnalyzer(document);
    const std::unique_ptr<CardAnalyzerRecord[], Free> records(GetCardAnalyzerData());
    if (records == nullptr) throw Failed("the list of the card analyzer");
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
    throw Failure(kDeviceError, Failed("the last record").what(), std::move(document));
  }
};

Failure NoModule(int number) {
  const std::string module = "module " + std::to_string(number);
  return GetLastLibErr() == 0 ? Lacks(module) : Failed(module);
}

Json DescribeModule(int number, const Request& request) {
  std::uint16_t state = 0;
  if (GetModuleState(static_cast<std::uint16_t>(number), &state) == 0) throw NoModule(number);
  Json document = request.DeviceDocument();
  document["module"] = number;
  document["on"] = state == 1;
  return document;
}

struct GetModule {
  int number = 0;

  void Take(Words& words) {
    words.Number("NUMBER", number, 0, 255, "Of the module")->required();
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const Session session(request.link);
    session.UseReports(request.device);
    return DescribeModule(number, request);
  }
};

struct SetModule {
  int number = 0;
  std::string state;

  void Take(Words& words) {
    words.Number("NUMBER", number, 0, 255, "Of the module")->required();
    words.Choice("STATE", state, {"on", "off"}, "on or off");
    words.DeviceToChange();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const Session session(request.link);
    session.UseReports(request.device);
    const std::uint16_t wanted = state == "on" ? 1 : 0;
    if (SetModuleState(static_cast<std::uint16_t>(number), wanted) == 0) throw NoModule(number);
    return DescribeModule(number, request);
  }
};

constexpr const char* kMode = "transparent mode";

Json DescribeMode(std::uint16_t mode, const Request& request) {
  if (mode == kUnknownMode) throw Lacks(kMode);
  if (GetLastLibErr() != 0) throw Failed(kMode);
  Json document = request.DeviceDocument();
  document["on"] = mode == kOn;
  return document;
}

struct TransparentMode {
  std::string what;
  bool store = false;

  void Take(Words& words) {
    words.Choice("WHAT", what, {"on", "off", "status"}, "on, off, or status");
    words.Flag("--store", store, "For good");
    words.DeviceToChange([this] { return what != "status"; });
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const Session session(request.link);
    session.UseReports(request.device);
    if (what == "status") return DescribeMode(CheckTransparentMode(), request);
    const std::uint32_t commit = store ? 1 : 0;
    const std::uint16_t done = what == "on" ? EnableTransparentMode(commit) : DisableTransparentMode(commit);
    if (done == kUnknownMode) throw Lacks(kMode);
    if (done == kOff) throw Failed(kMode);
    Json document = DescribeMode(CheckTransparentMode(), request);
    document["stored"] = store;
    return document;
  }
};

}  // namespace

void AddExtensions(Program& program) {
  program.Group("analyzer", "The list of cards that a reader has seen");
  program.Add<StartAnalyzer>("analyzer start", "Switches the card analyzer on");
  program.Add<StopAnalyzer>("analyzer stop", "Switches the card analyzer off");
  program.Add<AnalyzerStatus>("analyzer status",
                              "The state of the card analyzer and the number of its cards");
  program.Add<ListAnalyzed>("analyzer list", "The cards that it has seen, with the bits of each");
  program.Group("module", "A module of a reader, by its number");
  program.Add<GetModule>("module get", "Whether a module is on");
  program.Add<SetModule>("module set", "Switches a module, and reads it back");
  program.Add<TransparentMode>("transparent", "Shows or switches the transparent mode");
}

}  // namespace tavlyn::ctl
