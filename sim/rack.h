// The rack of simulated devices behind a carrier: it owns the models, runs the commands listed in
// sim/carriers/standin_control.h and keeps the record of the traffic. It takes no lock; its carrier does.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "sim/devices/device.h"
#include "sim/devices/faults.h"
#include "sim/devices/model.h"
#include "sim/line_place.h"
#include "sim/paced_line.h"
#include "sim/transcript.h"
#include "sim/words.h"

namespace tavlyn::sim {

class Rack {
 public:
  // False: it was not done, and the reply tells why.
  bool Run(const std::string& command, std::string& reply);

  [[nodiscard]] bool IsEmpty() const { return slots_.empty(); }

  // One HID interface that a system would list. Its number stands for it until the rack is reset.
  struct Interface {
    int number;
    const HidIdentity& identity;
  };
  // Those present now, in the order of plugging.
  [[nodiscard]] std::vector<Interface> Present() const;
  [[nodiscard]] bool IsPresent(int number) const;
  // Null when there never was such an interface.
  [[nodiscard]] const HidIdentity* Identity(int number) const;

  // Reports as programs hand them over, with the report ID in byte 0. False: refused, or gone, or no report
  // of that ID and length.
  bool SetFeature(int number, std::span<const std::uint8_t> report);
  bool GetFeature(int number, std::span<std::uint8_t> report);
  // The oldest queued input report; false when there is none.
  bool TakeInput(int number, std::vector<std::uint8_t>& report);

  // One device that hangs on a line of bytes. Its number is the device's.
  struct Line {
    int number;
    LinePlace place;
    LineManner manner;
  };
  [[nodiscard]] std::vector<Line> Lines() const;
  // Null when there is no such line now.
  ByteDevice* LineOf(int number);
  // As the line's own members, with a record of the bytes.
  void SendBytes(int number, std::span<const std::uint8_t> bytes);
  std::size_t TakeBytes(int number, std::span<std::uint8_t> bytes);

 private:
  // A device as it hangs on its cable: the model, and what shows itself beside it.
  struct Slot {
    std::string word;
    std::shared_ptr<Model> model;
    std::shared_ptr<HidDevice> keyboard;  // null for most
    std::unique_ptr<FaultyLine> line;     // null on a HID cable
    LinePlace place;
    LineManner manner;
    Transcript traffic;

    [[nodiscard]] bool Present() const;
    [[nodiscard]] Faults& GetFaults() const;
  };
  struct Place {
    Slot* slot;
    HidDevice* device;
  };

  struct Verb;
  static const Verb kVerbs[];

  bool Plug(const Words& words, std::string& reply);
  bool List(const Words& words, std::string& reply);
  bool Reset(const Words& words, std::string& reply);
  bool Unplug(const Words& words, std::string& reply);
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
  // Takes a leading #NUMBER off the words and says whether that device exists.
  bool Choose(Words& words);
  [[nodiscard]] const Place* Find(int number) const;
  void Note(const Place& place, EventKind kind, int number, std::span<const std::uint8_t> report,
            bool done) const;
  // The device of a line that is there now, or null.
  [[nodiscard]] Slot* SlotOfLine(int number) const;
  // The interface's place when a feature report of this ID and length can go to it.
  [[nodiscard]] const Place* Reach(int number, std::span<const std::uint8_t> report) const;

  std::vector<std::unique_ptr<Slot>> slots_;  // device n is entry n-1
  std::vector<Place> places_;                 // interface n is entry n-1
  Slot* chosen_ = nullptr;                    // whom the running command means
  bool recording_ = true;
};

}  // namespace tavlyn::sim
