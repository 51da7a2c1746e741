// Devices under watch. Each is asked at its own pace; one that goes is told and waited for, and one that
// comes is told too.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/tavlynctl/device_lock.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/session.h"
#include "tools/tavlynctl/watch/attached.h"
#include "tools/tavlynctl/watch/events.h"
#include "tools/tavlynctl/watch/watching.h"

namespace tavlyn::ctl {

// What ends a watch, and what it watches: options of every command that watches.
struct WatchWords {
  int count = 0;  // 0: any number
  std::optional<double> timeout;
  bool all = false;
  bool ends = false;    // instead of waiting for a device
  bool serves = false;  // for good: waits for whatever cannot be had, and leaves other products to others

  EventWords events;

  void Take(Words& words);
  CLI::Option* TakeEnd(Words& words);
};

struct Watched {
  DevicePlace place;
  Json on = {};       // what lies on it; null for nothing
  Json doubted = {};  // what may have been read half; the next answer decides
  Clock::time_point due = {};
  int failed = 0;         // questions in a row
  bool isListed = false;  // among the attached paths
};

// What a product's devices are asked.
struct Inquiry {
  std::uint32_t product;
  std::chrono::milliseconds pause;  // between two questions to a device
  // Asks the active device; returns how many events it had, or nothing if it did not answer.
  std::function<std::optional<int>(Watched&)> ask;
  // Tells what ends when the device goes; returns the same.
  std::function<int(Watched&)> leave;
};

// What is done between two questions, for at most that long.
using Meanwhile = std::function<void(std::chrono::milliseconds)>;
void Sleep(std::chrono::milliseconds length);

class Watch {
 public:
  Watch(const Request& request, const WatchWords& words, Events& events, Inquiry inquiry,
        Meanwhile meanwhile = Sleep);

  // Until Ctrl-C, the number of events or the time ends it.
  void Run();
  // For Meanwhile: does something with the device of that path, which is active then, and leaves it alone for
  // its pause. Throws Failure if it is not watched.
  using Deed = std::function<void(const Session& session, const Watched& watched)>;
  void With(const std::string& path, const Deed& deed);

 private:
  // Of a path with something on it that is not watched.
  struct Retry {
    Clock::time_point at;
    std::chrono::seconds pause{};  // after that
    int left = 0;                  // below 0: any number
    std::string holder{};          // who had it at the last try
  };

  void Begin();
  std::vector<DevicePlace> Search();
  std::vector<DevicePlace> Chosen(const std::vector<DevicePlace>& all);
  std::vector<DevicePlace> Held(const std::vector<DevicePlace>& all);
  std::vector<DevicePlace> Found();
  void ConnectAgain();
  void Compare(const std::vector<DevicePlace>& found, bool tell);
  void Ask(Watched& watched);
  void Welcome(const DevicePlace& place);
  void Leave(Watched& watched);
  void Look();
  void KeepLocks();
  bool CanBeHeld(const std::string& path, Retry& retry);
  [[nodiscard]] bool IsWorthConnecting(const std::vector<std::string>& attached);
  [[nodiscard]] std::chrono::milliseconds Until(Clock::time_point time) const;

  const Request& request_;
  const WatchWords& words_;
  Events& events_;
  const Inquiry inquiry_;
  const Meanwhile meanwhile_;
  DeviceLocks locks_;  // of all, if all are watched
  std::optional<Session> session_;
  std::optional<Watching> watching_;
  AttachedList attached_;
  std::vector<Watched> watched_;
  std::string chosen_;                    // the name of the one that is watched, unless all are
  std::vector<std::string> others_;       // paths of those that are not
  bool mayBeAmongOthers_ = false;         // it went, and may have been back elsewhere before that was noticed
  std::map<std::string, Retry> retries_;  // by path
  Clock::time_point look_;                // when to look for what has come
  Clock::time_point again_;               // when to search while there is nothing to watch
  std::chrono::seconds pause_{2};         // until the next such search
  Clock::duration connect_{};             // how long the last one took
};

}  // namespace tavlyn::ctl
