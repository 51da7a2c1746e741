// The devices of a running tavlynsim process. Without one, or once it has ended, there are no devices.
#pragma once

#include <mutex>
#include <string>
#include <utility>

#include "sim/carriers/wire.h"
#include "sim/source.h"

namespace tavlyn::sim {

class SocketSource final : public Source {
 public:
  explicit SocketSource(std::string name) : name_(std::move(name)) {}
  ~SocketSource() override { net::Close(socket_); }
  SocketSource(const SocketSource&) = delete;
  SocketSource& operator=(const SocketSource&) = delete;

  std::vector<Listed> List() override;
  Outcome SetFeature(Key key, std::span<const std::uint8_t> report) override;
  Outcome GetFeature(Key key, std::span<std::uint8_t> report) override;
  Outcome TakeInput(Key key, std::vector<std::uint8_t>& report) override;
  std::vector<ListedLine> Lines() override;
  Outcome SendBytes(Key line, std::span<const std::uint8_t> bytes) override;
  Outcome TakeBytes(Key line, std::vector<std::uint8_t>& bytes) override;
  Outcome Silence(Key line) override;
  Outcome TakeCut(Key line) override;
  bool Run(const std::string& command, std::string& reply) override;

 private:
  // Sends the message and replaces it with the answer; kGone if there is no one to ask.
  Outcome Ask(wire::Op op, wire::Message& message);

  std::mutex mutex_;
  std::string name_;
  net::Socket socket_ = net::kNone;
};

}  // namespace tavlyn::sim
