// Serves the simulated devices to the stand-ins of other processes, on a socket in a folder of its own.
#pragma once

#include <poll.h>

#include <string>
#include <vector>

#include "sim/carriers/source.h"

namespace tavlyn::sim {

class Server {
 public:
  explicit Server(Source& source) : source_(source) {}
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  // False: errno tells why.
  bool Open();
  [[nodiscard]] const std::string& SocketPath() const { return path_; }
  // Of this run; goes with the server.
  [[nodiscard]] const std::string& Folder() const { return folder_; }

  // For the owner's loop: what to poll, and what to do with the outcome.
  void AddTo(std::vector<pollfd>& polled) const;
  void Serve(const std::vector<pollfd>& polled);

 private:
  // False: the program has hung up.
  bool Answer(int client);

  Source& source_;
  std::string folder_;
  std::string path_;
  int listening_ = -1;
  std::vector<int> clients_;
};

}  // namespace tavlyn::sim
