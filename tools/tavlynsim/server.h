// Serves the simulated devices to the stand-ins of other processes.
#pragma once

#include <string>
#include <vector>

#include "sim/carriers/net.h"
#include "sim/source.h"

namespace tavlyn::sim {

class Server {
 public:
  explicit Server(Source& source) : source_(source) {}
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  // False on failure; net::Problem says why.
  bool Open();
  [[nodiscard]] const std::string& SocketName() const { return name_; }
  // The folder of this run, if sockets are files; removed with the server.
  [[nodiscard]] const std::string& Folder() const { return folder_; }

  // For the owner's loop: what to poll, and what to do with the outcome.
  void AddTo(std::vector<pollfd>& polled) const;
  void Serve(const std::vector<pollfd>& polled);

 private:
  // False if the program has hung up.
  bool Answer(net::Socket client);

  Source& source_;
  std::string folder_;
  std::string name_;
  net::Socket listening_ = net::kNone;
  std::vector<net::Socket> clients_;
};

}  // namespace tavlyn::sim
