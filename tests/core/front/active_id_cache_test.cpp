// The time gate in front of the ID read, its cache, and the reads for callers without a buffer.
#include <array>
#include <numeric>

#include "api.h"
#include "core/state.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;
using Id = std::array<std::uint8_t, 8>;

constexpr Id kCard = {0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18};

class IdCache : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    reader = Connected(Reader::Plain());
    reader->PutCard(Bytes(kCard.begin(), kCard.end()), 26);
    Hold(1000);
  }
  static void Hold(std::int16_t milliseconds) {
    EntryOfActDev().ActiveSlot()[field::TimeParms_iIDHoldTO] = milliseconds;
  }
  std::uint16_t Poll() {
    id.fill(0xEE);
    return GetActiveID(id.data(), 8);
  }
  bool Asked() {
    const bool asked = !TrafficOf(host.transcript.Events()).empty();
    ForgetTraffic();
    return asked;
  }

  std::shared_ptr<Reader> reader;
  Id id{};
};

TEST_F(IdCache, TheReaderIsLeftAloneFor235Milliseconds) {
  EXPECT_EQ(Poll(), 26);
  EXPECT_TRUE(Asked());
  reader->TakeCard();
  for (const std::uint64_t step : {0U, 1U, 99U, 134U}) {
    LetTimePass(step);
    EXPECT_EQ(Poll(), 26);
    EXPECT_EQ(id, kCard);
    EXPECT_FALSE(Asked()) << "a poll does not open the gate later";
  }
  LetTimePass(1);
  EXPECT_EQ(Poll(), 0);
  EXPECT_TRUE(Asked());
}

TEST_F(IdCache, BothReadsShareGateAndCache) {
  EXPECT_EQ(Poll(), 26);
  ForgetTraffic();
  std::array<std::uint8_t, 32> longId{};
  longId.fill(0xEE);
  StartTrace();
  EXPECT_EQ(GetActiveID32(longId.data(), 32), 26);
  EXPECT_TRUE(std::equal(kCard.begin(), kCard.end(), longId.begin()));
  EXPECT_EQ(longId[8], 0);
  EXPECT_FALSE(Asked());
  ExpectTrace({"GetActiveID32 ENTER", "GetActiveID32 EXIT"});
}

TEST_F(IdCache, AnIdExpiresByItsHoldTime) {
  Hold(100);
  EXPECT_EQ(Poll(), 26);
  LetTimePass(99);
  EXPECT_EQ(Poll(), 26);
  ForgetTraffic();
  LetTimePass(1);
  EXPECT_EQ(Poll(), 0);
  EXPECT_EQ(id, Id{});
  EXPECT_EQ(shared.id.LastIDBytes, (std::array<std::uint8_t, 32>{}));
  EXPECT_EQ(shared.id.LastIDBits, 0U);
  EXPECT_FALSE(Asked());
  Hold(1000);
  EXPECT_EQ(Poll(), 0) << "what expired is not served again";
}

TEST_F(IdCache, ALoadForgetsTheId) {
  EXPECT_EQ(Poll(), 26);
  host.hid.Unplug("device-1");
  Reload();
  Plug(reader);
  SetDevTypeSrch(0);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  Hold(1000);
  ForgetTraffic();
  EXPECT_EQ(Poll(), 0) << "the connect has closed the gate";
  EXPECT_EQ(id, Id{});
  EXPECT_FALSE(Asked());
}

TEST_F(IdCache, AShortHoldTimeEndsBeforeTheGateOpens) {
  Hold(50);
  EXPECT_EQ(Poll(), 26);
  LetTimePass(100);
  EXPECT_EQ(Poll(), 0);
  EXPECT_EQ(id, Id{});
  LetTimePass(135);
  EXPECT_EQ(Poll(), 26) << "the next fetch finds the card still there";
}

TEST_F(IdCache, WithoutAHoldTimeNothingIsServed) {
  Hold(0);
  EXPECT_EQ(Poll(), 26);
  ForgetTraffic();
  EXPECT_EQ(Poll(), 0);
  LetTimePass(234);
  EXPECT_EQ(Poll(), 0);
  EXPECT_FALSE(Asked());
}

TEST_F(IdCache, AnExpiredReadZeroesTheWholeBuffer) {
  Hold(0);
  EXPECT_EQ(Poll(), 26);
  std::vector<std::uint8_t> wide(300, 0xEE);
  EXPECT_EQ(GetActiveID32(wide.data(), 300), 0);
  EXPECT_EQ(wide, std::vector<std::uint8_t>(300));
}

TEST_F(IdCache, AnyExchangeClosesTheGate) {
  EXPECT_EQ(Poll(), 26);
  LetTimePass();
  EXPECT_EQ(ReadCfg(), 1U);
  Hold(1000);
  reader->TakeCard();
  ForgetTraffic();
  EXPECT_EQ(Poll(), 26) << "served";
  Hold(0);
  EXPECT_EQ(Poll(), 0) << "expired";
  EXPECT_FALSE(Asked());
}

TEST_F(IdCache, AClockThatWentBackCountsAsLongPast) {
  EXPECT_EQ(Poll(), 26);
  ForgetTraffic();
  host.clock.tick -= 1;
  EXPECT_EQ(Poll(), 26);
  EXPECT_TRUE(Asked());
}

