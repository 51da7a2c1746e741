#include <sys/wait.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tests/boundary/program.h"
#include "tests/boundary/scratch_folder.h"

namespace tavlyn::boundary {
namespace {

namespace fs = std::filesystem;

constexpr int kSignalled = 128;

// It exists until the line has ended.
class LineFolder : public ScratchFolder {
 public:
  [[nodiscard]] std::string Errors() const { return Path() / "errors"; }

  // Gives a line's programs the clock that their waiting advances, and a place for what they keep.
  [[nodiscard]] std::string Surroundings() const {
    const fs::path clock = Path() / "clock";
    constexpr std::size_t kRoom = 64;
    std::ofstream(clock) << std::string(kRoom, '\0');
    // A sanitizer's library is loaded after the clock's; its leak check runs a thread that the clock cannot
    // serve.
    return "export LD_PRELOAD=" TAVLYN_QUICK_TIME " TAVLYN_QUICK_CLOCK=" + clock.string() +
           " XDG_STATE_HOME=" + (Path() / "state").string() +
           " ASAN_OPTIONS=verify_asan_link_order=0:detect_leaks=0\n";
  }
};

std::string WholeText(const std::string& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

}  // namespace

const std::string kUpon = R"(
upon() {
  deed=$1
  shift
  folder=$(mktemp -d)
  mkfifo $folder/told
  "$@" 2>$folder/told &
  pid=$!
  exec 3<$folder/told
  rm -r $folder
  read -r line <&3
  eval "$deed"
  { echo "$line"; cat <&3; } >&2
  wait $pid
}
)";

Ended RunLine(const std::string& line) {
  const LineFolder folder;
  std::FILE* pipe = popen(
      (kUpon + folder.Surroundings() + "{\n" + line + "\n} 2>" + folder.Errors() + " </dev/null").c_str(),
      "r");
  if (pipe == nullptr) throw std::runtime_error("no shell");
  Ended ended;
  char part[4096];
  while (const std::size_t count = std::fread(part, 1, sizeof part, pipe)) ended.out.append(part, count);
  const int status = pclose(pipe);
  ended.status = WIFSIGNALED(status) ? kSignalled + WTERMSIG(status) : WEXITSTATUS(status);
  ended.err = WholeText(folder.Errors());
  return ended;
}

}  // namespace tavlyn::boundary
