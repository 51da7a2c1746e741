// A serial port of this machine with a device model at its other end: a pseudo-terminal under a chosen name,
// such as com3 in the folder that TAVLYNAPI_PORT_DIR names.
#pragma once

#include <optional>
#include <string>

#include "sim/carriers/served.h"

namespace tavlyn::sim {

// Programs may open and close the port as often as they like. When the device cuts the line, those that have
// it open see it gone, and a new port takes its place under the same name.
class PseudoTerminal final : public Served {
 public:
  // link: the symbolic link to make; its folder must exist, and nothing of that name except what an earlier
  // carrier left. Plugs the port in; IsPlugged says whether that worked.
  PseudoTerminal(ByteDevice& device, std::string link);
  ~PseudoTerminal() override { Unplug(); }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  // False on failure, with errno; EEXIST if another file has the link's name.
  bool Plug();
  // Removes the name; programs that have the port open lose it too.
  void Unplug();
  [[nodiscard]] bool IsPlugged() const { return master_ >= 0; }

  LineManner& Manner() override { return line_.manner; }

  void AddTo(std::vector<pollfd>& polled) const override;
  [[nodiscard]] std::optional<Clock::time_point> NextDue() const override;
  void Serve() override;

 private:
  [[nodiscard]] bool MakeLink() const;
  // False while no program has the port open.
  bool TakeBytes();
  void GiveBytes();

  PacedLine line_;
  std::string link_;
  std::string port_;  // where the link leads
  int master_ = -1;
  bool hungUp_ = false;  // a program had it open and none has now
  bool full_ = false;    // the port does not yet accept bytes that are due
};

}  // namespace tavlyn::sim
