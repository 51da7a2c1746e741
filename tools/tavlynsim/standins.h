// How programs see the simulated devices: through the stand-ins for system libraries, which are beside
// tavlynsim both built and installed, and through serial ports.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/carriers/served.h"
#include "tools/tavlynsim/environment.h"

namespace tavlyn::sim {

// The variables that the library reads.
inline constexpr const char* kPortFolderVariable = "TAVLYNAPI_PORT_DIR";
inline constexpr const char* kLibusbVariable = "TAVLYNAPI_LIBUSB";

// What programs need to see HID devices: variables, or DLLs to load. False on an error, described by
// problem.
bool AddHidStandin(Variables& variables, std::vector<std::string>& preload, std::string& problem);
// The search path of libraries goes on with that of this process.
void JoinSearchPath(Variables& variables);
// The file of the stand-in for libusb-0.1, if the library trusts it.
std::optional<std::string> UsbStandin(std::string& problem);
// Port COM number, under its name in the folder. Null on an error, which problem then describes.
std::unique_ptr<Served> MakePort(ByteDevice& device, const std::string& folder, unsigned number,
                                 std::string& problem);

}  // namespace tavlyn::sim
