// The card on a reader over feature reports: traffic, faults, buffers of any length.
#include <algorithm>
#include <memory>

#include "api.h"
#include "core/state.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

// A buffer of exactly that many bytes, filled before each use.
class Buffer {
 public:
  explicit Buffer(std::size_t size) : bytes_(new std::uint8_t[size]), size_(size) { Fill(); }
  void Fill() { std::fill_n(bytes_.get(), size_, std::uint8_t{0xEE}); }
  std::uint8_t* get() { return bytes_.get(); }
  // The first bytes of the card, then zeros.
  [[nodiscard]] bool Holds(const Bytes& card, std::size_t count) const {
    for (std::size_t at = 0; at < size_; ++at) {
      const std::uint8_t expected = at < count && at < card.size() ? card[at] : std::uint8_t{0};
      if (bytes_[at] != expected) return false;
    }
    return true;
  }

 private:
  std::unique_ptr<std::uint8_t[]> bytes_;
  std::size_t size_;
};

class ActiveId : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    reader = Connected(Reader::Plain());
    reader->PutCard(LongCard(), 200);
  }
  static Bytes Cached() { return {shared.id.LastIDBytes.begin(), shared.id.LastIDBytes.end()}; }
  static Bytes First(std::size_t count) {
    Bytes bytes = LongCard();
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(count), bytes.end(), std::uint8_t{0});
    return bytes;
  }

  std::shared_ptr<Reader> reader;
};

const Lines kShortTraffic = {"set 8F", "get 11 12 13 14 15 16 17 18", "set 8E", "get C8"};
const Lines kLongTraffic = {"set 8D",    "get 11 12 13 14 15 16 17 18",
                            "set 8D 01", "get 19 1A 1B 1C 1D 1E 1F 20",
                            "set 8D 02", "get 21 22 23 24 25 26 27 28",
                            "set 8D 03", "get 29 2A 2B 2C 2D 2E 2F 30",
                            "set 8E",    "get C8"};

TEST_F(ActiveId, TheShortReadFetchesEightBytes) {
  StartTrace();
  EntryOfActDev().LastLibErr = 5;
  Buffer buffer(8);
  EXPECT_EQ(GetActiveID(buffer.get(), 8), 200);
  ExpectTraffic(kShortTraffic);
  EXPECT_TRUE(buffer.Holds(LongCard(), 8));
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(Cached(), First(8));
  EXPECT_EQ(shared.id.LastIDBits, 200U);
  ExpectTrace({"GetActiveID ENTER", "tavlyn_GetActiveID Card BitCount: 200", "GetActiveID EXIT"});
}

TEST_F(ActiveId, TheLongReadFetchesThirtyTwo) {
  StartTrace();
  EntryOfActDev().LastLibErr = 5;
  Buffer buffer(32);
  EXPECT_EQ(GetActiveID32(buffer.get(), 32), 200);
  ExpectTraffic(kLongTraffic);
  EXPECT_TRUE(buffer.Holds(LongCard(), 32));
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(Cached(), LongCard());
  ExpectTrace({"GetActiveID32 ENTER", "tavlyn_GetActiveID32 Card BitCount: 200", "GetActiveID32 EXIT"});
}

