#include "tools/tavlynsim/server.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace tavlyn::sim {
namespace {

// Few enough that each has a descriptor, and a bound for what they may leave unfinished.
constexpr std::size_t kMostClients = 512;
constexpr std::size_t kReadAtOnce = 4096;
constexpr int kPatienceMs = 1000;

short ReadinessOf(const std::vector<pollfd>& polled, net::Socket fd) {
  const auto found = std::ranges::find(polled, fd, &pollfd::fd);
  return found != polled.end() ? found->revents : short{0};
}

// False if the program has hung up.
bool SendOwed(net::Socket socket, std::vector<std::uint8_t>& owed) {
  if (owed.empty()) return true;
  const int sent = net::Send(socket, owed);
  if (sent > 0) owed.erase(owed.begin(), owed.begin() + sent);
  return sent != net::kOver;
}

}  // namespace

Server::~Server() {
  place_.Leave();
  net::Close(listening_);
  std::error_code none;
  if (!folder_.empty()) std::filesystem::remove_all(folder_, none);
  // Last, because who has ended it waits for this.
  for (Client& client : clients_) net::Close(client.socket);
}

bool Server::Open(const std::string& place, std::string& problem) {
  listening_ = wire::Listen(folder_, name_);
  if (listening_ == net::kNone) problem = net::Problem();
  if (listening_ == net::kNone || place.empty()) return listening_ != net::kNone;
  net::Close(listening_);
  std::error_code none;
  std::filesystem::remove(name_, none);
  listening_ = place_.Listen(place, name_, problem);
  return listening_ != net::kNone;
}

void Server::Offer(const Variables& variables) {
  offered_ = Packed(variables);
  offers_ = true;
}

void Server::AddTo(std::vector<pollfd>& polled) const {
  if (!full_) polled.push_back({listening_, POLLIN, 0});
  for (const Client& client : clients_) {
    polled.push_back({client.socket, static_cast<short>(client.owed.empty() ? POLLIN : POLLOUT), 0});
  }
}

void Server::Serve(const std::vector<pollfd>& polled) {
  const std::size_t left = std::erase_if(clients_, [&](Client& client) {
    if (ReadinessOf(polled, client.socket) == 0 || Attend(client)) return false;
    net::Close(client.socket);
    return true;
  });
  if (left > 0) full_ = false;
  if (!full_ && ReadinessOf(polled, listening_) != 0) AcceptOne();
}

// When no more can be accepted the others are still served, and the loop does not spin.
void Server::AcceptOne() {
  const net::Socket socket = wire::Accept(listening_);
  if (socket != net::kNone) clients_.emplace_back().socket = socket;
  full_ = !clients_.empty() && (socket == net::kNone || clients_.size() >= kMostClients);
}

bool Server::Attend(Client& client) {
  if (!client.owed.empty()) return SendOwed(client.socket, client.owed) && AnswerAll(client);
  std::array<std::uint8_t, kReadAtOnce> bytes;
  const int count = net::Receive(client.socket, bytes);
  if (count > 0) client.came.insert(client.came.end(), bytes.begin(), bytes.begin() + count);
  return count != net::kOver && AnswerAll(client);
}

bool Server::AnswerAll(Client& client) {
  wire::Message asked;
  while (client.owed.empty()) {
    const wire::Arrived arrived = wire::TakeMessage(client.came, asked);
    if (arrived != wire::Arrived::kWhole) return arrived == wire::Arrived::kPart;
    if (TakeEnd(client, asked)) continue;
    wire::PutMessage(client.owed, Handle(asked));
    if (!SendOwed(client.socket, client.owed)) return false;
  }
  return true;
}

// The answer comes when everything has ended.
bool Server::TakeEnd(Client& client, const wire::Message& asked) {
  if (!offers_ || static_cast<wire::Op>(asked.code) != wire::Op::kEnd) return false;
  toEnd_ = client.awaitsEnd = true;
  return true;
}

// One that does not take it keeps nobody waiting for long.
void Server::TellEnd(int status, const std::string& text) {
  wire::Message told;
  told.code = static_cast<std::uint8_t>(Outcome::kDone);
  told.key = static_cast<Key>(status);
  told.body.assign(text.begin(), text.end());
  for (Client& client : clients_) {
    if (!client.awaitsEnd) continue;
    wire::PutMessage(client.owed, told);
    while (SendOwed(client.socket, client.owed) && !client.owed.empty()) {
      std::vector<pollfd> polled{{client.socket, POLLOUT, 0}};
      if (!net::Poll(polled, kPatienceMs) || polled.front().revents == 0) break;
    }
  }
}

wire::Message Server::Handle(const wire::Message& asked) {
  wire::Message answer;
  Outcome outcome = Outcome::kRefused;
  switch (static_cast<wire::Op>(asked.code)) {
    case wire::Op::kList:
      answer.body = wire::PackList(source_.List());
      outcome = Outcome::kDone;
      break;
    case wire::Op::kSetFeature: outcome = source_.SetFeature(asked.key, asked.body); break;
    case wire::Op::kGetFeature:
      answer.body = asked.body;
      outcome = source_.GetFeature(asked.key, answer.body);
      break;
    case wire::Op::kTakeInput: outcome = source_.TakeInput(asked.key, answer.body); break;
    case wire::Op::kLines:
      answer.body = wire::PackLines(source_.Lines());
      outcome = Outcome::kDone;
      break;
    case wire::Op::kSendBytes: outcome = source_.SendBytes(asked.key, asked.body); break;
    case wire::Op::kTakeBytes:
      answer.body = asked.body;
      outcome = source_.TakeBytes(asked.key, answer.body);
      break;
    case wire::Op::kSilence: outcome = source_.Silence(asked.key); break;
    case wire::Op::kTakeCut: outcome = source_.TakeCut(asked.key); break;
    case wire::Op::kRun:
    case wire::Op::kVariables:
    case wire::Op::kEnd: outcome = HandleOwn(asked, answer); break;
  }
  answer.code = static_cast<std::uint8_t>(outcome);
  return answer;
}

// What concerns the simulator and not one device.
Outcome Server::HandleOwn(const wire::Message& asked, wire::Message& answer) {
  if (static_cast<wire::Op>(asked.code) == wire::Op::kRun) {
    std::string reply;
    const bool done = source_.Run({asked.body.begin(), asked.body.end()}, reply);
    answer.body.assign(reply.begin(), reply.end());
    return done ? Outcome::kDone : Outcome::kRefused;
  }
  if (!offers_) return Outcome::kRefused;
  answer.body = offered_;
  return Outcome::kDone;
}

}  // namespace tavlyn::sim
