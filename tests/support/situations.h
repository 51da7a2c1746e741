// The situations in which every export is called: no device, and one of each kind on each link.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "api.h"
#include "core/front/load.h"
#include "core/state.h"
#include "sim/devices/magstripe.h"
#include "sim/devices/sonar.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {

struct Situation {
  const char* name;
  void (*prepare)(class InSituation&);
};

class InSituation : public SerialBench {
 public:
  void ConnectTo(std::shared_ptr<sim::Reader> model) {
    model->PutCard({1, 2, 3, 4});
    model->QueueInput({1, 5});
    Connected(std::move(model));
  }
  void ConnectOther(std::shared_ptr<sim::HidDevice> model, std::uint32_t kind) {
    Plug(std::move(model));
    SetDevTypeSrch(0);
    SetConnectProduct(kind);
    EXPECT_EQ(USBConnect(nullptr), 1U);
    EXPECT_EQ(GetProduct(), kind);
    LetTimePass();
  }
  void ConnectSerially(std::shared_ptr<sim::Reader> model, bool ascii) {
    AddReader(std::move(model));
    ReadCfg();
    shared.reader.AsciiProtocol = ascii ? 1 : 0;
  }

 protected:
  // As in a process that has just started, on a system of its own.
  void Begin(const Situation& situation) {
    Unload();
    host.Reset();
    Load();
    situation.prepare(*this);
  }
};

inline constexpr Situation kSituations[] = {
    {"NoDevice", [](InSituation&) {}},
    {"PlainReader", [](InSituation& test) { test.ConnectTo(sim::Reader::Plain()); }},
    {"PlusReader", [](InSituation& test) { test.ConnectTo(sim::Reader::Plus(11)); }},
    {"NumberedReports", [](InSituation& test) { test.ConnectTo(sim::Reader::Kelda()); }},
    {"SerialReader", [](InSituation& test) { test.ConnectSerially(sim::Reader::Plain(), false); }},
    {"AsciiReader", [](InSituation& test) { test.ConnectSerially(sim::Reader::Plain(), true); }},
    {"Magstripe",
     [](InSituation& test) { test.ConnectOther(std::make_shared<sim::Magstripe>(), kMagstripe); }},
    {"Sonar", [](InSituation& test) { test.ConnectOther(std::make_shared<sim::Sonar>(), kSonar); }},
};

}  // namespace tavlyn::test