TEST_F(ActiveId, NoCardIs0AndNoError) {
  reader->TakeCard();
  StartTrace();
  Buffer buffer(32);
  EXPECT_EQ(GetActiveID(buffer.get(), 32), 0);
  EXPECT_TRUE(buffer.Holds({}, 0));
  ExpectTrace({"GetActiveID ENTER", "tavlyn_GetActiveID Card BitCount: 0", "GetActiveID EXIT"});
  LetTimePass();
  buffer.Fill();
  EXPECT_EQ(GetActiveID32(buffer.get(), 32), 0);
  EXPECT_TRUE(buffer.Holds({}, 0));
  ExpectTrace({"GetActiveID32 ENTER", "tavlyn_GetActiveID32 Card BitCount: 0", "GetActiveID32 EXIT"});
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(ActiveId, BuffersOfAnyLength) {
  for (const std::int16_t length :
       std::initializer_list<std::int16_t>{0, 1, 4, 7, 8, 9, 16, 31, 32, 33, 300}) {
    const auto size = static_cast<std::size_t>(length);
    SCOPED_TRACE(length);
    Buffer buffer(size);
    ForgetTraffic();
    EXPECT_EQ(GetActiveID(buffer.get(), length), 200);
    ExpectTraffic(kShortTraffic);
    EXPECT_TRUE(buffer.Holds(LongCard(), std::min<std::size_t>(size, 8)));
    EXPECT_EQ(Cached(), First(std::min<std::size_t>(size, 8)));
    buffer.Fill();
    EXPECT_EQ(GetActiveID(buffer.get(), length), 200) << "served from the cache";
    ExpectTraffic({});
    for (std::size_t at = 0; at < std::min<std::size_t>(size, 32); ++at) {
      EXPECT_EQ(buffer.get()[at], at < 8 ? LongCard()[at] : 0) << at;
    }
    LetTimePass();

    buffer.Fill();
    EXPECT_EQ(GetActiveID32(buffer.get(), length), 200);
    ExpectTraffic(kLongTraffic);
    EXPECT_TRUE(buffer.Holds(LongCard(), 32));
    EXPECT_EQ(Cached(), First(std::min<std::size_t>(size, 32)));
    LetTimePass();
  }
}

TEST_F(ActiveId, BytesAroundTheBufferStay) {
  for (const std::int16_t length : std::initializer_list<std::int16_t>{0, 4, 8, 32}) {
    std::array<std::uint8_t, 64> room{};
    for (const auto read : {GetActiveID, GetActiveID32, GetActiveID}) {
      room.fill(0xEE);
      EXPECT_EQ(read(room.data() + 8, length), 200);
      for (std::size_t at = 0; at < room.size(); ++at) {
        const bool outside = at < 8 || at >= 8 + static_cast<std::size_t>(length);
        EXPECT_TRUE(!outside || room[at] == 0xEE) << at;
      }
      if (read == GetActiveID32) continue;  // the next one is served from the cache
      LetTimePass();
    }
    LetTimePass();
  }
}

TEST_F(ActiveId, NoRoomIsNoLength) {
  std::uint8_t byte = 0xEE;
  EXPECT_EQ(GetActiveID(nullptr, 8), 200);
  EXPECT_EQ(Cached(), Bytes(32));
  EXPECT_EQ(GetActiveID(nullptr, 8), 200) << "from the cache";
  LetTimePass();
  EXPECT_EQ(GetActiveID(&byte, -1), 200);
  EXPECT_EQ(GetActiveID(&byte, -32768), 200);
  LetTimePass();
  EXPECT_EQ(GetActiveID32(nullptr, 32767), 200);
  LetTimePass();
  EXPECT_EQ(GetActiveID32(&byte, -1), 200);
  EXPECT_EQ(byte, 0xEE);
  EntryOfActDev().ActiveSlot()[field::TimeParms_iIDHoldTO] = 0;
  EXPECT_EQ(GetActiveID(nullptr, 8), 0) << "expired";
  EXPECT_EQ(GetActiveID(&byte, -1), 0);
  EXPECT_EQ(byte, 0xEE);
}

TEST_F(ActiveId, AFaultAtEachExchangeOfTheShortRead) {
  StartTrace();
  for (int exchange = 1; exchange <= 4; ++exchange) {
    const bool sendFails = exchange % 2 == 1;
    reader->faults.Restart();
    reader->faults.RefuseAt(exchange, sendFails ? 6 : 1);
    shared.id.LastIDBytes.fill(0x77);
    shared.id.LastIDBits = 9;
    Buffer buffer(8);
    EXPECT_EQ(GetActiveID(buffer.get(), 8), 0) << exchange;
    EXPECT_EQ(GetLastLibErr(), sendFails ? 0x1000202U : 0x1000000U) << exchange;
    const std::size_t kept = exchange > 2 ? 8 : 0;
    EXPECT_TRUE(buffer.Holds(LongCard(), kept)) << exchange;
    EXPECT_EQ(Cached(), First(kept)) << exchange;
    EXPECT_EQ(shared.id.LastIDBits, 0U);
    ExpectTrace({"GetActiveID ENTER", "tavlyn_GetActiveID ERROR CODE: 0", "tavlyn_GetActiveID Failed !!",
                 "GetActiveID EXIT"});
    LetTimePass();
  }
}

TEST_F(ActiveId, AFaultAtEachExchangeOfTheLongRead) {
  StartTrace();
  for (int exchange = 1; exchange <= 10; ++exchange) {
    const bool sendFails = exchange % 2 == 1;
    reader->faults.Restart();
    reader->faults.RefuseAt(exchange, sendFails ? 6 : 1);
    shared.id.LastIDBytes.fill(0x77);
    Buffer buffer(32);
    EXPECT_EQ(GetActiveID32(buffer.get(), 32), 0) << exchange;
    EXPECT_EQ(GetLastLibErr(), sendFails ? 0x1000202U : 0x1000000U) << exchange;
    EXPECT_TRUE(buffer.Holds({}, 0)) << "nothing is copied";
    EXPECT_EQ(Cached(), Bytes(32));
    ExpectTrace({"GetActiveID32 ENTER", "tavlyn_GetActiveID32 ERROR CODE: 0", "GetActiveID32 EXIT"});
    LetTimePass();
  }
}

TEST_F(ActiveId, AVanishedReaderIsAnError) {
  reader->faults.VanishAt(3);
  Buffer buffer(8);
  EXPECT_EQ(GetActiveID(buffer.get(), 8), 0);
  EXPECT_EQ(GetLastLibErr(), 0x1000202U);
  EXPECT_EQ(Slept(), 480U);
}

TEST_F(ActiveId, WithoutADeviceTheReadIsTracedAndTheCacheStays) {
  StartTrace();
  Buffer buffer(8);
  const Bytes before = Cached();
  shared.DevCnt = 0;
  GetActiveID(buffer.get(), 8);
  ExpectTrace({"GetActiveID ENTER", "GetActiveID EXIT"});
  GetActiveID32(buffer.get(), 8);
  ExpectTrace({"GetActiveID32 ENTER", "GetActiveID32 EXIT"});
  shared.DevCnt = 1;
  EXPECT_EQ(Cached(), before);
}

TEST_F(ActiveId, TheLockIsHeldFromTheGateToTheEndOfTheFetch) {
  Buffer buffer(8);
  GetActiveID(buffer.get(), 8);
  const Lines lines = host.transcript.Lines();
  EXPECT_EQ(lines.front(), "mutex lock");
  EXPECT_EQ(lines.back(), "mutex unlock");
  EXPECT_EQ(lines.size(), 6U);
}

class ActiveIdReportId1 : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    reader = Connected(Reader::Kelda(1));
    reader->PutCard({0x11, 0x12}, 16);
  }
  std::shared_ptr<Reader> reader;
};

