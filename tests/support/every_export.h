// Every export that the public headers declare, to be called with plain, null and extreme arguments.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "api.h"

namespace tavlyn::test {

// What the pointers of a call point to.
enum class Memory { kNull, kZeros, kFileName, kLongText };

// Large enough for any 16-bit length, and for a longer text.
inline constexpr std::size_t kRoom = 70000;
inline constexpr std::size_t kRooms = 3;

struct alignas(16) Room {
  std::array<char, kRoom> bytes;
};

// The targets of one call's pointers, each a buffer of its own, and each thread's.
inline std::vector<Room>& Rooms() {
  static thread_local std::vector<Room> rooms(kRooms);
  return rooms;
}

inline void Furnish(Memory memory) {
  for (Room& room : Rooms()) {
    room.bytes.fill('\0');
    if (memory == Memory::kFileName) std::strcpy(room.bytes.data(), "export.txt");
    if (memory == Memory::kLongText) std::fill_n(room.bytes.begin(), kRoom - 1, 'A');
  }
}

inline bool AreAsFurnished(Memory memory) {
  const std::vector<Room> now = Rooms();
  Furnish(memory);
  return std::ranges::equal(now, Rooms(), {}, &Room::bytes, &Room::bytes);
}

// A call's numbers cycle through this list, each argument taking the next one. The last is the length of an
// item whose header is the beginning of a long text.
inline constexpr std::int64_t kNumbers[] = {
    0,   1,   -1,     2,      3,     5,      8,          32,
    127, 128, 255,    256,    32767, -32768, 65535,      -2147483648LL,
    10,  126, 0x8000, 0x1000, 511,   512,    2147483647, 'A' + 4};
inline constexpr std::size_t kNumberCount = std::size(kNumbers);

struct Variant {
  Memory memory = Memory::kNull;
  std::size_t number = 0;  // the first one
  std::size_t step = 0;    // to the next argument's
};

inline void NoMarker(const char* /*line*/, std::uint64_t /*length*/) {}

template <typename Type>
Type Argument(const Variant& variant, std::size_t at) {
  if constexpr (std::is_same_v<Type, tavlyn_marker_function>) {
    return variant.memory == Memory::kNull ? nullptr : NoMarker;
  } else if constexpr (std::is_pointer_v<Type>) {
    return variant.memory == Memory::kNull ? nullptr
                                           : reinterpret_cast<Type>(Rooms().at(at % kRooms).bytes.data());
  } else {
    const std::int64_t number = kNumbers[(variant.number + at * variant.step) % kNumberCount];
    const Type value = static_cast<Type>(number);
    // No caller may claim more room than there is.
    if constexpr (sizeof(Type) > 2) {
      if (variant.memory != Memory::kNull)
        return std::min<Type>(value, std::numeric_limits<std::int16_t>::max());
    }
    return value;
  }
}

struct Outcome {
  bool none = false;   // returns nothing
  bool null = false;   // a null pointer
  bool other = false;  // another pointer
  std::uint64_t value = 0;

  bool operator==(const Outcome&) const = default;
};

template <typename Result, typename... Parameters>
struct Caller {
  static constexpr bool kHasPointers = (std::is_pointer_v<Parameters> || ...);
  static constexpr bool kHasNumbers = (!std::is_pointer_v<Parameters> || ...);

  template <std::size_t... kAt>
  static Outcome Call(Result (*function)(Parameters...), const Variant& variant,
                      std::index_sequence<kAt...> /*at*/) {
    if constexpr (std::is_void_v<Result>) {
      function(Argument<Parameters>(variant, kAt)...);
      return {.none = true};
    } else {
      Result result = function(Argument<Parameters>(variant, kAt)...);
      if constexpr (std::is_pointer_v<Result>) {
        const bool null = result == nullptr;
        // A result that is not const belongs to the caller.
        if constexpr (!std::is_const_v<std::remove_pointer_t<Result>>) std::free(result);
        return {.null = null, .other = !null};
      } else {
        return {.value = static_cast<std::make_unsigned_t<Result>>(result)};
      }
    }
  }
};

struct Export {
  std::string_view name;
  bool hasPointers;
  bool hasNumbers;
  std::function<Outcome(const Variant&)> call;
};

template <typename Result, typename... Parameters>
Export Describe(std::string_view name, Result (*function)(Parameters...)) {
  using Type = Caller<Result, Parameters...>;
  return {name, Type::kHasPointers, Type::kHasNumbers, [function](const Variant& variant) {
            return Type::Call(function, variant, std::index_sequence_for<Parameters...>{});
          }};
}

inline const std::vector<Export>& Exports() {
  static const std::vector<Export> exports = {
#define EXPORT(name) Describe(#name, ::name),
#include "exports.inc"
#undef EXPORT
  };
  return exports;
}

inline std::vector<Variant> VariantsOf(const Export& exported, std::size_t numbers) {
  // Searches all addresses from one number to the other, so both are the same here.
  const bool alike = !exported.hasNumbers || exported.name == "FindXport";
  if (!exported.hasNumbers) numbers = 1;
  std::vector<Variant> variants;
  for (const Memory memory : {Memory::kNull, Memory::kZeros, Memory::kFileName, Memory::kLongText}) {
    if (memory != Memory::kNull && !exported.hasPointers) break;
    for (std::size_t number = 0; number < numbers; ++number) {
      variants.push_back({memory, number, 0});
      if (!alike) variants.push_back({memory, number, 5});
    }
  }
  return variants;
}

inline std::string TextOf(const Export& exported, const Variant& variant) {
  return std::string(exported.name) + ", memory " + std::to_string(static_cast<int>(variant.memory)) +
         ", number " + std::to_string(kNumbers[variant.number]) + ", step " + std::to_string(variant.step);
}

inline Outcome CallWith(const Export& exported, const Variant& variant) {
  if (exported.hasPointers) Furnish(variant.memory);
  return exported.call(variant);
}

}  // namespace tavlyn::test
