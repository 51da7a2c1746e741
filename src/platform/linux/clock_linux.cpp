#include <cerrno>
#include <ctime>

#include "platform/linux/parts.h"

namespace tavlyn::platform {

std::uint64_t LinuxClock::Tick() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * 1000 + static_cast<std::uint64_t>(now.tv_nsec) / 1'000'000;
}

void LinuxClock::Sleep(std::uint32_t milliseconds) {
  timespec left{};
  left.tv_sec = milliseconds / 1000;
  left.tv_nsec = static_cast<long>(milliseconds % 1000) * 1'000'000;
  while (nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

std::tm LinuxClock::LocalTime() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return local;
}

}  // namespace tavlyn::platform
