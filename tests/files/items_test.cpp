// Single items of a reader's protected memory.
#include "files/items.h"

#include "tests/files/secure_bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;

constexpr const char* kHeaderTag = "writeSecure::WriteSecureHeader";
constexpr const char* kBlockTag = "writeSecure::WriteKeyData";
constexpr const char* kSaveTag = "writeSecure::SaveKeyData";
constexpr const char* kReadHeaderTag = "readSecure::readSecureHeader";
constexpr const char* kReadTag = "readSecure::readKeyData";
const std::string kNotVerified = "readSecure::headerVerify Header Verifiaction failed";

std::uint32_t Write(const Bytes& item) {
  return WriteSecureData(item.data(), static_cast<std::uint32_t>(item.size()));
}

class WriteItems : public SecureBench {
 protected:
  const Bytes item{0x20, 7, 5, 9, 1, 2, 3, 4, 5};
  const Lines header = Echoed({0x89, 0x90, 0, 0, 0x20, 7, 5, 9});
};

TEST_F(WriteItems, HeaderBlocksEndWaitAndCommit) {
  Entry().LastLibErr = 5;
  EXPECT_EQ(Write(item), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTraffic(Join({header,
                      Echoed({0x89, 0x90, 0, 1, 1, 2, 3, 4}),
                      {"set 89 90 00 02 05", "get 89 90 00 02 05"},
                      kStored}));
  ExpectTrace({});
  EXPECT_EQ(Memory().storedItems.at({0x20, 7, 9}), (Bytes{1, 2, 3, 4, 5}));
}

TEST_F(WriteItems, EveryLength) {
  for (std::size_t length = 1; length <= 255; ++length) {
    Bytes whole{0x20, 7, static_cast<std::uint8_t>(length), 9};
    const Bytes payload = Counting(length);
    whole.insert(whole.end(), payload.begin(), payload.end());
    EXPECT_EQ(Write(whole), 1U) << length;
    ExpectTraffic(Join({Echoed({0x89, 0x90, 0, 0, 0x20, 7, static_cast<std::uint8_t>(length), 9}),
                        Blocks(payload), kStored}));
    EXPECT_EQ(Memory().storedItems.at({0x20, 7, 9}), payload) << length;
  }
}

TEST_F(WriteItems, AnItemWithoutPayloadIsNeverSaved) {
  EXPECT_EQ(Write({0x20, 7, 0, 9}), 0U);
  ExpectTraffic(Echoed({0x89, 0x90, 0, 0, 0x20, 7, 0, 9}));
  ExpectTrace({});
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(WriteItems, ALengthThatDoesNotAddUp) {
  Entry().LastLibErr = 5;
  for (const std::uint32_t length : {0U, 1U, 3U, 4U, 8U, 10U, 0xFFFFFFFFU, 0x00000109U}) {
    EXPECT_EQ(WriteSecureData(item.data(), length), 0U) << length;
    ExpectUntouched();
  }
  EXPECT_EQ(WriteSecureData(nullptr, 9), 0U);
  ExpectUntouched();
  ExpectTrace({});
}

TEST_F(WriteItems, OnlyIntoACardReader) {
  Entry().LastLibErr = 5;
  for (const std::uint32_t kind : {0U, 2U, 3U, 4U}) {
    Entry().ProductKind = kind;
    EXPECT_EQ(Write(item), 0U) << kind;
    ExpectUntouched();
  }
  Entry().ProductKind = kReader;
  shared.DevCnt = 0;
  EXPECT_EQ(Write(item), 0U);
  ExpectUntouched();
  shared.DevCnt = 1;
}

// A lost header does not stop the blocks. This reader then echoes none of them, so nothing is saved.
TEST_F(WriteItems, AFaultAtEachExchange) {
  struct Expected {
    std::uint32_t result;
    std::uint32_t error;
    Lines trace;
    int sends;  // of packets that were sent
  };
  const std::vector<Expected> expected = {
      {0, 0, {}, 2},                               // header not sent
      {1, 0, FailurePair(kHeaderTag), 5},          // header not answered
      {0, 0x81000202, FailurePair(kBlockTag), 1},  // block 1 not sent
      {1, 0, {}, 5},                               // block 1 not answered
      {0, 0x81000202, FailurePair(kBlockTag), 2},  // block 2 not sent
      {1, 0, {}, 5},                               // block 2 not answered
      {0, 0x81000202, FailurePair(kSaveTag), 3},   // end not sent
      {0, 0, {}, 4},                               // end not answered
      {0, 0x81000202, FailurePair(kSaveTag), 4},   // commit not sent
  };
  WithAFaultAtEach([&] { return Write(item); },
                   [&](std::size_t number, const std::string&, std::uint32_t result) {
                     ASSERT_LT(number, expected.size());
                     const Expected& wanted = expected[number];
                     EXPECT_EQ(result, wanted.result);
                     EXPECT_EQ(GetLastLibErr(), wanted.error);
                     ExpectTrace(wanted.trace);
                     int sends = 0;
                     for (const std::string& line : TrafficOf(host.transcript.Events()))
                       sends += line.starts_with("set") && !line.ends_with("refused") ? 1 : 0;
                     EXPECT_EQ(sends, wanted.sends);
                   });
}

TEST_F(WriteItems, ALostHeaderIsFollowedByTheBlocks) {
  reader->faults.RefuseCommand({0x89, 0x90, 0, 0}, 6);
  reader->faults.AnswerWith({0x89, 0x90, 0, 2}, {0x89, 0x90, 0, 2});
  reader->faults.AnswerWith({0x89, 0x90, 0, 0xFF}, {0x89, 0x90, 0, 0xFF});
  EXPECT_EQ(Write(item), 1U);
  ExpectTraffic(Join({Times(6, {"set 89 90 00 00 20 07 05 09 refused", "sleep 80"}),
                      {"set 89 90 00 01 01 02 03 04", "get 00", "set 89 90 00 02 05", "get 89 90 00 02"},
                      kStored}));
  EXPECT_EQ(GetLastLibErr(), 0U) << "cleared by the blocks";
  ExpectTrace({});
}

TEST_F(WriteItems, AHeaderThatIsNotRepeatedDoesNotMatter) {
  reader->faults.AnswerWith({0x89, 0x90, 0, 0}, {0x11});
  EXPECT_EQ(Write(item), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTrace({});
}

TEST_F(WriteItems, ABlockIsRepeatedByItsFirstFourBytes) {
  for (std::size_t byte = 0; byte < 8; ++byte) {
    for (const std::uint8_t block : {std::uint8_t{1}, std::uint8_t{2}}) {
      Bytes answer{0x89, 0x90, 0, block, 0, 0, 0, 0};
      answer[byte] ^= 0x40;
      reader->faults.AnswerWith({0x89, 0x90, 0, block}, answer, 1);
    }
    EXPECT_EQ(Write(item), byte < 4 ? 0U : 1U) << byte;
    EXPECT_EQ(GetLastLibErr(), 0U);
    ExpectTrace({});
    const Lines blocks = {"set 89 90 00 01 01 02 03 04", "get", "set 89 90 00 02 05", "get"};
    ExpectTraffic(Join({header, blocks, byte < 4 ? Lines{} : kStored}));
  }
}

TEST_F(WriteItems, OneRepeatedBlockIsEnough) {
  reader->faults.AnswerWith({0x89, 0x90, 0, 1}, {0x11});
  EXPECT_EQ(Write(item), 1U);
  reader->faults.Restart();
  reader->faults.AnswerWith({0x89, 0x90, 0, 2}, {0x11});
  EXPECT_EQ(Write(item), 1U);
  ExpectTrace({});
}

TEST_F(WriteItems, AnEndThatIsNotRepeatedIsNotCommitted) {
  for (std::size_t byte = 0; byte < 8; ++byte) {
    Bytes answer{0x89, 0x90, 0, 0xFF, 0, 0, 0, 0};
    answer[byte] ^= 1;
    reader->faults.AnswerWith({0x89, 0x90, 0, 0xFF}, answer, 1);
    EXPECT_EQ(Write(item), byte < 4 ? 0U : 1U) << byte;
    const Lines end =
        byte < 4 ? Lines{"set 89 90 00 FF", "get"} : Lines{"set 89 90 00 FF", "get", "sleep 500", "set 90"};
    ExpectTraffic(Join({header, Blocks({1, 2, 3, 4, 5}), end}));
    EXPECT_EQ(GetLastLibErr(), 0U);
    ExpectTrace({});
  }
}

TEST_F(WriteItems, TextFramesDoNotCarryThem) {
  shared.link.TunnelLink = 1;
  EXPECT_EQ(Write(item), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x81000000U);
  shared.link.TunnelLink = 0;
  ExpectTraffic({});
  ExpectTrace(FailurePair(kBlockTag));
}

TEST_F(WriteItems, TakesNoLock) {
  Bytes out(8);
  EXPECT_EQ(Write(item), 1U);
  EXPECT_EQ(ReadSecureData(item.data(), out.data()), 1U);
  EXPECT_EQ(WriteEV1FileRefrence(item.data(), 4), 1U);
  EXPECT_EQ(SetHashKeyData(Bytes(32).data()), 1U);
  ExpectNoLock();
}

class ReadItems : public SecureBench {
 protected:
  void SetUp() override {
    SecureBench::SetUp();
    Memory().items[{0x20, 7, 9}] = Counting(10);
    out.assign(24, 0xEE);
  }
  std::uint32_t Read() { return ReadSecureData(header.data(), out.data()); }
  // What comes before the bytes that nobody touched.
  void ExpectOut(const Bytes& wanted) {
    EXPECT_EQ(Bytes(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(wanted.size())), wanted);
    for (std::size_t at = wanted.size(); at < out.size(); ++at) EXPECT_EQ(out[at], 0xEE) << at;
  }

  Bytes header{0x20, 7, 10, 9};
  Bytes out;
  const Lines verified = Echoed({0x89, 0x10, 0, 0, 0x20, 7, 10, 9});
};

TEST_F(ReadItems, HeaderAndBlocks) {
  Entry().LastLibErr = 5;
  EXPECT_EQ(Read(), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTraffic(Join({verified,
                      {"set 89 10 00 01", "get 89 10 00 01 01 02 03 04", "set 89 10 00 02",
                       "get 89 10 00 02 05 06 07 08", "set 89 10 00 03", "get 89 10 00 03 09 0A"}}));
  ExpectTrace({});
  ExpectOut({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0, 0});
}

TEST_F(ReadItems, FiveBytesStoreEight) {
  header[2] = 5;
  Memory().items[{0x20, 7, 9}] = Counting(5);
  EXPECT_EQ(Read(), 1U);
  ExpectOut({1, 2, 3, 4, 5, 0, 0, 0});
}

TEST_F(ReadItems, TheLongest) {
  header[2] = 255;
  Memory().items[{0x20, 7, 9}] = Counting(255);
  out.assign(260, 0xEE);
  EXPECT_EQ(Read(), 1U);
  Bytes wanted = Counting(255);
  wanted.push_back(0);
  ExpectOut(wanted);
}

TEST_F(ReadItems, WithoutPayloadTheHeaderDecides) {
  header[2] = 0;
  Memory().items[{0x20, 7, 9}] = {};
  EXPECT_EQ(Read(), 1U);
  ExpectTraffic(Echoed({0x89, 0x10, 0, 0, 0x20, 7, 0, 9}));
  ExpectOut({});
}

TEST_F(ReadItems, EveryByteOfTheHeaderMustComeBack) {
  for (std::size_t byte = 0; byte < 8; ++byte) {
    Bytes answer{0x89, 0x10, 0, 0, 0x20, 7, 10, 9};
    answer[byte] ^= 0x80;
    reader->faults.AnswerWith({0x89, 0x10, 0, 0}, answer, 1);
    Entry().LastLibErr = 5;
    EXPECT_EQ(Read(), 0U) << byte;
    EXPECT_EQ(GetLastLibErr(), 0U);
    ExpectTraffic({"set 89 10 00 00 20 07 0A 09", "get"});
    ExpectTrace({kNotVerified});
  }
  ExpectOut({});
}

TEST_F(ReadItems, AnItemThatIsNotThere) {
  header[0] = 0x21;
  EXPECT_EQ(Read(), 0U);
  ExpectTrace({kNotVerified});
  ExpectOut({});
}

// Blocks after one that failed move up, and the end is zeros.
TEST_F(ReadItems, ABlockThatDoesNotCome) {
  reader->faults.RefuseReply({0x89, 0x10, 0, 2}, 1);
  EXPECT_EQ(Read(), 1U);
  ExpectOut({1, 2, 3, 4, 9, 10, 0, 0, 0, 0});
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTrace({});
}

TEST_F(ReadItems, ABlockIsKnownByItsFirstFourBytes) {
  for (std::size_t byte = 0; byte < 8; ++byte) {
    Bytes answer{0x89, 0x10, 0, 1, 1, 2, 3, 4};
    answer[byte] ^= 0x80;
    reader->faults.AnswerWith({0x89, 0x10, 0, 1}, answer, 1);
    out.assign(24, 0xEE);
    EXPECT_EQ(Read(), 1U);
    if (byte < 4) {
      ExpectOut({5, 6, 7, 8, 9, 10, 0, 0, 0, 0});
    } else {
      EXPECT_EQ(out[byte - 4], (byte - 3) ^ 0x80U);
      EXPECT_EQ(out[4], 5);
    }
    ExpectTrace({});
  }
}

TEST_F(ReadItems, NoBlockAtAll) {
  reader->faults.AnswerWith({0x89, 0x10, 0}, {0x89, 0x10, 0, 0xEE});
  reader->faults.AnswerWith({0x89, 0x10, 0, 0}, {0x89, 0x10, 0, 0, 0x20, 7, 10, 9});
  EXPECT_EQ(Read(), 1U);
  ExpectOut(Bytes(10, 0));
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(ReadItems, AFaultAtEachExchange) {
  WithAFaultAtEach(
      [&] {
        out.assign(24, 0xEE);
        return Read();
      },
      [&](std::size_t number, const std::string& line, std::uint32_t result) {
        const bool sent = line.starts_with("get");
        EXPECT_EQ(result, number < 2 ? 0U : 1U);
        EXPECT_EQ(GetLastLibErr(), sent ? 0U : 0x81000202U);
        ExpectTrace(sent ? Lines{} : FailurePair(number == 0 ? kReadHeaderTag : kReadTag));
        if (number < 2) return ExpectOut({});
        if (number == 2) return ExpectOut(Bytes(10, 0));
        if (number == 4) return ExpectOut({1, 2, 3, 4, 0, 0, 0, 0, 0, 0});
        EXPECT_EQ(out[0], number == 3 ? 5 : 1);
      });
}

TEST_F(ReadItems, NothingToReadFromOrInto) {
  Entry().LastLibErr = 5;
  EXPECT_EQ(ReadSecureData(nullptr, out.data()), 0U);
  ExpectUntouched();
  EXPECT_EQ(ReadSecureData(header.data(), nullptr), 0U);
  ExpectUntouched();
  ExpectTrace({});
}

TEST_F(ReadItems, WhatWasWrittenComesBack) {
  const Bytes item{1, 2, 6, 3, 11, 12, 13, 14, 15, 16};
  EXPECT_EQ(Write(item), 1U);
  reader->PowerCycle();
  header = {1, 2, 6, 3};
  EXPECT_EQ(Read(), 1U);
  ExpectOut({11, 12, 13, 14, 15, 16, 0, 0});
}

}  // namespace
}  // namespace tavlyn::test
