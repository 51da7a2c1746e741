#include <poll.h>

#include <algorithm>
#include <optional>
#include <thread>

#include "tools/tavlynctl/watch/time_stamp.h"
#include "tools/tavlynctl/watch/watching.h"
#include "tools/tavlynd/settings.h"
#include "tools/tavlynd/worker/worker.h"
#include "tools/tavlynd/worker_process.h"
#include "tools/tavlynd/worker_talk.h"
#include "tools/tavlynd/workers.h"

namespace tavlyn::agent {
namespace {

using ctl::Clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

// Before a worker that has ended is started again, each time twice as long unless it has lived for a while.
constexpr seconds kFirstPause(1);
constexpr seconds kLongestPause(60);
constexpr seconds kLongLife(120);
// So late is no worker that gets its share of the processor.
constexpr seconds kLate(5);
constexpr milliseconds kBetweenLooks(20);
// A configuration that is being written is not cut off.
constexpr seconds kTimeToStop(10);

}  // namespace

struct Worker {
  std::string link;
  bool isWanted = true;
  WorkerProcess process = {};
  Lines lines = {};
  WorkerTalk talk = {};
  std::string owed = {};  // what it has not taken yet
  seconds pause = kFirstPause;
  Clock::time_point started = {};  // or to be started
  Clock::time_point heard = {};

  // When something is due, apart from what it says.
  [[nodiscard]] Clock::time_point Due() const {
    if (process.IsRunning()) return heard + talk.Patience() + kLate;
    if (process.Number() != 0) return Clock::now() + kBetweenLooks;
    return started;
  }
};

Workers::Workers(Hear hear) : hear_(std::move(hear)) {}

Workers::~Workers() {
  for (Worker& worker : workers_) worker.process.Close();
  const auto end = Clock::now() + kTimeToStop;
  std::string how;
  for (Worker& worker : workers_) {
    while (!worker.process.HasEnded(how) && Clock::now() < end) std::this_thread::sleep_for(kBetweenLooks);
  }
}

void Workers::Be(const WorkerTerms& terms) {
  const bool areSame =
      terms.baud == terms_.baud && terms.pause == terms_.pause && terms.program == terms_.program;
  terms_ = terms;
  for (Worker& worker : workers_) {
    worker.isWanted = areSame && std::ranges::count(terms.links, worker.link) > 0;
    if (!worker.isWanted) Part(worker);
  }
  for (const std::string& link : terms.links) {
    const bool isThere =
        std::ranges::any_of(workers_, [&](const Worker& one) { return one.isWanted && one.link == link; });
    if (!isThere) workers_.emplace_back().link = link;
  }
}

void Workers::AddTo(std::vector<pollfd>& polled) const {
  for (const Worker& worker : workers_) {
    if (!worker.process.IsRunning()) continue;
    const int wanted = worker.owed.empty() ? POLLIN : POLLIN | POLLOUT;
    polled.push_back({worker.process.Socket(), static_cast<short>(wanted), 0});
  }
}

int Workers::TurnMs() const {
  auto due = Clock::time_point::max();
  for (const Worker& worker : workers_) due = std::min(due, worker.Due());
  if (due == Clock::time_point::max()) return -1;
  const auto left = std::chrono::ceil<milliseconds>(due - Clock::now()).count();
  return static_cast<int>(std::max<decltype(left)>(left, 0));
}

void Workers::Serve(const std::vector<pollfd>& polled) {
  for (Worker& worker : workers_) {
    if (!worker.process.IsRunning()) continue;
    const auto found = std::ranges::find(polled, worker.process.Socket(), &pollfd::fd);
    const bool isReady = found != polled.end() && found->revents != 0;
    if (isReady && !Attend(worker)) {
      Drop(worker, "");
    } else if (Clock::now() >= worker.Due()) {
      Drop(worker, "says nothing");
    }
  }
  std::erase_if(workers_, [&](Worker& worker) { return HasLeft(worker); });
}

// False if it has ended, or says what no worker says.
bool Workers::Attend(Worker& worker) {
  if (!worker.owed.empty() && !worker.process.Send(worker.owed)) return false;
  std::string bytes;
  if (!worker.process.Receive(bytes) || !worker.lines.Add(bytes)) return false;
  while (const auto said = worker.lines.Next()) {
    worker.heard = Clock::now();
    if (!worker.talk.Hear(*said, [&](const Json& whole) { hear_(worker.link, whole); })) return false;
  }
  return true;
}

// Whatever it does.
void Workers::Drop(Worker& worker, const std::string& why) {
  worker.process.Kill();
  if (!why.empty()) Note(worker, why);
  Part(worker);
  if (Clock::now() - worker.started >= kLongLife) worker.pause = kFirstPause;
  worker.started = Clock::now() + worker.pause;
  worker.pause = std::min(2 * worker.pause, kLongestPause);
}

// Its devices are not looked after any more.
void Workers::Part(Worker& worker) {
  worker.process.Close();
  worker.owed.clear();
  worker.lines = {};
  worker.talk.End([&](const Json& said) { hear_(worker.link, said); });
  worker.talk = {};
}

// Starts it when it is time. True when it has ended for good.
bool Workers::HasLeft(Worker& worker) {
  if (worker.process.IsRunning()) return false;
  std::string how;
  if (!worker.process.HasEnded(how)) return false;
  if (!worker.isWanted) return true;
  if (!how.empty()) Note(worker, how);
  if (Clock::now() < worker.started) return false;
  Start(worker);
  return false;
}

void Workers::Start(Worker& worker) {
  const std::string problem = worker.process.Start(
      terms_.program, {kProgram, kWorkerWord, worker.link, std::to_string(terms_.pause.count()),
                       std::to_string(terms_.baud)});
  worker.started = worker.heard = Clock::now();
  if (!problem.empty()) Drop(worker, "cannot be started: " + problem);
}

void Workers::Note(const Worker& worker, const std::string& what) {
  hear_(
      worker.link,
      {{"event", "note"}, {"time", ctl::TimeStamp()}, {"text", "the worker of " + worker.link + " " + what}});
}

bool Workers::Send(const std::string& link, const Json& command) {
  const auto worker = std::ranges::find_if(
      workers_, [&](const Worker& one) { return one.link == link && one.process.IsRunning(); });
  if (worker == workers_.end() || !worker->owed.empty()) return false;
  if (!worker->talk.Expect(TextIn(command, "request"))) return false;
  worker->owed = LineOf(command);
  worker->process.Send(worker->owed);  // that it has ended is noticed when it is heard
  return true;
}

}  // namespace tavlyn::agent
