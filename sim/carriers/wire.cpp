#include "sim/carriers/wire.h"

#include <cstring>
#include <string>

namespace tavlyn::sim::wire {
namespace {

struct Header {
  std::uint32_t code;
  std::uint32_t key;
  std::uint32_t length;
};

// Longer than any list or record of traffic; anything longer is not a message of ours.
constexpr std::uint32_t kLongestBody = 1U << 26U;
// What is asked is a report, some bytes or a line.
constexpr std::uint32_t kLongestAsked = 1U << 20U;

bool SendAll(net::Socket socket, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const int sent = net::Send(socket, bytes);
    if (sent <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(sent));
  }
  return true;
}

bool ReceiveAll(net::Socket socket, std::span<std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const int got = net::Receive(socket, bytes);
    if (got <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(got));
  }
  return true;
}

class Packer {
 public:
  template <typename Number>
  void Put(Number number) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&number);
    packed.insert(packed.end(), bytes, bytes + sizeof number);
  }
  void Put(const std::string& text) {
    Put(static_cast<std::uint32_t>(text.size()));
    packed.insert(packed.end(), text.begin(), text.end());
  }

  std::vector<std::uint8_t> packed;
};

// Once something is missing every further take fails too.
class Unpacker {
 public:
  explicit Unpacker(std::span<const std::uint8_t> packed) : left_(packed) {}

  template <typename Number>
  Number Take() {
    Number number{};
    if (!Has(sizeof number)) return number;
    std::memcpy(&number, left_.data(), sizeof number);
    left_ = left_.subspan(sizeof number);
    return number;
  }
  std::string TakeText() {
    const auto length = Take<std::uint32_t>();
    if (!Has(length)) return {};
    std::string text(left_.begin(), left_.begin() + length);
    left_ = left_.subspan(length);
    return text;
  }
  [[nodiscard]] bool Whole() const { return whole_; }

 private:
  bool Has(std::size_t count) {
    whole_ = whole_ && left_.size() >= count;
    return whole_;
  }

  std::span<const std::uint8_t> left_;
  bool whole_ = true;
};

}  // namespace

void Overwrite(std::vector<std::uint8_t>& bytes) {
  volatile std::uint8_t* at = bytes.data();
  for (std::size_t left = bytes.size(); left > 0; --left) *at++ = 0;
}

void PutMessage(std::vector<std::uint8_t>& bytes, const Message& message) {
  const Header header{message.code, message.key, static_cast<std::uint32_t>(message.body.size())};
  const auto* raw = reinterpret_cast<const std::uint8_t*>(&header);
  bytes.reserve(bytes.size() + sizeof header + message.body.size());
  bytes.insert(bytes.end(), raw, raw + sizeof header);
  bytes.insert(bytes.end(), message.body.begin(), message.body.end());
}

Arrived TakeMessage(std::vector<std::uint8_t>& bytes, Message& message) {
  Header header{};
  if (bytes.size() < sizeof header) return Arrived::kPart;
  std::memcpy(&header, bytes.data(), sizeof header);
  if (header.code > 0xFF || header.length > kLongestAsked) return Arrived::kNoMessage;
  const std::size_t whole = sizeof header + header.length;
  if (bytes.size() < whole) return Arrived::kPart;
  const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(whole);
  message.code = static_cast<std::uint8_t>(header.code);
  message.key = header.key;
  message.body.assign(bytes.begin() + sizeof header, end);
  bytes.erase(bytes.begin(), end);
  return Arrived::kWhole;
}

bool Send(net::Socket socket, const Message& message) {
  std::vector<std::uint8_t> packed;
  PutMessage(packed, message);
  const bool sent = SendAll(socket, packed);
  Overwrite(packed);
  return sent;
}

bool Receive(net::Socket socket, Message& message) {
  Header header{};
  if (!ReceiveAll(socket, {reinterpret_cast<std::uint8_t*>(&header), sizeof header})) return false;
  if (header.code > 0xFF || header.length > kLongestBody) return false;
  message.code = static_cast<std::uint8_t>(header.code);
  message.key = header.key;
  Overwrite(message.body);
  message.body.resize(header.length);
  return ReceiveAll(socket, message.body);
}

std::vector<std::uint8_t> PackList(const std::vector<Listed>& list) {
  Packer packer;
  packer.Put(static_cast<std::uint32_t>(list.size()));
  for (const Listed& listed : list) {
    const HidIdentity& identity = listed.identity;
    packer.Put(listed.key);
    packer.Put(identity.vid);
    packer.Put(identity.pid);
    packer.Put(identity.reportId);
    packer.Put(static_cast<std::uint32_t>(identity.featureBytes));
    packer.Put(identity.product);
    packer.Put(identity.serial);
    packer.Put(static_cast<std::uint32_t>(identity.usages.size()));
    for (const Usage& usage : identity.usages) packer.Put(usage);
  }
  return std::move(packer.packed);
}

bool UnpackList(std::span<const std::uint8_t> packed, std::vector<Listed>& list) {
  Unpacker unpacker(packed);
  list.clear();
  for (auto left = unpacker.Take<std::uint32_t>(); left > 0 && unpacker.Whole(); --left) {
    Listed& listed = list.emplace_back();
    HidIdentity& identity = listed.identity;
    listed.key = unpacker.Take<Key>();
    identity.vid = unpacker.Take<std::uint16_t>();
    identity.pid = unpacker.Take<std::uint16_t>();
    identity.reportId = unpacker.Take<std::uint8_t>();
    identity.featureBytes = unpacker.Take<std::uint32_t>();
    identity.product = unpacker.TakeText();
    identity.serial = unpacker.TakeText();
    for (auto usages = unpacker.Take<std::uint32_t>(); usages > 0 && unpacker.Whole(); --usages) {
      identity.usages.push_back(unpacker.Take<Usage>());
    }
  }
  return unpacker.Whole();
}

std::vector<std::uint8_t> PackLines(const std::vector<ListedLine>& lines) {
  Packer packer;
  packer.Put(static_cast<std::uint32_t>(lines.size()));
  for (const ListedLine& line : lines) packer.Put(line);
  return std::move(packer.packed);
}

bool UnpackLines(std::span<const std::uint8_t> packed, std::vector<ListedLine>& lines) {
  Unpacker unpacker(packed);
  lines.clear();
  for (auto left = unpacker.Take<std::uint32_t>(); left > 0 && unpacker.Whole(); --left) {
    lines.push_back(unpacker.Take<ListedLine>());
  }
  return unpacker.Whole();
}

}  // namespace tavlyn::sim::wire
