#include "core/front/load.h"

#include "api.h"
#include "core/state.h"
#include "core/trace.h"
#include "core/wipe.h"

namespace tavlyn {

void Load() {
  platform::Host& host = platform::TheHost();
  host.mutex.Create();
  ResetState();
  // Without the HID libraries the library stays loaded and finds no HID device.
  host.hid.Load();
  StartTrace();
}

void WipeKeys() {
  for (tsDevEntry& entry : DevTable.Reached()) {
    for (tsCfgSlot& slot : entry.CfgSlot) Wipe(&slot.HashKeyData, sizeof slot.HashKeyData);
  }
  Wipe(&shared.buffers, sizeof shared.buffers);
}

void Unload() {
  USBDisconnect();
  USBDisconnect();
  // The process may go on without the library, and with this memory.
  WipeKeys();
  platform::TheHost().hid.Unload();
  platform::TheHost().mutex.Close();
  StopTrace();
}

}  // namespace tavlyn
