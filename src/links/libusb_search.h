// Finding the reader on the bulk USB device.
#pragma once

#include "links/probe.h"

namespace tavlyn {

bool SearchLibusbReader(Probe answers);

}  // namespace tavlyn
