// The state of the library: the table of devices, and one object with every other variable.
#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <cstdint>
#include <cstdio>
#include <span>

#include "api.h"
#include "core/mirror.h"
#include "core/text.h"
#include "platform/platform.h"

namespace tavlyn {

class SerialPort;

inline constexpr std::int16_t kTableEntries = 127;
inline constexpr std::size_t kCfgSlots = 11;
inline constexpr std::size_t kCardTypes = 1025;
inline constexpr std::uint16_t kHighestConfig = 10;
inline constexpr std::size_t kCpus = 3;
inline constexpr std::size_t kFirmwareWords = 5;  // the sixth of a row is unused

// DevTypeSrch: the links that a search looks at.
enum Link : std::int16_t { kAllLinks = -1, kUsb, kCom, kEthernet };

// LinkKind
inline constexpr std::uint16_t kByReports = 0;
inline constexpr std::uint16_t kBySerialPort = 1;

// ProductKind: kReader and so on
#define PRODUCT(name, kind, vid, pid) inline constexpr std::uint32_t k##name = kind;
#include "core/products.inc"
#undef PRODUCT

// PlusState
inline constexpr std::uint32_t kPlusUnknown = 0;
inline constexpr std::uint32_t kPlainReader = 1;
inline constexpr std::uint32_t kPlusReader = 2;

struct tsDevEntry {
  std::int32_t bFound;
  std::uint32_t LastLibErr;
  std::uint16_t LinkKind;
  std::uint32_t ProductKind;
  platform::Handle hDev;
  char DevName[512];
  char PartNumber[25];
  char FWFilename[65];
  char FullFWVersion[66];
  std::uint16_t LUID;
  std::uint16_t DID;
  std::uint32_t bLUIDDirty;
  std::uint16_t DID2;  // second version word, of magstripe and sonar devices
  std::uint32_t SN;
  std::uint32_t bSepFldCapable;      // until a separator-field transfer fails
  std::uint32_t bPartNumberPending;  // until a part number read fails
  std::array<tsCfgSlot, kCfgSlots> CfgSlot;
  tsSorbaneBlock SorbaneBlock;
  tsSonarBlock SonarBlock;
  SerialPort* pSerialPort;  // owned
  std::uint32_t PlusState;
  std::uint16_t MaxConfig;  // highest index
  std::uint8_t ActConfig;
  std::array<std::array<std::uint32_t, kFirmwareWords + 1>, kCpus> FWVersion;
  std::array<std::uint16_t, kCardTypes> CardTypeList;  // ends at the first 0; not known when it begins with 0
  std::array<std::uint8_t, 4> DevIpAddr;
  std::array<std::uint8_t, 6> DevMacAddr;
  std::uint64_t LastTxTick;  // tick of the last feature report, either way
  std::int32_t VidPidRow;    // row of VidPidTable that matched, or -1
  std::uint32_t bReportId1;  // reports carry the ID 1, not 0

  tsCfgSlot& ActiveSlot() { return CfgSlot[ActConfig <= kHighestConfig ? ActConfig : 0]; }
};

// An entry gets its defaults when it is first reached: writing all 127 would cost a load a megabyte and most
// of its time.
class DeviceTable {
 public:
  tsDevEntry& operator[](std::integral auto index) {
    const auto at = static_cast<std::size_t>(index);
    if (at >= reached_) Reach(at + 1);
    return entries_[at];
  }
  std::span<tsDevEntry> First(std::integral auto count) {
    const auto entries = static_cast<std::size_t>(count);
    if (entries > reached_) Reach(entries);
    return {entries_.data(), entries};
  }
  // All entries after these have their defaults.
  std::span<tsDevEntry> Reached() { return {entries_.data(), reached_}; }
  // Gives every entry its defaults again. Entry 0 is reached at once, because some exports use it in every
  // situation.
  void Reset();

 private:
  void Reach(std::size_t count);

