// Finding magnetic-stripe readers.
#pragma once

namespace tavlyn {

// SorbaneUSBConnect: the HID devices, then the COM ports.
bool SearchMagstripes();
bool SearchMagstripePorts();

}  // namespace tavlyn
