// serial baud, write and read.
#include <vector>

#include "api.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

constexpr std::uint32_t kHighestCode = 255;
constexpr std::uint32_t kFailed = 0xFFFFFFFF;

using Bytes = std::vector<std::uint8_t>;

void RequireLink(const Link& link) {
  if (link.kind == LinkKind::kUsb) throw Failure(kUsage, "serial needs --com or --ip");
}

Bytes ParseHex(const std::vector<std::string>& words) {
  std::string digits;
  for (const std::string& word : words) digits += word;
  if (digits.size() % 2 != 0 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
    throw Failure(kUsage, "bytes are pairs of hexadecimal digits, such as FA04");
  }
  Bytes bytes;
  for (std::size_t at = 0; at < digits.size(); at += 2) {
    bytes.push_back(static_cast<std::uint8_t>(std::stoul(digits.substr(at, 2), nullptr, 16)));
  }
  return bytes;
}

std::string HexOf(const Bytes& bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) text += Hex(byte, 2);
  return text;
}

// A socket tells the size of the last piece alone, so that one byte at a time is asked of it.
Bytes ReadBytes(const Link& link, int most) {
  const auto length = static_cast<std::uint32_t>(most);
  Bytes bytes(length);
  std::uint32_t got = 0;
  if (link.kind == LinkKind::kSerial) {
    got = ReadSerialPort(bytes.data(), length);
  } else {
    while (got < length && ReadSerialPort(&bytes[got], 1) == 1) ++got;
  }
  bytes.resize(got != kFailed ? got : 0);
  return bytes;
}

}  // namespace

Json SerialBaud(const Options& options) {
  RequireLink(options.link);
  const Session session(options.link);
  session.Use(options.device);
  Json document = NewDocument("serial baud", options.device);
  if (options.code) {
    if (WriteBaudRate(static_cast<std::uint16_t>(*options.code)) != 1) {
      throw Failure(kDeviceError, ActiveDeviceName() + " does not take the code");
    }
    document["code"] = *options.code;
    document["set"] = true;
    return document;
  }
  const std::uint32_t code = ReadBaudRate();
  if (code > kHighestCode) throw Failure(kDeviceError, ActiveDeviceName() + " does not tell its code");
  document["code"] = code;
  return document;
}

Json SerialWrite(const Options& options) {
  RequireLink(options.link);
  const Bytes bytes = ParseHex(options.words);
  const Session session(options.link);
  Session::Select(options.device);
  const auto length = static_cast<std::uint32_t>(bytes.size());
  const std::uint32_t written = WriteSerialPort(reinterpret_cast<const char*>(bytes.data()), length);
  if (written != length) throw Failure(kDeviceError, "the bytes could not be written");
  Json document = NewDocument("serial write", options.device);
  document["written"] = written;
  if (options.count > 0) document["read"] = HexOf(ReadBytes(options.link, options.count));
  return document;
}

Json SerialRead(const Options& options) {
  RequireLink(options.link);
  const Session session(options.link);
  Session::Select(options.device);
  Json document = NewDocument("serial read", options.device);
  document["read"] = HexOf(ReadBytes(options.link, options.count));
  return document;
}

}  // namespace tavlyn::ctl
