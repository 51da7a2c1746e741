#include <fcntl.h>
#include <unistd.h>

#include "tools/tavlynctl/standard_files.h"

namespace tavlyn::ctl {
namespace {

bool missing[STDERR_FILENO + 1];

// The lowest free number is the closed one's, as those below it have been filled.
void FillClosedOnes() {
  for (int file = STDIN_FILENO; file <= STDERR_FILENO; ++file) {
    if (fcntl(file, F_GETFD) < 0) missing[file] = open("/dev/null", O_RDWR) == file;
  }
}

// The libraries that are loaded with the program may open files in their own first steps, which come later.
[[gnu::used, gnu::section(".preinit_array")]] void (*const fillFirst)() = FillClosedOnes;

}  // namespace

bool OutputIsMissing() { return missing[STDOUT_FILENO]; }

}  // namespace tavlyn::ctl
