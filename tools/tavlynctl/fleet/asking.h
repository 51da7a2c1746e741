// A command to many devices at once, and their replies.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tools/tavlynctl/fleet/members.h"

namespace tavlyn::ctl {

struct Asked {
  const Member* member = nullptr;
  Json command;  // its "request" is a new one for every command
};

// A name for a command that no other has.
std::string NewRequest();

struct FleetReply {
  bool isOk = false;
  Json result;           // of the device
  std::string error;     // why not
  bool isAnswer = true;  // false: no reply came
};

// Hands each outcome over as it comes; at most so many devices are busy with it at a time, and each has so
// many seconds. A Ctrl-C ends the program, which says how far it has come.
void AskAll(Broker& broker, const FleetWords& words, const std::vector<Asked>& all, int atOnce,
            double seconds, const std::function<void(const Asked&, const FleetReply&)>& take);

// Rows of results, and how the whole ended.
class FleetResults {
 public:
  // In JSON rows have the whole replies.
  explicit FleetResults(bool asJson) : asJson_(asJson) {}

  void Add(const Member& member, const FleetReply& outcome, const char* good = "ok");
  void AddOffline(const Member& member);
  // The document with its devices; throws Failure with it unless all is well.
  [[nodiscard]] Json Done(Json document) const;

 private:
  bool asJson_;
  std::map<std::string, Json> rows_;  // by place: replies come as they come
  int failed_ = 0;
  int offline_ = 0;
};

}  // namespace tavlyn::ctl
