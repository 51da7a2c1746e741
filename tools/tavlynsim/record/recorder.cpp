#include "tools/tavlynsim/record/recorder.h"

#include <cstdio>
#include <utility>

namespace tavlyn::sim {

Recorder::Recorder(std::unique_ptr<Source> recorded, Kept kept, Writer write)
    : recorded_(std::move(recorded)), kept_(kept), write_(std::move(write)) {
  write_(std::string(kRecordingStart) + "\n");
  const std::string ids = kept.ids ? "IDs as they are" : "stand-ins in place of IDs";
  write_("# " + ids + (kept.keys ? ", keys as they are\n" : ", keys covered\n"));
}

Recorder::~Recorder() {
  for (auto& [key, line] : lines_) Finish(line);
}

std::string Recorder::Time() const {
  const std::chrono::duration<double> since = std::chrono::steady_clock::now() - start_;
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", since.count());
  return text;
}

void Recorder::Write(const std::string& line) { write_(Time() + " " + line + "\n"); }

void Recorder::Write(Key key, Way way, Outcome outcome, Shown bytes) {
  Write(LineOf(NameOf(key), Exchange{way, outcome, std::move(bytes)}));
}

std::vector<Listed> Recorder::List() {
  std::vector<Listed> all = recorded_->List();
  std::set<Key> present;
  for (const Listed& one : all) {
    present.insert(one.key);
    if (present_.contains(one.key)) continue;
    const std::string name = NameOf(one.key);
    const bool isNew = masks_.try_emplace(one.key, one.identity, kept_, standIns_).second;
    Write(isNew ? LineOf(name, one.identity) : name + " came");
  }
  for (const Key key : present_) {
    if (!present.contains(key)) Write(NameOf(key) + " went");
  }
  present_ = std::move(present);
  return all;
}

// A program may keep the key of a device that is listed no more, but has it from a list.
Mask* Recorder::MaskOf(Key key) {
  const auto at = masks_.find(key);
  return at == masks_.end() ? nullptr : &at->second;
}

Outcome Recorder::SetFeature(Key key, std::span<const std::uint8_t> report) {
  const Outcome outcome = recorded_->SetFeature(key, report);
  if (Mask* mask = MaskOf(key)) Write(key, Way::kSent, outcome, mask->Sent(report));
  return outcome;
}

Outcome Recorder::GetFeature(Key key, std::span<std::uint8_t> report) {
  const Outcome outcome = recorded_->GetFeature(key, report);
  if (Mask* mask = MaskOf(key)) {
    Shown shown = mask->Received(report);
    Write(key, Way::kReceived, outcome, outcome == Outcome::kDone ? std::move(shown) : Shown{});
  }
  return outcome;
}

Outcome Recorder::TakeInput(Key key, std::vector<std::uint8_t>& report) {
  const Outcome outcome = recorded_->TakeInput(key, report);
  Mask* mask = MaskOf(key);
  if (outcome == Outcome::kDone && mask != nullptr) Write(key, Way::kInput, outcome, mask->Input(report));
  return outcome;
}

std::vector<ListedLine> Recorder::Lines() {
  std::vector<ListedLine> all = recorded_->Lines();
  if (!kept_.ids || !kept_.keys) return all;  // their bytes are not taken apart
  for (const ListedLine& one : all) {
    const std::string name = NameOf(one.place);
    if (lines_.try_emplace(one.key, Line{name, {}}).second) Write(LineOf(name, one.place));
  }
  return all;
}

Outcome Recorder::SendBytes(Key line, std::span<const std::uint8_t> bytes) {
  const Outcome outcome = recorded_->SendBytes(line, bytes);
  if (outcome == Outcome::kDone) Add(line, Way::kSent, bytes);
  return outcome;
}

Outcome Recorder::TakeBytes(Key line, std::vector<std::uint8_t>& bytes) {
  const Outcome outcome = recorded_->TakeBytes(line, bytes);
  if (outcome == Outcome::kDone) Add(line, Way::kReceived, bytes);
  return outcome;
}

// Pieces of one way are one exchange, however they came.
void Recorder::Add(Key line, Way way, std::span<const std::uint8_t> bytes) {
  const auto at = lines_.find(line);
  if (at == lines_.end()) return;
  Line& one = at->second;
  if (one.unwritten.way != way) Finish(one);
  if (one.unwritten.bytes.empty()) one.time = Time();
  one.unwritten.way = way;
  one.unwritten.bytes.insert(one.unwritten.bytes.end(), bytes.begin(), bytes.end());
}

void Recorder::Finish(Line& line) {
  if (!line.unwritten.bytes.empty()) write_(line.time + " " + LineOf(line.name, line.unwritten) + "\n");
  line.unwritten = {};
}

}  // namespace tavlyn::sim
