// What is between the workers and the broker: events become messages by way of the spool, messages become
// commands.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/tavlynd/broker.h"
#include "tools/tavlynd/lines.h"
#include "tools/tavlynd/orders.h"
#include "tools/tavlynd/roster.h"
#include "tools/tavlynd/settings.h"
#include "tools/tavlynd/spool.h"
#include "tools/tavlynd/topics.h"

namespace tavlyn::agent {

class Desk {
 public:
  // False if the worker does not take it.
  using Send = std::function<bool(const std::string& link, const Json& command)>;

  // Throws DatabaseError if another process has the spool.
  Desk(const Settings& settings, Send send);

  // New settings; the spool stays where it is.
  void Be(const Settings& settings);

  // What a worker says.
  void Hear(const std::string& link, const Json& said);

  void AddTo(std::vector<pollfd>& polled) const { broker_->AddTo(polled); }
  [[nodiscard]] int TurnMs() const;
  void Serve(const std::vector<pollfd>& polled);
  // Once a second or so.
  void Tend();

  // Says that the agent is offline; events that come later stay in the spool.
  void Leave();
  // The broker has acknowledged all.
  [[nodiscard]] bool HasLeft() const { return !broker_->IsConnected() || broker_->OnTheirWay() == 0; }
  void Close();

 private:
  struct Asked {
    std::string device;
    std::string request;
  };

  [[nodiscard]] Broker::Terms BrokerTerms() const;
  void Meet();
  void Greet();
  void Forward();
  void HearArrival(const std::string& link, const Json& said);
  void HearLoss(const std::string& link, const Json& said);
  void HearEvent(const std::string& link, const Json& said, const char* end);
  void HearReply(const Json& said);
  void Announce(const std::string& name, const Device& device);
  void AnnounceSelf();
  void Obey(const std::string& topic, std::string_view payload);
  void Obey(const std::string& name, Device& device, Order order);
  void Reply(const std::string& name, const Json& reply);

  Settings settings_;
  Send send_;
  Topics topics_;
  Spool spool_;
  Roster roster_;
  Rate rate_;
  std::unique_ptr<Broker> broker_;
  std::int64_t forwarded_ = 0;  // the last event that the broker was sent
  std::size_t window_ = 0;      // events on their way
  std::int64_t lastAsked_ = 0;
  std::map<std::string, Asked> asked_;  // by the number of the request
  std::string aboutSelf_;               // as last published
  bool leaves_ = false;
};

}  // namespace tavlyn::agent
