#include "tools/tavlynd/desk.h"

#include <chrono>
#include <utility>

#include "tools/broker_url.h"
#include "tools/tavlynd/commands.h"
#include "tools/tavlynd/keys.h"
#include "tools/tavlynd/payloads.h"
#include "tools/tavlynd/service.h"

namespace tavlyn::agent {
namespace {

constexpr std::int64_t kDay = 86'400'000;
constexpr std::int64_t kMegabyte = 1 << 20;

std::int64_t TimeOfDay() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

Spool::Bounds BoundsOf(const Settings& settings) {
  return {settings.days * kDay, settings.megabytes * kMegabyte};
}

}  // namespace

Desk::Desk(const Settings& settings, Send send)
    : settings_(settings),
      send_(std::move(send)),
      topics_(settings),
      spool_(
          settings.spool, BoundsOf(settings), [](const std::string& text) { Log(Priority::kError, text); },
          TimeOfDay()) {
  for (const std::string& name : spool_.Devices()) roster_.Remember(name);
  Meet();
}

Broker::Terms Desk::BrokerTerms() const {
  Settings its;
  for (const Key& key : Keys()) {
    if (std::string_view(key.section) != "broker") continue;
    std::visit([&](const auto member) { its.*member = settings_.*member; }, key.member);
  }
  const std::string clientId = settings_.clientId.empty() ? topics_.ClientId() : settings_.clientId;
  return {its, clientId, topics_.Of(kAgent, "state"), StatePayload("offline", 0), topics_.Commands()};
}

void Desk::Meet() {
  forwarded_ = 0;
  window_ = 0;
  broker_ = std::make_unique<Broker>(
      BrokerTerms(),
      Broker::Heard{[this] { Greet(); },
                    [this](const std::string& topic, std::string_view payload) { Obey(topic, payload); },
                    [this](std::int64_t event) {
                      spool_.Done(event);
                      --window_;
                    }});
}

void Desk::Be(const Settings& settings) {
  const Broker::Terms before = BrokerTerms();
  if (settings.spool != settings_.spool) {
    Log(Priority::kWarning, "the spool stays where it is until the next start");
  }
  settings_ = settings;
  topics_ = Topics(settings);
  spool_.SetBounds(BoundsOf(settings));
  // Certificates may be new in the files that they were in.
  const auto url = ParseBrokerUrl(settings.url);
  if (!(before == BrokerTerms()) || (url && url->tls)) {
    broker_->Publish(before.willTopic, StatePayload("offline", TimeOfDay()), true);
    broker_->Leave();
    Meet();
  } else {
    AnnounceSelf();
  }
}

// All that is retained is said again: the broker may be another one, or have forgotten it.
void Desk::Greet() {
  Log(Priority::kInfo, "topics begin with " + topics_.Begin());
  broker_->Publish(topics_.Of(kAgent, "state"), StatePayload("online", TimeOfDay()), true);
  aboutSelf_.clear();
  AnnounceSelf();
  for (const auto& [name, device] : roster_.All()) Announce(name, device);
}

void Desk::AnnounceSelf() {
  const std::string about = AgentInfoPayload(settings_, spool_.Dropped());
  if (!broker_->IsConnected() || about == aboutSelf_) return;
  broker_->Publish(topics_.Of(kAgent, "info"), about, true);
  aboutSelf_ = about;
}

void Desk::Announce(const std::string& name, const Device& device) {
  broker_->Publish(topics_.Of(name, "state"), StatePayload(device.online ? "online" : "lost", TimeOfDay()),
                   true);
  if (!device.about.is_null()) {
    broker_->Publish(topics_.Of(name, "info"), InfoPayload(device.link, device.about), true);
  }
}

void Desk::Hear(const std::string& link, const Json& said) {
  const std::string event = TextIn(said, "event");
  if (event == "arrived") return HearArrival(link, said);
  if (event == "lost") return HearLoss(link, said);
  if (event == "reply") return HearReply(said);
  if (event == "note") return Log(Priority::kInfo, link + ": " + TextIn(said, "text"));
  for (const char* end : {"card", "gone", "swipe", "presence"}) {
    if (event == end) return HearEvent(link, said, end);
  }
}

void Desk::HearArrival(const std::string& link, const Json& said) {
  if (!said.contains("device")) return;
  const std::string name = roster_.Arrive(link, said["device"]);
  spool_.Meet(name);
  Log(Priority::kInfo, name + " is there, at " + link);
  Announce(name, *roster_.Find(name));
}

void Desk::HearLoss(const std::string& link, const Json& said) {
  const std::string name = roster_.NameAt(link, TextIn(said.value("device", Json::object()), "path"));
  if (name.empty()) return;
  Device& device = *roster_.Find(name);
  device.online = false;
  Log(Priority::kInfo, name + " is lost");
  Announce(name, device);
}

void Desk::HearEvent(const std::string& link, const Json& said, const char* end) {
  const std::string name = roster_.NameAt(link, TextIn(said.value("device", Json::object()), "path"));
  if (name.empty() || leaves_) return;
  spool_.Add(name, topics_.Of(name, end), TimeOfDay(),
             [&](std::int64_t sequence) { return EventPayload(settings_, name, said, sequence); });
}

void Desk::HearReply(const Json& said) {
  const auto asked = asked_.extract(TextIn(said, "request"));
  if (asked.empty()) return;
  const auto& [device, request] = asked.mapped();
  const Json reply = ReplyWith(settings_, request, said);
  spool_.Answered(device, request, TextOf(reply));
  Reply(device, reply);
}

void Desk::Reply(const std::string& name, const Json& reply) {
  broker_->Publish(topics_.Of(name, "reply"), TextOf(reply), false);
}

void Desk::Obey(const std::string& topic, std::string_view payload) {
  const std::string name = topics_.DeviceOfCommand(topic);
  if (name.empty() || leaves_) return;
  Device* device = roster_.Find(name);
  const Order order = ReadOrder(payload, settings_);
  if (!rate_.Take(device == nullptr ? "" : name, settings_.rate, SteadyMs())) {
    return Reply(name, Refusal(order.request, "busy", "too many commands; commands.rate says how many"));
  }
  if (!order.refusal.is_null()) return Reply(name, order.refusal);
  if (name == kAgent) {
    return Reply(name, Refusal(order.request, "bad-request",
                               "the agent itself has no commands; those of a device are " + CommandNames()));
  }
  if (device == nullptr || !device->online) {
    return Reply(name, Refusal(order.request, "unknown-device", "there is no such device now"));
  }
  Obey(name, *device, order);
}

// A request that was carried out is answered as before, whoever sends it again.
void Desk::Obey(const std::string& name, Device& device, Order order) {
  if (const auto before = spool_.Remembered(name, order.request, TimeOfDay())) {
    const Json reply = ParseObject(*before);
    return Reply(name, reply.is_null() ? Refusal(order.request, "repeated",
                                                 "it has begun; what became of it is not known")
                                       : reply);
  }
  const std::string number = std::to_string(++lastAsked_);
  Json command = std::move(order.command);
  command["request"] = number;
  command["device"] = device.path;
  if (send_(device.link, command)) {
    asked_[number] = {name, order.request};
    return;
  }
  spool_.Forget(name, order.request);
  Reply(name, Refusal(order.request, "busy", "the device is doing what it was asked before"));
}

// Events that the spool has for good, as many as may be on their way.
void Desk::Forward() {
  spool_.Commit();
  const auto most = static_cast<std::size_t>(settings_.window);
  if (leaves_ || !broker_->IsConnected() || window_ >= most || spool_.Last() == forwarded_) return;
  for (const Spool::Event& event : spool_.After(forwarded_, static_cast<std::int64_t>(most - window_))) {
    if (!broker_->Publish(event.topic, event.payload, false, event.id)) return;
    forwarded_ = event.id;
    ++window_;
  }
}

int Desk::TurnMs() const { return broker_->TurnMs(SteadyMs()); }

void Desk::Serve(const std::vector<pollfd>& polled) {
  Forward();
  broker_->Serve(polled, SteadyMs());
  Forward();
}

void Desk::Tend() {
  spool_.Tend(TimeOfDay());
  AnnounceSelf();
}

void Desk::Leave() {
  spool_.Commit();
  leaves_ = true;
  broker_->Publish(topics_.Of(kAgent, "state"), StatePayload("offline", TimeOfDay()), true);
}

void Desk::Close() {
  broker_->Leave();
  spool_.Tend(TimeOfDay());
}

}  // namespace tavlyn::agent
