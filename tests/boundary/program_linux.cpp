#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tests/boundary/program.h"

namespace tavlyn::boundary {
namespace {

constexpr int kSignalled = 128;

std::string MakeFile() {
  std::string name = "/tmp/tavlyn-test-XXXXXX";
  const int file = mkstemp(name.data());
  if (file < 0) throw std::runtime_error("no temporary file");
  close(file);
  return name;
}

std::string TakeFile(const std::string& name) {
  std::ifstream file(name);
  std::ostringstream text;
  text << file.rdbuf();
  std::remove(name.c_str());
  return text.str();
}

}  // namespace

Ended RunLine(const std::string& line) {
  const std::string errors = MakeFile();
  std::FILE* pipe = popen(("{ " + line + "; } 2>" + errors + " </dev/null").c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("no shell");
  Ended ended;
  char part[4096];
  while (const std::size_t count = std::fread(part, 1, sizeof part, pipe)) ended.out.append(part, count);
  const int status = pclose(pipe);
  ended.status = WIFSIGNALED(status) ? kSignalled + WTERMSIG(status) : WEXITSTATUS(status);
  ended.err = TakeFile(errors);
  return ended;
}

}  // namespace tavlyn::boundary
