// Events that the broker does not have yet, and requests that have been seen. What is committed outlives a
// power cut.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/tavlynd/database.h"

namespace tavlyn::agent {

class Spool {
 public:
  struct Bounds {
    std::int64_t milliseconds = 0;
    std::int64_t bytes = 0;
  };
  struct Event {
    std::int64_t id = 0;  // they grow in the order of the events
    std::string topic;
    std::string payload;
  };
  // Of the log; what is wrong with the file is told, and never ends the agent.
  using Tell = std::function<void(const std::string&)>;
  // Of an event with this number among those of its device.
  using Write = std::function<std::string(std::int64_t sequence)>;

  // Times are those of day, in milliseconds. A damaged file is moved aside; without a usable one events are
  // kept in memory until there is one. Throws DatabaseError if another process has the file.
  Spool(std::string path, const Bounds& bounds, Tell tell, std::int64_t now);

  void SetBounds(const Bounds& bounds) { bounds_ = bounds; }

  // A device that is there, with or without events, and all that ever were.
  void Meet(const std::string& device);
  [[nodiscard]] std::vector<std::string> Devices() const;

  // Kept for good with the next Commit.
  void Add(const std::string& device, const std::string& topic, std::int64_t now, const Write& write);
  void Commit() { Commit(false); }
  // The ID of the latest one.
  [[nodiscard]] std::int64_t Last() const { return lastId_; }
  // The oldest ones after that ID.
  std::vector<Event> After(std::int64_t id, std::int64_t most);
  // The broker has it. If a crash comes before the next Commit or Tend, the next agent sends it again.
  void Done(std::int64_t id) { done_.push_back(id); }
  // Once a second or so: drops what is too old, and returns from memory to the file.
  void Tend(std::int64_t now);

  // None for a request that is new; it is remembered for a day. Otherwise the reply to it, empty as long as
  // there is none.
  std::optional<std::string> Remembered(const std::string& device, const std::string& request,
                                        std::int64_t now);
  void Answered(const std::string& device, const std::string& request, const std::string& reply);
  // It was not carried out, and is new when it comes again.
  void Forget(const std::string& device, const std::string& request);

  [[nodiscard]] std::int64_t Waiting() const { return waiting_; }
  // Since the file was made.
  [[nodiscard]] std::int64_t Dropped() const { return dropped_; }
  [[nodiscard]] bool IsInMemory() const { return inMemory_; }

 private:
  struct Fresh {
    std::string device;
    std::int64_t sequence;
    std::int64_t time;
    std::string topic;
    std::string payload;
  };

  void Open(const std::string& path);
  void OpenFile(std::int64_t now);
  void GoIntoMemory();
  void ReturnToFile();
  void Begin();
  void Insert(const Fresh& event);
  void Undo();
  void Commit(bool all);
  std::int64_t Delete(const std::string& which, std::int64_t bound);
  void Shrink();
  void Drop(const char* which, std::int64_t bound);
  void Count();
  void Recover(const DatabaseError& error);
  void Try(const std::function<void()>& step);

  std::string path_;
  Bounds bounds_;
  Tell tell_;
  std::optional<Database> database_;
  bool inMemory_ = false;
  bool begun_ = false;
  std::int64_t now_ = 0;
  std::int64_t tried_ = 0;  // when the file was tried again
  std::int64_t base_ = 0;   // after which the numbers of a device that is new begin
  std::int64_t lastId_ = 0;
  std::int64_t bytes_ = 0;
  std::int64_t waiting_ = 0;
  std::int64_t dropped_ = 0;
  std::map<std::string, std::int64_t> sequences_;
  std::vector<Fresh> fresh_;  // not yet committed
  std::vector<std::int64_t> done_;
};

}  // namespace tavlyn::agent
