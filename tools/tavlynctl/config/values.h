// The value of a word of a configuration as people write and read it: by its unit and its named values.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/tavlynctl/config/meanings.h"

namespace tavlyn::ctl {

// "milliseconds"
const char* NameOf(Unit unit);

// None for a text that is no value of such a word: "1500", "0x5DC", "1.5s", "on", "'a'", "hex".
std::optional<int> NumberOf(const Meaning& meaning, std::string_view text);
// "takes milliseconds: 1500, 0x5DC, 1500ms or 1.5s"
std::string WhatItTakes(const Meaning& meaning);

// "1000 ms", "on", "58 ':'"
std::string ShownValue(const Meaning& meaning, int value);

// The words that may be given in place of a number.
std::vector<NamedNumber> WordsOf(const Meaning& meaning);

}  // namespace tavlyn::ctl
