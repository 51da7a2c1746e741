// The connection to the broker, in the owner's loop; it comes again by itself, each time a little later.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tools/broker_trouble.h"
#include "tools/tavlynd/beside.h"
#include "tools/tavlynd/log.h"
#include "tools/tavlynd/settings.h"

struct pollfd;
struct mosquitto;

namespace tavlyn::agent {

class Broker {
 public:
  struct Terms {
    Settings settings;  // those of [broker]
    std::string clientId;
    std::string willTopic;  // retained, published by the broker when this agent is gone
    std::string will;
    std::string commands;  // what is subscribed

    bool operator==(const Terms&) const = default;
  };
  struct Heard {
    std::function<void()> connected;
    std::function<void(const std::string& topic, std::string_view payload)> command;
    std::function<void(std::int64_t event)> delivered;
  };

  Broker(Terms terms, Heard heard);
  Broker(const Broker&) = delete;
  Broker& operator=(const Broker&) = delete;

  [[nodiscard]] const Terms& Agreed() const { return terms_; }

  void AddTo(std::vector<pollfd>& polled) const;
  [[nodiscard]] int TurnMs(std::int64_t now) const;
  void Serve(const std::vector<pollfd>& polled, std::int64_t now);

  [[nodiscard]] bool IsConnected() const { return state_ == State::kConnected; }
  // What the broker has not acknowledged, events and others.
  [[nodiscard]] std::size_t OnTheirWay() const { return onTheirWay_.size(); }
  // event: what delivered is told, 0 for what is none. False if there is no connection.
  bool Publish(const std::string& topic, const std::string& payload, bool retained, std::int64_t event = 0);
  // Takes leave: the broker does not publish the will.
  void Leave();

 private:
  enum class State { kAway, kCalling, kConnecting, kConnected };
  // What the functions that the client calls get; a call that outlives this object only notes trouble.
  struct Ears {
    Broker& broker;
    BrokerTrouble trouble;  // of this attempt
  };

  void SetUp();
  void SetUpTls();
  void Connect();
  void EndCall();
  void Lose(const std::string& reason);
  void Connected(int code);
  void TellTrouble(const std::string& reason);
  void TellNoCommands();
  void Received(const std::string& topic, std::string_view payload, bool retained);
  void Listen();

  Terms terms_;
  Heard heard_;
  std::shared_ptr<Ears> ears_;
  std::shared_ptr<mosquitto> client_;
  // The look-up of the broker's name, which may take half a minute, and the begin of a connection. Only that
  // uses the client then.
  std::optional<Beside> call_;
  State state_ = State::kAway;
  bool begun_ = false;  // it has tried once
  bool isSetUp_ = false;
  bool arrived_ = false;   // connected has to be told
  std::int64_t next_ = 0;  // when to try again, or to give up trying
  std::int64_t now_ = 0;
  unsigned failures_ = 0;
  bool isRefused_ = false;                  // the broker has said why
  std::string told_;                        // the last trouble, which is not told again
  std::map<int, std::int64_t> onTheirWay_;  // by the number of the message
  std::minstd_rand chance_;
};

}  // namespace tavlyn::agent
