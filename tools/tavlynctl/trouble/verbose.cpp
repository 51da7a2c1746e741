#include "tools/tavlynctl/trouble/verbose.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "api.h"
#include "tools/printable.h"
#include "tools/tavlynctl/process.h"
#include "tools/tavlynctl/trouble/wire_names.h"

namespace tavlyn::ctl {
namespace {

constexpr int kWithWire = 2;

struct Taken {
  int shown = 0;  // as -v counts
  int collected = 0;
  std::string text;
  WireNames names;
};

Taken& TheTaken() {
  static Taken taken;
  return taken;
}

void TAVLYN_CALL TakeLine(const char* line, std::uint64_t length) {
  std::string_view text(line, length);
  if (text.ends_with('\n')) text.remove_suffix(1);
  Taken& taken = TheTaken();
  WireLine wire;
  const bool isWire = ParseWireLine(text, wire);
  const std::string name = isWire ? taken.names.Of(wire) : std::string();
  const std::string whole = std::string(text) + (name.empty() ? "" : "  " + name);
  if (taken.shown > 0) PrintLine(stderr, whole);
  // The bytes may be wanted for standard error alone, or by the user's own TAVLYNAPI_WIRE.
  if (taken.collected >= (isWire ? kWithWire : 1)) taken.text += whole + "\n";
}

// A variable that is set later does not make the library open its file, but lets it take a function.
void TakeTrace() {
  const Taken& taken = TheTaken();
  const SetVariable trace("TAVLYNAPI_LOGGING");
  const SetVariable wire(std::max(taken.shown, taken.collected) >= kWithWire ? "TAVLYNAPI_WIRE" : nullptr);
  SetMarkerFunction(TakeLine);
}

}  // namespace

void AddVerboseWords(CLI::App& app, int& verbose) {
  app.add_flag(
      "-v,--verbose", verbose,
      "-v shows the library's trace on standard error, -vv also the bytes that are sent and received, "
      "without keys");
}

void BeginTrace(int verbose) {
  if (verbose < 1) return;
  TheTaken().shown = verbose;
  TakeTrace();
}

CollectedTrace::CollectedTrace(int verbose) {
  TheTaken().collected = verbose;
  TheTaken().text.clear();
  TakeTrace();
}

CollectedTrace::~CollectedTrace() { TheTaken().collected = 0; }

const std::string& CollectedTrace::Text() const { return TheTaken().text; }

}  // namespace tavlyn::ctl
