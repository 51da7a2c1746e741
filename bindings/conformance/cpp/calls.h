// The calls of the C interface by their names.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace conformance {

using Json = nlohmann::json;

// What a call gave, as the line of its step shows it.
std::string Call(const std::string& name, const Json& arguments);

}  // namespace conformance
