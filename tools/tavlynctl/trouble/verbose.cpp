#include "tools/tavlynctl/trouble/verbose.h"

#include <CLI/CLI.hpp>
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
  bool shown = false;
  bool collected = false;
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
  const std::string name = ParseWireLine(text, wire) ? taken.names.Of(wire) : std::string();
  const std::string whole = std::string(text) + (name.empty() ? "" : "  " + name);
  if (taken.shown) PrintLine(stderr, whole);
  if (taken.collected) taken.text += whole + "\n";
}

// A variable that is set later does not make the library open its file, but lets it take a function.
void TakeTrace(int verbose) {
  const SetVariable trace("TAVLYNAPI_LOGGING");
  const SetVariable wire(verbose >= kWithWire ? "TAVLYNAPI_WIRE" : nullptr);
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
  TheTaken().shown = true;
  TakeTrace(verbose);
}

CollectedTrace::CollectedTrace(int verbose) {
  TheTaken().collected = true;
  TheTaken().text.clear();
  TakeTrace(verbose);
}

CollectedTrace::~CollectedTrace() { TheTaken().collected = false; }

const std::string& CollectedTrace::Text() const { return TheTaken().text; }

}  // namespace tavlyn::ctl
