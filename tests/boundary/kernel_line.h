// The settings of a serial line as the kernel has them, which can express every speed. The kernel's own
// header for them cannot be included with <termios.h>.
#pragma once

#include <sys/ioctl.h>

#include <array>
#include <cstdint>

namespace tavlyn::boundary {

struct KernelLine {
  std::uint32_t input, output, control, dialogue;
  std::uint8_t discipline;
  std::array<std::uint8_t, 19> characters;
  std::uint32_t inputSpeed, outputSpeed;
};
inline constexpr unsigned long kGetLine = _IOR('T', 0x2A, KernelLine);
inline constexpr unsigned long kSetLine = _IOW('T', 0x2B, KernelLine);

// 0 if the descriptor is not a serial line.
inline std::uint32_t SpeedOf(int descriptor) {
  KernelLine line{};
  return ioctl(descriptor, kGetLine, &line) == 0 ? line.outputSpeed : 0;
}

}  // namespace tavlyn::boundary
