// The rack of simulated devices behind a carrier: it owns the models, runs the commands listed in
// sim/carriers/standin_control.h and keeps the record of the traffic. It takes no lock; its carrier does.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "sim/devices/device.h"
#include "sim/devices/faults.h"
#include "sim/devices/model.h"
#include "sim/kept_state.h"
#include "sim/line_place.h"
#include "sim/paced_line.h"
#include "sim/transcript.h"
#include "sim/words.h"

namespace tavlyn::sim {

class Rack {
 public:
  // False if it was not done; the reply then says why.
  bool Run(const std::string& command, std::string& reply);

  // Called after a device has taken a report or bytes, before its answer is fetched.
  std::vector<std::function<void(Model&, std::span<const std::uint8_t>)>> onTaken;
  // Every device plugged in so far, for whoever keeps its memory.
  [[nodiscard]] std::vector<KeptDevice> Kept() const;

  [[nodiscard]] bool IsEmpty() const { return slots_.empty(); }

  // One HID interface that a system would list. Its number is valid until the rack is reset.
  struct Interface {
    int number;
    const HidIdentity& identity;
  };
  // Those present now, in the order of plugging.
  [[nodiscard]] std::vector<Interface> Present() const;
  [[nodiscard]] bool IsPresent(int number) const;
  // The number of the interface's device, from 0; none if there never was one.
  [[nodiscard]] std::optional<std::size_t> DeviceOf(int number) const;
  // Null if there never was such an interface.
  [[nodiscard]] const HidIdentity* Identity(int number) const;

  // Reports as programs pass them, with the report ID in byte 0. False if the device refused or is gone, or
  // has no report of that ID and length.
  bool SetFeature(int number, std::span<const std::uint8_t> report);
  bool GetFeature(int number, std::span<std::uint8_t> report);
  // Takes the oldest queued input report; false if there is none.
  bool TakeInput(int number, std::vector<std::uint8_t>& report);

  // One device on a byte stream. Its number is the device's.
  struct Line {
    int number;
    LinePlace place;
    LineManner manner;
  };
  [[nodiscard]] std::vector<Line> Lines() const;
  // Null if there is no such line now.
  ByteDevice* LineOf(int number);
  // Like the line's own members, but these record the bytes.
  void SendBytes(int number, std::span<const std::uint8_t> bytes);
  std::size_t TakeBytes(int number, std::span<std::uint8_t> bytes);

 private:
  // A plugged-in device: the model, and what else appears with it.
  struct Slot {
    std::string word;
    std::shared_ptr<Model> model;
    std::shared_ptr<HidDevice> keyboard;  // null for most
    std::unique_ptr<FaultyLine> line;     // null for a HID device
    LinePlace place;
    LineManner manner;
    Transcript traffic;

    [[nodiscard]] bool Present() const;
    [[nodiscard]] Faults& GetFaults() const;
  };
  struct Place {
    Slot* slot;
    HidDevice* device;
    bool left = false;  // the device was plugged in again, in another place
  };

  struct Verb;
  static const Verb kVerbs[];

  bool Plug(const Words& words, std::string& reply);
  bool List(const Words& words, std::string& reply);
  bool Reset(const Words& words, std::string& reply);
  bool Unplug(const Words& words, std::string& reply);
  bool Replug(const Words& words, std::string& reply);
  template <Fault kFault>
  bool ArmFault(const Words& words, std::string& reply);
  template <std::chrono::milliseconds LineManner::*kPause>
  bool SetManner(const Words& words, std::string& reply);
  template <void (FaultyLine::*kDisturb)(std::size_t bytes)>
  bool DisturbLine(const Words& words, std::string& reply);
  bool Heal(const Words& words, std::string& reply);
  bool CountExchanges(const Words& words, std::string& reply);
  bool ShowTraffic(const Words& words, std::string& reply);
  bool ClearTraffic(const Words& words, std::string& reply);
  bool Record(const Words& words, std::string& reply);
  bool Help(const Words& words, std::string& reply);

  [[nodiscard]] bool IsTaken(const LinePlace& place) const;
  [[nodiscard]] bool IsFull() const;
  // Where programs find the device, unless it is on a line.
  void GivePlaces(Slot& slot);
  // Removes a leading #NUMBER from the words; false if that device does not exist.
  bool Choose(Words& words);
  [[nodiscard]] const Place* Find(int number) const;
  void Note(const Place& place, EventKind kind, int number, std::span<const std::uint8_t> report,
            bool done) const;
  // The device on that line, if it is there now; else null.
  [[nodiscard]] Slot* SlotOfLine(int number) const;
  // The interface's place if it takes a feature report of this ID and length; else null.
  [[nodiscard]] const Place* Reach(int number, std::span<const std::uint8_t> report) const;

  std::vector<std::unique_ptr<Slot>> slots_;  // device n is entry n-1
  std::vector<Place> places_;                 // interface n is entry n-1
  Slot* chosen_ = nullptr;                    // the device that the running command is for
  bool recording_ = true;
};

}  // namespace tavlyn::sim
