#include "tests/boundary/cable_windows.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "tests/boundary/calls.h"

namespace tavlyn::boundary {
namespace {

// In real time, with allowance for a busy machine.
class Patience {
 public:
  void Rest() {
    if (++rests_ > kRests) {
      std::fputs("bytes are lost on the cable\n", stderr);
      std::abort();
    }
    if (rests_ > kQuickRests) ReallyRest();
    SwitchToThread();
  }

 private:
  static constexpr int kQuickRests = 50;
  static constexpr int kRests = 60'000;

  int rests_ = 0;
};

}  // namespace

Cable cable;

void AwaitArrival(HANDLE end, DWORD count) {
  COMSTAT status{};
  Patience patience;
  while (ClearCommError(end, nullptr, &status) && status.cbInQue < count) patience.Rest();
}

DWORD TakeArriving(HANDLE end, DWORD& onTheWay, std::span<std::uint8_t> bytes) {
  const DWORD wanted = std::min(onTheWay, static_cast<DWORD>(bytes.size()));
  DWORD taken = 0;
  for (Patience patience; taken < wanted;) {
    DWORD count = 0;
    ReadFile(end, bytes.data() + taken, wanted - taken, &count, nullptr);
    taken += count;
    if (count == 0) patience.Rest();
  }
  onTheWay -= taken;
  return taken;
}

}  // namespace tavlyn::boundary
