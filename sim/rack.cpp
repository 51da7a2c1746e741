#include "sim/rack.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <sstream>
#include <utility>

#include "sim/device_word.h"
#include "sim/devices/reader.h"
#include "sim/model_orders.h"
#include "sim/words.h"

namespace tavlyn::sim {
namespace {

constexpr unsigned kLongestPause = 60'000;
// Numbers are never used again, and two for each have to fit into a key.
constexpr std::size_t kMostDevices = 10'000;
constexpr std::size_t kMostNoise = 16U << 20U;

// Its VID:PID, or the place of its line.
std::string Whereabouts(const std::string& word, const HidIdentity& identity, bool onLine) {
  const std::string place = word.substr(word.find('@') + 1);
  if (onLine) return place.substr(0, place.find(','));
  char pair[16];
  std::snprintf(pair, sizeof pair, "%04X:%04X", identity.vid, identity.pid);
  return pair;
}

}  // namespace

template <Fault kFault>
bool Rack::ArmFault(const Words& words, std::string& reply) {
  const auto count = ParseNumber<int>(words[1]);
  if (!count || *count < 1) return Fail(reply, words[1] + ": exchanges count from 1");
  Faults& faults = chosen_->GetFaults();
  faults.ArmAt(kFault, faults.Exchanges() + *count);
  return true;
}

template <std::chrono::milliseconds LineManner::*kPause>
bool Rack::SetManner(const Words& words, std::string& reply) {
  const auto ms = ParseNumber<unsigned>(words[1]);
  if (!ms || *ms > kLongestPause) return Fail(reply, words[1] + ": 0 to 60000 milliseconds");
  if (chosen_->line == nullptr) return Fail(reply, words[0] + ": the device is on no line");
  chosen_->manner.*kPause = std::chrono::milliseconds(*ms);
  return true;
}

template <void (FaultyLine::*kDisturb)(std::size_t bytes)>
bool Rack::DisturbLine(const Words& words, std::string& reply) {
  const auto count = ParseNumber<std::size_t>(words[1]);
  if (!count || *count > kMostNoise) return Fail(reply, words[1] + ": a count of bytes");
  if (chosen_->line == nullptr) return Fail(reply, words[0] + ": the device is on no line");
  (chosen_->line.get()->*kDisturb)(*count);
  return true;
}

struct Rack::Verb {
  CommandText text;
  std::size_t words;  // including the name
  bool toDevice;      // is for one device, which has to be there
  bool (Rack::*run)(const Words&, std::string&);
};

const Rack::Verb Rack::kVerbs[] = {
    {{"plug", "DEVICE", "a new device; the reply is its number, from 1"}, 2, false, &Rack::Plug},
    {{"list", "", "the devices that are there"}, 1, false, &Rack::List},
    {{"reset", "", "takes every device away and counts from 1 again"}, 1, false, &Rack::Reset},
    {{"unplug", "", "takes the device away"}, 1, true, &Rack::Unplug},
    {{"replug", "", "the same device is there again, with what it keeps without power"},
     1,
     true,
     &Rack::Replug},
    {{"refuse", "N", "the Nth exchange from now on is refused; on a line the Nth byte is lost"},
     2,
     true,
     &Rack::ArmFault<Fault::kRefuse>},
    {{"garble", "N", "its bits arrive turned over"}, 2, true, &Rack::ArmFault<Fault::kGarble>},
    {{"vanish", "N", "the device is gone from there on"}, 2, true, &Rack::ArmFault<Fault::kVanish>},
    {{"drop", "N", "a command is taken but not run"}, 2, true, &Rack::ArmFault<Fault::kDrop>},
    {{"late", "N", "a fetch brings what the fetch before brought"}, 2, true, &Rack::ArmFault<Fault::kDelay>},
    {{"delay", "MS", "on a line: so long before each answer"}, 2, true, &Rack::SetManner<&LineManner::delay>},
    {{"slow", "MS", "on a line: answers come byte by byte, with so long between them"},
     2,
     true,
     &Rack::SetManner<&LineManner::betweenBytes>},
    {{"cut", "N", "on a line: cut after the next N bytes of the device"},
     2,
     true,
     &Rack::DisturbLine<&FaultyLine::CutAfter>},
    {{"flood", "N", "on a line: N bytes of noise"}, 2, true, &Rack::DisturbLine<&FaultyLine::Flood>},
    {{"heal", "", "ends all of these, and counts exchanges from 0 again"}, 1, true, &Rack::Heal},
    {{"exchanges", "", "how many there were"}, 1, true, &Rack::CountExchanges},
    {{"traffic", "", "what went over, while it is recorded"}, 1, true, &Rack::ShowTraffic},
    {{"clear", "", "forgets the traffic"}, 1, true, &Rack::ClearTraffic},
    {{"record", "on|off", "whether the traffic of every device is kept"}, 2, false, &Rack::Record},
    {{"help", "", "lists these commands; #2 before one means device 2, else it is the last"},
     1,
     false,
     &Rack::Help},
};

bool Rack::Run(const std::string& command, std::string& reply) {
  reply.clear();
  std::istringstream line(command);
  Words words;
  for (std::string word; line >> word;) words.push_back(word);
  const bool chosen = Choose(words);
  if (words.empty()) return Fail(reply, "no command");
  for (const Verb& verb : kVerbs) {
    if (words[0] != verb.text.name) continue;
    if (words.size() != verb.words) return Fail(reply, words[0] + ": wrong number of words");
    if (verb.toDevice && !chosen) return Fail(reply, words[0] + ": no such device");
    return (this->*verb.run)(words, reply);
  }
  const auto orders = ModelOrders();
  const auto order = std::ranges::find_if(orders, [&](const auto& one) { return words[0] == one.text.name; });
  if (order == orders.end()) return Fail(reply, words[0] + ": no such command; help lists them");
  if (words.size() < order->words || (words.size() > order->words && !order->andMore)) {
    return Fail(reply, words[0] + ": wrong number of words");
  }
  if (!chosen) return Fail(reply, words[0] + ": no such device");
  if (!order->isFor(*chosen_->model)) return Fail(reply, words[0] + ": not for a " + chosen_->word);
  return order->run(*chosen_->model, words, reply);
}

bool Rack::Choose(Words& words) {
  std::size_t number = slots_.size();
  if (!words.empty() && words[0].starts_with('#')) {
    number = ParseNumber<std::size_t>(words[0].substr(1)).value_or(0);
    words.erase(words.begin());
  }
  const bool there = number >= 1 && number <= slots_.size();
  chosen_ = there ? slots_[number - 1].get() : nullptr;
  return there;
}

bool Rack::IsTaken(const LinePlace& place) const {
  return std::ranges::any_of(slots_, [&](const auto& slot) {
    return slot->line != nullptr && slot->Present() && Collide(slot->place, place);
  });
}

bool Rack::Plug(const Words& words, std::string& reply) {
  const auto word = ParseDevice(words[1], reply);
  if (!word) return false;
  if (IsFull()) return Fail(reply, words[1] + ": the rack is full; reset empties it");
  if (word->line && IsTaken(*word->line)) return Fail(reply, words[1] + ": there is one already");
  auto slot = std::make_unique<Slot>();
  slot->word = words[1];
  slot->model = MakeModel(*word, slots_.size() + 1);
  slot->model->Look();
  if (IsKelda(*word)) slot->keyboard = std::make_shared<InertInterface>(kKeldaVid, kKeldaPid);
  if (word->line) {
    slot->place = *word->line;
    slot->line = MakeLine(slot->place, slot->model);
  }
  GivePlaces(*slot);
  slots_.push_back(std::move(slot));
  reply = std::to_string(slots_.size());
  return true;
}

bool Rack::IsFull() const { return slots_.size() >= kMostDevices || places_.size() + 2 > 2 * kMostDevices; }

void Rack::GivePlaces(Slot& slot) {
  if (slot.keyboard != nullptr) places_.push_back({&slot, slot.keyboard.get()});
  if (slot.line == nullptr) places_.push_back({&slot, slot.model.get()});
}

bool Rack::List(const Words&, std::string& reply) {
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    const Slot& slot = *slots_[i];
    if (!slot.Present()) continue;
    reply += std::to_string(i + 1) + " " +
             Whereabouts(slot.word, slot.model->Identity(), slot.line != nullptr) + " " + slot.word + "\n";
  }
  return true;
}

