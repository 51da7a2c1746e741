// The test program inside the virtual machine: guest [usb] SECTION [FILE …].
#include <cstdio>
#include <string>

#include "tests/kernel/bus.h"
#include "tests/kernel/checks.h"
#include "tests/kernel/sections.h"

int main(int argc, char** argv) {
  using namespace tavlyn::kernel;
  onUsb = argc > 1 && std::string(argv[1]) == "usb";
  if (onUsb) {
    --argc;
    ++argv;
  }
  const std::string section = argc > 1 ? argv[1] : "";
  if (section == "carrier") {
    CarrierChecks();
  } else if (section == "reader" && argc == 3) {
    ReaderChecks(argv[2]);
  } else if (section == "devices" && argc == 3) {
    DeviceChecks(argv[2]);
  } else if (section == "families" && argc == 3) {
    FamilyChecks(argv[2]);
  } else if (section == "suspend" && argc == 3) {
    SuspendChecks(argv[2]);
  } else if (section == "sharing" && argc == 3) {
    SharingChecks(argv[2]);
  } else if (section == "partner" && argc == 3) {
    PartnerChecks(argv[2]);
  } else if (section == "permission" && argc == 3) {
    PermissionChecks(argv[2]);
  } else if (section == "unprivileged" && argc == 4) {
    UnprivilegedChecks(argv[2], std::string(argv[3]) == "allowed");
  } else if (section == "watch" && argc == 3) {
    WatchChecks(argv[2]);
  } else {
    (void)std::fprintf(stderr,
                       "usage: guest [usb] carrier\n"
                       "       guest [usb] reader|devices|families|suspend|sharing|permission LIBRARY\n"
                       "       guest watch TOOL\n");
    return 2;
  }
  return failedChecks == 0 ? 0 : 1;
}
