// One exchange: the packet, the waits, what counts as an answer.
#include "magstripe/exchange.h"

#include "links/serial_port.h"
#include "magstripe/product.h"
#include "tests/magstripe/stripe_bench.h"

namespace tavlyn::test {
namespace {

const std::string kZeros19 = " 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00";
const std::string kIdentifyPacket = "51 52 5A 00" + kZeros19 + " 0D";
const std::string kCommitPacket = "46 57 00 00" + kZeros19 + " 0D";

class StripeTransact : public StripeBench {
 protected:
  magstripe::Reply reply{};
};

TEST_F(StripeTransact, SendsTheTextInAPacketWithItsEnd) {
  EXPECT_TRUE(magstripe::Exchange("QRZ", reply));
  ExpectTraffic({"set " + kIdentifyPacket, "sleep 2", "get 52 52 5A 53 54 52 49 50 45 2D 31"});
  EXPECT_EQ(reply[0], 'R');
  EXPECT_EQ(reply[3], 'S');
  EXPECT_EQ(shared.magstripe.request[0], 0);
  EXPECT_EQ(shared.magstripe.request[24], 0x0D);
}

TEST_F(StripeTransact, TheEndTakesThePlaceOfACharacter24) {
  magstripe::Exchange("123456789012345678901234", reply);
  EXPECT_EQ(stripe->commands.back(), "12345678901234567890123");
  EXPECT_EQ(shared.magstripe.request[24], 0x0D);
  magstripe::Exchange("1234567890123456789012345678901234567890", reply);
  EXPECT_EQ(stripe->commands.back(), "12345678901234567890123");
}

TEST_F(StripeTransact, StoresAreWaitedFor) {
  for (const auto* const text : {"FW", "FD"}) {
    Forget();
    EXPECT_TRUE(magstripe::Exchange(text, reply));
    EXPECT_EQ(Slept(), 202U) << text;
  }
  Forget();
  EXPECT_TRUE(magstripe::Exchange("FR", reply));
  EXPECT_EQ(Slept(), 2U);
}

TEST_F(StripeTransact, AReplyThatDoesNotBeginWithRIsHandedOverAndFails) {
  stripe->replies["QRZ"] = "XRZ";
  EXPECT_FALSE(magstripe::Exchange("QRZ", reply));
  EXPECT_EQ(reply[0], 'X');
  EXPECT_EQ(Slept(), 4U);
}

TEST_F(StripeTransact, ALostReplyLeavesTheBufferCleared) {
  reply.fill(7);
  stripe->lost = {"QRZ"};
  EXPECT_FALSE(magstripe::Exchange("QRZ", reply));
  EXPECT_EQ(reply, magstripe::Reply{});
  ExpectTraffic({"set " + kIdentifyPacket, "sleep 2", "get refused", "sleep 2"});
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(StripeTransact, ARefusedPacketLeavesTheErrorWordOfTheChannel) {
  stripe->refused = {"QRZ"};
  EXPECT_FALSE(magstripe::Exchange("QRZ", reply));
  EXPECT_EQ(Slept(), 482U);
  EXPECT_EQ(GetLastLibErr(), TAVLYN_ERR_WRITE_REPORT);
}

class StripeSerial : public StripeBench {
 protected:
  sim::VirtualComPort* com = nullptr;
  magstripe::Reply reply{};

  void SetUp() override {
    StripeBench::SetUp();
    auto port = std::make_unique<sim::VirtualComPort>(host.transcript);
    com = port.get();
    Entry().LinkKind = kBySerialPort;
    Entry().pSerialPort = new (std::nothrow) SerialPort(std::move(port));
  }
};

TEST_F(StripeSerial, APacketThatIsTakenWholeGetsNoAnswer) {
  com->toRead = {'R', 'R', 'Z'};
  EXPECT_FALSE(magstripe::Exchange("QRZ", reply));
  ExpectTraffic({"write " + kIdentifyPacket, "sleep 2"});
  EXPECT_EQ(com->toRead.size(), 3U);
}

TEST_F(StripeSerial, AWriteOfOneByteGoesOn) {
  com->writeLimit = 1;
  com->toRead = {'R', 'R', 'Z'};
  EXPECT_TRUE(magstripe::Exchange("QRZ", reply));
  EXPECT_EQ(reply[2], 'Z');
  com->toRead = {'R'};
  Forget();
  EXPECT_TRUE(magstripe::Exchange("FW", reply));
  EXPECT_EQ(reply, magstripe::Reply{'R'}) << "nothing of the last reply";
  EXPECT_EQ(Slept(), 200U) << "without the pause of reports";
}

TEST_F(StripeSerial, WithoutAPortThereIsAPauseAndNothingElse) {
  delete Entry().pSerialPort;
  Entry().pSerialPort = nullptr;
  Forget();
  EXPECT_FALSE(magstripe::Exchange("QRZ", reply));
  ExpectTraffic({"sleep 2"});
}

TEST_F(StripeSerial, PingWakesTheLineFirst) {
  EXPECT_FALSE(magstripe::Ping());
  ExpectTraffic({"sleep 30", "write 0D 0D", "flush", "sleep 30", "purge", "write " + kIdentifyPacket,
                 "sleep 2", "sleep 25", "write " + kIdentifyPacket, "sleep 2", "sleep 2"});
}

TEST_F(StripeTransact, PingAsksTwice) {
  EXPECT_EQ(Ping(), 4U - 2U) << "the pause of one exchange";
  Forget();
  stripe->replies["QRZ"] = "RRX";
  host.clock.tick = 1234567;
  EXPECT_EQ(Ping(), 1234567U);
  ExpectCommands({"QRZ", "QRZ"});
  EXPECT_EQ(Slept(), 2U + 25U + 2U) << "a reply that begins with R is no failed exchange";
}

TEST(StripeHexPairs, EndAtTheFirstThatDoesNotBeginLikeADigit) {
  const auto parsed = [](std::string text) {
    std::array<std::uint8_t, 4> bytes{9, 9, 9, 9};
    const std::vector<std::uint8_t> characters(text.begin(), text.end());
    magstripe::ParseHexPairs(characters, bytes);
    return bytes;
  };
  using Bytes4 = std::array<std::uint8_t, 4>;
  EXPECT_EQ(parsed("0123aBFf"), (Bytes4{0x01, 0x23, 0xAB, 0xFF}));
  EXPECT_EQ(parsed("01"), (Bytes4{1, 0, 0, 0}));
  EXPECT_EQ(parsed("01 203"), (Bytes4{1, 0, 0, 0}));
  EXPECT_EQ(parsed("01\r203"), (Bytes4{1, 0, 0, 0}));
  EXPECT_EQ(parsed("01\x80"
                   "203"),
            (Bytes4{1, 0, 0, 0}));
  EXPECT_EQ(parsed("01GG02"), (Bytes4{1, 0, 2, 0})) << "a pair that does not scan is passed over";
  EXPECT_EQ(parsed("5G07"), (Bytes4{5, 7, 0, 0})) << "one digit will do";
  EXPECT_EQ(parsed("0x07"), (Bytes4{0, 7, 0, 0}));
}

TEST(StripeHexPairs, AreTenAtMost) {
  std::array<std::uint8_t, 12> bytes{};
  const std::string text(24, '1');
  magstripe::ParseHexPairs(std::vector<std::uint8_t>(text.begin(), text.end()), bytes);
  EXPECT_EQ(bytes[9], 0x11);
  EXPECT_EQ(bytes[10], 0);
}

}  // namespace
}  // namespace tavlyn::test