TEST_F(ActiveIdReportId1, AnInputReportMustBeQueued) {
  StartTrace();
  for (const auto read : {GetActiveID, GetActiveID32}) {
    Buffer buffer(8);
    shared.id.LastIDBytes.fill(0x77);
    EntryOfActDev().LastLibErr = 5;
    EXPECT_EQ(read(buffer.get(), 8), 0);
    ExpectTraffic({"drain nothing"});
    EXPECT_EQ(GetLastLibErr(), 0U);
    EXPECT_TRUE(buffer.Holds({}, 0));
    EXPECT_EQ(shared.id.LastIDBytes, (std::array<std::uint8_t, 32>{}));
  }
  ExpectTrace({"GetActiveID ENTER", "GetActiveID EXIT", "GetActiveID32 ENTER", "GetActiveID32 EXIT"});
}

TEST_F(ActiveIdReportId1, AQueuedReportIsDrainedAndTheRestDropped) {
  reader->QueueInput({1, 5});
  reader->QueueInput({1, 6});
  Buffer buffer(8);
  EXPECT_EQ(GetActiveID(buffer.get(), 8), 16);
  ExpectTraffic({"drain 01 05", "set [1] 8F", "get [1] 11 12", "set [1] 8E", "get [1] 10"});
  EXPECT_TRUE(reader->state.inputs.empty());
  LetTimePass();
  reader->QueueInput({1, 5});
  EXPECT_EQ(GetActiveID32(buffer.get(), 8), 16);
  ExpectTraffic({"drain 01 05", "set [1] 8D", "get [1] 11 12", "set [1] 8D 01", "get [1] 00", "set [1] 8D 02",
                 "get [1] 00", "set [1] 8D 03", "get [1] 00", "set [1] 8E", "get [1] 10"});
}

TEST_F(ActiveIdReportId1, InsideTheGateTheQueueIsNotTouched) {
  reader->QueueInput({1, 5});
  Buffer buffer(8);
  EXPECT_EQ(GetActiveID(buffer.get(), 8), 16);
  reader->QueueInput({1, 6});
  ForgetTraffic();
  EXPECT_EQ(GetActiveID(buffer.get(), 8), 16);
  ExpectTraffic({});
  EXPECT_EQ(reader->state.inputs.size(), 1U);
}

TEST_F(ActiveIdReportId1, AGoneDeviceIsToldOnEntry0) {
  StartTrace();
  reader->Unplug();
  Buffer buffer(8);
  EXPECT_EQ(GetActiveID(buffer.get(), 8), 0);
  ExpectTraffic({"drain refused"});
  EXPECT_EQ(DevTable[0].LastLibErr, 0x60000000U);
  ExpectTrace({"GetActiveID ENTER", "GetActiveID EXIT"});
}

}  // namespace
}  // namespace tavlyn::test
