// How results are written.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace conformance {

// Values with a comma between them.
template <class Value>
std::string Joined(const std::vector<Value>& values) {
  std::string text;
  for (const Value& value : values) text += (text.empty() ? "" : ",") + std::to_string(value);
  return text;
}

inline std::string Quoted(const std::string& text) { return '"' + text + '"'; }

inline std::vector<std::uint8_t> BytesOf(const std::string& digits) {
  std::vector<std::uint8_t> bytes;
  for (std::size_t at = 0; at + 1 < digits.size(); at += 2) {
    bytes.push_back(static_cast<std::uint8_t>(std::stoul(digits.substr(at, 2), nullptr, 16)));
  }
  return bytes;
}

}  // namespace conformance
