// The keys of the settings file, a row for each: the parser, the example, docs/tavlynd.md and the manual page
// derive from them.
#pragma once

#include <span>
#include <string>
#include <variant>

#include "tools/tavlynd/settings.h"

namespace tavlyn::agent {

struct Key {
  using Member = std::variant<std::string Settings::*, Settings::Number Settings::*, bool Settings::*,
                              Settings::Words Settings::*>;
  const char* section;
  const char* name;
  Member member;
  // Of a text, or of each word of a list: what it must be (null: a command), and whether it is.
  const char* must;
  bool (*fits)(const std::string& text);
  Settings::Number least;
  Settings::Number most;
  const char* example;  // as it is written; null for the default
  bool secret;          // others must not read the file
  const char* meaning;
};

std::span<const Key> Keys();
// "broker.url".
std::string NameOf(const Key& key);
// "a whole number from 5 to 3600", "a list in brackets, each …".
std::string MustOf(const Key& key);
// As it is written in the file.
std::string DefaultOf(const Key& key);
// The file with every key commented out, except for those that have no use without a value.
std::string ExampleFile();

}  // namespace tavlyn::agent
