// The areas of the program; each adds its commands. Headings (commands.cpp) puts them together.
#pragma once

#include <array>
#include <span>

namespace tavlyn::ctl {

class Program;

// What people want to do: a heading of --help, and a manual page, tavlynctl-PAGE(1).
struct Heading {
  const char* page;
  const char* title;
  std::array<void (*)(Program&), 3> areas;
};
std::span<const Heading> Headings();

void AddDevices(Program& program);        // list, info
void AddTexts(Program& program);          // text
void AddReads(Program& program);          // read, and calls the next
void AddWatch(Program& program);          // watch
void AddCard(Program& program);           // card
void AddConfig(Program& program);         // config get, set, reset and defaults, and calls the next
void AddConfigShow(Program& program);     // config show
void AddConfigExplain(Program& program);  // config explain
void AddConfigFiles(Program& program);    // config save, diff, and calls the next
void AddConfigLoad(Program& program);     // config load
void AddConfigCopy(Program& program);     // config copy
void AddConfigEdit(Program& program);     // config edit
void AddConfigHistory(Program& program);  // config history and undo
void AddCheck(Program& program);          // check
void AddOutputs(Program& program);        // beep, led, relay, volume
void AddCardTypes(Program& program);      // cards
void AddExtensions(Program& program);     // analyzer, module, transparent
void AddBle(Program& program);            // ble
void AddQueue(Program& program);          // queue
void AddRaw(Program& program);            // raw
void AddSecure(Program& program);         // keys, secure
void AddSwipes(Program& program);         // track, swipe
void AddMagFields(Program& program);      // magfield
void AddRange(Program& program);          // range
void AddSerial(Program& program);         // serial
void AddFind(Program& program);           // find
void AddDoctor(Program& program);         // doctor
void AddError(Program& program);          // error
void AddRecord(Program& program);         // record
void AddFleet(Program& program);          // fleet list, watch and beep, and calls the next
void AddFleetConfig(Program& program);    // fleet config load

}  // namespace tavlyn::ctl
