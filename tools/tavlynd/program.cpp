#include <CLI/CLI.hpp>
#include <cstdio>
#include <string_view>

#include "tools/command_line.h"
#include "tools/tavlynd/agent.h"
#include "tools/tavlynd/log.h"
#include "tools/tavlynd/settings_file.h"
#include "tools/tavlynd/words.h"
#include "tools/tavlynd/worker/worker.h"
#include "tools/terminal.h"

namespace tavlyn::agent {

int Main(int argc, char** argv) {
  if (argc > 1 && std::string_view(argv[1]) == kWorkerWord) return RunWorker({argv + 2, argv + argc});
  ShowAllLanguages();
  CLI::App app(kAbout, kProgram);
  CommandLine line;
  AddWords(app, line);
  if (const auto ended = Parsed(app, argc, argv, {}, kBadUsage)) return *ended;
  const ReadSettings read = LoadSettings(line.settings);
  for (const Mistake& one : read.mistakes) Log(Priority::kError, MistakeLine(line.settings, one));
  if (!read.mistakes.empty()) return kBadSettings;
  return line.check ? kEnded : RunAgent(line.settings, read.settings);
}

}  // namespace tavlyn::agent
