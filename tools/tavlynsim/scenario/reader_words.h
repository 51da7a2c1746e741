// The words of a card reader's configuration by their names, in the blocks in which a reader keeps them.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "core/fields.h"
#include "sim/devices/reader_state.h"

namespace tavlyn::sim {

struct ReaderWord {
  FieldId id{};
  std::size_t configuration = 0;
};

// "iIDHoldTO", "TimeParms.iIDHoldTO@1". None, with the problem, if no reader keeps such a word.
std::optional<ReaderWord> ParseReaderWord(const std::string& text, std::string& problem);
// In the unit that people use; none, with the problem, if it is not one that the word can have.
std::optional<std::int16_t> ParseWordValue(const ReaderWord& word, const std::string& text,
                                           std::string& problem);
std::string NameOf(const ReaderWord& word);

// As stored; the configuration must be there.
std::int16_t StoredWord(const ReaderState& state, const ReaderWord& word);
// False, with the problem, if the reader has no such configuration.
bool StoreWord(ReaderState& state, const ReaderWord& word, std::int16_t value, std::string& problem);
// The configurations that a template file has; the others stay.
bool StoreTemplate(ReaderState& state, const std::string& text, std::string& problem);

}  // namespace tavlyn::sim
