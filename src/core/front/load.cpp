#include "core/front/load.h"

#include "api.h"
#include "core/state.h"
#include "core/trace.h"
#include "core/wipe.h"
#include "hid/vidpid_table.h"
#include "links/com_search.h"
#include "links/libusb_pipe.h"
#include "links/link_socket.h"

namespace tavlyn {
namespace {

void ResetReaderState() {
  TunnelLink = 0;
  AsciiProtocol = 0;
  ComSrchLo = 1;
  ComSrchHi = 8;
  // Deliberately the other way about than the setter stores them.
  VComSrchHi = 1;
  VComSrchLo = 256;
  ActDev = 0;
  DevCnt = 0;
  DevTypeSrch = -1;
}

// What one process has once and a fresh load finds zero; only a library loaded again in place needs it.
void ResetProcessState() {
  LinkSocket = platform::kNoHandle;
  ForgetLibusbRing();
  VirtualComFlags.fill(0);
  DefaultBaud = 9600;
  SrchIpAddr = {};
  SrchIpPort = 0;
  SearchErr = 0;
  StatusWord = 0;
  EnhanceSecurityOn = 0;
  LastIDBytes.fill(0);
  LastIDBits = 0;
  LastIDLen = 0;
  Buffers = {};
  Sorbane = {};
  SonarShadow = {};
  AnalyzerStatus = -1;
  AnalyzerCount = 0;
  ForgetVidPidTable();
}

}  // namespace

void Load() {
  platform::Host& host = platform::TheHost();
  host.mutex.Create();
  ResetProcessState();
  DevTable.Reset();
  HidFoundCnt = 0;
  // Without the HID libraries the library stays loaded and finds no HID device.
  host.hid.Load();
  ResetReaderState();
  ConnectMask = ~0U;
  UnsupportedValue = 0;
  StartTrace();
}

void WipeKeys() {
  for (tsDevEntry& entry : DevTable.Reached()) {
    for (tsCfgSlot& slot : entry.CfgSlot) Wipe(&slot.HashKeyData, sizeof slot.HashKeyData);
  }
  Wipe(&Buffers, sizeof Buffers);
}

void Unload() {
  USBDisconnect();
  USBDisconnect();
  // The process may go on without the library, and keep its memory.
  WipeKeys();
  platform::TheHost().hid.Unload();
  platform::TheHost().mutex.Close();
  StopTrace();
}

}  // namespace tavlyn
