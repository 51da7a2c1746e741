// Serves the simulated devices to the stand-ins of other processes, and to tavlynsim's own commands. Nothing
// that a program sends or leaves out keeps the others waiting.
#pragma once

#include <string>
#include <vector>

#include "sim/carriers/net.h"
#include "sim/carriers/wire.h"
#include "sim/source.h"
#include "tools/tavlynsim/environment.h"
#include "tools/tavlynsim/socket_place.h"

namespace tavlyn::sim {

class Server {
 public:
  explicit Server(Source& source) : source_(source) {}
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  // place: where the socket is to be; if empty, in a folder of this run. False on an error, which problem
  // then describes.
  bool Open(const std::string& place, std::string& problem);
  [[nodiscard]] const std::string& SocketName() const { return name_; }
  // The folder of this run, if sockets are files; removed with the server.
  [[nodiscard]] const std::string& Folder() const { return folder_; }

  // From now on says what programs need, and lets them end it.
  void Offer(const Variables& variables);
  [[nodiscard]] bool IsToEnd() const { return toEnd_; }
  // Tells those that have asked for the end how it was.
  void TellEnd(int status, const std::string& text);

  // For the owner's loop: what to poll, and what to do with the outcome.
  void AddTo(std::vector<pollfd>& polled) const;
  void Serve(const std::vector<pollfd>& polled);

 private:
  // A program: what has arrived of its next message, and what it has not taken of its answer.
  struct Client {
    net::Socket socket = net::kNone;
    std::vector<std::uint8_t> came;
    std::vector<std::uint8_t> owed;
    bool awaitsEnd = false;
  };

  // These are false if the program has hung up or sends no messages.
  bool Attend(Client& client);
  bool AnswerAll(Client& client);
  bool TakeEnd(Client& client, const wire::Message& asked);
  wire::Message Handle(const wire::Message& asked);
  Outcome HandleOwn(const wire::Message& asked, wire::Message& answer);
  void AcceptOne();

  Source& source_;
  std::string folder_;
  std::string name_;
  SocketPlace place_;
  net::Socket listening_ = net::kNone;
  std::vector<Client> clients_;
  bool full_ = false;  // until a program leaves
  std::vector<std::uint8_t> offered_;
  bool offers_ = false;
  bool toEnd_ = false;
};

}  // namespace tavlyn::sim
