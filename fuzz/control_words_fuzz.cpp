// tavlynctl in this process: its words, one a line, are parsed and its command is run on simulated devices.
// The first byte says which devices there are. Files are real ones in a folder of the fuzzer's own, so no
// word has a slash.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/connected.h"
#include "fuzz/input.h"
#include "sim/devices/magstripe.h"
#include "sim/devices/reader.h"
#include "sim/devices/reader_ascii.h"
#include "sim/devices/sonar.h"
#include "tools/tavlynctl/commands.h"

namespace tavlyn::fuzz {
namespace {

enum Device : std::uint8_t {
  kPlain = 1,
  kPlus = 2,
  kMagstripeReader = 4,
  kSensor = 8,
  kOnPort = 16,
  kCard = 32
};

constexpr std::size_t kMostWords = 24;

// Where the words' files are, and where the fuzzer was started.
int folder = -1;
int home = -1;

void EmptyFolder() {
  for (const auto& entry : std::filesystem::directory_iterator(".")) {
    std::error_code ignored;
    std::filesystem::remove_all(entry.path(), ignored);
  }
}

std::vector<std::string> WordsOf(Input& input) {
  std::vector<std::string> words{"tavlynctl"};
  while (!input.IsEmpty() && words.size() < kMostWords) {
    words.emplace_back(input.Text('\n'));
    std::ranges::replace(words.back(), '/', '_');
  }
  return words;
}

void Plug(std::uint8_t devices, sim::VirtualHost& host, sim::ByteDevice& line) {
  const auto plain = sim::Reader::Plain();
  if ((devices & kCard) != 0) plain->PutCard({1, 2, 3, 4}, 26);
  if ((devices & kPlain) != 0) host.hid.Plug("plain", plain);
  if ((devices & kPlus) != 0) host.hid.Plug("plus", sim::Reader::Plus(2));
  if ((devices & kMagstripeReader) != 0) host.hid.Plug("magstripe", std::make_shared<sim::Magstripe>());
  if ((devices & kSensor) != 0) host.hid.Plug("sonar", std::make_shared<sim::Sonar>());
  if ((devices & kOnPort) != 0) host.ports.present[3] = &line;
  host.ports.clock = &host.clock;
}

void Run(Input input) {
  const std::uint8_t devices = input.Byte();
  std::vector<std::string> words = WordsOf(input);
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  sim::ReaderAscii line(sim::Reader::Plain());
  const Loaded loaded;
  Plug(devices, loaded.host, line);
  const int status = ctl::Main(static_cast<int>(words.size()), arguments.data());
  Require(status >= 0 && status < 125);
  Require(GetDevCnt() == 0);
}

}  // namespace
}  // namespace tavlyn::fuzz

// What the tool shows is formatted and dropped. The fuzzer's own messages and the sanitizers' do not use
// these streams.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  std::cout.rdbuf(nullptr);
  stdout = std::fopen("/dev/null", "w");
  stderr = std::fopen("/dev/null", "w");
  std::cin.rdbuf(nullptr);
  tavlyn::fuzz::home = open(".", O_RDONLY | O_DIRECTORY);
  char name[] = "/dev/shm/tavlyn-fuzz-XXXXXX";
  tavlyn::fuzz::folder = open(mkdtemp(name), O_RDONLY | O_DIRECTORY);
  static std::string path;
  path = name;
  for (const char* place : {"TMPDIR", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "XDG_STATE_HOME"})
    setenv(place, name, 1);
  std::atexit([] { std::filesystem::remove_all(path); });
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavlyn::fuzz;
  Require(fchdir(folder) == 0);
  Run({data, size});
  EmptyFolder();
  Require(fchdir(home) == 0);
  return 0;
}
