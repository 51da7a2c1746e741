// How programs come to see the simulated devices: by the stand-ins for system libraries that lie beside
// tavlynsim, built or installed, and by serial ports.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/carriers/served.h"
#include "tools/tavlynsim/child.h"

namespace tavlyn::sim {

// What the library looks at.
inline constexpr const char* kPortFolderVariable = "TAVLYNAPI_PORT_DIR";
inline constexpr const char* kLibusbVariable = "TAVLYNAPI_LIBUSB";

// What a command needs to see HID devices: variables, or DLLs to load. False: problem tells why.
bool AddHidStandin(Child::Variables& variables, std::vector<std::string>& preload, std::string& problem);
// The file of the stand-in for libusb-0.1, when it is one that the library trusts.
std::optional<std::string> UsbStandin(std::string& problem);
// Port COM number, its name in the folder. Null: problem tells why.
std::unique_ptr<Served> MakePort(ByteDevice& device, const std::string& folder, unsigned number,
                                 std::string& problem);

}  // namespace tavlyn::sim
