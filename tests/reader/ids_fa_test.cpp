// The card on a serial reader.
#include <algorithm>
#include <memory>
#include <vector>

#include "api.h"
#include "core/state.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

// Echo, data and status of an ID read whose unused bytes are not 0.
Bytes Reply(std::size_t idBytes, std::uint8_t bits, std::uint8_t sw1, std::uint8_t sw2) {
  Bytes reply = {0x00, 0xA0, bits, 0xA2, 0xA3};
  const Bytes card = LongCard();
  reply.insert(reply.end(), card.begin(), card.begin() + static_cast<std::ptrdiff_t>(idBytes));
  reply.insert(reply.end(), {sw1, sw2});
  return reply;
}

class ActiveIdFa : public SerialBench {
 protected:
  static Bytes Start(const std::vector<std::uint8_t>& buffer, std::size_t count) {
    return {buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(count)};
  }
  static Lines Short(const Lines& rest) { return FrameLines("00 00 00 0C", rest); }
  static Lines Long(const Lines& rest) { return FrameLines("00 00 00 24", rest); }
};

TEST_F(ActiveIdFa, TheShortReadIsTwelveBytes) {
  AddScript({Reply(8, 66, 0x90, 0x00)});
  StartTrace();
  Entry().LastLibErr = 5;
  std::vector<std::uint8_t> buffer(10, 0xEE);
  EXPECT_EQ(GetActiveID(buffer.data(), 10), 66);
  ExpectTraffic(Short({"read 00", "read A0 42 A2 A3 11 12 13 14 15 16 17 18", "read 90 00"}));
  EXPECT_EQ(buffer, (std::vector<std::uint8_t>{0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0, 0}));
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(shared.id.LastIDBytes[7], 0x18);
  EXPECT_EQ(shared.id.LastIDBytes[8], 0);
  ExpectTrace({"GetActiveID ENTER", "tavlyn_GetActiveID Card BitCount: 66", "GetActiveID EXIT"});
}

TEST_F(ActiveIdFa, TheLongReadIsThirtySixBytes) {
  AddScript({Reply(32, 200, 0x90, 0x00)});
  StartTrace();
  std::vector<std::uint8_t> buffer(32, 0xEE);
  EXPECT_EQ(GetActiveID32(buffer.data(), 32), 200);
  ExpectTraffic(Long({"read 00", "read", "read 90 00"}));
  EXPECT_EQ(Start(buffer, 32), LongCard());
  ExpectTrace({"GetActiveID32 ENTER", "tavlyn_GetActiveID32 Card BitCount: 200", "GetActiveID32 EXIT"});
}