bool Rack::Reset(const Words&, std::string&) {
  chosen_ = nullptr;
  places_.clear();
  slots_.clear();
  return true;
}

bool Rack::Unplug(const Words&, std::string&) {
  chosen_->model->Unplug();
  return true;
}

// In a new place: what was opened before does not reach it any more.
bool Rack::Replug(const Words&, std::string& reply) {
  if (chosen_->Present()) return Fail(reply, "replug: the device is there");
  if (chosen_->line != nullptr && IsTaken(chosen_->place)) return Fail(reply, "replug: its place is taken");
  if (IsFull()) return Fail(reply, "replug: the rack is full; reset empties it");
  for (Place& place : places_) place.left = place.left || place.slot == chosen_;
  GivePlaces(*chosen_);
  chosen_->GetFaults().EndVanishing();
  chosen_->model->PlugIn();
  chosen_->model->PowerCycle();
  chosen_->model->Look();
  if (chosen_->line != nullptr) chosen_->line->Empty();
  return true;
}

bool Rack::Heal(const Words&, std::string&) {
  chosen_->GetFaults().Restart();
  chosen_->manner = {};
  return true;
}

bool Rack::CountExchanges(const Words&, std::string& reply) {
  reply = std::to_string(chosen_->GetFaults().Exchanges());
  return true;
}

