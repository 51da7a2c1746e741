// Which file libusb-0.1 is loaded from, if it may be (platform/linux/trusted_file.h).
#pragma once

#include "platform/path.h"

namespace tavlyn::platform {

// Without links: the file that TAVLYNAPI_LIBUSB names, else the system's; empty when there is none.
Path LibusbFile();

}  // namespace tavlyn::platform
