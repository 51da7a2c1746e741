// References to EV1 files and to keys of the secure element.
#include "tests/files/secure_bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

const Lines kEnded = {"set 89 90 00 FF", "get 89 90 00 FF", "set 90"};

class References : public SecureBench {
 protected:
  static std::uint32_t Ev1(const Bytes& data) {
    return WriteEV1FileRefrence(data.data(), static_cast<std::uint32_t>(data.size()));
  }
  const Bytes five = Counting(5);
};

TEST_F(References, AnEv1File) {
  Entry().LastLibErr = 5;
  EXPECT_EQ(Ev1(five), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTraffic(Join({Echoed({0x89, 0x90, 0, 0, 2, 1, 5}), Blocks(five), kEnded}));
  ExpectTrace({});
  EXPECT_EQ(Memory().storedItems.at({2, 1, 0}), five);
}

TEST_F(References, AKeyInASlot) {
  EXPECT_EQ(WriteSEKeyRefrence(five.data(), 5, 0xA3), 1U);
  ExpectTraffic(Join({Echoed({0x89, 0x90, 0, 0, 1, 0xA3, 5}), Blocks(five), kEnded}));
  ExpectTrace({});
  EXPECT_EQ(Memory().storedItems.at({1, 0xA3, 0}), five);
}

TEST_F(References, WithoutBytesTheEndFollowsTheHeader) {
  const Lines traffic = Join({Echoed({0x89, 0x90, 0, 0, 2, 1, 0}), kEnded});
  EXPECT_EQ(WriteEV1FileRefrence(five.data(), 0), 1U);
  ExpectTraffic(traffic);
  EXPECT_EQ(WriteEV1FileRefrence(nullptr, 0), 1U);
  ExpectTraffic(traffic);
}

TEST_F(References, TheLengthTravelsAsItsLowByte) {
  const Bytes bytes = Counting(258);
  EXPECT_EQ(Ev1(bytes), 1U);
  ExpectTraffic(Join({Echoed({0x89, 0x90, 0, 0, 2, 1, 2}), Blocks(bytes), kEnded}));
}

TEST_F(References, NoMoreThan512BytesAreLookedAt) {
  const Bytes bytes = Counting(512);
  const Lines traffic = Join({Echoed({0x89, 0x90, 0, 0, 2, 1, 0}), Blocks(bytes), kEnded});
  EXPECT_EQ(Ev1(bytes), 1U);
  ExpectTraffic(traffic);
  EXPECT_EQ(WriteEV1FileRefrence(bytes.data(), 0x10000000), 1U);
  ExpectTraffic(traffic);
}

TEST_F(References, APlusReaderIsToldItsConfigurationFirst) {
  USBDisconnect();
  host.hid.Unplug("device-1");
  Use(Reader::Plus(3));
  EXPECT_EQ(SetActConfig(2), 1U);
  ForgetTraffic();
  const Lines rest = Join({Echoed({0x89, 0x90, 0, 0, 2, 1, 5}), Blocks(five), kEnded});
  EXPECT_EQ(Ev1(five), 1U);
  ExpectTraffic(Join({{"set 89 81 02", "get 89 81 02"}, rest}));
  reader->faults.RefuseCommand({0x89, 0x81}, 6);
  EXPECT_EQ(Ev1(five), 1U) << "its answer is not looked at";
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTraffic(Join({Times(6, {"set 89 81 02 refused", "sleep 80"}), rest}));
}

TEST_F(References, AFaultAtEachExchange) {
  WithAFaultAtEach([&] { return Ev1(five); },
                   [&](std::size_t number, const std::string& line, std::uint32_t result) {
                     EXPECT_EQ(result, 0U);
                     const std::uint32_t channel = line.starts_with("get") ? 0 : 0x202;
                     const std::uint32_t bits = number == 0 ? 0 : 0x80000000;
                     EXPECT_EQ(GetLastLibErr(), bits | channel);
                     ExpectTrace({});
                     const Lines traffic = TrafficOf(host.transcript.Events());
                     ASSERT_FALSE(traffic.empty());
                     const std::string last = line.starts_with("get") ? "get refused" : "sleep 80";
                     EXPECT_EQ(traffic.back(), last) << "nothing follows a failure";
                   });
}

TEST_F(References, EveryPacketMustBeRepeatedByItsFirstFourBytes) {
  struct Step {
    std::uint8_t block;
    std::uint32_t error;
    std::size_t packets;
  };
  for (const Step step :
       {Step{0, 0, 1}, Step{1, 0x80000000, 2}, Step{2, 0x80000000, 3}, Step{0xFF, 0x80000000, 4}}) {
    for (std::size_t byte = 0; byte < 8; ++byte) {
      Bytes answer{0x89, 0x90, 0, step.block, 0, 0, 0, 0};
      answer[byte] ^= 2;
      reader->faults.AnswerWith({0x89, 0x90, 0, step.block}, answer, 1);
      Entry().LastLibErr = 5;
      ForgetTraffic();
      EXPECT_EQ(Ev1(five), byte < 4 ? 0U : 1U) << int{step.block} << ' ' << byte;
      EXPECT_EQ(GetLastLibErr(), byte < 4 ? step.error : 0U);
      const std::size_t lines = byte < 4 ? 2 * step.packets : 9;
      EXPECT_EQ(TrafficOf(host.transcript.Events()).size(), lines);
    }
  }
  ExpectTrace({});
}

TEST_F(References, AnyProductIsAsked) {
  Entry().ProductKind = kSonar;
  EXPECT_EQ(Ev1(five), 1U);
  Entry().ProductKind = kReader;
}

TEST_F(References, WithoutBytesNothingIsAsked) {
  Entry().LastLibErr = 5;
  EXPECT_EQ(WriteEV1FileRefrence(nullptr, 5), 0U);
  EXPECT_EQ(WriteSEKeyRefrence(nullptr, 5, 0), 0U);
  ExpectUntouched();
}

}  // namespace
}  // namespace tavlyn::test
