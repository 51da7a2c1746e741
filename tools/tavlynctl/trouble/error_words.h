// The library's error word, explained in words.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tavlyn::ctl {

// A row of the table. Its texts are sentences but for words; how goes before when.
struct ErrorWord {
  const char* name;  // that of the macro
  std::uint32_t value;
  const char* words;
  const char* how;
  const char* when;
  const char* remedy;
};

// All of them, in the order of their values.
std::span<const ErrorWord> AllErrorWords();

// "a report could not be sent; the device did not answer"; never empty.
std::string ErrorWords(std::uint32_t word);

// What a word, which may be a sum, is made of. Several of one value, or of one number that has been added to,
// mean that the word does not tell them apart. Empty for 0 and for a word that nobody can take apart.
std::vector<ErrorWord> PartsOf(std::uint32_t word);

}  // namespace tavlyn::ctl
