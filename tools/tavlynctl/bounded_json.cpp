#include "tools/tavlynctl/bounded_json.h"

namespace tavlyn::ctl {
namespace {

constexpr int kDeepest = 8;

}  // namespace

// Copying and writing an object takes more of the stack the deeper it is.
Json ParseObject(std::string_view text) {
  bool isDeep = false;
  const auto look = [&](int depth, Json::parse_event_t, const Json&) {
    isDeep = isDeep || depth > kDeepest;
    return !isDeep;
  };
  Json object = Json::parse(text, look, false);
  return isDeep || !object.is_object() ? Json() : object;
}

}  // namespace tavlyn::ctl
