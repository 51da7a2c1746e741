// What may come next on a command line, found in the tool's own definition of its commands. The scripts of
// the shells (tools/completion) ask for it and know nothing themselves.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tavlyn {

struct Candidate {
  std::string word;  // one that ends in '=' or ':' goes on without a blank
  std::string text;
};

// Instead of a word: the names of files.
inline constexpr const char* kFileNames = ":files";

// The values of an option ("--device") or of a word ("FIELD") that its definition does not list.
struct Offer {
  const char* name;
  std::vector<Candidate> (*candidates)(const std::vector<std::string>& words);  // the last one has begun
};

// The words of a command line "PROGRAM complete -- WORDS...", the last of which is to be completed.
std::optional<std::vector<std::string>> WordsToComplete(int argc, char** argv);

// Prints a line for each candidate: the word, and after a tab its text.
void ShowCandidates(CLI::App& app, const std::vector<std::string>& words, std::span<const Offer> offers);

}  // namespace tavlyn
