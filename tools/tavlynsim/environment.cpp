#include "tools/tavlynsim/environment.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace tavlyn::sim {
namespace {

std::string QuotedForShell(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + "'";
}

}  // namespace

void Put(Variables& variables, const std::string& name, const std::string& value) {
  const auto there = std::ranges::find(variables, name, &Variables::value_type::first);
  if (there != variables.end()) {
    there->second = value;
  } else {
    variables.emplace_back(name, value);
  }
}

void PutAll(Variables& variables, const Variables& more) {
  for (const auto& [name, value] : more) Put(variables, name, value);
}

std::vector<std::uint8_t> Packed(const Variables& variables) {
  std::string text;
  for (const auto& [name, value] : variables) text.append(name).append("=").append(value).push_back('\0');
  return {text.begin(), text.end()};
}

Variables Unpacked(std::span<const std::uint8_t> packed) {
  Variables variables;
  for (auto at = packed.begin(); at != packed.end();) {
    const auto end = std::find(at, packed.end(), 0);
    const auto sign = std::find(at, end, '=');
    if (end == packed.end()) break;
    if (sign != end && sign != at) Put(variables, {at, sign}, {sign + 1, end});
    at = end + 1;
  }
  return variables;
}

std::string ShellLines(const Variables& variables) {
  std::string lines;
  for (const auto& [name, value] : variables)
    lines.append("export ").append(name).append("=").append(QuotedForShell(value)).append("\n");
  return lines;
}

std::string JsonLine(const Variables& variables) {
  nlohmann::ordered_json object = nlohmann::ordered_json::object();
  for (const auto& [name, value] : variables) object[name] = value;
  return object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace tavlyn::sim
