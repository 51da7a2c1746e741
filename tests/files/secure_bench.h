// Protected memory on the bench: its packets as lines of traffic, and a fault at each of them.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "tests/files/file_bench.h"

namespace tavlyn::test {

inline std::string PacketText(sim::Bytes packet) {
  packet.resize(8);
  return sim::TrimmedHexText(packet);
}

// A packet that the reader echoes.
inline Lines Echoed(const sim::Bytes& packet) {
  const std::string text = PacketText(packet);
  return {"set " + text, "get " + text};
}

inline const Lines kStored = {"set 89 90 00 FF", "get 89 90 00 FF", "sleep 500", "set 90"};

// The blocks of a payload, each echoed.
inline Lines Blocks(const sim::Bytes& payload) {
  Lines lines;
  for (std::size_t at = 0; at < payload.size(); at += 4) {
    sim::Bytes packet{0x89, 0x90, 0, static_cast<std::uint8_t>(at / 4 + 1)};
    for (std::size_t i = at; i < at + 4 && i < payload.size(); ++i) packet.push_back(payload[i]);
    lines = Join({lines, Echoed(packet)});
  }
  return lines;
}

inline sim::Bytes Counting(std::size_t count, unsigned first = 1) {
  sim::Bytes bytes(count);
  for (std::size_t at = 0; at < count; ++at) bytes[at] = static_cast<std::uint8_t>(first + at);
  return bytes;
}

inline Lines FailurePair(const std::string& tag) { return {tag + " ERROR CODE: 0", tag + " Failed !!"}; }

class SecureBench : public FileBench {
 protected:
  void SetUp() override {
    FileBench::SetUp();
    SetUnsupportedProductErrorCode(0x8001);
    Use(sim::Reader::Plain());
    StartTrace();
  }
  sim::SecureMemory& Memory() { return reader->state.secure; }

  // Makes one exchange of the next call fail permanently, given as a line of its good traffic.
  void RefuseExchange(int number, const std::string& line) {
    reader->faults.Restart();
    reader->faults.RefuseAt(number, line.starts_with("set") ? 6 : 1);
  }
  // Runs a call with a fault at each exchange in turn; check gets its number, from 0, and what should have
  // been exchanged.
  template <typename Call, typename Check>
  void WithAFaultAtEach(Call call, Check check) {
    ForgetTraffic();
    call();
    Lines exchanges = TrafficOf(host.transcript.Events());
    std::erase_if(exchanges, [](const std::string& line) { return line.starts_with("sleep"); });
    ASSERT_FALSE(exchanges.empty());
    for (std::size_t number = 0; number < exchanges.size(); ++number) {
      SCOPED_TRACE(std::to_string(number) + ": " + exchanges[number]);
      RefuseExchange(static_cast<int>(number) + 1, exchanges[number]);
      Memory().write = Memory().read = {};
      Entry().LastLibErr = 5;
      ForgetTraffic();
      ExpectTrace(Trace());
      check(number, exchanges[number], call());
    }
    reader->faults.Restart();
  }
  // A call refused before it reaches the reader.
  void ExpectUntouched(std::uint32_t errorWord = 5) {
    EXPECT_EQ(Entry().LastLibErr, errorWord);
    ExpectTraffic({});
    Entry().LastLibErr = 5;
  }
};

}  // namespace tavlyn::test
