// Everything that a program can ask of a device, a row each, by calls of exports alone: so the table runs on
// the simulated system and on the built library alike.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

namespace tavlyn::faults {

// Which device, on which link. An operation that is asked where it does not apply has to end well, too.
enum Stage : unsigned {
  kPlain = 1U << 0,     // card readers on feature reports
  kPlus = 1U << 1,      // of two configurations
  kNumbered = 1U << 2,  // with report ID 1
  kCom = 1U << 3,       // card readers on a serial link
  kText = 1U << 4,      // in the ASCII dialect, on a COM port
  kTcp = 1U << 5,       // behind an Ethernet adapter
  kBulk = 1U << 6,      // on the bulk device
  kMagstripe = 1U << 7,
  kSonar = 1U << 8,
  kUdp = 1U << 9,  // adapters alone, which nobody connects to
};
inline constexpr unsigned kReports = kPlain | kPlus | kNumbered;
inline constexpr unsigned kFrames = kCom | kTcp | kBulk;
inline constexpr unsigned kReaders = kReports | kFrames | kText;
inline constexpr unsigned kEvery = kReaders | kMagstripe | kSonar;

// Who calls it: nobody has connected, or the connected program.
enum class Begin { kUnconnected, kConnected };

struct Operation {
  const char* name;
  unsigned stages;
  Begin begin;
  std::uint32_t words;   // the bits that it may leave in the error word, beside TAVLYN_ERR_WRITE_REPORT
  std::string (*run)();  // what it returned and stored
};

std::span<const Operation> Operations();

// Where the device is.
inline constexpr std::uint16_t kComNumber = 3;
inline constexpr std::array<std::uint8_t, 4> kAdapter = {127, 3, 9, 5};
inline constexpr std::uint16_t kAdapterPort = 4001;

// What the last one saved as a file; removed before the next.
std::string Saved();
void ForgetSaved();

// Writes the files that some of them load, by the device that is connected now, into the current folder.
void PrepareFiles();

}  // namespace tavlyn::faults