  std::array<tsDevEntry, kTableEntries> entries_{};
  std::size_t reached_ = 0;
};

inline constinit DeviceTable DevTable;

// Where a connect looks. It survives connects and disconnects.
struct SearchSettings {
  std::uint32_t ConnectMask = ~0U;
  std::int16_t DevTypeSrch = kAllLinks;
  std::uint16_t ComSrchLo = 1;
  std::uint16_t ComSrchHi = 8;
  // Swapped on purpose: until VirtualComSearchRange is called, Hi holds the low end.
  std::uint16_t VComSrchHi = 1;
  std::uint16_t VComSrchLo = 256;
  std::array<std::uint8_t, 4> SrchIpAddr{};
  std::uint16_t SrchIpPort = 0;
  std::uint32_t DefaultBaud = 9600;  // of the readers' ports
  // VirtualComFlags[n]: COM n belongs to a virtual port of the maker or to a PCMCIA card.
  std::array<std::uint8_t, platform::kHighestCom + 1> VirtualComFlags{};
};

struct LinkState {
  // While it is open every serial byte that no libusb device takes and, with TunnelLink set, every report
  // travels over it.
  platform::Handle LinkSocket = platform::kNoHandle;
  std::uint8_t TunnelLink = 0;
  // How many surplus bytes of the bulk device the next reads deliver as zeros. It may fall below 0.
  std::int32_t ringCount = 0;
};

struct Filter {
  std::uint32_t mask;
  std::uint32_t compare;
};

struct tsVidPidRow {
  std::array<Filter, 2> filter;  // number 0 is never written
  std::uint16_t VID;             // 0 ends the table for everyone who reads it
  std::uint16_t PID;
  char VendorName[48];
};

inline constexpr std::int32_t kVidPidRows = 51;

// The USB identities of readers, as the last connect read them.
struct VidPidState {
  std::array<tsVidPidRow, kVidPidRows> VidPidTable{};
  std::int32_t VidPidCnt = 0;
  // DEFAULT1MASK and DEFAULT1COMPARE at index 1; no load of the table clears them.
  std::array<Filter, 2> DefaultFilter{};
  // Where the file was found, so that it is found again when the application has changed directory.
  std::array<char, 260> path{};
};

inline constexpr std::size_t kIdBytes = 32;

// The ID of the last fetch, on whichever device.
struct IdCache {
  std::array<std::uint8_t, kIdBytes> LastIDBytes{};
  std::uint32_t LastIDBits = 0;
  std::uint16_t LastIDLen = 0;  // the length asked for, which bounds getActiveID_byte
};

struct AnalyzerState {
  std::int32_t AnalyzerStatus = -1;  // -1: the last query failed
  std::uint8_t AnalyzerCount = 0;    // of the last good query, on whichever device
};

struct ReaderState {
  std::int16_t AsciiProtocol = 0;
  std::uint32_t StatusWord = 0;  // SW1 SW2 of the last serial exchange that got that far
  // The flag in the separator data of configuration 0, as of the last read. While it is set, both hash keys
  // are always sent.
  std::uint8_t EnhanceSecurityOn = 0;
};

// The last four words are passed on by their index; what they mean is up to the reader.
struct IdRecord {
  std::array<std::uint8_t, kIdBytes> id;
  std::int16_t at32;
  std::uint16_t at33;
  std::uint8_t at34;
  std::uint8_t at35;
};

// What exports keep between calls, for callers that pass or fetch bytes one by one or that get a pointer.
struct CallBuffers {
  PathBuffer savePath{};
  PathBuffer loadPath{};
  PathBuffer arrivalPath{};
  PathBuffer removalPath{};
  // Copied when a program asks for character 0, so that it can read on while the table changes.
  std::array<char, 25> partNumber{};
  // Position 0 is the report ID's; the last one is never sent.
  std::array<std::uint8_t, 10> RawCmd{};
  std::array<std::uint8_t, 10> RawReply{};
  std::array<char, 41> rawText{};
  std::array<char, 25> readerText{};
  std::array<std::uint8_t, 32> readerEsn{};
  std::array<std::uint8_t, 256> cardData{};
  std::array<std::uint8_t, 1024> portRead{};
  std::array<std::uint8_t, 1024> portQuickRead{};
  std::array<char, 2048> asciiReply{};
  IdRecord QueuedID{};
};

namespace magstripe {
// Report ID, then the packet of an exchange.
using PacketReport = std::array<std::uint8_t, 25>;
// Header, the data of a track, zeros.
using Track = std::array<std::uint8_t, 257>;
}  // namespace magstripe

// For magnetic-stripe readers. Pointers that programs were given point here.
struct MagstripeBuffers {
  magstripe::PacketReport request{};
  magstripe::PacketReport reply{};
  magstripe::Track track{};
  magstripe::Track trackCopy{};  // for byte by byte reading
  magstripe::Track field{};
  std::array<std::uint8_t, 32> queuedId{};
  std::uint16_t queueCount = 0;
  std::uint8_t queueState = 0;
};

struct TraceState {
  tavlyn_marker_function MarkerFunc = nullptr;
  std::FILE* LogStream = nullptr;
  bool bWire = false;  // core/wire.h
};

// Every variable of the process except for the table of devices, which writes its entries only when they are
// reached. The values given here are those after a load.
struct Shared {
  std::int16_t ActDev = 0;
  std::int16_t DevCnt = 0;
  std::int32_t HidFoundCnt = 0;
  std::uint16_t UnsupportedValue = 0;
  std::uint32_t SearchErr = 0;  // of searches; GetLastLibErr never shows it
  SearchSettings search;
  LinkState link;
  VidPidState vidPid;
  IdCache id;
  AnalyzerState analyzer;
  ReaderState reader;
  CallBuffers buffers;
  MagstripeBuffers magstripe;
  SonarWords sonarShadow{};  // the records as the last read delivered them, before Sanitize
  TraceState trace;
};
inline constinit Shared shared;

// Puts everything back to the state of a process that has just started.
void ResetState();

// The entry that ActDev names, unchecked: everything that sets ActDev keeps it within the table.
inline tsDevEntry& EntryOfActDev() { return DevTable[shared.ActDev]; }

inline std::span<tsDevEntry> LiveEntries() {
  return DevTable.First(std::clamp<std::int16_t>(shared.DevCnt, 0, kTableEntries));
}

inline bool SearchAllows(Link link) {
  return shared.search.DevTypeSrch == link || shared.search.DevTypeSrch == kAllLinks;
}

// Whether the active device is reached over a serial port, in frames or text, instead of by reports.
inline bool OnSerialPort() { return EntryOfActDev().LinkKind == kBySerialPort; }

inline bool ActiveInRange() { return shared.ActDev >= 0 && shared.ActDev < shared.DevCnt; }

// Makes a device active. False and without effect when there is no such device, except that ActDev becomes 0
// in an empty table.
bool Activate(std::int16_t index);

}  // namespace tavlyn
