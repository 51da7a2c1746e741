// The stand-ins for system libraries that lie beside the program, built or installed.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tavlyn::sim {

// What the library looks at.
inline constexpr const char* kPortFolderVariable = "TAVLYNAPI_PORT_DIR";
inline constexpr const char* kLibusbVariable = "TAVLYNAPI_LIBUSB";

// The folder of the one for hidapi. None: problem tells why.
std::optional<std::filesystem::path> HidStandinFolder(std::string& problem);
// The file of the one for libusb-0.1, when it is one that the library trusts.
std::optional<std::string> UsbStandin(std::string& problem);

// A search path with the folder in front of the rest, which may be null.
std::string WithFolderFirst(const std::filesystem::path& folder, const char* rest);

}  // namespace tavlyn::sim
