// serial baud, write and read.
#include <vector>

#include "api.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/hex_bytes.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

constexpr std::uint32_t kHighestCode = 255;
constexpr std::uint32_t kFailed = 0xFFFFFFFF;

void RequireLink(const Link& link) {
  if (link.kind == LinkKind::kUsb) throw Failure(kUsage, "serial needs --com or --ip");
}

Bytes BytesOf(const std::vector<std::string>& words) {
  std::string digits;
  for (const std::string& word : words) digits += word;
  return ParseHex(digits, "HEX");
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
  const Bytes bytes = BytesOf(options.words);
  const Session session(options.link);
  session.Select(options.device);
  const auto length = static_cast<std::uint32_t>(bytes.size());
  const std::uint32_t written = WriteSerialPort(reinterpret_cast<const char*>(bytes.data()), length);
  if (written != length) throw Failure(kDeviceError, "the bytes could not be written");
  Json document = NewDocument("serial write", options.device);
  document["written"] = written;
  if (options.count > 0) document["read"] = HexText(ReadBytes(options.link, options.count));
  return document;
}

Json SerialRead(const Options& options) {
  RequireLink(options.link);
  const Session session(options.link);
  session.Select(options.device);
  Json document = NewDocument("serial read", options.device);
  document["read"] = HexText(ReadBytes(options.link, options.count));
  return document;
}

}  // namespace tavlyn::ctl
