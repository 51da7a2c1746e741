// A worker as a process, and the socket to it. Nothing here waits.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavlyn::agent {

class WorkerProcess {
 public:
  WorkerProcess() = default;
  // Ends it.
  ~WorkerProcess();
  WorkerProcess(const WorkerProcess&) = delete;
  WorkerProcess& operator=(const WorkerProcess&) = delete;

  // program empty: this one. It gets the socket as its standard input and output, and no other descriptor but
  // the standard error. Empty, or why it cannot be started.
  std::string Start(const std::string& program, const std::vector<std::string>& words);

  [[nodiscard]] bool IsRunning() const { return socket_ >= 0; }
  [[nodiscard]] int Socket() const { return socket_; }
  [[nodiscard]] int Number() const { return process_; }

  // What has come; nothing if there is nothing. False if the other end is closed.
  bool Receive(std::string& bytes);
  // Takes off what was sent. False if the other end is closed.
  bool Send(std::string& bytes);

  // Asks it to end: its input is at its end.
  void Close();
  // At once, whatever it does.
  void Kill();
  // False as long as it has not ended; how it ended is told once.
  bool HasEnded(std::string& how);

 private:
  int process_ = 0;  // 0: none
  int socket_ = -1;
};

}  // namespace tavlyn::agent
