// fleet config load.
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/config/overwriting.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/fleet/asking.h"
#include "tools/tavlynctl/fleet/rollout.h"

namespace tavlyn::ctl {
namespace {

constexpr int kMostAtOnce = 1000;

// What is not UTF-8 would come back as something else.
bool IsText(const std::string& bytes) {
  return Json::parse(Json(bytes).dump(-1, ' ', false, Json::error_handler_t::replace)) == Json(bytes);
}

struct LoadFleetConfig {
  std::string path;
  FleetWords fleet;
  Overwriting over;
  int atOnce = 16;
  double seconds = kPatience;
  std::string state;

  void Take(Words& words) {
    words.File(path);
    words.DryRun(over.dryRun);
    over.TakeYes(words);
    words
        .Text("--resume", state, "Keeps here what has been done, and leaves out what this file says was done")
        ->required(false)
        ->option_text("FILE");
    words.Number("--at-once", atOnce, 1, kMostAtOnce, "How many devices load it at a time (16)");
    TakePatience(words, seconds);
    fleet.Take(words);
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const std::string text = ContentsOf(path);
    if (text.empty()) throw NothingIn(path);
    if (!IsText(text)) {
      throw Failure(kBadFile,
                    path + " is not UTF-8, in which alone it can be sent; iconv -f LATIN1 converts it");
    }
    over.Require("this overwrites configurations");
    Rollout rollout(over.dryRun ? "" : state, text);
    Broker broker(fleet);
    const std::vector<Member> members = GatherMembers(broker, fleet);
    std::vector<Asked> asked;
    FleetResults results(request.json);
    for (const Member& member : members) Sort(member, rollout, text, asked, results);
    if (!over.dryRun && !asked.empty()) {
      over.Confirm("load " + path + " into " + std::to_string(asked.size()) + " devices");
    }
    rollout.Keep();
    AskAll(broker, fleet, asked, atOnce, seconds, [&](const Asked& one, const FleetReply& outcome) {
      if (outcome.isAnswer) rollout.Take(one.member->topic.Place(), outcome.isOk);
      results.Add(*one.member, outcome);
    });
    Json document = request.Document();
    document["file"] = path;
    document["dry_run"] = over.dryRun;
    return results.Done(std::move(document));
  }

 private:
  void Sort(const Member& member, Rollout& rollout, const std::string& text, std::vector<Asked>& asked,
            FleetResults& results) const {
    const std::string place = member.topic.Place();
    if (rollout.IsDone(place)) {
      results.Add(member, {true, Json(), ""}, "done before");
    } else if (!member.IsOnline()) {
      results.AddOffline(member);
    } else {
      asked.push_back({&member,
                       {{"schema", 1},
                        {"request", rollout.Request(place)},
                        {"do", "load-config"},
                        {"file", text},
                        {"dry", over.dryRun}}});
    }
  }
};

}  // namespace

void AddFleetConfig(Program& program) {
  program.Add<LoadFleetConfig>("fleet config load", "Loads a file into each device, which is then read back");
}

}  // namespace tavlyn::ctl
