#include <poll.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <memory>
#include <optional>

#include "tools/tavlynd/agent.h"
#include "tools/tavlynd/broker.h"
#include "tools/tavlynd/desk.h"
#include "tools/tavlynd/log.h"
#include "tools/tavlynd/payloads.h"
#include "tools/tavlynd/service.h"
#include "tools/tavlynd/settings_file.h"
#include "tools/tavlynd/words.h"
#include "tools/tavlynd/workers.h"

namespace tavlyn::agent {
namespace {

constexpr std::int64_t kBetweenTends = 1000;
constexpr std::int64_t kMostLeaving = 3000;

WorkerTerms TermsOf(const Settings& settings) {
  WorkerTerms terms;
  for (const std::string& product : settings.usb) terms.links.push_back("usb:" + product);
  for (const auto* links : {&settings.serial, &settings.ethernet}) {
    terms.links.insert(terms.links.end(), links->begin(), links->end());
  }
  terms.baud = static_cast<std::uint32_t>(settings.baud);
  terms.pause = std::chrono::milliseconds(settings.interval);
  return terms;
}

class Agent {
 public:
  Agent(std::string file, const Settings& settings)
      : file_(std::move(file)),
        desk_(settings,
              [this](const std::string& link, const Json& command) { return workers_.Send(link, command); }),
        workers_([this](const std::string& link, const Json& said) { desk_.Hear(link, said); }) {
    workers_.Be(TermsOf(settings));
  }

  void Run() {
    manager_.Ready("running");
    while (!ends_) Turn();
    manager_.Stopping();
    desk_.Leave();
    const std::int64_t until = SteadyMs() + kMostLeaving;
    while (!desk_.HasLeft() && SteadyMs() < until) Poll(false);
    desk_.Close();
  }

 private:
  void Turn() {
    Poll(true);
    while (const int number = signals_.Next()) {
      if (number == SIGHUP) {
        Reload();
      } else {
        ends_ = true;
      }
    }
    const std::int64_t now = SteadyMs();
    manager_.TendWatchdog(now);
    if (now - tended_ >= kBetweenTends) {
      tended_ = now;
      desk_.Tend();
    }
  }

  void Poll(bool withWorkers) {
    std::vector<pollfd> polled{{signals_.Descriptor(), POLLIN, 0}};
    if (withWorkers) workers_.AddTo(polled);
    desk_.AddTo(polled);
    int most = std::min(static_cast<int>(kBetweenTends), desk_.TurnMs());
    if (const int turn = workers_.TurnMs(); withWorkers && turn >= 0) most = std::min(most, turn);
    if (poll(polled.data(), polled.size(), most) < 0) {
      for (pollfd& one : polled) one.revents = 0;
    }
    if (withWorkers) workers_.Serve(polled);
    desk_.Serve(polled);
  }

  void Reload() {
    manager_.Reloading();
    const ReadSettings read = LoadSettings(file_);
    if (read.mistakes.empty()) {
      desk_.Be(read.settings);
      workers_.Be(TermsOf(read.settings));
      Log(Priority::kNotice, "the settings are read again");
    } else {
      for (const Mistake& one : read.mistakes) Log(Priority::kError, MistakeLine(file_, one));
      Log(Priority::kError, "the settings stay as they were");
    }
    manager_.Ready("running");
  }

  std::string file_;
  Signals signals_;
  Manager manager_;
  Desk desk_;
  Workers workers_;
  std::int64_t tended_ = 0;
  bool ends_ = false;
};

}  // namespace

int RunAgent(const std::string& settingsFile, const Settings& settings) try {
  umask(S_IRWXG | S_IRWXO);
  Agent(settingsFile, settings).Run();
  return kEnded;
} catch (const DatabaseError& error) {
  Log(Priority::kError, "the spool " + settings.spool + " cannot be used: " + error.what() +
                            (error.IsInUse() ? "; is another tavlynd running with it?" : ""));
  return kCannotRun;
}

}  // namespace tavlyn::agent
