// A stand-in for HID.DLL that serves simulated devices: those of the tavlynsim process that TAVLYNSIM_SOCKET
// names, else those of a rack of its own. hid.def gives the functions their public names.
#include <winsock2.h>

// winsock2.h has to come before it.
#include <windows.h>

// windows.h has to come first.
#include <hidsdi.h>

#include <cstring>

#include "sim/carriers/standin_control.h"
#include "sim/carriers/windows/standin.h"

using tavlyn::sim::FeatureReportBytes;
using tavlyn::sim::HidIdentity;
using tavlyn::sim::TheStandin;

namespace {

// What a program holds as a device's parsed description.
struct Parsed {
  tavlyn::sim::Usage usage;
  USHORT featureBytes;
};

int Reply(const std::string& text, char* reply, std::size_t size) {
  if (size == 0) return static_cast<int>(text.size());
  const std::size_t count = std::min(text.size(), size - 1);
  std::memcpy(reply, text.data(), count);
  reply[count] = '\0';
  return static_cast<int>(text.size());
}

}  // namespace

extern "C" {

BOOLEAN WINAPI StandinGetAttributes(HANDLE device, HIDD_ATTRIBUTES* attributes) {
  const auto identity = TheStandin().Identity(device);
  if (identity == nullptr || attributes->Size != sizeof *attributes) return FALSE;
  attributes->VendorID = identity->vid;
  attributes->ProductID = identity->pid;
  attributes->VersionNumber = 0x0100;
  return TRUE;
}

BOOLEAN WINAPI StandinGetFeature(HANDLE device, void* report, ULONG size) {
  return TheStandin().GetFeature(device, {static_cast<std::uint8_t*>(report), size}) ? TRUE : FALSE;
}

BOOLEAN WINAPI StandinSetFeature(HANDLE device, void* report, ULONG size) {
  return TheStandin().SetFeature(device, {static_cast<const std::uint8_t*>(report), size}) ? TRUE : FALSE;
}

void WINAPI StandinGetHidGuid(GUID* guid) {
  *guid = {0x4D1E55B2, 0xF16F, 0x11CF, {0x88, 0xCB, 0x00, 0x11, 0x11, 0x00, 0x00, 0x30}};
}

BOOLEAN WINAPI StandinGetPreparsedData(HANDLE device, PHIDP_PREPARSED_DATA* parsed) {
  const auto identity = TheStandin().Identity(device);
  if (identity == nullptr || identity->usages.empty()) return FALSE;
  *parsed = reinterpret_cast<PHIDP_PREPARSED_DATA>(
      new Parsed{identity->usages.front(), static_cast<USHORT>(FeatureReportBytes(*identity))});
  return TRUE;
}

BOOLEAN WINAPI StandinFreePreparsedData(PHIDP_PREPARSED_DATA parsed) {
  delete reinterpret_cast<Parsed*>(parsed);
  return TRUE;
}

NTSTATUS WINAPI StandinGetCaps(PHIDP_PREPARSED_DATA parsed, HIDP_CAPS* caps) {
  const auto* description = reinterpret_cast<const Parsed*>(parsed);
  *caps = {};
  caps->UsagePage = description->usage.page;
  caps->Usage = description->usage.usage;
  caps->FeatureReportByteLength = description->featureBytes;
  return HIDP_STATUS_SUCCESS;
}

BOOLEAN WINAPI StandinSetNumInputBuffers(HANDLE device, ULONG) {
  return TheStandin().Identity(device) != nullptr ? TRUE : FALSE;
}

// Discards what is waiting at the program's own end of the pipe.
BOOLEAN WINAPI StandinFlushQueue(HANDLE device) {
  if (TheStandin().Identity(device) == nullptr) return FALSE;
  DWORD waiting = 0;
  while (PeekNamedPipe(device, nullptr, 0, nullptr, &waiting, nullptr) && waiting != 0) {
    std::uint8_t bytes[64];
    OVERLAPPED overlapped{};
    DWORD count = 0;
    ReadFile(device, bytes, sizeof bytes, nullptr, &overlapped);
    if (!GetOverlappedResult(device, &overlapped, &count, TRUE)) break;
  }
  return TRUE;
}

int StandinRun(const char* command, char* reply, std::size_t size) {
  std::string text;
  const bool done = TheStandin().Run(command, text);
  const int length = Reply(text, reply, size);
  return done ? length : -1;
}

const char* StandinHidMarker() { return "HID.DLL"; }

// For the stand-in SETUPAPI.DLL: the path of a class's nth interface; below 0 after the last.
int StandinPath(int keyboards, int index, char* path, std::size_t size) {
  const auto paths = TheStandin().Paths(keyboards != 0);
  if (index < 0 || static_cast<std::size_t>(index) >= paths.size()) return -1;
  return Reply(paths[static_cast<std::size_t>(index)], path, size);
}

}  // extern "C"
