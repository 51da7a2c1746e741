// queue and raw.
#include <algorithm>
#include <charconv>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

constexpr std::int16_t kIdBytes = 32;
constexpr std::int16_t kLastPart = 35;
constexpr std::size_t kRawBytes = 8;
constexpr std::uint16_t kSerialLink = 1;

// The argument is not repeated: it may be a key.
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
  // Over a serial link the reply begins where reports have the report ID.
  const std::size_t first = GetDevType() == kSerialLink ? 0 : 1;
  std::vector<std::uint8_t> reply;
  for (std::size_t at = 0; at < kRawBytes; ++at) {
    reply.push_back(GetRawPayload_index(static_cast<std::uint16_t>(first + at)));
  }
  return reply;
}

struct Queue {
  bool first = false;
  bool second = false;

  void Take(Words& words) {
    words.Flag("--first", first, "The first option that is passed on to the reader");
    words.Flag("--second", second, "The second one");
    words.DeviceToChange();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const Session session(request.link);
    session.Use(request.device);
    if (GetQueuedID(first ? 1 : 0, second ? 1 : 0) != 1) {
      throw Failure(kDeviceError,
                    "the queue of " + ActiveDeviceName() + " could not be read, " + ErrorText());
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
    Json document = request.DeviceDocument();
    document["id"] = number;
    document["bytes"] = std::move(bytes);
    document["values"] = std::move(values);
    return document;
  }
};

struct Raw {
  std::vector<std::string> digits;

  void Take(Words& words) {
    words.Text("HEX", digits, "Bytes; those left out are 0");
    words.DeviceToChange();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    std::vector<std::uint8_t> command;
    std::ranges::transform(digits, std::back_inserter(command), ParseByte);
    if (command.size() > kRawBytes) throw Failure(kUsage, "a command has eight bytes at most");
    command.resize(kRawBytes);
    const Session session(request.link);
    session.Use(request.device);
    Json document = request.DeviceDocument();
    document["sent"] = Spaced(command);
    document["reply"] = Spaced(Exchange(command));
    return document;
  }
};

}  // namespace

void AddQueue(Program& program) {
  program.Add<Queue>("queue", "The oldest ID that was read while nobody polled");
}

void AddRaw(Program& program) {
  program.Add<Raw>("raw", "Sends a command of eight bytes and shows the reply");
}

}  // namespace tavlyn::ctl
