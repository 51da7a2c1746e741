#include "tools/tavlynsim/server.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "sim/carriers/wire.h"

namespace tavlyn::sim {
namespace {

// A program that stops in the middle of a message must not keep the others waiting.
constexpr timeval kPatience{1, 0};

wire::Message Handle(Source& source, const wire::Message& asked) {
  wire::Message answer;
  Outcome outcome = Outcome::kRefused;
  switch (static_cast<wire::Op>(asked.code)) {
    case wire::Op::kList:
      answer.body = wire::PackList(source.List());
      outcome = Outcome::kDone;
      break;
    case wire::Op::kSetFeature: outcome = source.SetFeature(asked.key, asked.body); break;
    case wire::Op::kGetFeature:
      answer.body = asked.body;
      outcome = source.GetFeature(asked.key, answer.body);
      break;
    case wire::Op::kTakeInput: outcome = source.TakeInput(asked.key, answer.body); break;
    case wire::Op::kLines:
      answer.body = wire::PackLines(source.Lines());
      outcome = Outcome::kDone;
      break;
    case wire::Op::kSendBytes: outcome = source.SendBytes(asked.key, asked.body); break;
    case wire::Op::kTakeBytes:
      answer.body = asked.body;
      outcome = source.TakeBytes(asked.key, answer.body);
      break;
    case wire::Op::kSilence: outcome = source.Silence(asked.key); break;
    case wire::Op::kTakeCut: outcome = source.TakeCut(asked.key); break;
    case wire::Op::kRun: {
      std::string reply;
      const bool done = source.Run({asked.body.begin(), asked.body.end()}, reply);
      answer.body.assign(reply.begin(), reply.end());
      outcome = done ? Outcome::kDone : Outcome::kRefused;
      break;
    }
  }
  answer.code = static_cast<std::uint8_t>(outcome);
  return answer;
}

bool IsReady(const std::vector<pollfd>& polled, int fd) {
  return std::ranges::any_of(polled, [&](const pollfd& one) { return one.fd == fd && one.revents != 0; });
}

}  // namespace

Server::~Server() {
  for (const int client : clients_) close(client);
  if (listening_ >= 0) close(listening_);
  std::error_code none;
  if (!folder_.empty()) std::filesystem::remove_all(folder_, none);
}

bool Server::Open() {
  std::error_code none;
  std::string folder = (std::filesystem::temp_directory_path(none) / "tavlynsim-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) return false;
  folder_ = folder;
  path_ = folder_ + "/socket";
  listening_ = wire::Listen(path_.c_str());
  return listening_ >= 0;
}

void Server::AddTo(std::vector<pollfd>& polled) const {
  polled.push_back({listening_, POLLIN, 0});
  for (const int client : clients_) polled.push_back({client, POLLIN, 0});
}

void Server::Serve(const std::vector<pollfd>& polled) {
  std::erase_if(clients_, [&](int client) {
    if (!IsReady(polled, client) || Answer(client)) return false;
    close(client);
    return true;
  });
  if (!IsReady(polled, listening_)) return;
  const int client = accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC);
  if (client < 0) return;
  setsockopt(client, SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof kPatience);
  setsockopt(client, SOL_SOCKET, SO_SNDTIMEO, &kPatience, sizeof kPatience);
  clients_.push_back(client);
}

bool Server::Answer(int client) {
  wire::Message asked;
  return wire::Receive(client, asked) && wire::Send(client, Handle(source_, asked));
}

}  // namespace tavlyn::sim
