#include "sim/devices/magstripe.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tavlyn::sim {
namespace {

constexpr std::uint8_t kPacketEnd = '\r';
constexpr std::size_t kTextBytes = kMagPacketBytes - 1;

HidIdentity MagstripeIdentity() {
  return {0x7A31, 0x1000, {{1, 6}}, 0, kMagPacketBytes, "Orvantis magnetic-stripe reader", "0500123456"};
}

MagPacket PacketOf(const std::string& text) {
  MagPacket packet{};
  std::copy_n(text.begin(), std::min(text.size(), kTextBytes), packet.begin());
  packet[kTextBytes] = kPacketEnd;
  return packet;
}

}  // namespace

Magstripe::Magstripe(MagstripeState initial) : Model(MagstripeIdentity()), state(std::move(initial)) {}

void Magstripe::SetLuid(std::uint16_t luid) {
  for (MagSettings* settings : {&state.working, &state.stored}) {
    settings->system[3] = Low(luid);
    settings->system[4] = High(luid);
  }
}

void Magstripe::Keep(Memory& memory) {
  MagSettings& stored = state.stored;
  for (std::size_t i = 0; i < stored.fields.size(); ++i) {
    const std::string name = "field-" + std::to_string(i);
    memory.Pass(name + "-first", stored.fields[i].first);
    memory.Pass(name + "-second", stored.fields[i].second);
    memory.Pass(name + "-control", stored.fields[i].control);
  }
  memory.Pass("system", stored.system);
  memory.Pass("leds", stored.leds);
  if (memory.IsTaken()) PowerCycle();
}

void Magstripe::PowerCycle() {
  LoseWorkingMemory(state);
  SetCommand({});
  SetReply({});
}

// A report without its carriage return is not a packet, and is ignored.
bool Magstripe::TakeReport(Payload report) {
  if (faults.TakeCommandRefusal(report)) return false;
  SetCommand(report);
  SetReply({});
  if (report[kTextBytes] != kPacketEnd) return true;
  const auto end = std::find(report.begin(), report.begin() + kTextBytes, 0);
  SetReply(PacketOf(AnswerMagCommand(state, {report.begin(), end})));
  return true;
}

MagstripeLine::MagstripeLine(std::shared_ptr<Magstripe> reader) : reader_(std::move(reader)) {}

void MagstripeLine::TakeByte(std::uint8_t byte) {
  if (byte == kPacketEnd) {
    Run();
  } else if (byte != 0) {
    command_ += static_cast<char>(byte);
  }
}

void MagstripeLine::Run() {
  const std::string command = std::exchange(command_, {});
  if (command.empty() || !reader_->Present()) return;
  const Bytes sent(command.begin(), command.end());
  if (faults.TakeCommandRefusal(sent)) return;
  MagPacket reply = PacketOf(AnswerMagCommand(reader_->state, command));
  if (faults.TakeReplyRefusal(sent)) return;
  if (const auto answer = faults.TakeAnswer(sent)) {
    reply.fill(0);
    std::copy_n(answer->begin(), std::min(answer->size(), reply.size()), reply.begin());
  }
  Send(reply);
}

}  // namespace tavlyn::sim