bool Rack::ShowTraffic(const Words&, std::string& reply) {
  for (const std::string& line : chosen_->traffic.Lines()) reply += line + "\n";
  return true;
}

bool Rack::ClearTraffic(const Words&, std::string&) {
  chosen_->traffic.Clear();
  return true;
}

bool Rack::Record(const Words& words, std::string& reply) {
  if (words[1] != "on" && words[1] != "off") return Fail(reply, words[1] + ": on or off");
  recording_ = words[1] == "on";
  return true;
}

bool Rack::Help(const Words&, std::string& reply) {
  constexpr std::size_t kDeedAt = 22;
  const auto add = [&](const CommandText& text) {
    std::string line = std::string(text.name) + " " + text.words;
    line.resize(std::max(kDeedAt, line.size() + 1), ' ');
    reply += line + text.deed + "\n";
  };
  for (const ModelOrder& order : ModelOrders()) add(order.text);
  for (const Verb& verb : kVerbs) add(verb.text);
  return true;
}

std::vector<KeptDevice> Rack::Kept() const {
  std::vector<KeptDevice> kept;
  for (const auto& slot : slots_) {
    kept.push_back(
        {slot->word.substr(0, slot->word.find_first_of("@,")), slot->model->identity.serial, slot->model});
  }
  return kept;
}

std::vector<Rack::Interface> Rack::Present() const {
  std::vector<Interface> present;
  for (std::size_t i = 0; i < places_.size(); ++i) {
    if (IsPresent(static_cast<int>(i + 1))) {
      present.push_back({static_cast<int>(i + 1), places_[i].device->Identity()});
    }
  }
  return present;
}

const Rack::Place* Rack::Find(int number) const {
  if (number < 1 || static_cast<std::size_t>(number) > places_.size()) return nullptr;
  return &places_[static_cast<std::size_t>(number) - 1];
}

bool Rack::IsPresent(int number) const {
  const Place* place = Find(number);
  return place != nullptr && !place->left && place->slot->Present();
}

