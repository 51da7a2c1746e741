// Finding what sits on the bulk USB device.
#pragma once

#include "links/probe.h"

namespace tavlyn {

bool SearchLibusb(const Probe& probe);

}  // namespace tavlyn
