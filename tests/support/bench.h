// The workbench of the library's tests: a just-loaded library on a simulated system.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "sim/carriers/virtual_host.h"
#include "sim/devices/reader.h"
#include "tests/support/traffic.h"

namespace tavlyn::test {

// Trace lines of a configuration read: the two of a failure, the one of a factory-fresh plain reader.
inline constexpr const char* kReadCode = "tavlyn_ReadCfgOneConfig ERROR CODE: 0";
inline constexpr const char* kReadFailed = "tavlyn_ReadCfgOneConfig Failed !!";
inline constexpr const char* kReadModel = "tavlyn_ReadCfgOneConfig Model Number of Device is : RDR-80581AKU";

// The longest ID that a card can have.
sim::Bytes LongCard();

// Put in variables that a call must not write.
inline constexpr std::uint32_t kUntouched = 0xDEADBEEF;
// Passed to SetUnsupportedProductErrorCode.
inline constexpr std::uint16_t kUnsupported = 0x8A5C;

class Bench : public ::testing::Test {
 protected:
  // Resets the simulated system, then loads the library. Derived fixtures that need another system at load
  // change it and call Reload.
  void SetUp() override;
  // Unloads the library; fails the test if the platform was misused or a lock is still held.
  void TearDown() override;

  // Unloads and loads again, for what is only checked during a load.
  void Reload();

  sim::VirtualHost& host = sim::VirtualHost::Instance();

  // Without a path the devices become "device-1", "device-2" and so on.
  sim::Interface& Plug(std::shared_ptr<sim::HidDevice> device, std::string path = "");
  // A reader plugged in, connected and active, with the traffic of its connect forgotten and its time gate
  // open.
  std::shared_ptr<sim::Reader> Connected(std::shared_ptr<sim::Reader> reader);

  // Compares all traffic since the last call of either, and forgets it.
  void ExpectTraffic(const Lines& expected, const char* file = __builtin_FILE(), int line = __builtin_LINE());
  // There has been traffic since it was last forgotten, none of it under the library's lock.
  void ExpectNoLock(const char* file = __builtin_FILE(), int line = __builtin_LINE());
  void ForgetTraffic() { host.transcript.Clear(); }
  [[nodiscard]] std::uint64_t Slept() const { return TotalSleep(host.transcript.Events()); }
  // Moves past the time within which an ID is served without asking the reader.
  void LetTimePass(std::uint64_t milliseconds = 1000) { host.clock.tick += milliseconds; }

  // Sets the variable and takes the trace lines; they are compared without time stamp and line feed.
  void StartTrace();
  void ExpectTrace(const Lines& expected, const char* file = __builtin_FILE(), int line = __builtin_LINE());
  [[nodiscard]] static Lines Trace();

  // A folder of this test's own, removed with it.
  std::filesystem::path Folder();
  // Makes it the current folder until the test ends.
  void EnterFolder();

 private:
  std::filesystem::path folder_;
  std::filesystem::path cameFrom_;
  int plugged_ = 0;
};

}  // namespace tavlyn::test
