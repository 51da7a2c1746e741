// fleet list, watch, beep.
#include <thread>

#include "tools/printable.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/fleet/asking.h"
#include "tools/tavlynctl/watch/watching.h"

namespace tavlyn::ctl {
namespace {

constexpr int kMostShortBeeps = 5;
constexpr int kMostLongBeepsOfFleet = 2;
constexpr int kBeepsAtOnce = 1000;
constexpr std::chrono::milliseconds kTurnOfWatch{100};
constexpr double kPauseBeforeReturn = 1;

// What an info says, as columns.
constexpr const char* kInfoColumns[] = {"product",        "part", "firmware", "luid",
                                        "configurations", "link", "agent"};

struct FleetList {
  FleetWords fleet;

  void Take(Words& words) { fleet.Take(words); }

  [[nodiscard]] Json Run(const Request& request) const {
    Broker broker(fleet);
    Json document = request.Document();
    Json& rows = document["devices"] = Json::array();
    for (const Member& member : GatherMembers(broker, fleet)) {
      Json& row = rows.emplace_back(member.Row());
      row["state"] = member.state;
      for (const char* key : kInfoColumns) row[key] = ValueAt(member.info, key);
    }
    return document;
  }
};

struct FleetWatch {
  FleetWords fleet;
  int count = 0;
  std::optional<double> timeout;

  void Take(Words& words) {
    fleet.Take(words);
    words.Count(count, "End after this many events");
    words.Timeout(timeout, "End after this many seconds; exit status 5 if nothing has happened");
  }

  [[nodiscard]] Json Run(const Request& request) const {
    Watching watching(timeout, count, Failure(kNoCard, "no event came in time"));
    bool wasThere = false;
    std::string told;
    while (watching.GoesOn()) {
      try {
        Broker broker(fleet);
        broker.Subscribe(Topics(), 1);
        if (!request.json) PrintLine(stderr, "watching " + fleet.prefix + '/' + fleet.to);
        wasThere = true;
        told.clear();
        WatchFleet(broker, watching, request.json);
      } catch (const Failure& failure) {
        // The first connection fails at once: the words may be wrong.
        if (!wasThere || failure.code != kNoDevice) throw;
        if (told != failure.what()) PrintLine(stderr, failure.what());
        told = failure.what();
        WaitToReturn(watching);
      }
    }
    return {};
  }

 private:
  [[nodiscard]] std::vector<std::string> Topics() const {
    std::vector<std::string> topics;
    for (const char* end : {"card", "gone", "swipe", "presence", "state"}) topics.push_back(fleet.Topic(end));
    return topics;
  }

  static void WaitToReturn(const Watching& watching) {
    const Clock::time_point end = After(kPauseBeforeReturn);
    while (watching.GoesOn() && Clock::now() < end) std::this_thread::sleep_for(kTurnOfWatch);
  }

  void WatchFleet(Broker& broker, Watching& watching, bool asJson) const {
    while (watching.GoesOn()) {
      const auto heard = broker.Hear(kTurnOfWatch);
      // What the broker has kept is not news.
      if (!heard || heard->isKept) continue;
      const auto topic = ParseFleetTopic(fleet.prefix, heard->topic);
      const Json said = ParseObject(heard->payload);
      if (!topic || said.is_null()) continue;
      Json event{
          {"site", topic->site}, {"host", topic->host}, {"device", topic->device}, {"event", topic->end}};
      // Where it happened is what the broker says, not the message.
      for (const auto& [key, value] : said.items()) {
        if (!event.contains(key)) event[key] = value;
      }
      ShowEvent(event, topic->Place() + ' ' + LineOf(topic->end, said), asJson);
      watching.Count(1);
    }
  }

  static std::string LineOf(const std::string& event, const Json& said) {
    if (event == "state") return Cell(ValueAt(said, "state"));
    std::string line = event;
    for (const char* key : {"bits", "id", "hash", "tracks", "present", "range"}) {
      const Json value = ValueAt(said, key);
      if (value.is_null()) continue;
      line += ' ' + Cell(value) + (key == std::string("bits") ? " bits" : "");
    }
    return line;
  }
};

struct FleetBeep {
  FleetWords fleet;
  int count = 1;
  bool isLong = false;
  double seconds = kPatience;

  void Take(Words& words) {
    words.Number("COUNT", count, 1, kMostShortBeeps, "Beeps (1)");
    words.Flag("--long", isLong, "One or two long beeps");
    TakePatience(words, seconds);
    fleet.Take(words);
  }

  [[nodiscard]] Json Run(const Request& request) const {
    if (isLong && count > kMostLongBeepsOfFleet) {
      throw Failure(kUsage, "a device makes 1 or 2 long beeps, or 1 to 5 short ones");
    }
    Broker broker(fleet);
    const std::vector<Member> members = GatherMembers(broker, fleet);
    std::vector<Asked> asked;
    FleetResults results(request.json);
    for (const Member& member : members) {
      const Json command{
          {"schema", 1}, {"request", NewRequest()}, {"do", "beep"}, {"count", count}, {"long", isLong}};
      if (member.IsOnline()) {
        asked.push_back({&member, command});
      } else {
        results.AddOffline(member);
      }
    }
    AskAll(broker, fleet, asked, kBeepsAtOnce, seconds,
           [&](const Asked& one, const FleetReply& outcome) { results.Add(*one.member, outcome); });
    return results.Done(request.Document());
  }
};

}  // namespace

void AddFleet(Program& program) {
  program.Group("fleet", "Devices of many machines, through their agents' broker");
  program.Add<FleetList>("fleet list", "Who is online, with which firmware");
  program.Add<FleetWatch>("fleet watch", "Cards and devices that come and go");
  program.Add<FleetBeep>("fleet beep", "Beeps now");
  program.Group("fleet config", "Configure devices of many machines");
  AddFleetConfig(program);
}

}  // namespace tavlyn::ctl
