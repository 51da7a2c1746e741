// The parts of the test program; each runs in a process of its own.
#pragma once

namespace tavlyn::kernel {

// The simulated devices as the system's hidapi sees them.
void CarrierChecks();

// The library, given by its path: the life of one reader, then devices of every kind side by side.
void ReaderChecks(const char* libraryPath);
void DeviceChecks(const char* libraryPath);

// Each family's life, and its cable pulled in the middle.
void FamilyChecks(const char* libraryPath);

// The machine suspended and resumed while devices are connected, and in the middle of each operation.
void SuspendChecks(const char* libraryPath);

// Two programs on one node, and on one port; Partner is the second one's process.
void SharingChecks(const char* libraryPath);
void PartnerChecks(const char* libraryPath);

// A user who may not open the node, and then may; Unprivileged is that user's process.
void PermissionChecks(const char* libraryPath);
void UnprivilegedChecks(const char* libraryPath, bool mayOpen);

// The command-line tool, given by its path, watching a reader whose cards come and go.
void WatchChecks(const char* toolPath);

}  // namespace tavlyn::kernel
