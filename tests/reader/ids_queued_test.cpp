// IDs that the reader queued while nobody polled.
#include <algorithm>
#include <numeric>

#include "api.h"
#include "core/state.h"
#include "tests/support/dirty.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

constexpr std::uint8_t kOldByte = 0xAA;

sim::QueuedCard Numbered(std::uint8_t first) {
  sim::QueuedCard card;
  std::iota(card.id.begin(), card.id.end(), first);
  card.trailer = {0x34, 0x92, 0x56, 0x01, 0x80, 0xEE, 0xEE, 0x78};
  return card;
}

class QueuedId : public SerialBench {
 protected:
  std::shared_ptr<Reader> Use() {
    auto model = Connected(Reader::Plain());
    model->state.queue = {Numbered(1)};
    shared.id.LastIDBytes.fill(kOldByte);
    EntryOfActDev().LastLibErr = 5;
    return model;
  }

  static std::vector<std::uint32_t> Record() {
    std::vector<std::uint32_t> parts;
    for (std::int16_t index = 0; index <= 35; ++index) parts.push_back(GetQueuedID_index(index));
    return parts;
  }

  // The given bytes count up from first, then zeros.
  static std::vector<std::uint32_t> FirstBytes(std::size_t count, std::uint8_t first = 1) {
    std::vector<std::uint32_t> parts(36);
    std::iota(parts.begin(), parts.begin() + static_cast<std::ptrdiff_t>(count), first);
    return parts;
  }

  static void ExpectWhole(std::uint8_t first) {
    auto expected = FirstBytes(32, first);
    expected[32] = 0xFFFF8001;  // sign-extended
    expected[33] = 0x9234;
    expected[34] = 0x56;
    expected[35] = 0x78;
    EXPECT_EQ(Record(), expected);
  }
};

TEST_F(QueuedId, FivePagesMakeTheRecord) {
  Use();
  EXPECT_EQ(GetQueuedID(1, -1), 1U);
  ExpectTraffic({"set 8C 02 00 03", "get 01 02 03 04 05 06 07 08", "set 8C 02 01 03",
                 "get 09 0A 0B 0C 0D 0E 0F 10", "set 8C 02 02 03", "get 11 12 13 14 15 16 17 18",
                 "set 8C 02 03 03", "get 19 1A 1B 1C 1D 1E 1F 20", "set 8C 02 04 03",
                 "get 34 92 56 01 80 EE EE 78"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectWhole(1);
  for (const int index : {36, 37, 255, 32767, -1, -32768}) {
    EXPECT_EQ(GetQueuedID_index(static_cast<std::int16_t>(index)), 0U) << index;
  }
  ExpectTraffic({});
  EXPECT_TRUE(std::ranges::equal(shared.id.LastIDBytes, Numbered(1).id));
}

TEST_F(QueuedId, TheOptionsAreTwoBits) {
  const auto model = Use();
  GetQueuedID(0, 0);
  EXPECT_EQ(model->state.counters.lastQueueOptions, 0);
  GetQueuedID(0x8000, 0);
  EXPECT_EQ(model->state.counters.lastQueueOptions, 1);
  GetQueuedID(0, 2);
  EXPECT_EQ(model->state.counters.lastQueueOptions, 2);
}

TEST_F(QueuedId, AnEmptyQueueGivesZeros) {
  Use();
  GetQueuedID(0, 0);
  EXPECT_EQ(GetQueuedID(0, 0), 1U);
  EXPECT_EQ(Record(), FirstBytes(0));
  EXPECT_TRUE(std::ranges::all_of(shared.id.LastIDBytes, [](std::uint8_t byte) { return byte == 0; }));
}

TEST_F(QueuedId, AFaultAtEachExchange) {
  const auto model = Use();
  StartTrace();
  for (int exchange = 1; exchange <= 10; ++exchange) {
    const bool sendFails = exchange % 2 == 1;
    const auto page = static_cast<std::size_t>((exchange - 1) / 2);
    model->state.queue = {Numbered(1)};
    model->faults.Restart();
    model->faults.RefuseAt(exchange, sendFails ? 6 : 1);
    shared.id.LastIDBytes.fill(kOldByte);
    EXPECT_EQ(GetQueuedID(0, 0), 0U) << exchange;
    EXPECT_EQ(GetLastLibErr(), sendFails ? 0x1000202U : 0x1000000U) << exchange;
    EXPECT_EQ(Record(), FirstBytes(8 * page)) << exchange;
    // Each page shows what the record contained before it.
    EXPECT_EQ(shared.id.LastIDBytes[0], page == 0 ? kOldByte : page == 1 ? 0 : 1) << exchange;
    EXPECT_EQ(shared.id.LastIDBytes[23], page == 0 ? kOldByte : page == 4 ? 24 : 0) << exchange;
  }
  ExpectTrace({});
}

TEST_F(QueuedId, OverASerialLinkEachPageIsAFrame) {
  AddReader(Reader::Plain());
  reader->state.queue = {Numbered(0x41)};
  Entry().LastLibErr = 5;
  EXPECT_EQ(GetQueuedID(1, 0), 1U);
  Lines expected;
  for (const char* page : {"00", "01", "02", "03", "04"}) {
    expected = Join(
        {expected, FrameLines(std::string("0C 02 ") + page + " 01", {"read 0C", "read"}), {"sleep 100"}});
  }
  ExpectTraffic(expected);
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectWhole(0x41);
  EXPECT_TRUE(std::ranges::equal(shared.id.LastIDBytes, Numbered(0x41).id));
}

TEST_F(QueuedId, OverASerialLinkTheOldRecordStaysUntilItIsReplaced) {
  AddReader(Reader::Plain());
  reader->state.queue = {Numbered(0x41), Numbered(0x01)};
  EXPECT_EQ(GetQueuedID(0, 0), 1U);
  line->faults.RefuseCommand({0x0C, 0x02, 0x02});
  EXPECT_EQ(GetQueuedID(0, 0), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
  EXPECT_EQ(GetQueuedID_index(15), 16U);
  EXPECT_EQ(GetQueuedID_index(16), 0x51U);
  EXPECT_EQ(GetQueuedID_index(33), 0x9234U);
  EXPECT_EQ(shared.id.LastIDBytes[7], 8) << "the first page";
  EXPECT_EQ(shared.id.LastIDBytes[8], 0x49) << "not the second";
}

TEST_F(QueuedId, OverASerialLinkSilenceAtEachPageFails) {
  AddReader(Reader::Plain());
  for (std::uint8_t page = 0; page < 5; ++page) {
    line->faults.Restart();
    line->faults.RefuseReply({0x0C, 0x02, page});
    ForgetTraffic();
    EXPECT_EQ(GetQueuedID(0, 0), 0U) << int{page};
    EXPECT_EQ(GetLastLibErr(), 0x1000000U) << int{page};
    EXPECT_EQ(Slept(), page * 150U + 50U) << "no wait after a page that failed";
  }
  Port().Close();
  Entry().LastLibErr = 5;
  EXPECT_EQ(GetQueuedID(0, 0), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
}

TEST_F(QueuedId, TheRecordOutlivesTheDevice) {
  Use();
  EXPECT_EQ(GetQueuedID(0, 0), 1U);
  AddReader(Reader::Plain());
  ExpectWhole(1);
}

}  // namespace
}  // namespace tavlyn::test
