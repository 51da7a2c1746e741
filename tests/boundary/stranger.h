// What a function says when it runs as a user who owns nothing. Needs root.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <string>

namespace tavlyn::boundary {

template <typename Function>
std::string SaidToAStranger(Function function) {
  int ends[2];
  if (pipe(ends) != 0) return "no pipe";
  const pid_t child = fork();
  if (child == 0) {
    constexpr uid_t kNobody = 65534;
    std::string said = "still root";
    if (setgid(kNobody) == 0 && setuid(kNobody) == 0) said = function();
    _exit(write(ends[1], said.data(), said.size()) == static_cast<ssize_t>(said.size()) ? 0 : 1);
  }
  close(ends[1]);
  char text[2048];
  const ssize_t count = read(ends[0], text, sizeof text);
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return {text, static_cast<std::size_t>(count > 0 ? count : 0)};
}

}  // namespace tavlyn::boundary
