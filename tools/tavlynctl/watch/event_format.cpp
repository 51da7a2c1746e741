#include "tools/tavlynctl/watch/event_format.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "tools/nearest.h"

namespace tavlyn::ctl {
namespace {

struct EventValue {
  const char* placeholder;
  const char* key;
  const char* variable;
};

#define TAVLYN_EVENT_VALUE(placeholder, key, variable, text) {placeholder, key, variable},
constexpr EventValue kEventValues[] = {
#include "tools/tavlynctl/watch/event_values.inc"
};

constexpr std::string_view kBesidesCards[] = {"gone", "arrived", "lost"};

// A part of a format: plain text, or what stands in braces.
struct FormatPart {
  bool isPlaceholder;
  std::string text;
};

// Takes the next part off a format that is not empty; two braces stand for one. A brace that is not closed,
// or not opened, is a placeholder without a name.
FormatPart NextPart(std::string_view& left) {
  const std::size_t brace = std::min(left.find_first_of("{}"), left.size());
  if (brace > 0) {
    FormatPart plain{false, std::string(left.substr(0, brace))};
    left.remove_prefix(brace);
    return plain;
  }
  const char sign = left[0];
  if (left.size() > 1 && left[1] == sign) {
    left.remove_prefix(2);
    return {false, std::string(1, sign)};
  }
  const std::size_t end = left.find('}');
  const bool isClosed = sign == '{' && end != std::string_view::npos;
  FormatPart named{true, std::string(isClosed ? left.substr(1, end - 1) : std::string_view())};
  left.remove_prefix(isClosed ? end + 1 : left.size());
  return named;
}

std::vector<FormatPart> Parts(std::string_view format) {
  std::vector<FormatPart> parts;
  while (!format.empty()) parts.push_back(NextPart(format));
  return parts;
}

const EventValue* ValueNamed(const std::string& placeholder) {
  const auto* found = std::ranges::find(kEventValues, placeholder, &EventValue::placeholder);
  return found == std::end(kEventValues) ? nullptr : found;
}

}  // namespace

std::string Placeholders() {
  std::string all;
  for (const EventValue& one : kEventValues) {
    all.append(all.empty() ? "{" : ", {").append(one.placeholder).append("}");
  }
  return all;
}

std::string FormatProblem(const std::string& format) {
  std::vector<std::string> names;
  for (const EventValue& one : kEventValues) names.emplace_back(one.placeholder);
  for (const FormatPart& part : Parts(format)) {
    if (!part.isPlaceholder || ValueNamed(part.text) != nullptr) continue;
    if (part.text.empty()) return "a brace without its other; two braces stand for one";
    const std::string nearest = DidYouMean(part.text, names);
    return "there is no {" + part.text + "}" + (nearest.empty() ? "; there are " + Placeholders() : nearest);
  }
  return {};
}

bool FormatShows(const std::string& format, const std::string& event) {
  if (format.empty()) return true;
  const auto parts = Parts(format);
  const bool saysWhich = std::ranges::any_of(parts, [](const FormatPart& part) {
    return part.isPlaceholder && (part.text == "event" || part.text == "text");
  });
  return saysWhich || std::ranges::find(kBesidesCards, event) == std::end(kBesidesCards);
}

std::string Formatted(const std::string& format, const Json& event) {
  std::string line;
  for (const FormatPart& part : Parts(format)) {
    line += part.isPlaceholder ? Cell(event.value(ValueNamed(part.text)->key, Json())) : part.text;
  }
  return line;
}

EventVariables VariablesOf(const Json& event) {
  EventVariables all;
  for (const EventValue& one : kEventValues) {
    const Json value = event.value(one.key, Json());
    all.emplace_back(one.variable, value.is_null() ? std::string() : Cell(value));
  }
  return all;
}

}  // namespace tavlyn::ctl
