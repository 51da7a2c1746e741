#include "tools/variables.h"

namespace tavlyn {
namespace {

constexpr unsigned kUsers = kLibrary | kTavlynctl;

constexpr Variable kVariables[] = {
    {"TAVLYNAPI_LOGGING", kUsers, "Set to anything, it makes the library write its trace."},
    {"TAVLYNAPI_WIRE", kUsers,
     "Set to anything beside it, it makes the trace show the bytes that are sent and received, without "
     "keys."},
    {"TAVLYNAPI_PORT_DIR", kUsers | kTavlynsim,
     "The folder whose files com1 to com256 are the COM ports, in place of /dev/tavlyn and /dev/ttyS."},
    {"TAVLYNAPI_LIBUSB", kUsers,
     "The file of libusb-0.1, in place of libusb-0.1.so.4 in the system's library folders."},
    {"XDG_STATE_HOME", kUsers, "The folder below which the trace is, and what tavlynctl keeps."},
    {"XDG_CONFIG_HOME", kTavlynctl, "The folder below which layouts of cards of your own are."},
    {"XDG_RUNTIME_DIR", kTavlynctl,
     "The folder of the locks of devices; without it a folder of the user in /tmp."},
    {"HOME", kLibrary, "Its .local/state is that folder if XDG_STATE_HOME is not set."},
    {"HOME", kTavlynctl, "Its .local/state and .config are those folders if their variables are not set."},
    {"TAVLYNCTL_DEVICE", kTavlynctl, "The device, for commands without --device."},
    {"NO_COLOR", kTavlynctl, "Set to anything, it makes the output plain on a terminal too."},
    {"VISUAL", kTavlynctl, "The editor of config edit."},
    {"EDITOR", kTavlynctl, "The same if VISUAL is not set; otherwise vi, on Windows notepad."},
    {"TAVLYNSIM_SOCKET", kTavlynsim, "Set for COMMAND: where the simulated devices are reached."},
#define TAVLYN_EVENT_VALUE(placeholder, key, variable, text) \
  {variable, kTavlynctl, "Set for the command of --exec: " text "."},
#include "tools/tavlynctl/watch/event_values.inc"
    {"TAVLYN_TIME_SPEED", kTavlynsim, "Set for COMMAND by --speed N, beside LD_PRELOAD: how fast time goes."},
    {"TAVLYN_QUICK_CLOCK", kTavlynsim,
     "Set for COMMAND by --speed max, beside LD_PRELOAD: the file that is its clock."},
    {"TAVLYNSIM_CLOCK_OWNER", kTavlynsim, "tavlynsim sets it for itself, with --speed."},
    {"LD_LIBRARY_PATH", kTavlynsim,
     "Set for COMMAND: it begins with the folder of the stand-in for libhidapi-hidraw.so.0."},
};

}  // namespace

std::span<const Variable> Variables() { return kVariables; }

}  // namespace tavlyn
