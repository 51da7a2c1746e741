// Two programs on one device. The second is this program again, at the other end of a socket.
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "sim/carriers/attendant.h"
#include "sim/carriers/pseudo_terminal.h"
#include "sim/devices/reader.h"
#include "sim/devices/reader_fa.h"
#include "tests/kernel/bus.h"
#include "tests/kernel/checks.h"
#include "tests/kernel/library.h"
#include "tests/kernel/sections.h"

namespace tavlyn::kernel {
namespace {

constexpr std::uint16_t kPort = 3;
constexpr const char* kPortFolder = "/tmp/ports";
constexpr int kTurns = 10;
const sim::Bytes kCard{0x78, 0x56, 0x34, 0x12};
constexpr int kBits = 26;

// What a program does when it is told so by a letter; it answers with '1' if that was good, else '0'.
bool Obey(const Library& library, char order) {
  switch (order) {
    case 'n': return library.connect(nullptr) == 1;
    case 'p': return library.connectPort(kPort, nullptr) == 1;
    case 'd': return library.disconnect() == 1;
    case 'c': return library.readConfiguration() == 1;
    case 'r': {
      const CardRead read = ReadCard(library);
      return read.bits == kBits && std::equal(kCard.begin(), kCard.end(), read.id.begin());
    }
    default: return false;
  }
}

class Partner {
 public:
  explicit Partner(const char* libraryPath) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return;
    own_ = ends[0];
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO);
    std::array<std::string, 3> words{"guest", "partner", libraryPath};
    std::array<char*, 4> argv{words[0].data(), words[1].data(), words[2].data(), nullptr};
    if (posix_spawn(&process_, "/proc/self/exe", &actions, nullptr, argv.data(), environ) != 0) process_ = -1;
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
  }
  ~Partner() {
    close(own_);
    int status = 0;
    const bool ended = waitpid(process_, &status, 0) == process_;
    Check(ended && WIFEXITED(status) && WEXITSTATUS(status) == 0, "the other program ends well");
  }
  Partner(const Partner&) = delete;
  Partner& operator=(const Partner&) = delete;

  void Begin(char order) const { (void)!write(own_, &order, 1); }
  [[nodiscard]] bool Ended() const {
    char answer = 0;
    return read(own_, &answer, 1) == 1 && answer == '1';
  }
  [[nodiscard]] bool Does(char order) const {
    Begin(order);
    return Ended();
  }

 private:
  pid_t process_ = -1;
  int own_ = -1;
};

void CheckNode(const Library& library, const char* libraryPath) {
  Bus bus;
  const auto reader = sim::Reader::Plain();
  const Plugged plugged(bus, *reader);
  bus.Locked([&] { reader->PutCard(kCard, kBits); });
  const Partner partner(libraryPath);
  Check(library.connect(nullptr) == 1 && partner.Does('n'), "two programs connect to one node");
  int first = 0;
  int second = 0;
  for (int turn = 0; turn < kTurns; ++turn) {
    first += Obey(library, 'r') ? 1 : 0;
    second += partner.Does('r') ? 1 : 0;
  }
  CheckEqual(first, kTurns, "in turns the first reads the card");
  CheckEqual(second, kTurns, "and so does the second");

  first = 0;
  second = 0;
  for (int turn = 0; turn < kTurns; ++turn) {
    partner.Begin('r');
    first += Obey(library, 'r') ? 1 : 0;
    second += partner.Ended() ? 1 : 0;
  }
  // Not checked: the kernel does not keep the command of one and the fetch of the other apart.
  std::printf("at the same time the first was right %d times of %d, the second %d\n", first, kTurns, second);
  Check(Obey(library, 'r') && partner.Does('r'), "both are right when they read alone again");
  Check(library.readConfiguration() == 1 && partner.Does('c'), "and read the configuration");
  CheckEqual(library.disconnect(), 1, "the first disconnects");
  Check(partner.Does('r'), "the second still reads");
  Check(partner.Does('d'), "and disconnects");
}

void CheckPort(const Library& library, const char* libraryPath) {
  std::filesystem::create_directory(kPortFolder);
  setenv("TAVLYNAPI_PORT_DIR", kPortFolder, 1);
  sim::ReaderFa line(sim::Reader::Plain());
  sim::PseudoTerminal port(line, std::string(kPortFolder) + "/com" + std::to_string(kPort));
  sim::Attendant attendant({&port});
  attendant.With([&] { line.Device().PutCard(kCard, kBits); });
  const Partner partner(libraryPath);
  CheckEqual(library.connectPort(kPort, nullptr), 1, "a program connects to a port");
  Check(!partner.Does('p'), "which is refused to a second");
  Check(Obey(library, 'r'), "and does not disturb the first");
  CheckEqual(library.disconnect(), 1, "the first disconnects");
  Check(partner.Does('p'), "now the port is the second's");
  Check(partner.Does('r'), "who reads the card");
  CheckEqual(library.connectPort(kPort, nullptr), 0, "and is refused to the first");
}

}  // namespace

void SharingChecks(const char* libraryPath) {
  Library library{};
  if (!LoadLibrary(libraryPath, library)) return;
  CheckNode(library, libraryPath);
  CheckPort(library, libraryPath);
}

void PartnerChecks(const char* libraryPath) {
  Library library{};
  if (!LoadLibrary(libraryPath, library)) return;
  for (char order = 0; read(STDIN_FILENO, &order, 1) == 1;) {
    const char answer = Obey(library, order) ? '1' : '0';
    if (write(STDIN_FILENO, &answer, 1) != 1) return;
  }
}

}  // namespace tavlyn::kernel
