// Workers of the agent on simulated devices, and their parent (worker_owner_linux.cpp).
#pragma once

#include <string>
#include <vector>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {

// Lines of a script that runs the parent beside the test's own steps, which wait for what it has told. The
// pattern has to come once more than before.
inline constexpr const char* kOwner = R"(
count() { cat out err | grep -c -- "$1"; }
told() { until [ $(count "$1") -ge ${2:-1} ]; do LD_PRELOAD= sleep 0.02; done; }
program=)" TAVLYND R"(; pause=255
owned() { mkfifo in; : >out; : >err; )" WORKER_OWNER
                                      R"( $program $pause "$@" <in >out 2>err & pid=$!; exec 3>in; }
ask() { echo "$1 $2" >&3; }
left() { while grep -q 'State:.[^Z]' /proc/$1/status 2>none; do LD_PRELOAD= sleep 0.02; done; }
one_worker() { [ $(pgrep -c -P $pid) = 1 ] || exit 9; }
workers() { pgrep -P $pid -f -- "$1"; }
ended() { exec 3>&-; wait $pid; status=$?; cat out; cat err >&2; exit $status; }
)";

class Workers : public SimulatedRun {
 protected:
  struct Said {
    std::string link;
    Json whole;
  };

  // What the parent has heard while the steps ran.
  std::vector<Said> Owned(const std::string& devices, const std::string& steps) {
    ended_ = Run(devices, {kOwner + steps})[0];
    EXPECT_EQ(ended_.status, 0) << ended_.err;
    std::vector<Said> all;
    std::istringstream lines(ended_.out);
    for (std::string link, text; lines >> link && std::getline(lines, text);) {
      all.push_back({link, Json::parse(text, nullptr, false)});
    }
    return all;
  }

  // "LINK EVENT SERIAL", and the ID of a card.
  static std::vector<std::string> Summaries(const std::vector<Said>& all) {
    std::vector<std::string> summaries;
    for (const Said& said : all) {
      if (!said.whole.contains("device")) continue;
      const Json& place = said.whole["device"];
      std::string summary = said.link + " " + said.whole.value("event", "") + " " + place.value("serial", "");
      if (said.whole.contains("id")) summary += " " + said.whole["id"].get<std::string>();
      summaries.push_back(summary);
    }
    return summaries;
  }

  static std::vector<Json> All(const std::vector<Said>& all, const std::string& event) {
    std::vector<Json> found;
    for (const Said& said : all) {
      if (said.whole.value("event", "") == event) found.push_back(said.whole);
    }
    return found;
  }
  static Json Only(const std::vector<Said>& all, const std::string& event) {
    const std::vector<Json> found = All(all, event);
    EXPECT_EQ(found.size(), 1U) << event;
    return found.empty() ? Json() : found[0];
  }

  Ended ended_;
};

}  // namespace tavlyn::boundary
