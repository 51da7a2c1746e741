#include <windows.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "tools/terminal.h"

namespace tavlyn {
namespace {

// The terminals of MSYS2, Git Bash and Cygwin are pipes to a program, recognised by their names:
// \msys-1888ae32e00d56aa-pty0-to-master.
bool IsTerminalsPipe(HANDLE stream) {
  constexpr DWORD kNameAt = offsetof(FILE_NAME_INFO, FileName);
  std::array<wchar_t, MAX_PATH> name{};
  alignas(FILE_NAME_INFO) std::array<std::byte, kNameAt + sizeof name> room{};
  if (GetFileType(stream) != FILE_TYPE_PIPE ||
      GetFileInformationByHandleEx(stream, FileNameInfo, room.data(), static_cast<DWORD>(room.size())) == 0) {
    return false;
  }
  // The buffer after the name is zeros.
  std::memcpy(name.data(), room.data() + kNameAt, sizeof name - sizeof name.back());
  const std::wstring_view text(name.data());
  return (text.starts_with(L"\\msys-") || text.starts_with(L"\\cygwin-")) &&
         text.find(L"-pty") != std::wstring_view::npos;
}

// NUL is a character device too, but has no mode.
bool IsTerminal(DWORD which) {
  HANDLE stream = GetStdHandle(which);
  DWORD mode = 0;
  return GetConsoleMode(stream, &mode) != 0 || IsTerminalsPipe(stream);
}

// A console of Windows 10 obeys them when it is told to; the other terminals always do.
bool TakesColours(DWORD which) {
  HANDLE stream = GetStdHandle(which);
  DWORD mode = 0;
  if (GetConsoleMode(stream, &mode) == 0) return IsTerminalsPipe(stream);
  return SetConsoleMode(stream, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

UINT shownBefore;

}  // namespace

bool InputIsTerminal() { return IsTerminal(STD_INPUT_HANDLE); }
bool OutputIsTerminal() { return IsTerminal(STD_OUTPUT_HANDLE); }
bool ErrorsAreOnTerminal() { return IsTerminal(STD_ERROR_HANDLE); }

bool OutputTakesColours() { return TakesColours(STD_OUTPUT_HANDLE); }
bool ErrorsTakeColours() { return TakesColours(STD_ERROR_HANDLE); }

void ShowAllLanguages() {
  shownBefore = GetConsoleOutputCP();
  if (shownBefore == 0 || SetConsoleOutputCP(CP_UTF8) == 0) return;
  std::atexit([] { SetConsoleOutputCP(shownBefore); });
}

}  // namespace tavlyn
