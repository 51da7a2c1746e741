// A path in its own buffer, so that it never needs memory that may not be available. One that does not fit is
// empty, which names nothing.
#pragma once

#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <string_view>

namespace tavlyn::platform {

class Path {
 public:
  Path() = default;
#if defined(__GNUC__)
  __attribute__((format(printf, 2, 3)))
#endif
  explicit Path(const char* format, ...) {
    std::va_list parts;
    va_start(parts, format);
    const int length = std::vsnprintf(text_.data(), text_.size(), format, parts);
    va_end(parts);
    // A negative length, which stands for a failure, is a huge one here.
    if (static_cast<std::size_t>(length) >= text_.size()) Cut(0);
  }

  [[nodiscard]] const char* c_str() const { return text_.data(); }
  [[nodiscard]] std::string_view View() const { return text_.data(); }
  [[nodiscard]] bool IsEmpty() const { return text_.front() == '\0'; }
  void Cut(std::size_t length) { text_[length] = '\0'; }

 private:
  std::array<char, 4096> text_{};
};

}  // namespace tavlyn::platform
