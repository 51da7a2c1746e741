// Serial readers on the bench: a table entry of their own, with a reader model or a script at the far end of
// the line.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "core/state.h"
#include "links/serial_port.h"
#include "sim/devices/reader_fa.h"
#include "tests/support/bench.h"

namespace tavlyn::test {

// A far end that answers each frame, once its header is there, with the next of its replies; the line then
// stays silent.
class FaScript final : public sim::ByteDevice {
 public:
  std::deque<sim::Bytes> replies;

  void Receive(std::span<const std::uint8_t> bytes) override;
  std::size_t Take(std::span<std::uint8_t> bytes) override;

 private:
  bool classSeen_ = false;
  std::deque<std::uint8_t> out_;
};

class SerialBench : public Bench {
 protected:
  // Appends an entry for a card reader with this far end and makes it active.
  void AddLine(sim::ByteDevice& farEnd, std::uint32_t plusState = kPlainReader);
  // The same with a reader model, which `reader` and `line` then name.
  void AddReader(std::shared_ptr<sim::Reader> model, std::uint32_t plusState = kPlainReader);
  // The same with the script.
  void AddScript(std::deque<sim::Bytes> replies, std::uint32_t plusState = kPlainReader);
  // From now on all bytes travel over the socket.
  static void OpenSocket();

  static tsDevEntry& Entry() { return EntryOfActDev(); }
  static SerialPort& Port() { return *EntryOfActDev().pSerialPort; }

  std::shared_ptr<sim::Reader> reader;
  std::unique_ptr<sim::ReaderFa> line;
  FaScript script;
  sim::VirtualComPort* com = nullptr;  // of the last entry added
};

// What a frame puts on a COM port, then what is given.
Lines FrameLines(const std::string& header, const Lines& rest);

}  // namespace tavlyn::test
