#include "sim/transcript.h"

#include <array>
#include <utility>

namespace tavlyn::sim {
namespace {

std::string Numbered(const char* verb, const Event& event) {
  return std::string(verb) + ' ' + std::to_string(event.handle);
}

std::string Report(const char* verb, const Event& event) {
  std::string line = Numbered(verb, event);
  if (event.reportId != 0) line += " [" + std::to_string(event.reportId) + ']';
  if (!event.bytes.empty()) line += ' ' + TrimmedHexText(event.bytes);
  if (!event.text.empty()) line += ' ' + event.text;
  return line;
}

std::string Stream(const std::string& verb, const Event& event) {
  return event.bytes.empty() ? verb : verb + ' ' + HexText(event.bytes);
}

std::string Named(const char* verb, const Event& event) { return verb + (' ' + event.text); }

std::string Describe(const Event& event) {
  switch (event.kind) {
    case EventKind::kSleep: return "sleep " + std::to_string(event.milliseconds);
    case EventKind::kMutex: return Named("mutex", event);
    case EventKind::kLoad: return "load";
    case EventKind::kUnload: return "unload";
    case EventKind::kWalk: return Named("walk", event);
    case EventKind::kOpen:
      return event.ok ? Named("open", event) + " -> " + std::to_string(event.handle) : Named("open", event);
    case EventKind::kClose: return Numbered("close", event);
    case EventKind::kAttributes: return Numbered("attributes", event);
    case EventKind::kUsage: return Numbered("usage", event);
    case EventKind::kSet: return Report("set", event);
    case EventKind::kGet: return Report("get", event);
    case EventKind::kDrain: return Report("drain", event);
    case EventKind::kSend: return Stream("send", event);
    case EventKind::kRecv: return Stream("recv", event);
    case EventKind::kCloseSocket: return Numbered("close socket", event);
    case EventKind::kConnect: return Named("connect", event);
    case EventKind::kSendTo: return Stream("sendto " + event.text, event);
    case EventKind::kSocket: return Named("socket", event) + " -> " + std::to_string(event.handle);
    case EventKind::kOption: return Numbered("option", event) + ' ' + event.text;
    case EventKind::kOpenPort: return Named("open", event);
    case EventKind::kClosePort: return Named("close", event);
    case EventKind::kTimeouts: return Named("time-outs", event);
    case EventKind::kUsb: return Named("usb", event);
    case EventKind::kWrite: return Stream("write", event);
    case EventKind::kRead: return Stream("read", event);
    case EventKind::kPurge: return "purge";
    case EventKind::kFlush: return "flush";
  }
  return {};
}

}  // namespace

Event BytesEvent(EventKind kind, std::span<const std::uint8_t> bytes) {
  Event event{kind};
  event.bytes.assign(bytes.begin(), bytes.end());
  return event;
}

Event ReportEvent(EventKind kind, std::uint64_t handle, std::span<const std::uint8_t> report) {
  Event event{kind};
  event.handle = handle;
  if (!report.empty()) {
    event.reportId = report[0];
    event.bytes.assign(report.begin() + 1, report.end());
  }
  return event;
}

std::string Event::Line() const { return ok ? Describe(*this) : Describe(*this) + " refused"; }

std::string HexText(const Bytes& bytes) {
  static constexpr std::array<char, 17> kDigits{"0123456789ABCDEF"};
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += kDigits.at(byte >> 4U);
    text += kDigits.at(byte & 0xFU);
  }
  return text;
}

std::string TrimmedHexText(Bytes bytes) {
  while (bytes.size() > 1 && bytes.back() == 0) bytes.pop_back();
  return HexText(bytes);
}

void Transcript::Add(Event event) {
  if (!keeps) return;
  const std::lock_guard lock(mutex_);
  events_.push_back(std::move(event));
}

void Transcript::Clear() {
  const std::lock_guard lock(mutex_);
  events_.clear();
}

std::vector<Event> Transcript::Events() const {
  const std::lock_guard lock(mutex_);
  return events_;
}

std::vector<std::string> Transcript::Lines() const {
  std::vector<std::string> lines;
  for (const Event& event : Events()) lines.push_back(event.Line());
  return lines;
}

}  // namespace tavlyn::sim
