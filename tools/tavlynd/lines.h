// JSON objects, one a line, that come in pieces from another process.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/tavlynctl/bounded_json.h"

namespace tavlyn::agent {

using Json = ctl::Json;
using ctl::ParseObject;

// A file in a command, or a reader's ten configurations in a reply, fit several times.
inline constexpr std::size_t kLongestLine = 1U << 20U;

// In one line, with its end; bytes that are no UTF-8, as a device may have them, are replaced.
std::string LineOf(const Json& object);

class Lines {
 public:
  // False if that is more than the bound: call it when there is no next line.
  bool Add(std::string_view bytes);
  // The next whole line, null if it is no object; nothing if there is none yet.
  std::optional<Json> Next();

 private:
  std::string held_;
  std::size_t searched_ = 0;  // so far there is no end of a line
};

// The member of that name if it is a text, else an empty one.
std::string TextIn(const Json& object, const char* name);

}  // namespace tavlyn::agent
