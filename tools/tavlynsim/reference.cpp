#include "tools/reference.h"

namespace tavlyn::sim {
namespace {

constexpr ExitStatus kStatuses[] = {
    {"0", "Done; serve ends so after a signal, too."},
    {"0 to 255", "run: that of COMMAND, or 128 plus the number of the signal that ended it."},
    {"1", "Wrong command line or scenario, or a typed command that failed."},
    {"123",
     "What the scenario expects was not met, though COMMAND ended with 0; stop: so did serve; wait: "
     "something was not seen in "
     "time."},
    {"125", "The devices cannot be simulated, or no tavlynsim serve is there."},
    {"126", "COMMAND cannot be run."},
    {"127", "There is no such COMMAND."},
};

constexpr Example kExamples[] = {
    {"run", "tavlynsim run --device plus:3 --card 01020303:26 -- tavlynctl watch --count 2",
     "A card comes and goes on a plus reader."},
    {"run", "tavlynsim run --device sonar --do 'walk 20:40:5000' -- tavlynctl range --watch --count 5",
     "Somebody walks away from a sonar sensor."},
    {"run", "tavlynsim run --serial COM3 --card 01020303:26 -- tavlynctl --com 3 read",
     "A reader on a serial port."},
    {"run", "tavlynsim run --record desk.rec -- tavlynctl info",
     "A recording; --device replay:desk.rec plays it."},
    {"serve", "eval \"$(tavlynsim serve --background --card 0102:13)\"; tavlynctl read; tavlynsim stop",
     "Devices for whatever this shell runs."},
    {"do",
     "eval \"$(tavlynsim serve --background)\"; tavlynsim do 'card 0102:13'; tavlynctl read; tavlynsim stop",
     "A card is laid down."},
    {"wait",
     "tavlynsim serve --socket there >printed & tavlynsim wait --socket there; eval \"$(tavlynsim env "
     "--socket "
     "there)\"; tavlynctl list; tavlynsim stop; rm printed",
     "Started in one place, used in another."},
    {"wait",
     "eval \"$(tavlynsim serve --background)\"; tavlynctl relay on; tavlynsim wait --seen 'relay on'; "
     "tavlynsim "
     "stop",
     "What a program did with the reader."},
    {"devices", "tavlynsim devices", "What can be simulated."},
};

}  // namespace

std::span<const ExitStatus> ExitStatuses() { return kStatuses; }
std::span<const Example> Examples() { return kExamples; }

}  // namespace tavlyn::sim
