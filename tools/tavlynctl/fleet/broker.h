// A connection to an MQTT broker, without threads.
#pragma once

#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/tavlynctl/fleet/fleet_words.h"

namespace tavlyn::ctl {

struct Heard {
  std::string topic;
  std::string payload;
  bool isKept = false;  // the broker had it before the subscription
};

class Broker {
 public:
  // Connected when it has been made. Throws Failure, here and below also when the connection is lost.
  explicit Broker(const FleetWords& words);
  ~Broker();
  Broker(const Broker&) = delete;
  Broker& operator=(const Broker&) = delete;

  // Returns when the broker has accepted it. Quality 1: each message at least once; 0: what the broker kept
  // comes at once, however much it is.
  void Subscribe(const std::vector<std::string>& topics, int quality);
  // At least once.
  void Publish(const std::string& topic, const std::string& payload);
  // The next message, or nothing after this time or a Ctrl-C.
  std::optional<Heard> Hear(std::chrono::milliseconds most);

 private:
  struct Client;
  std::unique_ptr<Client> client_;
};

}  // namespace tavlyn::ctl
