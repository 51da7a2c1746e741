// Finding the device on the bulk USB pipe.
#pragma once

#include "links/probe.h"

namespace tavlyn {

bool SearchLibusb(const Probe& probe);

}  // namespace tavlyn