TEST_F(IdCache, TheHoldTimeIsThatOfTheConfigurationInUse) {
  EntryOfActDev().PlusState = kPlusReader;
  EntryOfActDev().MaxConfig = 1;
  EntryOfActDev().CfgSlot[1][field::TimeParms_iIDHoldTO] = 0;
  EXPECT_EQ(Poll(), 26);
  EXPECT_EQ(Poll(), 26);
  EXPECT_EQ(SetActConfig(1), 1U);
  EXPECT_EQ(Poll(), 0);
}

TEST_F(IdCache, ThereIsOneCacheForAllDevices) {
  EXPECT_EQ(Poll(), 26);
  DevTable[1].ProductKind = kReader;
  DevTable[1].LastTxTick = host.clock.tick;
  DevTable[1].CfgSlot[0][field::TimeParms_iIDHoldTO] = 1000;
  shared.DevCnt = 2;
  EXPECT_EQ(SetActDev(1), 1U);
  ForgetTraffic();
  EXPECT_EQ(Poll(), 26);
  EXPECT_EQ(id, kCard);
  EXPECT_FALSE(Asked());
}

TEST_F(IdCache, AFailedReadIsServedAsNoCard) {
  EXPECT_EQ(Poll(), 26);
  LetTimePass();
  reader->faults.RefuseReply({0x8F}, 1);
  EXPECT_EQ(Poll(), 0);
  EXPECT_EQ(Poll(), 0);
  EXPECT_EQ(id, Id{});
}

TEST_F(IdCache, WithoutABufferTheBytesAreHandedOutOneByOne) {
  EXPECT_EQ(getActiveID(8), 26);
  ExpectTraffic({"set 8F", "get", "set 8E", "get"});
  for (std::int16_t at = 0; at < 8; ++at)
    EXPECT_EQ(getActiveID_byte(at), kCard[static_cast<std::size_t>(at)]);
  EXPECT_EQ(getActiveID_byte(8), 0);
  LetTimePass();
  EXPECT_EQ(getActiveID32(32), 26);
  ExpectTraffic(
      {"set 8D", "get", "set 8D 01", "get", "set 8D 02", "get", "set 8D 03", "get", "set 8E", "get"});
}

TEST_F(IdCache, MoreThan32BytesCountAs32) {
  for (const std::uint16_t bytes : std::initializer_list<std::uint16_t>{32, 33, 40, 65535}) {
    shared.id.LastIDLen = 1;
    EXPECT_EQ(getActiveID(bytes), 26);
    EXPECT_EQ(shared.id.LastIDLen, 32) << bytes;
    LetTimePass();
    EXPECT_EQ(getActiveID32(bytes), 26);
    EXPECT_EQ(shared.id.LastIDLen, 32) << bytes;
    LetTimePass();
  }
}

TEST_F(IdCache, FewerBytesAreAskedAsTheLength) {
  EXPECT_EQ(getActiveID(4), 26);
  EXPECT_EQ(shared.id.LastIDLen, 4);
  EXPECT_EQ(getActiveID_byte(3), 0x14);
  EXPECT_EQ(getActiveID_byte(4), 0);
  LetTimePass();
  EXPECT_EQ(getActiveID(0), 26);
  EXPECT_EQ(getActiveID_byte(0), 0);
}

TEST_F(IdCache, AByteBehindTheLengthAskedForIsAdmitted) {
  EXPECT_EQ(getActiveID(4), 26);
  LetTimePass();
  EXPECT_EQ(Poll(), 26);  // eight bytes are in the cache now, the length stays 4
  EXPECT_EQ(getActiveID_byte(4), 0x15);
  EXPECT_EQ(getActiveID_byte(5), 0);
  EXPECT_EQ(getActiveID_byte(-1), 0);
  EXPECT_EQ(getActiveID_byte(-32768), 0);
  shared.id.LastIDLen = 32;
  shared.id.LastIDBytes.fill(0x77);
  EXPECT_EQ(getActiveID_byte(31), 0x77);
  EXPECT_EQ(getActiveID_byte(32), 0);
  EXPECT_EQ(getActiveID_byte(32767), 0);
}

TEST_F(IdCache, InsideTheGateTheyServeWithoutLockOrTrace) {
  EXPECT_EQ(getActiveID(8), 26);
  host.transcript.Clear();
  StartTrace();
  for (const auto read : {getActiveID, getActiveID32}) {
    EXPECT_EQ(read(3), 26);
    EXPECT_EQ(shared.id.LastIDLen, 8) << "set with an open gate only";
  }
  EXPECT_EQ(getActiveID_byte(7), kCard[7]);
  Hold(50);
  LetTimePass(49);
  EXPECT_EQ(getActiveID(8), 26);
  LetTimePass(1);
  EXPECT_EQ(getActiveID(8), 0);
  EXPECT_EQ(shared.id.LastIDBytes, (std::array<std::uint8_t, 32>{}));
  EXPECT_EQ(shared.id.LastIDBits, 0U);
  EXPECT_EQ(shared.id.LastIDLen, 8);
  EXPECT_EQ(host.transcript.Lines(), Lines{});
  ExpectTrace({});
  LetTimePass(185);
  EXPECT_EQ(getActiveID(8), 26) << "235 ms after the exchange";
}

}  // namespace
}  // namespace tavlyn::test
