#include "tools/tavlynd/worker/deeds.h"

#include <algorithm>
#include <chrono>
#include <fstream>

#include "api.h"
#include "tools/path_names.h"
#include "tools/tavlynctl/config/config_show.h"
#include "tools/tavlynctl/config/loading.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/outputs.h"
#include "tools/tavlynctl/session.h"
#include "tools/tavlynd/worker/channel.h"
#include "tools/tavlynd/worker/told_events.h"

namespace tavlyn::agent {
namespace {

using ctl::Failure;
using ctl::Watched;

Failure Wrong(const std::string& name, const std::string& what) {
  return {ctl::kUsage, name + " has to be " + what};
}

// Null if there is none.
Json Argument(const Json& command, const char* name) { return command.value(name, Json()); }

bool Flag(const Json& command, const char* name, bool usual) {
  const Json given = Argument(command, name);
  if (given.is_null()) return usual;
  if (!given.is_boolean()) throw Wrong(name, "true or false");
  return given.get<bool>();
}

int Number(const Json& command, const char* name, int least, int most, int usual) {
  const Json given = Argument(command, name);
  if (given.is_null()) return usual;
  if (!given.is_number_integer() || given < least || given > most) {
    throw Wrong(name, std::to_string(least) + " to " + std::to_string(most));
  }
  return given.get<int>();
}

Json Beep(const Json& command, const Watched&) {
  return ctl::MakeBeep(Json::object(), Number(command, "count", 1, ctl::kMostBeeps, 1),
                       Flag(command, "long", false));
}

Json Led(const Json& command, const Watched&) {
  constexpr const char* kColours[] = {"red", "green", "off", "auto"};
  const Json given = Argument(command, "colours");
  std::vector<std::string> colours;
  for (const char* colour : kColours) {
    if (given.is_array() && std::ranges::count(given, Json(colour)) == 1) colours.emplace_back(colour);
  }
  if (colours.empty() || colours.size() != given.size()) {
    throw Wrong("colours", "a list of red and green, or of off or auto alone");
  }
  return ctl::SwitchLeds(Json::object(), colours, false);
}

Json Relay(const Json& command, const Watched&) {
  if (!command.contains("on")) throw Wrong("on", "true or false");
  return ctl::SwitchRelay(Json::object(), Flag(command, "on", false), false);
}

// As it was at the last question: the library repeats an answer to one that follows soon.
Json ReadCard(const Json&, const Watched& watched) {
  if (GetProduct() != ctl::kReaders) throw ctl::Lacks("cards");
  return watched.on.is_null() ? Json{{"bits", 0}} : watched.on;
}

Json ReadConfig(const Json&, const Watched&) {
  Json document;
  ctl::DescribeConfiguration(document);
  return document;
}

Json LoadConfig(const Json& command, const Watched&) {
  const std::string text = TextIn(command, "file");
  if (text.empty()) throw Wrong("file", "the text of a configuration file");
  const ctl::TemporaryFile file;
  std::ofstream(PathOf(file.Path()), std::ios::binary) << text;
  const ctl::Loading loading(file.Path(), false, "the file");
  ctl::Overwriting over;
  over.yes = true;
  over.dryRun = Flag(command, "dry", false);
  return loading.Into(Json::object(), {"load-config", over, Flag(command, "strict", false)});
}

Json ReadAgain(const Json&, const Watched& watched) {
  if (ReadCfg() != 1) throw ctl::NotTransferred("the configuration could not be read again from");
  return DescriptionAt(watched.place);
}

struct Kind {
  const char* name;
  Json (*run)(const Json& command, const Watched& watched);
  bool needsConfiguration;
};

constexpr Kind kKinds[] = {
    {"beep", Beep, false},
    {"led", Led, true},
    {"relay", Relay, true},
    {"read-card", ReadCard, false},
    {"read-config", ReadConfig, true},
    {"load-config", LoadConfig, true},
    {"re-read", ReadAgain, false},
};

const Kind& KindOf(const Json& command) {
  const std::string name = TextIn(command, "do");
  const auto* found = std::ranges::find_if(kKinds, [&](const Kind& one) { return name == one.name; });
  if (found == std::end(kKinds)) throw Failure(ctl::kUsage, "there is no such command");
  return *found;
}

Json ErrorOf(const Failure& failure, std::uint32_t word) {
  const char* code = "failed";
  if (failure.code == ctl::kUsage || failure.code == ctl::kBadFile) code = "bad-request";
  if (failure.code == ctl::kNoDevice) code = "unknown-device";
  Json error{{"code", code}, {"text", failure.what()}};
  if (word != 0 && failure.code == ctl::kDeviceError) error["word"] = "0x" + ctl::Hex(word, 1);
  return error;
}

}  // namespace

Json Obey(const Json& command, ctl::Watch& watch) {
  using std::chrono::milliseconds;
  const Command finished;
  const auto begun = ctl::Clock::now();
  Json reply{{"request", TextIn(command, "request")}, {"ok", true}};
  try {
    const Kind& kind = KindOf(command);
    watch.With(TextIn(command, "device"), [&](const ctl::Session& session, const Watched& watched) {
      if (kind.needsConfiguration) session.RequireRead();
      reply["result"] = kind.run(command, watched);
    });
  } catch (const Failure& failure) {
    reply["ok"] = false;
    if (!failure.document.is_null()) reply["result"] = failure.document;
    reply["error"] = ErrorOf(failure, GetLastLibErr());
  }
  reply["took"] = std::chrono::duration_cast<milliseconds>(ctl::Clock::now() - begun).count();
  return reply;
}

}  // namespace tavlyn::agent
