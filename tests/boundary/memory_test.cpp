// Running out of memory: every allocation of the library is denied in turn, alone and with all those after
// it. Each call then fails as documented, leaves nothing behind, and the next one works.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "sim/devices/reader_ascii.h"
#include "tests/boundary/bulk_standin.h"
#include "tests/boundary/held.h"
#include "tests/boundary/loader.h"
#include "tests/boundary/scarce_memory.h"
#include "tests/boundary/wire.h"

namespace tavlyn::boundary {
namespace {

namespace fs = std::filesystem;

// A call's result, and the error word that it leaves.
struct Outcome {
  std::uint32_t result;
  std::uint32_t word;
  bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
  *out << std::hex << "{0x" << outcome.result << ", 0x" << outcome.word << "}";
}

struct Work {
  std::function<Outcome()> run;
  Outcome good;
  // How it may end if memory was denied; some denials change nothing.
  std::vector<Outcome> told;
  // Puts back what a run has changed.
  std::function<void()> end = [] {};
};

void ExpectGood(const Work& work) {
  EXPECT_EQ(work.run(), work.good);
  work.end();
}

enum class End { kFailed, kWentWell, kNotDenied };

End DenyOne(const Work& work, int number, Denial denial) {
  Deny(number, denial);
  const Outcome outcome = work.run();
  const bool denied = Grant();
  work.end();
  EXPECT_TRUE(outcome == work.good || (denied && std::ranges::count(work.told, outcome) > 0))
      << testing::PrintToString(outcome);
  ExpectGood(work);
  if (!denied) return End::kNotDenied;
  return outcome == work.good ? End::kWentWell : End::kFailed;
}

// Counts the runs that failed.
int DenyEach(const Work& work, Denial denial) {
  int failed = 0;
  for (int number = 1; !testing::Test::HasFailure(); ++number) {
    SCOPED_TRACE("allocation " + std::to_string(number));
    // What the system and the simulator allocate once for such a failure is not the library's leak.
    DenyOne(work, number, denial);
    const Held before;
    const End end = DenyOne(work, number, denial);
    EXPECT_EQ(Held(), before);
    if (end == End::kNotDenied) break;
    if (end == End::kFailed) ++failed;
  }
  return failed;
}

void DenyAll(const Work& work) {
  if (!MemoryCanBeScarce()) GTEST_SKIP() << "a sanitizer has replaced malloc";
  ExpectGood(work);
  for (const Denial denial : {Denial::kOnce, Denial::kFromThereOn}) {
    SCOPED_TRACE(denial == Denial::kOnce ? "once" : "from there on");
    EXPECT_EQ(DenyEach(work, denial) > 0, !work.told.empty());
  }
}

constexpr std::uint32_t kUnsupported = 0x7777;

class Memory : public Wire {
 protected:
  void SetUp() override {
    Wire::SetUp();
    library_.Standin("record off");
    CALL(library_, SetUnsupportedProductErrorCode)(kUnsupported);
    CALL(library_, VirtualComSearchRange)(1, 256);
  }

  void Plug(const std::string& device, std::uint32_t product) {
    library_.Standin("plug " + device);
    CALL(library_, SetDevTypeSrch)(0);
    CALL(library_, SetConnectProduct)(product);
  }
  Outcome Connect() {
    did_ = kNotWritten;
    const std::uint32_t result = CALL(library_, USBConnect)(&did_);
    return {result, did_};
  }
  void Disconnect() { CALL(library_, USBDisconnect)(); }

  // A connect that fails leaves the ID word alone.
  void ExpectConnects() {
    const std::uint32_t did = Connect().word;
    Disconnect();
    DenyAll({[&] { return Connect(); }, {1, did}, {{0, kNotWritten}}, [&] { Disconnect(); }});
    ASSERT_EQ(Connect().result, 1U);
  }

  // A call on the active device, and the error word that it leaves.
  template <typename Call>
  void ExpectOnDevice(Call call, std::uint32_t good, std::vector<Outcome> told) {
    const auto run = [&] {
      CALL(library_, ReadCfg)();  // clears the word
      const auto result = static_cast<std::uint32_t>(call());
      return Outcome{result, CALL(library_, GetLastLibErr)()};
    };
    DenyAll({run, {good, 0}, std::move(told)});
  }
  void ExpectFile(std::uint32_t (*call)(const char*), std::vector<Outcome> told) {
    ExpectOnDevice([&] { return call(file_.c_str()); }, 1, std::move(told));
  }

