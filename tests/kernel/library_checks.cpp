// The built library on the kernel's own HID stack, through its exports only.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

#include "sim/devices/reader.h"
#include "tests/kernel/bus.h"
#include "tests/kernel/checks.h"
#include "tests/kernel/library.h"
#include "tests/kernel/mirror.h"
#include "tests/kernel/sections.h"

namespace tavlyn::kernel {
namespace {

constexpr uid_t kNobody = 65534;

void CheckCard(const Library& library, long long bits, const sim::Bytes& id, const std::string& what) {
  const CardRead read = ReadCard(library);
  CheckEqual(read.bits, bits, what);
  sim::Bytes whole = id;
  whole.resize(8);
  Check(read.id == whole, what + ", its bytes");
}

// Configuration and texts that differ from the factory's.
void MarkReader(sim::Reader& reader) {
  reader.state.did = 0x4D21;
  reader.state.model = "KERNEL-MODEL-1";
  reader.state.texts[sim::kSerialNumber] = "SN-20";
  sim::Settings settings = reader.state.Working();
  settings.blocks[0][7] = 0x85;  // fixed length, strip FAC, halt keys
  settings.blocks[1][1] = 10;
  settings.blocks[1][2] = 20;
  reader.state.Active() = sim::Configuration::Of(settings);
}

void CheckMirror(const Library& library) {
  tsCfgFlags flags{};
  CheckEqual(library.flags(&flags), 1, "the flags were read");
  Check(flags.bFixLenDsp == 1 && flags.bFrcBitCntEx == 0 && flags.bStripFac == 1 && flags.bSndFac == 0 &&
            flags.bHaltKBSnd == 1,
        "and are those of the reader");
  tsTimeParms times{};
  CheckEqual(library.times(&times), 1, "the times were read");
  CheckEqual(times.iBitStrmTO, 40, "the bit stream time of the reader");
  CheckEqual(times.iIDHoldTO, 1000, "the ID hold time of the reader");
  CheckEqual(library.partNumber(), "KERNEL-MODEL-1", "the part number of the reader");
  CheckEqual(library.serialNumber(), "SN-20", "the serial number is asked of the reader");
  CheckEqual(library.maxConfig(), 0, "a plain reader has one configuration");
}

// A user's process with the library in it; its status is the number of failures.
int RunAsNobody(const char* libraryPath, const char* expectation) {
  const pid_t child = fork();
  if (child == 0) {
    if (setgid(kNobody) != 0 || setuid(kNobody) != 0) _exit(9);
    execl("/proc/self/exe", "guest", "unprivileged", libraryPath, expectation, nullptr);
    _exit(9);
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

void ForeignDevice(const Library& library, Bus& bus) {
  Mirror foreign({0x4242, 0x0001, {{0xFFA0, 0xA000}}, 0, 8, "Foreign", ""});
  const Plugged plugged(bus, foreign);
  CheckEqual(library.connect(nullptr), 0, "a foreign device is not connected to");
  CheckEqual(library.count(), 0, "nor is it counted");
  CheckEqual(bus.Locked([&] { return foreign.exchanges; }), 0, "nor is it spoken to");
}

void PlusReader(const Library& library, Bus& bus) {
  const auto reader = sim::Reader::Plus(3);
  const Plugged plugged(bus, *reader);
  CheckEqual(library.connect(nullptr), 1, "a plus reader connects");
  CheckEqual(library.maxConfig(), 2, "it has three configurations");
  library.disconnect();
}

// It is asked for its ID only when an input report has come.
void CheckKelda(const Library& library, Bus& bus, sim::Reader& reader, const std::string& who) {
  CheckEqual(library.connect(nullptr), 1, who + ": connects");
  CheckEqual(library.count(), 1, who + ": one device");
  CheckEqual(library.vendor(), "7A31:3BFB Orvantis Kelda", who + ": its vendor");
  CheckCard(library, 0, {}, who + ": no ID before an input report");
  bus.Locked([&] {
    reader.PutCard({0x21, 0x43, 0x65}, 24);
    reader.QueueInput(sim::Bytes{1, 0, 0, 0, 0, 0, 0, 0, 0});
    reader.QueueInput(sim::Bytes{1, 0, 0, 0, 0, 0, 0, 0, 0});
  });
  CheckCard(library, 24, {0x21, 0x43, 0x65}, who + ": the ID behind two input reports");
  CheckCard(library, 0, {}, who + ": both reports are used up");
  library.disconnect();
}

void JoinedKelda(const Library& library, Bus& bus) {
  const auto reader = sim::Reader::Kelda();
  reader->identity.usages = {{0x0001, 0x0006}, {0xFFA0, 0xA000}};
  const Plugged plugged(bus, *reader);
  CheckKelda(library, bus, *reader, "keyboard and reader in one interface");
}

void DividedKelda(const Library& library, Bus& bus) {
  sim::InertInterface keyboard(0x7A31, 0x3BFB);
  const auto reader = sim::Reader::Kelda();
  const Plugged pluggedKeyboard(bus, keyboard);
  const Plugged pluggedReader(bus, *reader);
  CheckKelda(library, bus, *reader, "keyboard and reader in two interfaces");
}

void ReadersTogether(const Library& library, Bus& bus) {
  const auto plain = sim::Reader::Plain();
  const auto plus = sim::Reader::Plus(2);
  const auto other = sim::Reader::Plain();
  other->identity.pid = 0x3B1E;
  Mirror foreign({0x4242, 0x0001, {{0xFF00, 0x0001}}, 0, 8, "Foreign", ""});
  const Plugged pluggedPlain(bus, *plain);
  const Plugged pluggedForeign(bus, foreign);
  const Plugged pluggedPlus(bus, *plus);
  const Plugged pluggedOther(bus, *other);
  bus.Locked([&] {
    plain->PutCard({0x01}, 26);
    plus->PutCard({0x02}, 37);
    other->PutCard({0x03}, 48);
  });
  CheckEqual(library.connect(nullptr), 1, "three readers and a foreign device connect");
  CheckEqual(library.count(), 3, "three readers are found");
  int found = 0;
  for (std::int16_t i = 0; i < library.count(); ++i) {
    library.select(i);
    std::array<char, 512> name{};
    library.name(name.data());
    const CardRead read = ReadCard(library);
    for (const auto& [node, bits, first] :
         {std::tuple(pluggedPlain.Node(), 26, 1), std::tuple(pluggedPlus.Node(), 37, 2),
          std::tuple(pluggedOther.Node(), 48, 3)}) {
      found += node == name.data() && read.bits == bits && read.id[0] == first ? 1 : 0;
    }
  }
  CheckEqual(found, 3, "each answers with its own card under its own path");
  library.disconnect();
}

void FailingReader(const Library& library, Bus& bus) {
  const auto reader = sim::Reader::Plain();
  reader->faults.RefuseCommand({0x81});
  const Plugged plugged(bus, *reader);
  CheckEqual(library.connect(nullptr), 0, "a reader that refuses a block fails the connect");
  CheckEqual(library.count(), 1, "and stays in the table");
  Check((library.error() & TAVLYN_ERR_CONFIG_READ) != 0, "with the error bit of a configuration read");
  library.disconnect();

  bus.Locked([&] {
    reader->faults.Restart();
    reader->faults.VanishAt(9);
  });
  CheckEqual(library.connect(nullptr), 0, "a reader that vanishes while it connects fails the connect");
  library.disconnect();
  CheckEqual(library.connect(nullptr), 0, "and is not found again");
  CheckEqual(library.count(), 0, "nor counted");
  library.disconnect();
}

}  // namespace

void ReaderChecks(const char* libraryPath) {
  Library library{};
  if (!LoadLibrary(libraryPath, library)) return;
  Bus bus;
  CheckEqual(library.connect(nullptr), 0, "without a device there is nothing to connect to");

  const auto reader = sim::Reader::Plain();
  MarkReader(*reader);
  auto plugged = std::make_optional<Plugged>(bus, *reader);
  std::uint32_t did = 0;
  CheckEqual(library.connect(&did), 1, "a plain reader connects");
  CheckEqual(did, 0x4D21, "the connect gives its device ID word");
  CheckEqual(library.did(), 0x4D21, "so does its export");
  CheckEqual(library.count(), 1, "one device is counted");
  CheckMirror(library);

  CheckCard(library, 0, {}, "no card");
  bus.Locked([&] { reader->PutCard({0x78, 0x56, 0x34, 0x12}, 26); });
  CheckCard(library, 26, {0x78, 0x56, 0x34, 0x12}, "a card");
  bus.Locked([&] { reader->TakeCard(); });
  CheckCard(library, 0, {}, "the card is gone");
  CheckEqual(library.error(), 0, "which is no error");

  plugged.reset();
  CheckCard(library, 0, {}, "the reader is gone");
  CheckEqual(library.error(), TAVLYN_ERR_COMMAND | TAVLYN_ERR_WRITE_REPORT, "which is one");
  CheckEqual(library.disconnect(), 1, "a lost reader can be disconnected");
  CheckEqual(library.connect(nullptr), 0, "it is not found any more");

  plugged.emplace(bus, *reader);
  CheckEqual(library.connect(nullptr), 1, "plugged in again it connects again");
  bus.Locked([&] { reader->PutCard({0x99}, 32); });
  CheckCard(library, 32, {0x99}, "and reads a card");
  CheckEqual(library.disconnect(), 1, "it is disconnected");
  CheckEqual(library.count(), 0, "and the table is empty");
}

void DeviceChecks(const char* libraryPath) {
  Library library{};
  if (!LoadLibrary(libraryPath, library)) return;
  Bus bus;
  ForeignDevice(library, bus);
  PlusReader(library, bus);
  JoinedKelda(library, bus);
  DividedKelda(library, bus);
  ReadersTogether(library, bus);
  FailingReader(library, bus);
}

void PermissionChecks(const char* libraryPath) {
  Bus bus;
  const auto reader = sim::Reader::Plain();
  const Plugged plugged(bus, *reader);
  CheckEqual(chmod(plugged.Node().c_str(), 0600), 0, "only root may open the node");
  CheckEqual(RunAsNobody(libraryPath, "refused"), 0, "the process of a user without the right");
  CheckEqual(chmod(plugged.Node().c_str(), 0666), 0, "everybody may open the node");
  CheckEqual(RunAsNobody(libraryPath, "allowed"), 0, "the process of a user with the right");
}

void UnprivilegedChecks(const char* libraryPath, bool mayOpen) {
  Library library{};
  if (!LoadLibrary(libraryPath, library)) return;
  CheckEqual(library.connect(nullptr), mayOpen ? 1 : 0,
             mayOpen ? "the user connects" : "the user gets nothing");
  CheckEqual(library.count(), mayOpen ? 1 : 0, "and counts it so");
  library.disconnect();
}

}  // namespace tavlyn::kernel
