// Arguments for any export, made of the fuzzer's bytes. Whatever a pointer points to is memory of exactly the
// size that its call may use, so that AddressSanitizer sees the first byte beyond it.
#pragma once

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "api.h"
#include "fuzz/input.h"
#include "fuzz/memory_file.h"

namespace tavlyn::fuzz {

// Room of calls that take no length, in bytes.
struct Room {
  std::string_view name;
  std::size_t bytes;
};
inline constexpr Room kRooms[] = {
    {"GetDevName", 511},     {"orv_GetDevName", 511}, {"GetHIDGuid", 16},    {"SetHashKeyData", 32},
    {"ReadSecureData", 256}, {"GetObjRangeInfo", 10}, {"GetModuleState", 2},
};
inline constexpr std::size_t kUsualRoom = 4;

inline void NoMarker(const char* /*line*/, std::uint64_t /*length*/) {}

class Arguments {
 public:
  Arguments(std::string_view name, Input& input) : name_(name), input_(input) {}

  // hasLength: the next argument is how long this buffer is.
  template <typename Type, bool kHasLength>
  Type Make() {
    if constexpr (std::is_same_v<Type, tavlyn_marker_function>) {
      return input_.Byte() % 2 == 0 ? nullptr : NoMarker;
    } else if constexpr (std::is_same_v<Type, const char*>) {
      // The only one that need not end in a NUL.
      return name_ == "WriteSerialPort" ? reinterpret_cast<Type>(Buffer<char, kHasLength>()) : Text();
    } else if constexpr (std::is_pointer_v<Type>) {
      return reinterpret_cast<Type>(Buffer<std::remove_pointer_t<Type>, kHasLength>());
    } else {
      return Number<Type>();
    }
  }

 private:
  static constexpr std::uint8_t kNull = 255;

  // A path, of a file that is there or not, of a device or a folder; or any text.
  const char* Text() {
    static constexpr std::string_view kTexts[] = {MemoryFile::kName, "other",    "device-1", "device-2",
                                                  "device-3",        "device-4", "folder/",  ""};
    const std::uint8_t which = input_.Byte();
    if (which == kNull) return nullptr;
    const std::string_view text = which < 128 ? kTexts[which % std::size(kTexts)] : input_.Text('\0');
    std::uint8_t* copy = New(text.size() + 1);
    copy[text.copy(reinterpret_cast<char*>(copy), text.size())] = 0;
    return reinterpret_cast<const char*>(copy);
  }

  template <typename Target, bool kHasLength>
  std::uint8_t* Buffer() {
    if constexpr (kHasLength) {
      const std::uint8_t length = input_.Byte();
      owed_ = length == kNull - 1 ? 2048 : length;
      hasOwed_ = true;
      if (length == kNull) return nullptr;
      return Filled(static_cast<std::size_t>(owed_));
    } else {
      if (input_.Byte() == kNull) return nullptr;
      if constexpr (std::is_class_v<Target>) return Filled(sizeof(Target));
      for (const Room& room : kRooms) {
        if (room.name == name_) return Filled(room.bytes);
      }
      return Filled(kUsualRoom);
    }
  }

  // Small ones are more likely.
  template <typename Type>
  Type Number() {
    if (std::exchange(hasOwed_, false)) return static_cast<Type>(owed_);
    static constexpr std::int64_t kEdges[] = {-1,    -2,    127,          128,          255,   256,
                                              257,   511,   512,          600,          32767, -32768,
                                              65535, 65536, 2147483647LL, -2147483648LL};
    const std::uint8_t byte = input_.Byte();
    if (byte < 192) return static_cast<Type>(byte);
    if (byte < 240) return static_cast<Type>(kEdges[byte % std::size(kEdges)]);
    return static_cast<Type>(input_.Word() | static_cast<std::uint64_t>(input_.Word()) << 16);
  }

  std::uint8_t* New(std::size_t size) {
    owned_.push_back(std::make_unique<std::uint8_t[]>(size));
    return owned_.back().get();
  }
  std::uint8_t* Filled(std::size_t size) {
    std::uint8_t* room = New(size);
    const auto bytes = input_.Take(std::min<std::size_t>(size, 8 + input_.Byte() % 64));
    std::copy(bytes.begin(), bytes.end(), room);
    return room;
  }

  std::string_view name_;
  Input& input_;
  std::vector<std::unique_ptr<std::uint8_t[]>> owned_;
  std::uint32_t owed_ = 0;
  bool hasOwed_ = false;
};

}  // namespace tavlyn::fuzz
