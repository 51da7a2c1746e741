#include "tools/tavlynsim/server.h"

#include <algorithm>
#include <filesystem>

#include "sim/carriers/wire.h"

namespace tavlyn::sim {
namespace {

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

bool IsReady(const std::vector<pollfd>& polled, net::Socket fd) {
  return std::ranges::any_of(polled, [&](const pollfd& one) { return one.fd == fd && one.revents != 0; });
}

}  // namespace

Server::~Server() {
  for (net::Socket& client : clients_) net::Close(client);
  net::Close(listening_);
  std::error_code none;
  if (!folder_.empty()) std::filesystem::remove_all(folder_, none);
}

bool Server::Open() {
  listening_ = wire::Listen(folder_, name_);
  return listening_ != net::kNone;
}

void Server::AddTo(std::vector<pollfd>& polled) const {
  polled.push_back({listening_, POLLIN, 0});
  for (const net::Socket client : clients_) polled.push_back({client, POLLIN, 0});
}

void Server::Serve(const std::vector<pollfd>& polled) {
  std::erase_if(clients_, [&](net::Socket& client) {
    if (!IsReady(polled, client) || Answer(client)) return false;
    net::Close(client);
    return true;
  });
  if (!IsReady(polled, listening_)) return;
  const net::Socket client = wire::Accept(listening_);
  if (client != net::kNone) clients_.push_back(client);
}

bool Server::Answer(net::Socket client) {
  wire::Message asked;
  return wire::Receive(client, asked) && wire::Send(client, Handle(source_, asked));
}

}  // namespace tavlyn::sim
