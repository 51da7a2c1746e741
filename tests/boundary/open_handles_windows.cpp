#include <windows.h>

// windows.h has to come first.
#include <winternl.h>

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <vector>

#include "tests/boundary/open_handles.h"

namespace tavlyn::boundary {
namespace {

constexpr auto kHandlesOfAll = static_cast<SYSTEM_INFORMATION_CLASS>(16);
constexpr std::size_t kLongestList = std::size_t{1} << 26;

struct HandleList {
  ULONG count;
  struct {
    USHORT process;
    USHORT others[3];
    void* object;
    ULONG access;
  } entries[1];
};

}  // namespace

// GetProcessHandleCount gives 0 under Wine; the list of every process's handles is complete.
int OpenHandles() {
  std::vector<std::byte> list(std::size_t{1} << 16);
  while (NtQuerySystemInformation(kHandlesOfAll, list.data(), static_cast<ULONG>(list.size()), nullptr) < 0) {
    list.resize(list.size() * 2);
    if (list.size() > kLongestList) throw std::runtime_error("the system does not list its handles");
  }
  const auto* handles = reinterpret_cast<const HandleList*>(list.data());
  const auto own = static_cast<USHORT>(GetCurrentProcessId());
  return static_cast<int>(std::count_if(handles->entries, handles->entries + handles->count,
                                        [own](const auto& one) { return one.process == own; }));
}

}  // namespace tavlyn::boundary
