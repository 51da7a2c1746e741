// The program as a service: what it is told by signals, and what it tells the service manager.
#pragma once

#include <cstdint>
#include <string>

namespace tavlyn::agent {

class Signals {
 public:
  // From now on SIGTERM, SIGINT and SIGHUP are noted. Once in a process.
  Signals();

  // Readable when there is one.
  [[nodiscard]] int Descriptor() const;
  // The next one, or 0.
  [[nodiscard]] int Next() const;
};

// Datagrams of lines NAME=VALUE to the socket that NOTIFY_SOCKET names; without one nothing is sent.
class Manager {
 public:
  // What this process starts does not see the variables.
  Manager();
  ~Manager();
  Manager(const Manager&) = delete;
  Manager& operator=(const Manager&) = delete;

  void Ready(const std::string& status) const;
  void Reloading() const;
  void Stopping() const;
  // As often as it wants to hear that the loop turns.
  void TendWatchdog(std::int64_t now);

 private:
  void Send(const std::string& lines) const;

  int socket_ = -1;
  std::string place_;
  std::int64_t every_ = 0;  // ms; 0: never
  std::int64_t last_ = 0;
};

// The machine's name.
std::string HostName();
// Milliseconds that only go forward, also while the machine sleeps.
std::int64_t SteadyMs();

}  // namespace tavlyn::agent
