#include "sim/devices/reader_fa.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "sim/devices/reader_actions.h"

namespace tavlyn::sim {
namespace {

constexpr std::uint8_t kClass = 0xFA;
constexpr std::uint8_t kAny = 0xFF;  // no command has it as its first parameter
constexpr std::size_t kHeaderBytes = 4;

constexpr std::uint16_t kDone = 0x9000;
constexpr std::uint16_t kNoId = 0x6A82;
constexpr std::uint16_t kWrongParameter = 0x6A86;
constexpr std::uint16_t kNoSuchCommand = 0x6D00;

// INS P1 P2 P3, then an extension where the command has one.
using Frame = std::span<const std::uint8_t>;

struct FaAnswer {
  Bytes data;
  std::uint16_t status = kDone;
  bool refused = false;  // the status replaces the echo
};

enum class Shape {
  kStatus,    // status only, without an echo
  kData,      // echo, data, status
  kBareData,  // echo, data, no status
  kTake,      // echo, then P3 bytes from the host, then the status
};

struct FaRow {
  std::uint8_t ins;
  std::uint8_t p1;
  Shape shape;
  std::size_t extension;
  bool plusOnly;
  std::array<std::uint8_t, 2> feature;  // the same command's feature report; zeros if it has none
  FaAnswer (*run)(ReaderState&, Frame, std::span<const std::uint8_t> taken);
};

using Taken = std::span<const std::uint8_t>;

Bytes BytesOf(const Block& block) { return {block.begin(), block.end()}; }

FaAnswer ReadId(ReaderState& state, Frame frame, Taken) {
  FaAnswer answer{Bytes(frame[3]), state.card.bits != 0 ? kDone : kNoId};
  if (answer.data.size() > 1) answer.data[1] = state.card.bits;
  for (std::size_t i = 0; i < state.card.id.size() && 4 + i < answer.data.size(); ++i) {
    answer.data[4 + i] = state.card.id[i];
  }
  return answer;
}

FaAnswer ReadBlockFa(ReaderState& state, Frame frame, Taken) {
  Bytes block = BytesOf(ReadBlock(state, frame[1]));
  block.resize(frame[3]);
  return {std::move(block)};
}

FaAnswer WriteBlockFa(ReaderState& state, Frame frame, Taken taken) {
  WriteBlock(state, frame[1], Chunk(taken, 0));
  return {};
}

FaAnswer ReadSeparatedFa(ReaderState& state, Frame frame, Taken) {
  FaAnswer answer{Bytes(frame[3])};
  ReadSeparated(state, 0, answer.data);
  return answer;
}

FaAnswer WriteSeparatedFa(ReaderState& state, Frame frame, Taken taken) {
  if (frame[2] != 0) {
    WriteHashKey(state, frame[2], 0, taken);
  } else {
    WriteSeparated(state, 0, taken);
  }
  return {};
}

FaAnswer Query(ReaderState& state, Frame, Taken) {
  const Block type = ReadBlock(state, 4);
  return {{1, static_cast<std::uint8_t>(state.active), static_cast<std::uint8_t>(state.configurations.size()),
           0, type[1], type[2], type[3]}};
}

FaAnswer Select(ReaderState& state, Frame frame, Taken) {
  if (!SelectConfiguration(state, frame[2])) return {{}, kWrongParameter, true};
  return {{0x81, frame[2], 0, 0, 0, 0, 0}};
}

FaAnswer Move(ReaderState& state, Frame frame, Taken) {
  if (!MoveBank(state, frame[2], frame[3])) return {{}, kWrongParameter, true};
  return {{0x82, frame[2], frame[3], 0, 0}};
}

FaAnswer Firmware(ReaderState& state, Frame frame, Taken) {
  const std::uint32_t word = FirmwareWord(state, frame[2], frame[3]);
  FaAnswer answer{{3, frame[2], frame[3]}};
  for (int shift = 24; shift >= 0; shift -= 8) {
    answer.data.push_back(static_cast<std::uint8_t>(word >> shift & 0xFF));
  }
  return answer;
}

FaAnswer CardTypes(ReaderState& state, Frame frame, Taken) {
  FaAnswer answer{{4, frame[2]}};
  for (const std::uint8_t byte : CardTypePage(state, frame[2])) answer.data.push_back(byte);
  return answer;
}

FaAnswer Hardware(ReaderState& state, Frame, Taken) {
  return {{0, state.installedHardware, 0, 0, 0, state.supportedHardware, 0, 0}};
}

FaAnswer Identity(ReaderState& state, Frame, Taken) {
  const auto identity = ReadIdentity(state);
  return {Bytes(identity.begin(), identity.end())};
}

FaAnswer TakeLuid(ReaderState& state, Frame, Taken taken) {
  if (taken.size() >= 2) WriteLuid(state, taken[0], taken[1]);
  return {};
}

FaAnswer CommitFa(ReaderState& state, Frame frame, Taken) {
  Commit(state, frame[1]);
  return {};
}

FaAnswer Reset(ReaderState& state, Frame, Taken) {
  ResetToFactory(state);
  return {};
}

FaAnswer Model(ReaderState& state, Frame frame, Taken) { return {BytesOf(ModelChunk(state, frame[2]))}; }
FaAnswer Queue(ReaderState& state, Frame frame, Taken) {
  return {BytesOf(QueuePage(state, frame[2], frame[3]))};
}
FaAnswer BeepFa(ReaderState& state, Frame frame, Taken) {
  Beep(state, frame[2]);
  return {};
}
FaAnswer Text(ReaderState& state, Frame frame, Taken) {
  return {BytesOf(TextChunk(state, frame[2], frame[3]))};
}
FaAnswer Volume(ReaderState& state, Frame, Taken) { return {{state.volume}}; }
FaAnswer SetVolume(ReaderState& state, Frame frame, Taken) {
  state.volume = frame[2];
  return {};
}
FaAnswer BaudCode(ReaderState& state, Frame, Taken) { return {{state.baudCode}}; }
FaAnswer SetBaudCode(ReaderState& state, Frame frame, Taken) {
  state.baudCode = frame[2];
  return {};
}

constexpr FaRow kFaRows[] = {
    {0x00, 0x00, Shape::kData, 0, false, {0x8F}, ReadId},
    {0x01, 0x00, Shape::kData, 0, false, {0x80}, ReadBlockFa},
    {0x01, 0x01, Shape::kData, 0, false, {0x81}, ReadBlockFa},
    {0x01, 0x02, Shape::kData, 0, false, {0x82}, ReadBlockFa},
    {0x01, 0x03, Shape::kData, 0, false, {0x83}, ReadBlockFa},
    {0x81, 0x00, Shape::kTake, 0, false, {0x80}, WriteBlockFa},
    {0x81, 0x01, Shape::kTake, 0, false, {0x81}, WriteBlockFa},
    {0x81, 0x02, Shape::kTake, 0, false, {0x82}, WriteBlockFa},
    {0x81, 0x03, Shape::kTake, 0, false, {0x83}, WriteBlockFa},
    {0x81, 0x04, Shape::kTake, 0, false, {0x84}, WriteBlockFa},
    {0x02, kAny, Shape::kStatus, 0, false, {0x90}, CommitFa},
    {0x03, 0x00, Shape::kStatus, 0, false, {0xA0}, Reset},
    {0x04, kAny, Shape::kData, 0, false, {0x8A}, Identity},
    {0x06, 0x00, Shape::kTake, 0, false, {0x8A}, TakeLuid},
    {0x09, 0x00, Shape::kData, 0, false, {0x85}, ReadSeparatedFa},
    {0x09, 0x01, Shape::kData, 0, true, {0x89, 0x01}, Query},
    {0x09, 0x03, Shape::kData, 0, true, {0x89, 0x03}, Firmware},
    {0x09, 0x04, Shape::kData, 0, true, {0x89, 0x04}, CardTypes},
    {0x09, 0x05, Shape::kBareData, 0, false, {0x89, 0x05}, Hardware},
    {0x09, 0x81, Shape::kData, 0, true, {0x89, 0x81}, Select},
    {0x09, 0x82, Shape::kData, 2, true, {0x89, 0x82}, Move},
    {0x8A, 0x00, Shape::kTake, 0, false, {0x85}, WriteSeparatedFa},
    {0x0C, 0x01, Shape::kBareData, 0, false, {0x8C, 0x01}, Model},
    {0x0C, 0x02, Shape::kBareData, 0, false, {0x8C, 0x02}, Queue},
    {0x0C, 0x03, Shape::kStatus, 0, false, {0x8C, 0x03}, BeepFa},
    {0x0C, 0x04, Shape::kBareData, 0, false, {0x8C, 0x04}, Text},
    {0x0C, 0x06, Shape::kBareData, 0, false, {0x8C, 0x06}, Volume},
    {0x0C, 0x86, Shape::kData, 0, false, {0x8C, 0x86}, SetVolume},
    {0x0D, 0x01, Shape::kBareData, 0, false, {}, BaudCode},
    {0x0D, 0x81, Shape::kData, 0, false, {}, SetBaudCode},
};

// One instruction has two meanings: for readers with the extended commands it reads, for others it writes.
constexpr FaRow kSeparatedOld{0x0A, 0x00, Shape::kTake, 0, false, {0x85}, WriteSeparatedFa};
constexpr FaRow kSeparatedExtended{0x0A, 0x00, Shape::kData, 0, false, {0x85}, ReadSeparatedFa};

const FaRow* FindFaRow(ReaderState& state, Frame frame) {
  if (frame[0] == kSeparatedOld.ins && frame[1] == kSeparatedOld.p1) {
    return HasExtendedSeparated(state) ? &kSeparatedExtended : &kSeparatedOld;
  }
  const auto* found = std::find_if(std::begin(kFaRows), std::end(kFaRows), [&](const FaRow& row) {
    return row.ins == frame[0] && (row.p1 == kAny || row.p1 == frame[1]);
  });
  return found == std::end(kFaRows) ? nullptr : found;
}

bool Refuses(const ReaderState& state, const FaRow* row, Frame frame) {
  if (row == nullptr || (row->plusOnly && !state.plus)) return true;
  if (row->feature[1] == 0) return Lacks(state, Frame(row->feature).first(1));
  return Lacks(state, Bytes{row->feature[0], row->feature[1], frame[2], frame[3]});
}

}  // namespace

ReaderFa::ReaderFa(std::shared_ptr<Reader> reader) : reader_(std::move(reader)) {}

void ReaderFa::Silence() {
  phase_ = Phase::kIdle;
  frame_.clear();
}

void ReaderFa::TakeByte(std::uint8_t byte) {
  if (phase_ == Phase::kIdle) {
    if (byte == kClass) phase_ = Phase::kHeader;
    return;
  }
  (phase_ == Phase::kData ? taken_ : frame_).push_back(byte);
  if (phase_ == Phase::kHeader && frame_.size() >= kHeaderBytes) {
    const FaRow* row = FindFaRow(reader_->state, frame_);
    const std::size_t extension = row == nullptr ? 0 : row->extension;
    if (frame_.size() == kHeaderBytes + extension) TakeFrame();
  } else if (phase_ == Phase::kData && taken_.size() == frame_[3]) {
    Run();
  }
}

void ReaderFa::TakeFrame() {
  const FaRow* row = FindFaRow(reader_->state, frame_);
  if (faults.TakeReplyRefusal(frame_)) return Silence();
  if (faults.TakeCommandRefusal(frame_) || Refuses(reader_->state, row, frame_)) {
    SendStatus(kNoSuchCommand);
    return Silence();
  }
  if (row->shape != Shape::kTake) return Run();

  taken_.clear();
  phase_ = Phase::kData;
  if (const auto answer = faults.TakeAnswer(frame_)) {
    Send(*answer);
    // A host that sees no echo sends no data.
    if (answer->empty() || answer->front() != frame_[0]) return Silence();
  } else {
    Send({frame_.data(), 1});
  }
  if (frame_[3] == 0) Run();
}

void ReaderFa::Run() {
  const FaRow* row = FindFaRow(reader_->state, frame_);
  const FaAnswer answer = row->run(reader_->state, frame_, taken_);
  const bool taking = row->shape == Shape::kTake;
  const auto scripted = taking ? std::nullopt : faults.TakeAnswer(frame_);
  if (scripted) {
    Send(*scripted);
  } else if (answer.refused || taking || row->shape == Shape::kStatus) {
    SendStatus(answer.status);
  } else {
    Send({frame_.data(), 1});
    Send(answer.data);
    if (row->shape == Shape::kData) SendStatus(answer.status);
  }
  Silence();
}

void ReaderFa::SendStatus(std::uint16_t status) {
  const std::array<std::uint8_t, 2> bytes{static_cast<std::uint8_t>(status >> 8),
                                          static_cast<std::uint8_t>(status & 0xFF)};
  Send(bytes);
}

}  // namespace tavlyn::sim
