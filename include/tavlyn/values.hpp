/// @file
/// What the devices hand out: bytes, IDs of cards, error words.
#ifndef TAVLYN_VALUES_HPP
#define TAVLYN_VALUES_HPP

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

#include "../api/error_text.h"
#include "../api/types.h"

namespace tavlyn {

/// Elements that somebody else owns, as std::span shows them in C++20.
template <class Element>
class view {
 public:
  constexpr view() = default;
  constexpr view(Element* elements, std::size_t count) : elements_(elements), count_(count) {}

  constexpr Element* data() const { return elements_; }
  constexpr std::size_t size() const { return count_; }
  constexpr bool empty() const { return count_ == 0; }
  constexpr Element* begin() const { return elements_; }
  constexpr Element* end() const { return elements_ + count_; }
  constexpr Element& operator[](std::size_t at) const { return elements_[at]; }

 private:
  Element* elements_ = nullptr;
  std::size_t count_ = 0;
};

using bytes = view<const std::uint8_t>;

/// Hexadecimal digits, two for each byte, without blanks.
inline std::string hex(bytes shown) {
  constexpr char digits[] = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : shown) {
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

/// The bits of a card.
class card_id {
 public:
  static constexpr std::size_t most_bytes = 32;

  constexpr card_id() = default;
  /// As GetActiveID32() hands them out.
  constexpr card_id(unsigned bits, const std::array<std::uint8_t, most_bytes>& lowest_first)
      : bits_(bits), bytes_(lowest_first) {}

  constexpr unsigned bits() const { return bits_; }
  /// As many as the bits need, lowest first.
  tavlyn::bytes bytes() const {
    const std::size_t count = (std::size_t{bits_} + 7) / 8;
    return {bytes_.data(), count < most_bytes ? count : most_bytes};
  }
  /// The highest byte first, as tavlynctl shows it.
  std::string hex() const {
    std::array<std::uint8_t, most_bytes> highest_first{};
    const tavlyn::bytes own = bytes();
    for (std::size_t at = 0; at < own.size(); ++at) highest_first[at] = own[own.size() - 1 - at];
    return tavlyn::hex({highest_first.data(), own.size()});
  }

  friend bool operator==(const card_id& one, const card_id& other) {
    return one.bits_ == other.bits_ && one.bytes_ == other.bytes_;
  }
  friend bool operator!=(const card_id& one, const card_id& other) { return !(one == other); }
  /// For sets and maps.
  friend bool operator<(const card_id& one, const card_id& other) {
    return std::pair(one.bits_, one.bytes_) < std::pair(other.bits_, other.bytes_);
  }

 private:
  unsigned bits_ = 0;
  std::array<std::uint8_t, most_bytes> bytes_{};
};

/// Why a call failed: a TAVLYN_ERR_ word of api/types.h, or a sum of several.
class error_word {
 public:
  constexpr error_word() = default;
  constexpr explicit error_word(std::uint32_t value) : value_(value) {}

  constexpr std::uint32_t value() const { return value_; }
  /// The word in words.
  std::string text() const {
    char room[TAVLYN_ERROR_TEXT_SIZE];
    return tavlyn_error_text(value_, room, sizeof room);
  }
  /// "0x20202"
  std::string hex() const {
    std::string digits;
    for (std::uint32_t left = value_; left != 0 || digits.empty(); left /= 16) {
      digits.insert(digits.begin(), "0123456789ABCDEF"[left % 16]);
    }
    return "0x" + digits;
  }

  friend constexpr bool operator==(error_word one, error_word other) { return one.value_ == other.value_; }
  friend constexpr bool operator!=(error_word one, error_word other) { return one.value_ != other.value_; }

 private:
  std::uint32_t value_ = 0;
};

/// A device that is not there, or does not do what it was asked for.
class error : public std::runtime_error {
 public:
  /// The word in words.
  explicit error(error_word word) : error(word, word.text()) {}
  error(error_word word, const std::string& text) : error(word, text, text) {}
  /// With a message that says more than the text.
  error(error_word word, const std::string& text, const std::string& message)
      : std::runtime_error(message + (word == error_word() ? "" : " (error word " + word.hex() + ")")),
        word_(word),
        text_(text) {}

  error_word word() const noexcept { return word_; }
  /// The cause, without the word's number and what else the message says.
  const std::string& text() const noexcept { return text_; }

 private:
  error_word word_;
  std::string text_;
};

}  // namespace tavlyn

#endif
