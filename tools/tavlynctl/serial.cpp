// serial baud, write and read.
#include <vector>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

constexpr int kHighestCode = 255;
constexpr int kMostBytes = 1024;
constexpr std::uint32_t kFailed = 0xFFFFFFFF;

void RequireLink(const Link& link) {
  if (link.kind == LinkKind::kUsb) throw Failure(kUsage, "serial needs --com or --ip");
}

Bytes BytesOf(const std::vector<std::string>& words) {
  std::string digits;
  for (const std::string& word : words) digits += word;
  return ParseHex(digits, "HEX");
}

// A socket reports only the size of the last piece, so it is asked for one byte at a time.
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

struct SerialBaud {
  std::optional<int> wanted;

  void Take(Words& words) {
    words.Number("CODE", wanted, 0, kHighestCode, "Without it the code is shown");
    words.DeviceToChange([this] { return wanted.has_value(); });
  }

  [[nodiscard]] Json Run(const Request& request) const {
    RequireLink(request.link);
    const Session session(request.link);
    session.Use(request.device);
    Json document = request.DeviceDocument();
    if (wanted) {
      if (WriteBaudRate(static_cast<std::uint16_t>(*wanted)) != 1) {
        throw Failure(kDeviceError, ActiveDeviceName() + " does not accept the code");
      }
      document["code"] = *wanted;
      document["set"] = true;
      return document;
    }
    const std::uint32_t code = ReadBaudRate();
    if (code > kHighestCode) throw Failure(kDeviceError, ActiveDeviceName() + " does not report its code");
    document["code"] = code;
    return document;
  }
};

struct SerialWrite {
  std::vector<std::string> digits;
  int mostRead = 0;

  void Take(Words& words) {
    words.Text("HEX", digits, "Bytes");
    words.Number("--read", mostRead, 1, kMostBytes, "Bytes to read afterwards, at most");
    words.DeviceToChange();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    RequireLink(request.link);
    const Bytes bytes = BytesOf(digits);
    const Session session(request.link);
    session.Select(request.device);
    const auto length = static_cast<std::uint32_t>(bytes.size());
    const std::uint32_t written = WriteSerialPort(reinterpret_cast<const char*>(bytes.data()), length);
    if (written != length) throw Failure(kDeviceError, "the bytes could not be written");
    Json document = request.DeviceDocument();
    document["written"] = written;
    if (mostRead > 0) document["read"] = HexText(ReadBytes(request.link, mostRead));
    return document;
  }
};

struct SerialRead {
  int most = 0;

  void Take(Words& words) {
    words.Number("COUNT", most, 1, kMostBytes, "Bytes, at most")->required();
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    RequireLink(request.link);
    const Session session(request.link);
    session.Select(request.device);
    Json document = request.DeviceDocument();
    document["read"] = HexText(ReadBytes(request.link, most));
    return document;
  }
};

}  // namespace

void AddSerial(Program& program) {
  program.Group("serial", "The serial side of a reader");
  program.Add<SerialBaud>("serial baud", "Shows or sets the code of the reader's baud rate");
  program.Add<SerialWrite>("serial write", "Sends raw bytes to the serial side of a reader");
  program.Add<SerialRead>("serial read", "Reads raw bytes from there");
}

}  // namespace tavlyn::ctl