TEST_F(ActiveIdFa, TheModelAnswersSo) {
  AddReader(Reader::Plain());
  reader->PutCard(LongCard(), 200);
  std::vector<std::uint8_t> buffer(32);
  EXPECT_EQ(GetActiveID32(buffer.data(), 32), 200);
  EXPECT_EQ(Start(buffer, 32), LongCard());
  reader->TakeCard();
  EXPECT_EQ(GetActiveID32(buffer.data(), 32), 0);
  EXPECT_EQ(Start(buffer, 32), Bytes(32));
  EXPECT_EQ(GetActiveID(buffer.data(), 32), 0);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(ActiveIdFa, NoIdEndsTheShortReadWithItsData) {
  AddScript({Reply(8, 0, 0x6A, 0x82), Reply(8, 7, 0x6A, 0x82)});
  StartTrace();
  std::vector<std::uint8_t> buffer(8, 0xEE);
  EXPECT_EQ(GetActiveID(buffer.data(), 8), 0);
  ExpectTraffic(Short({"read 00", "read", "read 6A 82"}));
  EXPECT_EQ(buffer[0], 0x11) << "the data as it came";
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTrace({"GetActiveID ENTER", "tavlyn_GetActiveID Card BitCount: 0", "GetActiveID EXIT"});
  EXPECT_EQ(GetActiveID(buffer.data(), 8), 7);
}

TEST_F(ActiveIdFa, NoIdEndsTheLongReadAtOnce) {
  AddScript({Reply(32, 7, 0x6A, 0x82)});
  StartTrace();
  std::vector<std::uint8_t> buffer(32, 0xEE);
  EXPECT_EQ(GetActiveID32(buffer.data(), 32), 0);
  EXPECT_EQ(Start(buffer, 32), Bytes(32));
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTrace({"GetActiveID32 ENTER", "GetActiveID32 EXIT"});
}

TEST_F(ActiveIdFa, TheShortReadTriesThreeTimes) {
  AddScript({{0x6D, 0x11, 9, 9, 9}, {0x00, 1, 2}, {}});
  StartTrace();
  std::vector<std::uint8_t> buffer(8, 0xEE);
  EXPECT_EQ(GetActiveID(buffer.data(), 8), 0);
  const Lines pause = {"flush", "sleep 50"};
  ExpectTraffic(Join({Short({"read 6D", "read 11"}), pause, Short({"read 00", "read 01 02"}), pause,
                      Short({"read"}), pause}));
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
  EXPECT_EQ(buffer, std::vector<std::uint8_t>(8));
  ExpectTrace({"GetActiveID ENTER", "tavlyn_GetActiveID ERROR CODE: 0", "tavlyn_GetActiveID Failed !!",
               "GetActiveID EXIT"});
}

TEST_F(ActiveIdFa, ALaterTryCanSucceed) {
  AddScript({{}, Reply(8, 1, 0x6F, 0x00), Reply(8, 66, 0x90, 0x00)});
  std::vector<std::uint8_t> buffer(8);
  EXPECT_EQ(GetActiveID(buffer.data(), 8), 66);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(Slept(), 3U * 50U + 2U * 50U);
  AddScript({{}, {}, Reply(8, 0, 0x6A, 0x82)});
  EXPECT_EQ(GetActiveID(buffer.data(), 8), 0);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(ActiveIdFa, NoIdInPlaceOfTheEchoIsARefusal) {
  AddScript({{0x6A, 0x82}, {0x6A, 0x82}, {0x6A, 0x82}});
  std::vector<std::uint8_t> buffer(32, 0xEE);
  EXPECT_EQ(GetActiveID(buffer.data(), 8), 0);
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
  EXPECT_TRUE(script.replies.empty());
  AddScript({{0x6A, 0x82}});
  EXPECT_EQ(GetActiveID32(buffer.data(), 32), 0x82) << "the second status byte stands where the count does";
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
}

// It differs from the status that says so in one byte.
TEST_F(ActiveIdFa, AnotherStatusIsNotThatThereIsNoId) {
  for (const std::uint8_t status : {std::uint8_t{0x81}, std::uint8_t{0x83}}) {
    AddScript({Reply(8, 3, 0x6A, status), Reply(8, 3, 0x6A, status), Reply(8, 5, 0x90, 0x00)});
    std::vector<std::uint8_t> buffer(8);
    EXPECT_EQ(GetActiveID(buffer.data(), 8), 5);
    EXPECT_TRUE(script.replies.empty());
  }
}

TEST_F(ActiveIdFa, TheLongReadGoesOnAfterItsOneFailure) {
  StartTrace();
  std::vector<std::uint8_t> buffer(32, 0xEE);
  AddScript({{0x6D, 0x11, 0x22}});
  EXPECT_EQ(GetActiveID32(buffer.data(), 32), 0x11);
  ExpectTraffic(Long({"read 6D", "read 11"}));
  EXPECT_EQ(Start(buffer, 32), Bytes(32));
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
  const Lines counted = {"GetActiveID32 ENTER", "tavlyn_GetActiveID32 ERROR CODE: 0",
                         "tavlyn_GetActiveID32 Card BitCount: 17", "GetActiveID32 EXIT"};
  ExpectTrace(counted);

  AddScript({Reply(32, 17, 0x6F, 0x00)});
  EXPECT_EQ(GetActiveID32(buffer.data(), 32), 17) << "with another status";
  EXPECT_EQ(Start(buffer, 32), LongCard());
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
  ExpectTrace(counted);

  AddScript({});
  EXPECT_EQ(GetActiveID32(buffer.data(), 32), 0);
  ExpectTraffic(Long({"read"}));
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
  ExpectTrace({"GetActiveID32 ENTER", "tavlyn_GetActiveID32 ERROR CODE: 0",
               "tavlyn_GetActiveID32 Card BitCount: 0", "GetActiveID32 EXIT"});
}

TEST_F(ActiveIdFa, AShortBufferGetsNothing) {
  StartTrace();
  for (const std::int16_t length : std::initializer_list<std::int16_t>{0, 4, 7}) {
    AddScript({Reply(8, 66, 0x90, 0x00)});
    std::unique_ptr<std::uint8_t[]> buffer(new std::uint8_t[static_cast<std::size_t>(length)]);
    std::fill_n(buffer.get(), length, std::uint8_t{0xEE});
    EXPECT_EQ(GetActiveID(buffer.get(), length), 0) << length;
    EXPECT_TRUE(
        std::all_of(buffer.get(), buffer.get() + length, [](std::uint8_t byte) { return byte == 0; }));
    EXPECT_EQ(GetLastLibErr(), 0U);
    ExpectTrace({"GetActiveID ENTER", "GetActiveID EXIT"});
  }
  for (const std::int16_t length : std::initializer_list<std::int16_t>{0, 8, 16, 31}) {
    AddScript({Reply(32, 200, 0x90, 0x00)});
    std::unique_ptr<std::uint8_t[]> buffer(new std::uint8_t[static_cast<std::size_t>(length)]);
    std::fill_n(buffer.get(), length, std::uint8_t{0xEE});
    EXPECT_EQ(GetActiveID32(buffer.get(), length), 0) << length;
    EXPECT_TRUE(
        std::all_of(buffer.get(), buffer.get() + length, [](std::uint8_t byte) { return byte == 0; }));
    EXPECT_EQ(GetLastLibErr(), 0U);
    ExpectTrace({"GetActiveID32 ENTER", "GetActiveID32 EXIT"});
  }
}

TEST_F(ActiveIdFa, ALongBufferIsZeroedBehindTheId) {
  AddScript({Reply(8, 66, 0x90, 0x00), Reply(32, 200, 0x90, 0x00)});
  for (const auto read : {GetActiveID, GetActiveID32}) {
    std::vector<std::uint8_t> buffer(300, 0xEE);
    EXPECT_NE(read(buffer.data(), 300), 0);
    EXPECT_EQ(buffer[7], 0x18);
    EXPECT_TRUE(std::all_of(buffer.begin() + 32, buffer.end(), [](std::uint8_t byte) { return byte == 0; }));
  }
}

TEST_F(ActiveIdFa, NoRoomIsNoLength) {
  AddScript({Reply(8, 66, 0x90, 0x00), Reply(32, 66, 0x90, 0x00), Reply(8, 66, 0x90, 0x00)});
  std::uint8_t byte = 0xEE;
  EXPECT_EQ(GetActiveID(nullptr, 8), 0);
  EXPECT_EQ(GetActiveID32(nullptr, 32), 0);
  EXPECT_EQ(GetActiveID(&byte, -8), 0);
  EXPECT_EQ(byte, 0xEE);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(ActiveIdFa, TheGateNeverHoldsASerialReaderBack) {
  AddScript({Reply(8, 66, 0x90, 0x00), Reply(8, 67, 0x90, 0x00), Reply(8, 68, 0x90, 0x00)});
  std::vector<std::uint8_t> buffer(8);
  EXPECT_EQ(GetActiveID(buffer.data(), 8), 66);
  EXPECT_EQ(GetActiveID(buffer.data(), 8), 67);
  EXPECT_EQ(getActiveID(8), 68);
  EXPECT_EQ(getActiveID_byte(0), 0x11);
  EXPECT_EQ(Entry().LastTxTick, 0U);
}

TEST_F(ActiveIdFa, WithoutAPortTheTriesGoByInSilence) {
  AddScript({});
  delete Entry().pSerialPort;
  Entry().pSerialPort = nullptr;
  std::vector<std::uint8_t> buffer(32, 0xEE);
  EXPECT_EQ(GetActiveID(buffer.data(), 8), 0);
  ExpectTraffic({"sleep 50", "sleep 50", "sleep 50"});
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
  EXPECT_EQ(GetActiveID32(buffer.data(), 32), 0);
  ExpectTraffic({});
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
}

TEST_F(ActiveIdFa, AFaultAtEachByteOfBothReads) {
  AddReader(Reader::Plain());
  reader->PutCard(LongCard(), 200);
  for (int byte = 1; byte <= 5 + 1 + 36 + 2; ++byte) {
    for (const bool garbled : {false, true}) {
      for (const auto read : {GetActiveID, GetActiveID32}) {
        line->faults.Restart();
        line->Silence();
        if (garbled) {
          line->faults.GarbleAt(byte);
        } else {
          line->faults.RefuseAt(byte);
        }
        std::unique_ptr<std::uint8_t[]> buffer(new std::uint8_t[32]);
        com->onTimeout = [this] { line->Silence(); };
        const std::uint16_t bits = read(buffer.get(), 32);
        if (read == GetActiveID && byte <= 6) {
          EXPECT_EQ(bits, 200) << "the next try brings it";
        }
        ForgetTraffic();
      }
    }
  }
}

}  // namespace
}  // namespace tavlyn::test
