// Keeps what goes between a program and its devices.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "sim/source.h"
#include "tools/tavlynsim/record/masks.h"
#include "tools/tavlynsim/record/recording.h"

namespace tavlyn::sim {

class Recorder final : public Source {
 public:
  // Takes a line with its end, and loses none.
  using Writer = std::function<void(const std::string& line)>;

  Recorder(std::unique_ptr<Source> recorded, Kept kept, Writer write);
  ~Recorder() override;

  std::vector<Listed> List() override;
  Outcome SetFeature(Key key, std::span<const std::uint8_t> report) override;
  Outcome GetFeature(Key key, std::span<std::uint8_t> report) override;
  Outcome TakeInput(Key key, std::vector<std::uint8_t>& report) override;
  std::vector<ListedLine> Lines() override;
  Outcome SendBytes(Key line, std::span<const std::uint8_t> bytes) override;
  Outcome TakeBytes(Key line, std::vector<std::uint8_t>& bytes) override;
  Outcome Silence(Key line) override { return recorded_->Silence(line); }
  Outcome TakeCut(Key line) override { return recorded_->TakeCut(line); }
  bool Run(const std::string& command, std::string& reply) override { return recorded_->Run(command, reply); }

 private:
  struct Line {
    std::string name;
    std::string time;         // of the first byte
    Exchange unwritten = {};  // bytes arrive in pieces
  };

  [[nodiscard]] std::string Time() const;
  void Write(const std::string& line);
  void Write(Key key, Way way, Outcome outcome, Shown bytes);
  Mask* MaskOf(Key key);
  void Add(Key line, Way way, std::span<const std::uint8_t> bytes);
  void Finish(Line& line);

  std::unique_ptr<Source> recorded_;
  Kept kept_;
  Writer write_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  StandIns standIns_;
  std::map<Key, Mask> masks_;  // of every interface that was ever there
  std::set<Key> present_;
  std::map<Key, Line> lines_;
};

}  // namespace tavlyn::sim
