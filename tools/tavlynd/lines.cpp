#include "tools/tavlynd/lines.h"

namespace tavlyn::agent {

std::string LineOf(const Json& object) {
  return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

bool Lines::Add(std::string_view bytes) {
  held_ += bytes;
  return held_.size() <= kLongestLine;
}

std::optional<Json> Lines::Next() {
  const std::size_t end = held_.find('\n', searched_);
  if (end == std::string::npos) {
    searched_ = held_.size();
    return std::nullopt;
  }
  Json object = ParseObject(std::string_view(held_).substr(0, end));
  held_.erase(0, end + 1);
  searched_ = 0;
  return object;
}

std::string TextIn(const Json& object, const char* name) {
  const auto found = object.is_object() ? object.find(name) : object.end();
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

}  // namespace tavlyn::agent
