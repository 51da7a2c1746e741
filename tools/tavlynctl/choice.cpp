#include "tools/tavlynctl/choice.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "api.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

constexpr std::size_t kDigitsOfIndex = 3;
constexpr int kHighestLuid = 0xFFFF;

struct NameForm {
  std::string_view prefix;
  NameKind kind;
  const char* text;
};

// The last one has no prefix.
constexpr NameForm kNameForms[] = {
    {"index:", NameKind::kIndex, "index"},
    {"serial:", NameKind::kSerialNumber, "serial number"},
    {"luid:", NameKind::kLuid, "LUID"},
    {"path:", NameKind::kPath, "path"},
    {"", NameKind::kSerialNumberOrPath, "serial number or path"},
};

bool IsWhole(std::string_view word, int most, int& number) {
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  return error == std::errc() && word == std::to_string(number) && number >= 0 && number <= most;
}

}  // namespace

DeviceChoice DeviceAt(int index) { return {.word = std::to_string(index)}; }

DeviceName ParseDeviceName(const std::string& word) {
  if (word.empty()) return {};
  int number = 0;
  if (word.size() <= kDigitsOfIndex && IsWhole(word, kHighestLuid, number)) {
    return {NameKind::kIndex, word, number};
  }
  const auto* form =
      std::ranges::find_if(kNameForms, [&](const NameForm& one) { return word.starts_with(one.prefix); });
  const std::string text = word.substr(form->prefix.size());
  const bool isNumber = form->kind == NameKind::kIndex || form->kind == NameKind::kLuid;
  if (text.empty() || text.starts_with('-') || (isNumber && !IsWhole(text, kHighestLuid, number))) {
    return {NameKind::kWrong};
  }
  return {form->kind, text, number};
}

bool ActiveDeviceIs(const DeviceName& name) {
  switch (name.kind) {
    case NameKind::kSerialNumber: return ActiveSerialNumber() == name.text;
    case NameKind::kLuid: return GetDID() != 0 && GetLUID() == static_cast<std::uint32_t>(name.number);
    case NameKind::kPath: return ActiveDevicePath() == name.text;
    case NameKind::kSerialNumberOrPath:
      return ActiveDevicePath() == name.text || ActiveSerialNumber() == name.text;
    default: return false;
  }
}

std::string KindText(const DeviceName& name) {
  return std::ranges::find(kNameForms, name.kind, &NameForm::kind)->text;
}

std::string SerialNumberWord(const std::string& serial) {
  const bool isPlain = ParseDeviceName(serial).kind == NameKind::kSerialNumberOrPath;
  return (isPlain ? "" : "serial:") + serial;
}

std::string ActiveSerialNumber() {
  const char* text = DeviceIsReader() ? GetSerialNumber() : nullptr;
  return text != nullptr ? text : "";
}

}  // namespace tavlyn::ctl
