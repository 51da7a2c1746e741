// The simulator's command line: its words, one a line, are parsed, and wrong ones are explained. Nothing is
// run.
#include <CLI/CLI.hpp>
#include <iostream>
#include <string>
#include <vector>

#include "fuzz/input.h"
#include "tools/command_line.h"
#include "tools/tavlynsim/commands.h"
#include "tools/tavlynsim/run.h"

namespace tavlyn::fuzz {
namespace {

void Parse(Input input) {
  CLI::App app(sim::kAbout, sim::kProgram);
  const auto execute = sim::AddCommands(app);
  std::vector<std::string> words;
  while (!input.IsEmpty()) words.emplace_back(input.Text('\n'));
  std::vector<const char*> arguments{sim::kProgram};
  for (const std::string& word : words) arguments.push_back(word.c_str());
  try {
    app.parse(static_cast<int>(arguments.size()), arguments.data());
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) Require(WrongWords(app, error).ends_with("--help says more"));
  }
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  std::cout.rdbuf(nullptr);  // helps are formatted and dropped
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Parse({data, size});
  return 0;
}
