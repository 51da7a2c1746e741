// A network for this process and its children only, so that no other program has its addresses and ports. If
// that is not allowed, they run in the machine's.
#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "tests/boundary/far_end.h"

namespace tavlyn::boundary {
namespace {

// This network has no name server, so the host gets the one name that needs none.
constexpr char kHostName[] = "localhost";
constexpr int kOwn = CLONE_NEWNET | CLONE_NEWUTS;

bool WriteText(const char* file, const std::string& text) {
  const int opened = open(file, O_WRONLY | O_CLOEXEC);
  const bool written = write(opened, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  close(opened);
  return written;
}

// A user who may not create a network may create one in a user namespace, under the same user ID.
bool LeaveAsOwnUser() {
  const auto itself = [](unsigned id) { return std::to_string(id) + ' ' + std::to_string(id) + " 1"; };
  const std::string user = itself(geteuid());
  const std::string group = itself(getegid());
  return unshare(CLONE_NEWUSER | kOwn) == 0 && WriteText("/proc/self/uid_map", user) &&
         WriteText("/proc/self/setgroups", "deny") && WriteText("/proc/self/gid_map", group);
}

}  // namespace

bool LeaveForOwnNetwork() {
  if (unshare(kOwn) != 0 && (geteuid() == 0 || !LeaveAsOwnUser())) return false;
  ifreq loopback{};
  std::strcpy(loopback.ifr_name, "lo");
  loopback.ifr_flags = IFF_UP;
  const int any = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  const bool isUp = ioctl(any, SIOCSIFFLAGS, &loopback) == 0;
  close(any);
  return isUp && sethostname(kHostName, std::strlen(kHostName)) == 0;
}

}  // namespace tavlyn::boundary
