// Redirects a loaded library's imports to functions of the program that loaded it.
#pragma once

#include <winsock2.h>

// winsock2.h has to come first.
#include <windows.h>

#include <cstdint>
#include <cstring>

namespace tavlyn::boundary {

template <typename Type>
Type* At(HMODULE image, DWORD offset) {
  return reinterpret_cast<Type*>(reinterpret_cast<char*>(image) + offset);
}

struct Import {
  const char* name;
  void* replacement;
};

// Replaces a function that the image imports by another. False if it imports none of that name.
inline bool Replace(HMODULE image, const Import& import) {
  const auto* dos = At<IMAGE_DOS_HEADER>(image, 0);
  const auto* nt = At<IMAGE_NT_HEADERS>(image, static_cast<DWORD>(dos->e_lfanew));
  const DWORD place = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (const auto* from = At<IMAGE_IMPORT_DESCRIPTOR>(image, place); from->Name != 0; ++from) {
    const auto* wanted = At<IMAGE_THUNK_DATA>(image, from->OriginalFirstThunk);
    auto* slot = At<void*>(image, from->FirstThunk);
    for (; wanted->u1.AddressOfData != 0; ++wanted, ++slot) {
      if (IMAGE_SNAP_BY_ORDINAL(wanted->u1.Ordinal)) continue;
      const auto* found = At<IMAGE_IMPORT_BY_NAME>(image, static_cast<DWORD>(wanted->u1.AddressOfData));
      if (std::strcmp(reinterpret_cast<const char*>(found->Name), import.name) != 0) continue;
      DWORD before = 0;
      VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
      *slot = import.replacement;
      return true;
    }
  }
  return false;
}

// Makes an image use Sleep for all pauses, as on a Windows without high-resolution timers.
inline HANDLE WINAPI NoTimer(SECURITY_ATTRIBUTES*, const wchar_t*, DWORD, DWORD) { return nullptr; }
inline const Import kNoTimers{"CreateWaitableTimerExW", reinterpret_cast<void*>(NoTimer)};

// The function itself, even if this program's own import of it is redirected.
template <typename Function>
Function* Original(const char* library, const char* name) {
  return reinterpret_cast<Function*>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(library), name)));
}

// While it lives, this program's calls of a function of the system go to another one.
class Redirected {
 public:
  Redirected(const char* library, const char* name, void* replacement)
      : import_{name, reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(library), name))},
        done_(Replace(GetModuleHandleA(nullptr), {name, replacement})) {}
  ~Redirected() { Replace(GetModuleHandleA(nullptr), import_); }
  Redirected(const Redirected&) = delete;
  Redirected& operator=(const Redirected&) = delete;

  [[nodiscard]] bool Done() const { return done_; }

 private:
  Import import_;
  bool done_;
};

// A function of the same type as another one, which only gives that answer.
template <std::intptr_t kAnswer, typename Result, typename... Arguments>
void* ConstantAnswer(Result(WINAPI*)(Arguments...)) {
  struct Only {
    static Result WINAPI Call(Arguments...) { return (Result)kAnswer; }
  };
  return reinterpret_cast<void*>(Only::Call);
}

}  // namespace tavlyn::boundary
