#include "bindings/conformance/cpp/calls.h"

#include <cstring>
#include <map>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "bindings/conformance/cpp/words.h"
#include "tavlyn.hpp"

namespace conformance {
namespace {

// An argument as a call takes it, with the memory to which it points.
template <class Type>
class Argument {
 public:
  explicit Argument(const Json& given) : value_(given.get<Type>()) {}
  Type Value() { return value_; }
  [[nodiscard]] std::string Shown() const { return {}; }

 private:
  Type value_;
};

// A record is shown word by word. Those of the sonar sensor have no signs.
template <class Record>
using WordOf =
    std::conditional_t<std::is_same_v<Record, tsSonarParms> || std::is_same_v<Record, tsWalkAwayParms> ||
                           std::is_same_v<Record, tsWalkUpParms> || std::is_same_v<Record, tsIdleParms>,
                       std::uint16_t, std::int16_t>;

template <class Element>
std::string ShownElements(const std::vector<Element>& elements) {
  if constexpr (std::is_same_v<Element, char>) {
    return Quoted(elements.data());
  } else if constexpr (std::is_same_v<Element, std::uint8_t>) {
    return tavlyn::hex({elements.data(), elements.size()});
  } else if constexpr (std::is_class_v<Element>) {
    std::vector<WordOf<Element>> words(sizeof(Element) / 2);
    std::memcpy(words.data(), elements.data(), sizeof(Element));
    return Joined(words);
  } else {
    return Joined(elements);
  }
}

template <class Element>
std::vector<Element> ElementsOf(const Json& given) {
  if constexpr (std::is_class_v<Element>) {
    if (given.contains("record")) {
      const auto words = given["record"].get<std::vector<WordOf<Element>>>();
      std::vector<Element> one(1);
      std::memcpy(one.data(), words.data(), std::min(sizeof(Element), 2 * words.size()));
      return one;
    }
  } else if constexpr (std::is_same_v<Element, char>) {
    if (given.is_string()) {
      const auto text = given.get<std::string>();
      return {text.c_str(), text.c_str() + text.size() + 1};
    }
  } else if constexpr (std::is_same_v<Element, std::uint8_t>) {
    if (given.contains("bytes")) return BytesOf(given["bytes"]);
  }
  return std::vector<Element>(given["out"].get<std::size_t>());
}

template <class Pointed>
class Argument<Pointed*> {
 public:
  using Element = std::remove_const_t<Pointed>;

  explicit Argument(const Json& given) : isNull_(given.is_null()), isOut_(given.contains("out")) {
    if (!isNull_) elements_ = ElementsOf<Element>(given);
  }
  Pointed* Value() { return isNull_ ? nullptr : elements_.data(); }
  [[nodiscard]] std::string Shown() const { return isOut_ ? ' ' + ShownElements(elements_) : std::string(); }

 private:
  bool isNull_;
  bool isOut_;
  std::vector<Element> elements_;
};

// The functions that calls can be handed stay out of the scenario.
template <>
class Argument<tavlyn_marker_function> {
 public:
  explicit Argument(const Json&) {}
  static tavlyn_marker_function Value() { return nullptr; }
  [[nodiscard]] static std::string Shown() { return {}; }
};

template <class Result>
std::string ShownResult(Result result) {
  if constexpr (std::is_same_v<Result, const char*>) return result == nullptr ? "null" : Quoted(result);
  if constexpr (std::is_pointer_v<Result>) return result == nullptr ? "null" : "not null";
  if constexpr (std::is_integral_v<Result>) return std::to_string(result);
}

template <class Result, class... Types, std::size_t... kPlaces>
std::string Made(Result(TAVLYN_CALL* call)(Types...), [[maybe_unused]] const Json& given,
                 std::index_sequence<kPlaces...>) {
  [[maybe_unused]] std::tuple<Argument<Types>...> arguments{Argument<Types>(given.at(kPlaces))...};
  std::string shown = "-";
  if constexpr (std::is_void_v<Result>) {
    call(std::get<kPlaces>(arguments).Value()...);
  } else {
    shown = ShownResult(call(std::get<kPlaces>(arguments).Value()...));
  }
  return (shown + ... + std::get<kPlaces>(arguments).Shown());
}

template <class Result, class... Types>
std::string Make(Result(TAVLYN_CALL* call)(Types...), const Json& given) {
  return Made(call, given, std::index_sequence_for<Types...>());
}

using Maker = std::string (*)(const Json&);

const std::map<std::string, Maker>& Makers() {
  static const std::map<std::string, Maker> makers = {
#define EXPORT(name) {#name, [](const Json& given) { return Make(name, given); }},
#include "exports.inc"
#undef EXPORT
  };
  return makers;
}

}  // namespace

std::string Call(const std::string& name, const Json& arguments) { return Makers().at(name)(arguments); }

}  // namespace conformance
