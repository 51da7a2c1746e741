// Devices that answer as the devices of a recording did.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/source.h"
#include "tools/tavlynsim/record/recording.h"

namespace tavlyn::sim {

// Where the replay of one link is. By request, each request is looked for from there on, then before;
// strictly, it has to be the next one.
class Playing {
 public:
  // If the recording does not say what the reports of the device are like, they do.
  Playing(RecordedLink link, bool strict);

  // Plays the recorded request on; null, with the reason, if there is none.
  const Exchange* Send(std::span<const std::uint8_t> request, std::string& problem);
  // The next reply to it; null if there are no more.
  const Exchange* Receive();
  // The next input report once what came before it has been played; else null.
  const Exchange* Input();
  // True if more bytes may make this a recorded request.
  [[nodiscard]] bool IsBegun(std::span<const std::uint8_t> request) const;
  // The same of the request that comes next.
  [[nodiscard]] bool IsNextBegun(std::span<const std::uint8_t> request) const;

  [[nodiscard]] const RecordedLink& Link() const { return link_; }

 private:
  [[nodiscard]] const Exchange* NextRequest() const;

  RecordedLink link_;
  bool strict_;
  std::size_t at_ = 0;     // after what was played last
  std::size_t input_ = 0;  // after the last input report
};

class Replay final : public Source {
 public:
  // Requests that the recording cannot answer are told, each one once.
  Replay(Recording recording, bool strict, std::function<void(const std::string&)> tell);

  std::vector<Listed> List() override;
  Outcome SetFeature(Key key, std::span<const std::uint8_t> report) override;
  Outcome GetFeature(Key key, std::span<std::uint8_t> report) override;
  Outcome TakeInput(Key key, std::vector<std::uint8_t>& report) override;
  std::vector<ListedLine> Lines() override;
  Outcome SendBytes(Key key, std::span<const std::uint8_t> bytes) override;
  Outcome TakeBytes(Key key, std::vector<std::uint8_t>& bytes) override;
  Outcome Silence(Key key) override;
  Outcome TakeCut(Key) override { return Outcome::kNothing; }
  bool Run(const std::string& command, std::string& reply) override;

 private:
  struct PlayedLine {
    Playing playing;
    std::vector<std::uint8_t> asked = {};
    std::vector<std::uint8_t> answer = {};
  };

  Playing* Find(Key key);
  PlayedLine* FindLine(Key key);
  void Tell(const std::string& problem);

  std::function<void(const std::string&)> tell_;
  std::vector<std::string> told_;
  std::map<Key, Playing> devices_;
  std::vector<PlayedLine> lines_;  // line n is entry n-1
};

}  // namespace tavlyn::sim
