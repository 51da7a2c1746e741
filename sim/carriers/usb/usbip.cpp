#include "sim/carriers/usb/usbip.h"

#include <algorithm>

namespace tavlyn::sim::usb {
namespace {

constexpr std::size_t kHeaderBytes = 48;
constexpr std::size_t kLongestTransfer = 65536;
constexpr std::size_t kMostWaiting = 1024;

enum Command : std::uint32_t { kSubmit = 1, kUnlink = 2, kSubmitted = 3, kUnlinked = 4 };

// Linux's error numbers, which the protocol carries.
constexpr std::int32_t kStalled = -32;
constexpr std::int32_t kNoMemory = -12;
constexpr std::int32_t kBroken = -71;
constexpr std::int32_t kTakenBack = -104;

// Where the fields of a message are.
enum Field : std::size_t {
  kCommand = 0,
  kNumber = 4,
  kFromDevice = 12,
  kEndpoint = 16,
  kLength = 24,
  kUnlinkNumber = 20,
  kStatus = 20,
  kMoved = 24,
  kSetup = 40,
};

std::uint32_t Word(std::span<const std::uint8_t> bytes, Field at) {
  std::uint32_t word = 0;
  for (std::size_t i = 0; i < 4; ++i) word = word << 8U | bytes[at + i];
  return word;
}

void PutWord(std::span<std::uint8_t> bytes, Field at, std::uint32_t word) {
  for (std::size_t i = 4; i-- > 0; word >>= 8U) bytes[at + i] = static_cast<std::uint8_t>(word);
}

Setup SetupOf(std::span<const std::uint8_t> bytes) {
  const auto word = [&](std::size_t at) {
    return static_cast<std::uint16_t>(bytes[at] | bytes[at + 1] << 8U);
  };
  return {bytes[0], bytes[1], word(2), word(4), word(6)};
}

}  // namespace

bool UsbipSession::Receive(std::span<const std::uint8_t> bytes) {
  if (over_) return false;
  in_.insert(in_.end(), bytes.begin(), bytes.end());
  while (const std::size_t length = WholeMessage()) {
    Take(std::span(in_).first(length));
    in_.erase(in_.begin(), in_.begin() + static_cast<std::ptrdiff_t>(length));
  }
  Serve();
  return !over_;
}

std::size_t UsbipSession::WholeMessage() {
  if (over_ || in_.size() < kHeaderBytes) return 0;
  const std::uint32_t command = Word(in_, kCommand);
  const bool brings = command == kSubmit && Word(in_, kFromDevice) == 0;
  const std::size_t data = brings ? Word(in_, kLength) : 0;
  over_ = (command != kSubmit && command != kUnlink) || data > kLongestTransfer;
  return !over_ && in_.size() >= kHeaderBytes + data ? kHeaderBytes + data : 0;
}

void UsbipSession::Take(std::span<const std::uint8_t> message) {
  if (Word(message, kCommand) == kUnlink) return Unlink(message);
  if (Word(message, kEndpoint) == 0) return Control(message);
  Submit(message);
}

void UsbipSession::Control(std::span<const std::uint8_t> message) {
  const Setup setup = SetupOf(message.subspan(kSetup));
  const auto brought = message.subspan(kHeaderBytes);
  Bytes data(brought.begin(), brought.end());
  const bool done = AnswerControl(device_, setup, data);
  data.resize(std::min<std::size_t>(data.size(), Word(message, kLength)));
  const bool fromDevice = Word(message, kFromDevice) != 0;
  if (!fromDevice) data.clear();
  const std::size_t moved = fromDevice ? data.size() : brought.size();
  Answer(Word(message, kNumber), done ? 0 : kStalled, done ? moved : 0, data);
}

bool UsbipSession::Has(std::uint8_t endpoint) const {
  return std::ranges::any_of(device_.GetFace().interfaces, [&](const Interface& interface) {
    return std::ranges::find(interface.endpoints, endpoint, &Endpoint::address) != interface.endpoints.end();
  });
}

void UsbipSession::Submit(std::span<const std::uint8_t> message) {
  const std::uint32_t number = Word(message, kNumber);
  const bool fromDevice = Word(message, kFromDevice) != 0;
  const std::uint32_t low = Word(message, kEndpoint);
  const auto endpoint = static_cast<std::uint8_t>(low | (fromDevice ? kIn : 0U));
  if (low >= kIn || !Has(endpoint)) return Answer(number, kStalled, 0, {});
  const auto most = std::min<std::size_t>(Word(message, kLength), kLongestTransfer);
  if (fromDevice && most > 0) {
    if (waiting_.size() == kMostWaiting) return Answer(number, kNoMemory, 0, {});
    waiting_.push_back({number, endpoint, most});
    return;
  }
  const auto data = message.subspan(kHeaderBytes);
  if (!fromDevice) device_.Out(endpoint, data);
  Answer(number, 0, data.size(), {});
}

// One that was answered meanwhile can no longer be taken back.
void UsbipSession::Unlink(std::span<const std::uint8_t> message) {
  const std::uint32_t unwanted = Word(message, kUnlinkNumber);
  const bool waited = std::erase_if(waiting_, [&](const Waiting& one) { return one.number == unwanted; }) > 0;
  Bytes answer(kHeaderBytes, 0);
  PutWord(answer, kCommand, kUnlinked);
  PutWord(answer, kNumber, Word(message, kNumber));
  PutWord(answer, kStatus, static_cast<std::uint32_t>(waited ? kTakenBack : 0));
  out_.insert(out_.end(), answer.begin(), answer.end());
}

void UsbipSession::Serve() {
  std::erase_if(waiting_, [&](const Waiting& one) {
    const Bytes data = device_.In(one.endpoint, one.most);
    if (!data.empty()) Answer(one.number, 0, data.size(), data);
    return !data.empty();
  });
}

// A cable that is pulled in the middle of a transfer is a broken transfer, as a host controller tells it.
void UsbipSession::Answer(std::uint32_t number, std::int32_t status, std::size_t moved, const Bytes& data) {
  if (!device_.Present() && status != kBroken) return Answer(number, kBroken, 0, {});
  Bytes answer(kHeaderBytes, 0);
  PutWord(answer, kCommand, kSubmitted);
  PutWord(answer, kNumber, number);
  PutWord(answer, kStatus, static_cast<std::uint32_t>(status));
  PutWord(answer, kMoved, static_cast<std::uint32_t>(moved));
  answer.insert(answer.end(), data.begin(), data.end());
  out_.insert(out_.end(), answer.begin(), answer.end());
}

}  // namespace tavlyn::sim::usb
