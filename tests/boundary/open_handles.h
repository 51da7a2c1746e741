// What this process holds open: descriptors on Linux, handles on Windows.
#pragma once

namespace tavlyn::boundary {

int OpenHandles();

}  // namespace tavlyn::boundary
