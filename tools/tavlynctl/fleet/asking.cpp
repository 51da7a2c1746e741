#include "tools/tavlynctl/fleet/asking.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>

#include "tools/printable.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/process.h"
#include "tools/tavlynctl/progress.h"
#include "tools/tavlynctl/watch/watching.h"

namespace tavlyn::ctl {
namespace {

constexpr std::chrono::milliseconds kTurnOfAsking{50};

struct Pending {
  const Asked* asked;
  Clock::time_point until;
};

FleetReply FleetReplyOf(const Json& reply) {
  if (ValueAt(reply, "ok") == true) return {true, ValueAt(reply, "result"), ""};
  const Json error = ValueAt(reply, "error");
  const Json text = ValueAt(error, "text");
  return {false, Json(), Cell(text.is_null() ? ValueAt(error, "code") : text)};
}

class Asking {
 public:
  Asking(Broker& broker, const FleetWords& words, std::size_t devices,
         const std::function<void(const Asked&, const FleetReply&)>& take)
      : broker_(broker), words_(words), devices_(devices), take_(take) {}

  void Send(const Asked& asked, double seconds) {
    const FleetTopic& topic = asked.member->topic;
    broker_.Publish(words_.prefix + '/' + topic.Place() + "/command", asked.command.dump());
    pending_[asked.command["request"].get<std::string>()] = {&asked, After(seconds)};
  }

  [[nodiscard]] int Busy() const { return static_cast<int>(pending_.size()); }

  void Step() {
    if (const auto heard = broker_.Hear(kTurnOfAsking)) Take(*heard);
    if (IsStopped()) Stop();
    const auto now = Clock::now();
    std::erase_if(pending_, [&](const auto& one) {
      if (one.second.until > now) return false;
      Hand(*one.second.asked, {false, Json(), "no reply came in time", false});
      return true;
    });
  }

 private:
  void Hand(const Asked& asked, const FleetReply& outcome) {
    ++done_;
    if (ProgressIsSeen()) line_.Show(Count());
    take_(asked, outcome);
  }

  [[nodiscard]] std::string Count() const {
    return std::to_string(done_) + " of " + std::to_string(devices_) + " devices are done";
  }

  void Stop() {
    line_.Clear();
    PrintLine(stderr, Count() + ", " + std::to_string(Busy()) + " have been asked and may still do it");
    EndStopped();
  }

  // Others may ask the same devices, and see their own replies.
  void Take(const Heard& heard) {
    const auto topic = ParseFleetTopic(words_.prefix, heard.topic);
    const Json reply = ParseObject(heard.payload);
    const Json request = ValueAt(reply, "request");
    if (!topic || topic->end != "reply" || !request.is_string()) return;
    const auto found = pending_.find(request.get<std::string>());
    if (found == pending_.end() || found->second.asked->member->topic.Place() != topic->Place()) return;
    const Asked& asked = *found->second.asked;
    pending_.erase(found);
    Hand(asked, FleetReplyOf(reply));
  }

  Broker& broker_;
  const FleetWords& words_;
  std::size_t devices_;
  std::size_t done_ = 0;
  LiveLine line_;
  const std::function<void(const Asked&, const FleetReply&)>& take_;
  std::map<std::string, Pending> pending_;
};

}  // namespace

std::string NewRequest() {
  constexpr int kDigits = 8;
  std::random_device random;
  return "tavlynctl-" + Hex(random(), kDigits) + Hex(random(), kDigits);
}

void AskAll(Broker& broker, const FleetWords& words, const std::vector<Asked>& all, int atOnce,
            double seconds, const std::function<void(const Asked&, const FleetReply&)>& take) {
  broker.Subscribe({words.Topic("reply")}, 1);
  Asking asking(broker, words, all.size(), take);
  for (const Asked& one : all) {
    while (asking.Busy() >= atOnce) asking.Step();
    asking.Send(one, seconds);
  }
  while (asking.Busy() > 0) asking.Step();
}

void FleetResults::Add(const Member& member, const FleetReply& outcome, const char* good) {
  Json row = member.Row();
  row["result"] = outcome.isOk ? good : "failed";
  const Json changes = ValueAt(outcome.result, "changes");
  if (asJson_) {
    row["reply"] = outcome.result;
  } else if (changes.is_array()) {
    row["changes"] = changes.size();
  }
  if (!outcome.isOk) row["error"] = outcome.error;
  failed_ += outcome.isOk ? 0 : 1;
  rows_[member.topic.Place()] = std::move(row);
}

void FleetResults::AddOffline(const Member& member) {
  Json row = member.Row();
  row["result"] = member.state;
  rows_[member.topic.Place()] = std::move(row);
  ++offline_;
}

Json FleetResults::Done(Json document) const {
  Json& rows = document["devices"] = Json::array();
  for (const auto& [place, row] : rows_) rows.push_back(row);
  if (failed_ + offline_ == 0) return document;
  std::string text;
  if (failed_ > 0) text = std::to_string(failed_) + " of " + std::to_string(rows_.size()) + " devices failed";
  if (offline_ > 0) {
    text += (text.empty() ? "" : ", ") + std::to_string(offline_) + " of " + std::to_string(rows_.size()) +
            " devices are not online";
  }
  throw Failure(failed_ > 0 ? kDeviceError : kNoDevice, text, std::move(document));
}

}  // namespace tavlyn::ctl
