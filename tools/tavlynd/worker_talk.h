// What a worker says, checked, and what of it is made up for when it ends.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tools/tavlynd/lines.h"

namespace tavlyn::agent {

// A worker has answered no request above that number: it is busy.
inline constexpr std::size_t kMostRequests = 64;

class WorkerTalk {
 public:
  using Pass = std::function<void(const Json& said)>;

  // Passes it on unless it is about a device that has not arrived, or only says how long to wait. False if no
  // worker says that.
  bool Hear(const Json& said, const Pass& pass);
  // How long it may be silent.
  [[nodiscard]] std::chrono::seconds Patience() const { return patience_; }

  // A request that is to be answered. False if there are too many.
  bool Expect(const std::string& request);
  // The worker has ended: its cards are gone, its devices lost, its requests have failed.
  void End(const Pass& pass);

 private:
  bool Follow(const std::string& event, const Json& said);

  struct Device {
    Json place;
    Json on;  // the event of the card on it; null for none
  };

  std::map<std::string, Device> devices_;  // by path
  std::vector<std::string> requests_;
  std::chrono::seconds patience_{60};  // until it says another
};

}  // namespace tavlyn::agent
