#include "tools/reference.h"

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {
namespace {

// In the order of enum ExitCode.
constexpr ExitStatus kStatuses[] = {
    {"0", "Done."},
    {"1",
     "Wrong command line, a value out of range, or something that the device does not have: a configuration, "
     "card type, defaults, module, mode, radio or analyzer, or a command for another product; or several "
     "devices and none chosen; or --yes is missing where nobody can be asked, or the answer was no."},
    {"2",
     "No device is plugged in or answers at that port or address, there is no such port, no device of that "
     "name, or no adapter answers."},
    {"3",
     "A device is plugged in, or a port is there, but this user may not open it: the message names the node "
     "and its mode; or another program holds the port, the adapter or the bulk device, or another tavlynctl "
     "the device: the message names the program if the system reveals it."},
    {"4",
     "The device failed: its configuration could not be read or written, it stopped answering, or it does "
     "not hold what was written."},
    {"5",
     "No card came in time, no ID is queued, the last swipe had nothing on that track, or a number is not in "
     "the card."},
    {"6",
     "A file or standard output cannot be read or written; a file is not a configuration file, has no "
     "configuration, is cut short, or was changed since it was written; with --strict, part of a file would "
     "be ignored."},
    {"7", "config diff --exit-code: there are differences."},
};
static_assert(std::size(kStatuses) == kDiffers + 1);

constexpr const char* kMagstripe = "--device magstripe --do 'swipe %B12^DOE/JOHN^?;77=1?'";
constexpr const char* kAdapterDevices = "--ethernet 10.0.0.5:10001 --card 01020303:26";
constexpr const char* kSaved = "tavlynctl config save desk.hwg --secure";

// In the order of --help. Addresses 10.0.0 stand for those of a real network.
constexpr Example kExamples[] = {
    {"list", "tavlynctl list", "What is attached."},
    {"list", "tavlynctl --com 1-8 list", "Every reader on eight serial ports.", "--serial COM3"},
    {"info", "tavlynctl info --device 1 --json", "All about the second reader.",
     "--device reader --device plus:2"},
    {"text", "tavlynctl text", "Part number, serial number, firmware."},
    {"find", "tavlynctl find 10.0.0.4-6", "Ethernet adapters among three addresses.", kAdapterDevices},
    {"doctor", "tavlynctl doctor --bundle ticket.tar.gz",
     "What is so, what to type, and a file for whoever helps."},
    {"error", "tavlynctl error 0x20202", "What a word is made of, and what to do."},
    {"record", "tavlynctl record desk.rec -- tavlynctl info", "Keeps what went over while that ran."},
    {"read", "tavlynctl read --timeout 30", "Waits half a minute for a card.", "--card 01020303:26"},
    {"read", "tavlynctl --ip 10.0.0.5:10001 read", "The card on a reader behind an adapter.",
     kAdapterDevices},
    {"watch", "tavlynctl watch --count 2", "A card that comes and goes.", "--card 0A0B:16"},
    {"watch", "tavlynctl watch --all --json --count 1", "Whichever reader a card is laid on.",
     "--device reader --device plus:2 --do '#2 card 0A0B:16'"},
    {"card", "tavlynctl card", "What the bits of the card on a reader say.", "--card 07870C:24"},
    {"card", "tavlynctl card 26:2190E0F --find 34567", "Where a number stands in a card."},
    {"queue", "tavlynctl queue", "The oldest ID that nobody has fetched.", "--do 'queue 01020304'"},
    {"config show", "tavlynctl config show --config 1", "The second configuration of a plus reader.",
     "--device plus:3"},
    {"config show", "tavlynctl config show --changed desk.hwg",
     "What differs from a reader whose configuration was saved.", "", kSaved},
    {"config explain", "tavlynctl config explain iIDHoldTO", "Meaning, unit and range of a field."},
    {"config explain", "tavlynctl config explain beep parity", "Every field that is about one of two words."},
    {"config get", "tavlynctl config get bBeepID iIDBitCnt", "Two fields."},
    {"config set", "tavlynctl config set bBeepID=off iIDHoldTO=1.5s --dry-run",
     "What would change, without a change."},
    {"config set", "tavlynctl config set PingRateS=300", "A setting of a sonar sensor.", "--device sonar"},
    {"config save", "tavlynctl config save desk.hwg --secure", "A copy of the configuration."},
    {"config load", "tavlynctl config load desk.hwg --strict --yes", "Loads that copy.", "", kSaved},
    {"config copy", "tavlynctl config copy --from 0 --to all --yes", "Three readers like the first one.",
     "--device reader --device reader --device reader"},
    {"config edit", "EDITOR=cat tavlynctl config edit --dry-run", "The text that it opens."},
    {"config diff", "tavlynctl config diff desk.hwg", "What has changed since.", "", kSaved},
    {"config diff", "tavlynctl config diff old.hwg desk.hwg --exit-code", "Whether two files differ.", "",
     "tavlynctl config save desk.hwg >saved; cp desk.hwg old.hwg"},
    {"config history", "tavlynctl config history", "What was kept of the configurations before."},
    {"config undo", "tavlynctl config undo --yes", "Takes the last change back.", "",
     "tavlynctl config set bBeepID=0"},
    {"config reset", "tavlynctl config reset --yes", "As it came from the factory."},
    {"config defaults", "tavlynctl config defaults save",
     "Makes the configuration of a plus reader its user defaults.", "--device plus:2"},
    {"cards", "tavlynctl cards", "Which cards each configuration is for.", "--device plus:3"},
    {"cards set", "tavlynctl cards set 1 EF04 high", "Configuration 1 for cards of type EF04.",
     "--device plus:3"},
    {"beep", "tavlynctl beep 2 --long", "Two long beeps."},
    {"led", "tavlynctl led red green", "Both LEDs on."},
    {"relay", "tavlynctl relay on --store", "The relay on, also after a loss of power."},
    {"volume", "tavlynctl volume 128", "Half as loud."},
    {"check", "tavlynctl check desk.hwg", "Whether a saved file is as it was written.", "", kSaved},
    {"keys load", "tavlynctl keys load items.ini --dry-run", "Tests a key file.", "",
     R"(printf '[Blob1]\r\nhdr=20 07 05 09\r\ndata=C1 C2 C3 C4 C5\r\n[EOF]\r\niEndOfIniFile=2B4D2EF2\r\n' >items.ini)"},
    {"secure write", "tavlynctl secure write 20070509 - <item.txt", "An item whose bytes a file has.", "",
     "echo C1C2C3C4C5 >item.txt"},
    {"secure read", "tavlynctl secure read 20070509 --show-keys", "Shows the bytes of an item.", "",
     "echo C1C2C3C4C5 | tavlynctl secure write 20070509 -"},
    {"ble status", "tavlynctl ble status", "Whether there is a radio.", "--device plus:2"},
    {"ble set", "tavlynctl ble set 1", "Gives it configuration 1.", "--device plus:2"},
    {"ble save", "tavlynctl ble save radio.hwg", "A copy of its data."},
    {"ble load", "tavlynctl ble load radio.hwg --yes", "Loads that copy.", "",
     "tavlynctl ble save radio.hwg"},
    {"track", "tavlynctl track 2", "The second track of the last swipe.", kMagstripe},
    {"swipe watch", "tavlynctl swipe watch --count 1", "The next swipe.", kMagstripe},
    {"magfield", "tavlynctl magfield 11", "One user field.", kMagstripe},
    {"magfield set", "tavlynctl magfield set 11 enable=1 length=8", "Changes two parts of it.", kMagstripe},
    {"range", "tavlynctl range --watch --count 10", "Ten measurements.", "--device sonar"},
    {"fleet list", "tavlynctl fleet list --broker mqtts://broker.example",
     "All devices that agents have told of."},
    {"fleet watch", "tavlynctl fleet watch --broker mqtts://broker.example --to lobby/+/+ --count 2",
     "The next two events at the desks of one site."},
    {"fleet beep", "tavlynctl fleet beep 2 --broker mqtts://broker.example --to lobby/desk-4/+",
     "Where is that machine?"},
    {"fleet config load",
     "tavlynctl fleet config load desk.hwg --yes --resume rollout --broker mqtts://broker.example --to "
     "lobby/+/+",
     "One file for a site; typed again, it goes on where it was."},
    {"analyzer start", "tavlynctl analyzer start", "From now on cards are listed."},
    {"analyzer stop", "tavlynctl analyzer stop", "No longer."},
    {"analyzer status", "tavlynctl analyzer status", "How many cards are in the list."},
    {"analyzer list", "tavlynctl analyzer list", "The cards.", "--do 'sample 0001:01020303:26'"},
    {"module get", "tavlynctl module get 1", "Whether module 1 is on."},
    {"module set", "tavlynctl module set 1 off", "Switches it off."},
    {"transparent", "tavlynctl transparent status", "Whether the mode is on.", "--device plus:2"},
    {"raw", "tavlynctl raw 8A", "Command 8A with zeros after it."},
    {"serial baud", "tavlynctl --com 3 serial baud", "The code of its speed.", "--serial COM3"},
    {"serial write", "tavlynctl --com 3 serial write FA04EDED04 --read 7", "A frame and its answer.",
     "--serial COM3 --do 'delay 50'"},
    {"serial read", "tavlynctl --com 3 serial read 7", "What the reader sends by itself.", "--serial COM3"},
};

}  // namespace

std::span<const ExitStatus> ExitStatuses() { return kStatuses; }
std::span<const Example> Examples() { return kExamples; }

}  // namespace tavlyn::ctl
