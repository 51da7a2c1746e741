// What an export returns when it has nothing to do, in the words of docs/products.md.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "api.h"
#include "core/state.h"
#include "tests/support/bench.h"
#include "tests/support/entry0.h"
#include "tests/support/every_export.h"

namespace tavlyn::test {

inline constexpr Outcome kUnsupportedResult = {.value = kUnsupported};

// The result that a cell gives for every call; none if the cell describes an operation.
inline std::optional<Outcome> ResultIn(const std::string& cell) {
  if (cell == "unsupported") return kUnsupportedResult;
  if (cell == "unsupported, signed") return Outcome{.value = 0xFFFF0000U | kUnsupported};
  if (cell == "null") return Outcome{.null = true};
  if (cell == "nothing") return Outcome{.none = true};
  char* end = nullptr;
  const long number = std::strtol(cell.c_str(), &end, 10);
  if (*end != '\0') return std::nullopt;
  return Outcome{.value = static_cast<std::uint32_t>(number)};
}

class AnswersBench : public Bench {
 protected:
  // The call asks no device, waits for nothing, stores nothing through its pointers, and leaves entry 0 and
  // its error word as they were, or leaves this word.
  Outcome AnswerOfIdle(const Export& exported, const Variant& variant, std::uint32_t word) {
    SCOPED_TRACE(TextOf(exported, variant));
    ForgetTraffic();
    DevTable[0].LastLibErr = kWordBefore;
    entry_.Note();
    const Outcome outcome = CallWith(exported, variant);
    ExpectTraffic({});
    EXPECT_EQ(DevTable[0].LastLibErr, word);
    DevTable[0].LastLibErr = kWordBefore;
    entry_.ExpectAsNoted();
    EXPECT_TRUE(!exported.hasPointers || AreAsFurnished(variant.memory)) << "something was stored";
    return outcome;
  }

  // Some check their file first, whose trailer does not match.
  static std::uint32_t WordOfNoDevice(std::string_view name) {
    return IsOneOf(name,
                   {"LoadIniFile", "ReadDevCfgFromSecureFile", "WriteBLEDataToReader", "WriteBLEKeyToReader"})
               ? TAVLYN_ERR_INTEGRITY | kWordBefore
               : kWordBefore;
  }

  // Others clear the word before they notice that the active device is not a card reader.
  static std::uint32_t WordOfOtherProduct(std::string_view name) {
    return IsOneOf(name, {"GetCardAnalyzerData", "GetCardAnalyzerStatus", "InstalledHardware",
                          "SetCardAnalyzerControlState", "SupportedHardware", "WriteBLEDataToFile",
                          "WriteBLEKeyToFile", "WriteDevCfgToSecureFile"})
               ? 0
               : WordOfNoDevice(name);
  }

 private:
  static constexpr std::uint32_t kWordBefore = 7;

  static bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::ranges::find(names, name) != names.end();
  }

  Entry0 entry_;
};

}  // namespace tavlyn::test
