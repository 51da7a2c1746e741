#include "tools/tavlynsim/state_file.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "sim/words.h"
#include "tools/own_file.h"
#include "tools/path_names.h"
#include "tools/printable.h"
#include "tools/tavlynsim/record/files.h"
#include "tools/tavlynsim/run.h"

namespace tavlyn::sim {
namespace {

namespace fs = std::filesystem;

// Reads what is there, if anything is; false, with the problem, if it cannot be used.
bool TakeFile(const std::string& path, const std::vector<KeptDevice>& devices, std::string& problem) {
  std::error_code unknown;
  if (!fs::exists(PathOf(path), unknown) && !unknown) return true;
  const auto text = TextOfFile(path, problem);
  if (!text) return false;
  const Memory::Problem found = TakeState(*text, devices);
  return found.text.empty() || Fail(problem, path + ":" + std::to_string(found.line) + ": " + found.text);
}

}  // namespace

bool StateFile::Keep(const std::string& path, Rack* rack, std::string& problem) {
  const auto refuse = [&](const std::string& why) {
    if (!why.empty()) problem = path + ": " + why;
    return !why.empty();
  };
  if (rack == nullptr) return !refuse("only the memory of simulated devices is kept");
  // A link is kept, and the file that it leads to is replaced.
  if (const auto error = TestWritable(path)) return !refuse(error.message());
  std::error_code none;
  path_ = NameOfPath(fs::weakly_canonical(fs::absolute(PathOf(path), none), none));
  if (const auto error = TestWritable(path_)) return !refuse(error.message());
  if (!lock_.Take(path_, problem)) return false;
  devices_ = rack->Kept();
  if (!TakeFile(path_, devices_, problem)) return false;
  for (const KeptDevice& device : devices_) parts_.push_back(KeptText(device));
  if (refuse(Write())) return false;
  rack->onTaken.emplace_back([this](const Model& model, std::span<const std::uint8_t>) { Note(model); });
  return true;
}

void StateFile::Note(const Model& model) {
  const auto device =
      std::ranges::find_if(devices_, [&](const KeptDevice& one) { return one.model.get() == &model; });
  if (device == devices_.end()) return;
  std::string& part = parts_[static_cast<std::size_t>(device - devices_.begin())];
  std::string now = KeptText(*device);
  if (now == part) return;
  part = std::move(now);
  problem_ = Write();
  if (!problem_.empty()) Tell(kProgram, path_ + ": " + problem_);
}

bool StateFile::IsKept(std::string& problem) {
  if (!problem_.empty()) problem_ = Write();
  problem = path_ + ": " + problem_;
  return problem_.empty();
}

// The problem, if there is one, and then the old file stays.
std::string StateFile::Write() const { return WriteWhole(path_, StateText(parts_)); }

}  // namespace tavlyn::sim
