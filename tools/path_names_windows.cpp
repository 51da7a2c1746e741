#include <windows.h>

#include "tools/path_names.h"

namespace tavlyn {

// By the program's code page, as the C library and imported functions take names. The manifest makes it UTF-8
// if the version of Windows supports that.
std::filesystem::path PathOf(const std::string& name) {
  std::wstring path(name.size(), L'\0');
  const auto length = static_cast<int>(name.size());
  path.resize(static_cast<std::size_t>(
      MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, name.data(), length, path.data(), length)));
  return path;
}

std::string NameOfPath(const std::filesystem::path& path) {
  constexpr std::size_t kMostBytes = 4;  // in a character
  const std::wstring& text = path.native();
  std::string name(text.size() * kMostBytes, '\0');
  name.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, text.data(),
                                                           static_cast<int>(text.size()), name.data(),
                                                           static_cast<int>(name.size()), nullptr, nullptr)));
  return name;
}

}  // namespace tavlyn