std::optional<std::size_t> Rack::DeviceOf(int number) const {
  const Place* place = Find(number);
  if (place == nullptr) return std::nullopt;
  const auto slot = std::ranges::find(slots_, place->slot, [](const auto& one) { return one.get(); });
  return static_cast<std::size_t>(slot - slots_.begin());
}

const HidIdentity* Rack::Identity(int number) const {
  const Place* place = Find(number);
  return place == nullptr ? nullptr : &place->device->Identity();
}

const Rack::Place* Rack::Reach(int number, std::span<const std::uint8_t> report) const {
  if (!IsPresent(number)) return nullptr;
  const Place* place = Find(number);
  const HidIdentity& identity = place->device->Identity();
  const bool fits = report.size() > identity.featureBytes && identity.Takes(report.size() - 1) &&
                    report[0] == identity.reportId;
  return fits ? place : nullptr;
}

void Rack::Note(const Place& place, EventKind kind, int number, std::span<const std::uint8_t> report,
                bool done) const {
  if (!recording_) return;
  Event event = ReportEvent(kind, static_cast<std::uint64_t>(number), report);
  event.ok = done;
  place.slot->traffic.Add(std::move(event));
}

bool Rack::SetFeature(int number, std::span<const std::uint8_t> report) {
  const Place* place = Reach(number, report);
  if (place == nullptr) return false;
  const bool done = place->device->SetFeature(report.subspan(1));
  place->slot->model->Look();
  for (const auto& tell : onTaken) tell(*place->slot->model, report.subspan(1));
  Note(*place, EventKind::kSet, number, report, done);
  return done;
}

bool Rack::GetFeature(int number, std::span<std::uint8_t> report) {
  const Place* place = Reach(number, report);
  if (place == nullptr) return false;
  const bool done = place->device->GetFeature(report.subspan(1));
  Note(*place, EventKind::kGet, number, done ? report : report.first(1), done);
  return done;
}

bool Rack::TakeInput(int number, std::vector<std::uint8_t>& report) {
  const Place* place = Find(number);
  return IsPresent(number) && place->device->TakeInput(report);
}

Faults& Rack::Slot::GetFaults() const {
  if (line != nullptr) return line->faults;
  return model->faults;
}

bool Rack::Slot::Present() const { return model->Present() && (line == nullptr || !line->faults.Vanished()); }

std::vector<Rack::Line> Rack::Lines() const {
  std::vector<Line> lines;
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    const Slot& slot = *slots_[i];
    if (slot.line != nullptr && slot.Present())
      lines.push_back({static_cast<int>(i + 1), slot.place, slot.manner});
  }
  return lines;
}

Rack::Slot* Rack::SlotOfLine(int number) const {
  if (number < 1 || static_cast<std::size_t>(number) > slots_.size()) return nullptr;
  Slot* slot = slots_[static_cast<std::size_t>(number) - 1].get();
  return slot->line != nullptr && slot->Present() ? slot : nullptr;
}

ByteDevice* Rack::LineOf(int number) {
  const Slot* slot = SlotOfLine(number);
  return slot != nullptr ? slot->line.get() : nullptr;
}

void Rack::SendBytes(int number, std::span<const std::uint8_t> bytes) {
  Slot* slot = SlotOfLine(number);
  if (slot == nullptr) return;
  if (recording_) slot->traffic.Add(BytesEvent(EventKind::kWrite, bytes));
  slot->line->Receive(bytes);
  slot->model->Look();
  for (const auto& tell : onTaken) tell(*slot->model, bytes);
}

std::size_t Rack::TakeBytes(int number, std::span<std::uint8_t> bytes) {
  Slot* slot = SlotOfLine(number);
  const std::size_t count = slot != nullptr ? slot->line->Take(bytes) : 0;
  if (recording_ && count > 0) slot->traffic.Add(BytesEvent(EventKind::kRead, bytes.first(count)));
  return count;
}

}  // namespace tavlyn::sim
