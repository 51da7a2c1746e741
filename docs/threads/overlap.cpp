#include "docs/threads/overlap.h"

#include <cstring>
#include <fstream>
#include <string>

#include "core/state.h"
#include "sim/devices/reader.h"

namespace tavlyn::page {
namespace {

// The files that calls load, by the routines that save them; the last is nobody's.
constexpr std::uint32_t (*kSaves[])(const char*) = {WriteDevCfgToSecureFile, WriteBLEDataToFile,
                                                    WriteBLEKeyToFile, nullptr};
constexpr const char* kPath = "export.txt";  // what Memory::kFileName names

std::string StateNow() {
  const auto entries = DevTable.Reached();
  std::string bytes(reinterpret_cast<const char*>(&shared), sizeof shared);
  return bytes.append(reinterpret_cast<const char*>(entries.data()), entries.size_bytes());
}

}  // namespace

// The path that calls are given names a device that has just arrived, one in the table, and a file; the table
// has another device to choose.
void Watched::Meet() {
  Plug(sim::Reader::Plain(), kPath);
  std::strcpy(EntryOfActDev().DevName, kPath);
  if (shared.DevCnt == 1) {
    DevTable[1] = DevTable[0];
    DevTable[1].pSerialPort = nullptr;
    ++shared.DevCnt;
  }
  for (PathBuffer* path : {&shared.buffers.savePath, &shared.buffers.loadPath, &shared.buffers.arrivalPath,
                           &shared.buffers.removalPath}) {
    std::strcpy(path->data(), kPath);
  }
}

void Watched::Save(std::uint32_t (*save)(const char*)) {
  if (save != nullptr) {
    save(kPath);
  } else {
    std::ofstream(kPath, std::ios::binary)
        << "[Blob1]\r\nhdr=20 7 5 9\r\ndata=1 2 3 4 5\r\n[EOF]\r\niEndOfIniFile=041C75B2\r\n";
  }
}

// So that writing what was there before is seen: an error word that is cleared, a text copied once more.
void Watched::LeaveMarks() {
  constexpr std::uint8_t kMark = 0xA5;
  EntryOfActDev().LastLibErr = kMark;
  shared.SearchErr = kMark;
  shared.id.LastIDBytes.fill(kMark);
  shared.buffers.partNumber.front() = '?';
  shared.buffers.readerText.front() = '?';
  shared.magstripe.field.fill(kMark);
  shared.magstripe.trackCopy.fill(kMark);
}

void Watched::Watch(const test::Export& exported, const test::Variant& variant, Seen& seen) {
  LeaveMarks();
  ForgetTraffic();
  std::string before = StateNow();
  bool locked = false;
  host.mutex.onEdge = [&] {
    std::string now = StateNow();
    if (!locked && now != before) seen.changes = true;
    locked = !locked;
    before = std::move(now);
  };
  test::CallWith(exported, variant);
  host.mutex.onEdge = nullptr;
  if (StateNow() != before) seen.changes = true;
  int depth = 0;
  bool locks = false;
  for (const std::string& each : host.transcript.Lines()) {
    if (each == "mutex lock") ++depth;
    if (each == "mutex unlock") --depth;
    if (each.starts_with("mutex")) locks = true;
    if (depth == 0 && !each.starts_with("mutex")) seen.talks = true;
  }
  (locks ? seen.everLocks : seen.alwaysLocks) = locks;
}

std::map<std::string_view, Overlap> Watched::OverlapOfAll() {
  EnterFolder();
  std::map<std::string_view, Overlap> all;
  for (const test::Export& exported : test::Exports()) {
    Seen seen;
    for (const test::Situation& situation : test::kSituations) {
      for (const auto save : kSaves) {
        Begin(situation);
        host.places.environment.insert("TAVLYNAPI_LOGGING");  // some work only then
        Save(save);
        Meet();
        LetTimePass();
        for (const test::Variant& variant : test::VariantsOf(exported, test::kNumberCount)) {
          Watch(exported, variant, seen);
        }
        if (!exported.hasPointers) break;
      }
    }
    const bool outside = seen.changes || seen.talks;
    Overlap& overlap = all[exported.name];
    if (seen.alwaysLocks && !outside) {
      overlap = Overlap::kLocked;
    } else if (seen.everLocks || seen.talks) {
      overlap = Overlap::kTalks;
    } else {
      overlap = seen.changes ? Overlap::kChanges : Overlap::kReads;
    }
  }
  return all;
}

}  // namespace tavlyn::page
