#include "tools/tavlynctl/error_words.h"

#include "api/types.h"

namespace tavlyn::ctl {
namespace {

struct ErrorWord {
  std::uint32_t mask;
  std::uint32_t value;
  const char* text;
};

// The four highest bits are one number. Small numbers are added to what the last report left.
constexpr std::uint32_t kNumber = 0xF0000000;
constexpr std::uint32_t kJoined = 0xFFC;
constexpr std::uint32_t kSmall = 0xFFF;
// Getters and setters replace the whole word.
constexpr std::uint32_t kRecord = 0x3F0000 | kSmall;
constexpr std::uint32_t kAlone = 0xFFFFFFFF;

constexpr ErrorWord kErrorWords[] = {
    {kAlone, 0, "the library names no reason; the device refused, or its answer was none"},
    {kAlone, TAVLYN_ERR_SEP_NULL, "no room was given for separator data"},
    {kAlone, TAVLYN_ERR_SEP_UNREAD, "the separator data has not been read"},
    {kJoined, TAVLYN_ERR_WRITE_REPORT& kJoined, "a report could not be sent"},
    {kSmall, TAVLYN_ERR_ASCII_LENGTH, "the room for an ID is too small"},
    {kSmall, TAVLYN_ERR_ASCII_PORT, "the port is not open"},
    {kSmall, TAVLYN_ERR_ASCII_ANSWER, "the answer could not be understood"},
    {kRecord, TAVLYN_ERR_FIELD_PART, "a user field was not transferred"},
    {kRecord, TAVLYN_ERR_GET, "a record was not got"},
    {kRecord, TAVLYN_ERR_GET_NULL, "no room was given for a record"},
    {kRecord, TAVLYN_ERR_GET_UNREAD, "the configuration has not been read"},
    {kRecord, TAVLYN_ERR_SET, "a record was not set"},
    {kRecord, TAVLYN_ERR_SET_NULL, "no record was given"},
    {0xFFFF00, TAVLYN_ERR_SONAR_PARMS, "a value is out of its range"},  // shared by all records
    {TAVLYN_ERR_CONNECT, TAVLYN_ERR_CONNECT, "a search failed"},
    {TAVLYN_ERR_CONFIG_READ, TAVLYN_ERR_CONFIG_READ, "a read of the configuration failed"},
    {TAVLYN_ERR_CONFIG_WRITE, TAVLYN_ERR_CONFIG_WRITE, "a write of the configuration failed"},
    {TAVLYN_ERR_RESET, TAVLYN_ERR_RESET, "a reset or a save of defaults was not sent"},
    {0x80000000 | TAVLYN_ERR_COMMAND, TAVLYN_ERR_COMMAND, "the device did not answer"},
    {TAVLYN_ERR_HALT_KB_SENDS, TAVLYN_ERR_HALT_KB_SENDS, "a halt of the keystrokes was not sent"},
    {0x4000000, 0x4000000, "the card analyzer failed"},
    {kNumber, TAVLYN_ERR_SET_BLE, "an extension could not be set"},
    {kNumber, TAVLYN_ERR_BLE_READ, "what the reader keeps for its BLE radio was not transferred"},
    {kNumber, TAVLYN_ERR_GET_BLE, "an extension could not be asked"},
    {kNumber, TAVLYN_ERR_FW_FILENAME, "the firmware file name could not be read"},
    {kNumber, TAVLYN_ERR_DEVICE_GONE, "the device is gone"},
    {kNumber, TAVLYN_ERR_FULL_FW_VERSION, "the firmware version could not be read"},
    {kNumber, TAVLYN_ERR_REFERENCE, "an item was not transferred"},
    {kNumber, TAVLYN_ERR_INTEGRITY& kNumber, "a file failed its integrity test"},
};

}  // namespace

std::string ErrorWords(std::uint32_t word) {
  std::string text;
  for (const ErrorWord& one : kErrorWords) {
    if ((word & one.mask) == one.value) text += (text.empty() ? "" : "; ") + std::string(one.text);
  }
  return text.empty() ? "several failures, whose numbers have joined" : text;
}

}  // namespace tavlyn::ctl
