// An application that uses a key and then searches its own memory for it.
//
//   key_client usb|com|text DEED [FILE]
//
// For each place where the key stands a line tells what the memory belongs to, how many bytes stand there and
// how many such places there are; the application's own copy is left out. With a file the deed uses FILE.1
// and FILE.2 in turn.
#include <malloc.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <limits>
#include <memory>
#include <stdexcept>

#include "tests/adversary/own_memory.h"
#include "tests/boundary/library.h"

using namespace tavlyn::adversary;
using tavlyn::boundary::Library;

namespace {

constexpr std::uint32_t kItemBytes = 32;
constexpr std::size_t kHeaderBytes = 4;
constexpr std::int16_t kExtendedFields = 0x40;

struct Application {
  std::unique_ptr<Library> library = std::make_unique<Library>();
  std::span<std::uint8_t> own;  // its copy of the key, in memory of its own
  std::string file;
};

void Check(bool good, const char* what) {
  if (!good) throw std::runtime_error(what);
}

void HashKeys(Application& application) {
  const Library& library = *application.library;
  // Readers with extended fields have keys.
  tsTimeParms times{};
  Check(CALL(library, GetTimeParms)(&times) == 1, "GetTimeParms");
  times.ExFeatures01 |= kExtendedFields;
  Check(CALL(library, SetTimeParms)(&times) == 1, "SetTimeParms");
  std::array<std::uint8_t, 128> separated{5, 0, 0, 1};
  CALL(library, SetSepFldData)(separated.data(), separated.size());
  Check(CALL(library, SetHashKeyData)(application.own.data()) == 1, "SetHashKeyData");
  Check(CALL(library, WriteCfg)() == 1, "WriteCfg");
}

void Unload(Application& application) {
  HashKeys(application);
  application.library.reset();
}

// An item is a header and the key.
std::uint8_t* Item(Application& application) {
  const std::array<std::uint8_t, kHeaderBytes> header{0x20, 7, kItemBytes, 9};
  std::memmove(application.own.data() + kHeaderBytes, application.own.data(), kItemBytes);
  std::ranges::copy(header, application.own.begin());
  return application.own.data();
}

void WriteItem(Application& application) {
  Check(CALL(*application.library, WriteSecureData)(Item(application), kHeaderBytes + kItemBytes) == 1,
        "WriteSecureData");
}

void ReadItem(Application& application) {
  WriteItem(application);
  std::uint8_t* key = application.own.data() + kHeaderBytes;
  std::memset(key, 0, kItemBytes);
  Check(CALL(*application.library, ReadSecureData)(application.own.data(), key) == 1, "ReadSecureData");
  Check(key[0] != 0, "the item came back");
}

void WriteReferences(Application& application) {
  const Library& library = *application.library;
  Check(CALL(library, WriteEV1FileRefrence)(application.own.data(), kItemBytes) == 1, "WriteEV1FileRefrence");
  Check(CALL(library, WriteSEKeyRefrence)(application.own.data(), kItemBytes, 1) == 1, "WriteSEKeyRefrence");
}

void LoadKeyFile(Application& application) {
  Check(CALL(*application.library, LoadIniFile)(application.file.c_str()) == 1, "LoadIniFile");
}

void LoadBleKey(Application& application) {
  Check(CALL(*application.library, WriteBLEKeyToReader)(application.file.c_str()) == 1,
        "WriteBLEKeyToReader");
}

void SaveBleKey(Application& application) {
  LoadBleKey(application);
  Check(CALL(*application.library, WriteBLEKeyToFile)((application.file + ".saved").c_str()) == 1,
        "WriteBLEKeyToFile");
}

void SaveTemplate(Application& application) {
  HashKeys(application);
  const std::string path = application.file + ".saved";
  Check(CALL(*application.library, WriteDevCfgToSecureFile)(path.c_str()) == 1, "WriteDevCfgToSecureFile");
  Check(CALL(*application.library, ReadDevCfgFromSecureFile)(path.c_str()) == 1, "ReadDevCfgFromSecureFile");
}

void ReadIds(Application& application) {
  const Library& library = *application.library;
  const timespec gate{0, 300'000'000};
  std::array<std::uint8_t, 32> id{};
  nanosleep(&gate, nullptr);
  Check(CALL(library, GetActiveID)(id.data(), 8) > 0, "GetActiveID");
  nanosleep(&gate, nullptr);
  Check(CALL(library, GetActiveID32)(id.data(), 32) > 0, "GetActiveID32");
  CALL(library, GetQueuedID)(0, 0);
  CALL(library, SetRawPayload)(0x8F, 0, 0, 0, 0, 0, 0, 0);
}

struct Deed {
  const char* name;
  void (*run)(Application&);
};

constexpr std::array kDeeds = {Deed{"hash-keys", HashKeys},         Deed{"unload", Unload},
                               Deed{"write-item", WriteItem},       Deed{"read-item", ReadItem},
                               Deed{"references", WriteReferences}, Deed{"key-file", LoadKeyFile},
                               Deed{"ble-load", LoadBleKey},        Deed{"ble-save", SaveBleKey},
                               Deed{"template", SaveTemplate},      Deed{"read-ids", ReadIds}};

void Connect(const Library& library, const std::string& link) {
  CALL(library, SetConnectProduct)(1);
  CALL(library, SetDevTypeSrch)(static_cast<std::int16_t>(link == "usb" ? 0 : 1));
  Check(CALL(library, USBConnect)(nullptr) == 1, "USBConnect");
  CALL(library, UseAsciiCommandProtocol)(link == "text");
}

struct Use {
  const Deed& deed;
  Application application;
  std::string problem = {};
};

void* RunUse(void* given) {
  Use& use = *static_cast<Use*>(given);
  try {
    use.deed.run(use.application);
  } catch (const std::exception& problem) {
    use.problem = problem.what();
  }
  return nullptr;
}

Places LeftBy(const Deed& deed, Marker marker, const std::string& link, const std::string& file,
              std::span<std::uint8_t> own) {
  Use use{deed, {.own = own, .file = file + (marker == Marker::kFirst ? ".1" : ".2")}};
  Connect(*use.application.library, link);
  // Only a deed that is handed the key has a copy.
  for (std::size_t at = 0; file.empty() && at < kItemBytes; ++at) own[at] = MarkerByte(marker, at);
  RunDeed(RunUse, &use);
  Check(use.problem.empty(), use.problem.c_str());
  return kMayBeSearched ? Find(marker, own) : Places();
}

}  // namespace

int main(int argc, char** argv) try {
  Check(argc >= 3, "usage: key_client LINK DEED [FILE]");
  const auto* deed = std::ranges::find(kDeeds, std::string(argv[2]), &Deed::name);
  Check(deed != kDeeds.end(), "no such deed");
  // Memory that is given back to the system cannot be searched.
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
  constexpr std::size_t kPage = 4096;
  void* page = mmap(nullptr, kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  Check(page != MAP_FAILED, "a page");
  const std::span own(static_cast<std::uint8_t*>(page), kPage);
  const std::string file = argc > 3 ? argv[3] : "";
  const Places first = LeftBy(*deed, Marker::kFirst, argv[1], file, own);
  const Places second = LeftBy(*deed, Marker::kSecond, argv[1], file, own);
  for (const auto& [place, count] : first) {
    const auto again = second.find(place);
    if (again == second.end()) continue;
    std::printf("%s %zu %d\n", place.first.c_str(), place.second, std::min(count, again->second));
  }
  return 0;
} catch (const std::exception& problem) {
  std::printf("%s failed\n", problem.what());
  return 1;
}
