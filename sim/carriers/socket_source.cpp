#include "sim/carriers/socket_source.h"

#include <algorithm>

namespace tavlyn::sim {
namespace {

wire::Message About(Key key, std::span<const std::uint8_t> body = {}) {
  return {0, key, {body.begin(), body.end()}};
}

}  // namespace

Outcome SocketSource::Ask(wire::Op op, wire::Message& message) {
  const std::lock_guard lock(mutex_);
  message.code = static_cast<std::uint8_t>(op);
  if (socket_ == net::kNone) socket_ = wire::Connect(name_.c_str());
  if (socket_ == net::kNone) return Outcome::kGone;
  if (wire::Send(socket_, message) && wire::Receive(socket_, message)) {
    return static_cast<Outcome>(message.code);
  }
  net::Close(socket_);
  return Outcome::kGone;
}

std::vector<Listed> SocketSource::List() {
  wire::Message message;
  std::vector<Listed> list;
  if (Ask(wire::Op::kList, message) != Outcome::kDone || !wire::UnpackList(message.body, list)) return {};
  return list;
}

Outcome SocketSource::SetFeature(Key key, std::span<const std::uint8_t> report) {
  wire::Message message = About(key, report);
  return Ask(wire::Op::kSetFeature, message);
}

Outcome SocketSource::GetFeature(Key key, std::span<std::uint8_t> report) {
  wire::Message message = About(key, report);
  const Outcome outcome = Ask(wire::Op::kGetFeature, message);
  if (outcome != Outcome::kDone) return outcome;
  if (message.body.size() != report.size()) return Outcome::kRefused;
  std::ranges::copy(message.body, report.begin());
  return outcome;
}

Outcome SocketSource::TakeInput(Key key, std::vector<std::uint8_t>& report) {
  wire::Message message = About(key);
  const Outcome outcome = Ask(wire::Op::kTakeInput, message);
  if (outcome == Outcome::kDone) report = std::move(message.body);
  return outcome;
}

std::vector<ListedLine> SocketSource::Lines() {
  wire::Message message;
  std::vector<ListedLine> lines;
  if (Ask(wire::Op::kLines, message) != Outcome::kDone || !wire::UnpackLines(message.body, lines)) return {};
  return lines;
}

Outcome SocketSource::SendBytes(Key line, std::span<const std::uint8_t> bytes) {
  wire::Message message = About(line, bytes);
  return Ask(wire::Op::kSendBytes, message);
}

Outcome SocketSource::TakeBytes(Key line, std::vector<std::uint8_t>& bytes) {
  wire::Message message = About(line, bytes);
  const Outcome outcome = Ask(wire::Op::kTakeBytes, message);
  if (outcome != Outcome::kDone || message.body.size() > bytes.size()) message.body.clear();
  bytes = std::move(message.body);
  return outcome;
}

Outcome SocketSource::Silence(Key line) {
  wire::Message message = About(line);
  return Ask(wire::Op::kSilence, message);
}

Outcome SocketSource::TakeCut(Key line) {
  wire::Message message = About(line);
  return Ask(wire::Op::kTakeCut, message);
}

bool SocketSource::Run(const std::string& command, std::string& reply) {
  wire::Message message;
  message.body.assign(command.begin(), command.end());
  const Outcome outcome = Ask(wire::Op::kRun, message);
  if (outcome == Outcome::kGone) {
    reply = "tavlynsim is not there";
  } else {
    reply.assign(message.body.begin(), message.body.end());
  }
  return outcome == Outcome::kDone;
}

}  // namespace tavlyn::sim
