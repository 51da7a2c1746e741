#include <CLI/CLI.hpp>
#include <cstdio>
#include <string_view>

#include "tools/command_line.h"
#include "tools/completion.h"
#include "tools/printable.h"
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
  if (const auto typed = WordsToComplete(argc, argv)) {
    ShowCandidates(app, *typed, {});
    return kEnded;
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // help
    Tell(kProgram, WrongWords(app, error));
    return kBadUsage;
  }
  const ReadSettings read = LoadSettings(line.settings);
  for (const Mistake& one : read.mistakes) Log(Priority::kError, MistakeLine(line.settings, one));
  if (!read.mistakes.empty()) return kBadSettings;
  return line.check ? kEnded : RunAgent(line.settings, read.settings);
}

}  // namespace tavlyn::agent
