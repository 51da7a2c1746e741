// The place of a socket that people name, and who may be there.
#pragma once

#include <string>

#include "sim/carriers/net.h"

namespace tavlyn::sim {

class SocketPlace {
 public:
  // Listens there, for this user alone, and sets the name by which all programs find it. What one that was
  // killed has left is replaced. net::kNone on an error, which problem then describes.
  net::Socket Listen(const std::string& place, std::string& name, std::string& problem);
  // Removes the socket, unless somebody has put something else there.
  void Leave() const;

 private:
  std::string path_;
  // What the socket is known by on Linux.
  [[maybe_unused]] unsigned long long device_ = 0;
  [[maybe_unused]] unsigned long long file_ = 0;
};

// Whether the process at the other end is this user's, or root's: what it says is believed.
bool IsTrusted(net::Socket socket);

}  // namespace tavlyn::sim
