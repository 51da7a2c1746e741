#include "tools/tavlynctl/fleet/rollout.h"

#include <filesystem>
#include <fstream>

#include "tools/path_names.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/fleet/asking.h"

namespace tavlyn::ctl {
namespace {

constexpr const char* kDone = "done";
constexpr const char* kAskedNow = "asked";

bool IsRollout(const Json& kept) {
  return ValueAt(kept, "configuration").is_string() && ValueAt(kept, kDone).is_object() &&
         ValueAt(kept, kAskedNow).is_object();
}

}  // namespace

Rollout::Rollout(const std::string& path, const std::string& text)
    : path_(path), kept_{{"configuration", text}, {kDone, Json::object()}, {kAskedNow, Json::object()}} {
  std::error_code unknown;
  if (path.empty() || !std::filesystem::exists(PathOf(path), unknown)) return;
  RequireFile(path);
  Json kept = ParseObject(ContentsOf(path));
  if (!IsRollout(kept)) throw Failure(kBadFile, path + " is not the state of a rollout");
  if (kept["configuration"] != text) {
    throw Failure(kBadFile,
                  path + " is the state of another rollout: the configuration file was a different one");
  }
  kept_ = std::move(kept);
}

bool Rollout::IsDone(const std::string& place) const { return kept_[kDone].contains(place); }

std::string Rollout::Request(const std::string& place) {
  Json& request = kept_[kAskedNow][place];
  if (!request.is_string()) request = NewRequest();
  return request.get<std::string>();
}

void Rollout::Keep() const {
  if (path_.empty()) return;
  const NewFile file(path_);
  std::ofstream stream(PathOf(file.Path()), std::ios::binary);
  stream << kept_.dump(1, ' ', true, Json::error_handler_t::replace) << '\n';
  stream.close();
  if (!stream) throw file.NotWhole();
  file.Keep();
}

void Rollout::Take(const std::string& place, bool isOk) {
  kept_[kAskedNow].erase(place);
  if (isOk) kept_[kDone][place] = true;
  Keep();
}

}  // namespace tavlyn::ctl
