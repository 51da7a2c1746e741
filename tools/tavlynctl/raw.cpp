// queue and raw.
#include <algorithm>
#include <charconv>

#include "api.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

constexpr std::int16_t kIdBytes = 32;
constexpr std::int16_t kLastPart = 35;
constexpr std::size_t kRawBytes = 8;
constexpr std::uint16_t kSerialLink = 1;

// What was given is not repeated: it may be a key.
std::uint8_t ParseByte(const std::string& text) {
  std::uint8_t byte = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, byte, 16);
  if (error == std::errc() && stop == end) return byte;
  throw Failure(kUsage, "each HEX is one byte, of one or two hexadecimal digits");
}

std::string Spaced(const std::vector<std::uint8_t>& bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) text += (text.empty() ? "" : " ") + Hex(byte, 2);
  return text;
}

Failure NotAnswered() {
  return {kDeviceError, ActiveDeviceName() + " did not answer the command, " + ErrorText()};
}

// The raw calls leave the error word alone; a record get clears it.
void ClearReaderErrorWord() {
  tsCfgFlags flags{};
  GetFlags(&flags);
}

std::vector<std::uint8_t> Exchange(const std::vector<std::uint8_t>& command) {
  ClearReaderErrorWord();
  SetRawPayload_index(0, 0);
  std::uint32_t answered = 0;
  for (std::size_t at = 0; at < kRawBytes; ++at) {
    answered = SetRawPayload_index(static_cast<std::int16_t>(at + 1), command[at]);
  }
  if (answered != 1 || GetLastLibErr() != 0) throw NotAnswered();
  // Over a serial link the reply begins where over reports the report ID stands.
  const std::size_t first = GetDevType() == kSerialLink ? 0 : 1;
  std::vector<std::uint8_t> reply;
  for (std::size_t at = 0; at < kRawBytes; ++at) {
    reply.push_back(GetRawPayload_index(static_cast<std::uint16_t>(first + at)));
  }
  return reply;
}

}  // namespace

Json Queue(const Options& options) {
  const Session session(options.link);
  session.Use(options.device);
  if (GetQueuedID(options.first ? 1 : 0, options.second ? 1 : 0) != 1) {
    throw Failure(kDeviceError, "the queue of " + ActiveDeviceName() + " could not be read, " + ErrorText());
  }
  std::string number;
  Json bytes = Json::array();
  Json values = Json::object();
  bool empty = true;
  for (std::int16_t index = 0; index <= kLastPart; ++index) {
    const std::uint32_t part = GetQueuedID_index(index);
    empty = empty && part == 0;
    if (index >= kIdBytes) {
      values[std::to_string(index)] = static_cast<std::int32_t>(part);
      continue;
    }
    number.insert(0, Hex(part, 2));
    bytes.push_back(part);
  }
  if (empty) throw Failure(kNoCard, "no ID is queued");
  Json document = NewDocument("queue", options.device);
  document["id"] = number;
  document["bytes"] = std::move(bytes);
  document["values"] = std::move(values);
  return document;
}

Json Raw(const Options& options) {
  std::vector<std::uint8_t> command;
  std::ranges::transform(options.words, std::back_inserter(command), ParseByte);
  if (command.size() > kRawBytes) throw Failure(kUsage, "a command has eight bytes at most");
  command.resize(kRawBytes);
  const Session session(options.link);
  session.Use(options.device);
  Json document = NewDocument("raw", options.device);
  document["sent"] = Spaced(command);
  document["reply"] = Spaced(Exchange(command));
  return document;
}

}  // namespace tavlyn::ctl