  // None of it allocates anything.
  void ExpectReadsAndWrites(std::uint32_t cardBits) {
    ExpectOnDevice([&] { return CALL(library_, ReadCfg)(); }, 1, {});
    ExpectOnDevice(
        [&] {
          const auto time = CALL(library_, getTimeParms_iBitStrmTO)();
          CALL(library_, setTimeParms_iBitStrmTO)(time == 100 ? 104 : 100);
          return CALL(library_, WriteCfg)();
        },
        1, {});
    ExpectOnDevice(
        [&] {
          PassUntil(Now() + Milliseconds(270), [] { return false; });
          std::array<std::uint8_t, 8> id{};
          return CALL(library_, GetActiveID)(id.data(), 8);
        },
        cardBits, {});
  }

  const std::string file_ = ports_.PathOf(0) + ".txt";
};

TEST_F(Memory, ReaderOnUsb) {
  Plug("reader", 1);
  library_.Standin("card 0102:16");
  ExpectConnects();
  ExpectReadsAndWrites(16);
}

TEST_F(Memory, ReaderWithKeyboard) {
  Plug("plus:2@7A31:3BFB", 1);
  ExpectConnects();
}

TEST_F(Memory, OtherProductsOnUsb) {
  Plug("magstripe", 2);
  ExpectConnects();
  Disconnect();
  Plug("sonar", 4);
  ExpectConnects();
}

TEST_F(Memory, ReaderOnAPort) {
  reader_->PutCard({1, 2}, 16);
  PortDevice device(ports_, 3, line_);
  CALL(library_, SetDevTypeSrch)(1);
  ExpectConnects();
  ExpectReadsAndWrites(16);
  Disconnect();
  const auto connect = [&] { return Outcome{ConnectToPort(3), did_}; };
  DenyAll({connect, {1, reader_->state.did}, {{0, kNotWritten}}, [&] { Disconnect(); }});
}

TEST_F(Memory, ReaderThatSpeaksText) {
  reader_->PutCard({1, 2}, 16);
  sim::ReaderAscii text(reader_);
  PortDevice device(ports_, 3, text);
  CALL(library_, SetDevTypeSrch)(1);
  CALL(library_, UseAsciiCommandProtocol)(1);
  ExpectConnects();
  ExpectReadsAndWrites(16);
}

TEST_F(Memory, PortWithoutAMagstripeReader) {
  PortDevice device(ports_, 3, line_);
  CALL(library_, SetDevTypeSrch)(1);
  CALL(library_, SetConnectProduct)(2);
  DenyAll({[&] { return Connect(); }, {0, kNotWritten}, {}, [&] { Disconnect(); }});
}

TEST_F(Memory, ReaderBehindAnAdapter) {
  const Ip ip{127, 3, 9, 5};
  TcpDevice device(ip, line_);
  CALL(library_, SetDevTypeSrch)(2);
  CALL(library_, SetIpPort)(ip[0], ip[1], ip[2], ip[3], device.Port());
  ExpectConnects();
  ExpectReadsAndWrites(0);
  Disconnect();
  DenyAll({[&] {
             return Outcome{CALL(library_, FindXport)(ip[0], ip[1], ip[2], 5, 5), 0};
           },
           {5, 0},
           {{0, 0}}});
}

TEST_F(Memory, OwnAddress) {
  const std::uint32_t address = CALL(library_, GetMyIpAddress)();
  if (address == 0) GTEST_SKIP() << "this machine does not know its address";
  DenyAll({[&] { return Outcome{CALL(library_, GetMyIpAddress)(), 0}; }, {address, 0}, {{0, 0}}});
}

TEST_F(Memory, ReaderOnABulkDevice) {
  const BulkStandin standin;
  standin.Do("plug reader@bulk");
  CALL(library_, SetDevTypeSrch)(0);
  if (Connect().result == 0) GTEST_SKIP() << kNotTrusted;
  Disconnect();
  ExpectConnects();
  ExpectReadsAndWrites(0);
  Disconnect();
}

TEST_F(Memory, FilesOfAReader) {
  Plug("reader", 1);
  ASSERT_EQ(Connect().result, 1U);
  ExpectFile(CALL(library_, WriteDevCfgToFile), {{0, 0}});
  ExpectFile(CALL(library_, ReadDevCfgFmFile), {{0, 0}});
  ExpectFile(CALL(library_, WriteDevCfgToSecureFile),
             {{kUnsupported, 0}, {kUnsupported, TAVLYN_ERR_INTEGRITY}});
  ExpectFile(CALL(library_, ReadDevCfgFromSecureFile), {{0, TAVLYN_ERR_INTEGRITY}, {kUnsupported, 0}});
  ExpectOnDevice([&] { return CALL(library_, CheckTamperedFile)(file_.c_str(), 0); }, 1, {{0, 0}});
}

TEST_F(Memory, FilesOfABleRadio) {
  Plug("reader", 1);
  ASSERT_EQ(Connect().result, 1U);
  const std::vector<Outcome> notSaved = {{kUnsupported, 0}, {kUnsupported, TAVLYN_ERR_BLE_READ}};
  const std::vector<Outcome> notLoaded = {{kUnsupported, TAVLYN_ERR_INTEGRITY},
                                          {kUnsupported, TAVLYN_ERR_BLE_WRITE}};
  ExpectFile(CALL(library_, WriteBLEDataToFile), notSaved);
  ExpectFile(CALL(library_, WriteBLEDataToReader), notLoaded);
  ExpectFile(CALL(library_, WriteBLEKeyToFile), notSaved);
  ExpectFile(CALL(library_, WriteBLEKeyToReader), notLoaded);
}

TEST_F(Memory, FileOfKeys) {
  Plug("reader", 1);
  ASSERT_EQ(Connect().result, 1U);
  std::ofstream(file_, std::ios::binary) << "[Blob1]\r\nhdr=20 7 5 9\r\ndata=1 2 3 4 5\r\n"
                                            "[EOF]\r\niEndOfIniFile=041C75B2\r\n";
  ExpectFile(CALL(library_, LoadIniFile), {{0, TAVLYN_ERR_INTEGRITY}, {0, 0}});
}

TEST_F(Memory, FilesOfOtherProducts) {
  for (const auto& [device, product] : {std::pair("magstripe", 2U), std::pair("sonar", 4U)}) {
    Plug(device, product);
    ASSERT_EQ(Connect().result, 1U);
    ExpectFile(CALL(library_, WriteDevCfgToFile), {{0, 0}});
    ExpectFile(CALL(library_, ReadDevCfgFmFile), {{0, 0}});
    Disconnect();
  }
}

// The second reader comes; of two the first one goes, whichever is named.
TEST_F(Memory, ReaderThatComesAndGoes) {
  Plug("reader", 1);
  Plug("reader", 1);
  ASSERT_EQ(Connect().result, 1U);
  ASSERT_EQ(CALL(library_, GetDevCnt)(), 2);
  CALL(library_, SetActDev)(1);
  const std::string path = Name();
  const auto comeAndGo = [&] {
    const std::uint32_t came = CALL(library_, ChkAddArrival)(path.c_str());
    return Outcome{came, CALL(library_, ChkDelRemoval)(path.c_str())};
  };
  library_.Standin("#2 unplug");
  const auto begin = [&] {
    Disconnect();
    library_.Standin("reset");
    Plug("reader", 1);
    Connect();
    Plug("reader", 1);
  };
  begin();
  DenyAll({comeAndGo, {1, 1}, {{0, 0}}, begin});
}

// Results that belong to the caller.
TEST_F(Memory, MemoryForTheCaller) {
  Plug("reader", 1);
  library_.Standin("sample 0001:0102:16");
  ASSERT_EQ(Connect().result, 1U);
  CALL(library_, GetCardAnalyzerStatus)();
  const auto given = [](void* memory) {
    std::free(memory);
    return memory != nullptr;
  };
  ExpectOnDevice([&] { return given(CALL(library_, InstalledHardware)()); }, 1, {{0, 0}});
  ExpectOnDevice([&] { return given(CALL(library_, SupportedHardware)()); }, 1, {{0, 0}});
  ExpectOnDevice([&] { return given(CALL(library_, GetCardAnalyzerData)()); }, 1, {{0, 0}});
}

class MemoryAtLoad : public testing::TestWithParam<const char*> {
 protected:
  MemoryAtLoad() {
    ChooseTraceFile();
    SetVariable("TAVLYNAPI_LOGGING", GetParam());
    const Library library;
    library.Standin("reset");
    library.Standin("plug reader");
    library.Standin("record off");
  }
  ~MemoryAtLoad() override { SetVariable("TAVLYNAPI_LOGGING", nullptr); }

  // Whether the library was loaded, and what a connect to a reader then gave.
  static Outcome LoadAndConnect() {
    void* library = LoadByName(TAVLYN_LIBRARY);
    if (library == nullptr) return {0, 0};
    reinterpret_cast<decltype(&::SetDevTypeSrch)>(FindSymbol(library, "SetDevTypeSrch"))(0);
    const auto connected =
        reinterpret_cast<decltype(&::USBConnect)>(FindSymbol(library, "USBConnect"))(nullptr);
    Unload(library);
    return {1, connected};
  }
};

INSTANTIATE_TEST_SUITE_P(Trace, MemoryAtLoad, testing::Values(nullptr, "1"));

TEST_P(MemoryAtLoad, LibraryIsLoadedAllTheSame) { DenyAll({LoadAndConnect, {1, 1}, {{1, 0}}}); }

}  // namespace
}  // namespace tavlyn::boundary
