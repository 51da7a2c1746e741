// The operations of the friendly layer.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <variant>

#include "tavlyn.hpp"

namespace conformance {

using Json = nlohmann::json;

// What is connected.
using Device = std::variant<std::monostate, tavlyn::reader, tavlyn::magstripe, tavlyn::sonar>;

// What an operation gave, as the line of its step shows it.
std::string Do(Device& device, const Json& step);

}  // namespace conformance
