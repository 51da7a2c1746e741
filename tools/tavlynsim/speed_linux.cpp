#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "tools/tavlynsim/speed.h"

namespace tavlyn::sim {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPreload = "LD_PRELOAD";
// Each clock's library reads its own.
constexpr const char* kFastVariable = "TAVLYN_TIME_SPEED";
constexpr const char* kQuickVariable = "TAVLYN_QUICK_CLOCK";
// By which tavlynsim knows that it has the clock: its process.
constexpr const char* kOwner = "TAVLYNSIM_CLOCK_OWNER";

bool IsMax(const std::string& speed) { return speed == "max"; }

std::string Setting(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string Nanoseconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return std::to_string(static_cast<long long>(now.tv_sec) * 1'000'000'000 + now.tv_nsec);
}

// A clock that waiting advances is a file that all share; empty, with the problem, if there is none.
std::string NewClock(std::string& problem) {
  std::string name = fs::temp_directory_path() / "tavlynsim-clock-XXXXXX";
  const int file = mkstemp(name.data());
  constexpr std::size_t kRoom = 64;
  const std::vector<char> zeros(kRoom, '\0');
  const bool whole = file >= 0 && write(file, zeros.data(), kRoom) == static_cast<ssize_t>(kRoom);
  if (!whole) problem = name + ": " + std::strerror(errno);
  if (file >= 0) close(file);
  return whole ? name : "";
}

std::vector<std::string> OwnWords() {
  std::ifstream file("/proc/self/cmdline", std::ios::binary);
  std::vector<std::string> words;
  for (std::string word; std::getline(file, word, '\0');) words.push_back(word);
  return words;
}

}  // namespace

std::string TakeSpeed(const std::string& speed) {
  if (speed.empty() || Setting(kOwner) == std::to_string(getpid())) return {};
  std::error_code none;
  const fs::path beside = fs::read_symlink("/proc/self/exe", none).parent_path().parent_path();
  const fs::path library =
      beside / "lib/tavlynapi" / (IsMax(speed) ? "libtavlyn-quick-time.so" : "libtavlyn-fast-time.so");
  if (!fs::exists(library, none)) return "the clock " + library.string() + " is not installed";
  std::string problem;
  const std::string clock =
      IsMax(speed) ? NewClock(problem)
                   : speed + " " + Nanoseconds(CLOCK_MONOTONIC) + " " + Nanoseconds(CLOCK_REALTIME);
  if (clock.empty()) return problem;
  const std::string preloaded = Setting(kPreload);
  setenv(kPreload, (library.string() + (preloaded.empty() ? "" : ":" + preloaded)).c_str(), 1);
  setenv(IsMax(speed) ? kQuickVariable : kFastVariable, clock.c_str(), 1);
  setenv(kOwner, std::to_string(getpid()).c_str(), 1);
  std::vector<std::string> words = OwnWords();
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  execv("/proc/self/exe", pointers.data());
  return std::string("/proc/self/exe: ") + std::strerror(errno);
}

void AddClock(const std::string& speed, Variables& variables) {
  if (speed.empty()) return;
  for (const char* name : {kPreload, IsMax(speed) ? kQuickVariable : kFastVariable}) {
    Put(variables, name, Setting(name));
  }
}

void LeaveClock(const std::string& speed) {
  if (IsMax(speed)) unlink(Setting(kQuickVariable).c_str());
}

}  // namespace tavlyn::sim
