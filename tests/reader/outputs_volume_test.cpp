// The volume of the beeper.
#include <initializer_list>

#include "api.h"
#include "core/state.h"
#include "tests/support/beside.h"
#include "tests/support/dirty.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

class Volume : public BesideReader {
 protected:
  void Use(std::shared_ptr<Reader> model) {
    reader = Connected(std::move(model));
    EntryOfActDev().LastLibErr = 5;
  }
  std::shared_ptr<Reader> reader;
};

TEST_F(Volume, IsReadAndSet) {
  Use(Reader::Plain());
  EXPECT_EQ(GetBeeperVolume(), 2U);
  ExpectTraffic({"set 8C 06", "get 8C 06 02"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(SetBeeperVolume(0x1F03), 1U);
  ExpectTraffic({"set 8C 86 03", "get 8C 86 03"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(GetBeeperVolume(), 3U);
  EXPECT_EQ(SetBeeperVolume(0x100), 1U);
  EXPECT_EQ(GetBeeperVolume(), 0U) << "0 is a volume";
  EXPECT_EQ(SetBeeperVolume(255), 1U);
  EXPECT_EQ(GetBeeperVolume(), 255U);
  ExpectNoLock();
}

TEST_F(Volume, AReaderWithoutTheCommandAnswersZeros) {
  Use(Reader::Plain());
  reader->state.lacks = {{0x8C, 0x06}, {0x8C, 0x86}};
  EXPECT_EQ(GetBeeperVolume(), 65535U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(SetBeeperVolume(3), 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(Volume, AnyByteIsAnAnswer) {
  Use(Reader::Plain());
  for (std::size_t at = 0; at < 8; ++at) {
    Bytes answer(8);
    answer[at] = 9;
    reader->faults.AnswerWith({0x8C}, answer, 2);
    EXPECT_EQ(GetBeeperVolume(), at == 2 ? 9U : 0U) << at;
    EXPECT_EQ(SetBeeperVolume(1), 1U) << at;
  }
}

TEST_F(Volume, OfANumberedReportTheNumberCountsForTheQueryAlone) {
  Use(Reader::Kelda(1));
  EXPECT_EQ(GetBeeperVolume(), 2U);
  ExpectTraffic({"set [1] 8C 06", "get [1] 8C 06 02"});
  reader->state.lacks = {{0x8C, 0x06}, {0x8C, 0x86}};
  EXPECT_EQ(GetBeeperVolume(), 0U);
  EXPECT_EQ(SetBeeperVolume(3), 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(Volume, AFailureOfEitherHalf) {
  Use(Reader::Plain());
  StartTrace();
  reader->faults.RefuseCommand({0x8C}, 6);
  EXPECT_EQ(GetBeeperVolume(), 65535U);
  ExpectTraffic(Refused("8C 06"));
  EXPECT_EQ(GetLastLibErr(), 0x1000202U);
  reader->faults.RefuseReply({0x8C}, 1);
  EXPECT_EQ(GetBeeperVolume(), 65535U);
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
  reader->faults.RefuseCommand({0x8C}, 6);
  EXPECT_EQ(SetBeeperVolume(3), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x1000202U);
  reader->faults.RefuseReply({0x8C}, 1);
  EXPECT_EQ(SetBeeperVolume(3), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
  ExpectTrace({});
}

TEST_F(Volume, AnyProductIsAsked) {
  Use(Reader::Plain());
  for (const std::uint32_t kind : {0U, kMagstripe, 3U, kSonar}) {
    EntryOfActDev().ProductKind = kind;
    EXPECT_EQ(SetBeeperVolume(static_cast<std::uint16_t>(kind)), 1U);
    EXPECT_EQ(GetBeeperVolume(), kind);
  }
  EntryOfActDev().ProductKind = kReader;
}

class VolumeFa : public BesideLine {};

TEST_F(VolumeFa, IsReadWithoutAStatusAndSetWithOne) {
  AddReader(Reader::Plain());
  Entry().LastLibErr = 5;
  EXPECT_EQ(GetBeeperVolume(), 2U);
  ExpectTraffic(FrameLines("0C 06 00 00", {"read 0C", "read 02"}));
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(SetBeeperVolume(0x1F03), 1U);
  EXPECT_EQ(reader->state.volume, 3);
  Lines traffic = TrafficOf(host.transcript.Events());
  std::erase(traffic, "read");  // of no bytes
  EXPECT_EQ(Difference(FrameLines("0C 86 03 00", {"read 0C", "read 90 00"}), traffic), "");
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(VolumeFa, ARefusalOrSilenceLeavesNoWord) {
  AddReader(Reader::Plain());
  for (const bool refused : {true, false}) {
    Entry().LastLibErr = 5;
    if (refused) {
      line->faults.RefuseCommand({0x0C}, 2);
    } else {
      line->faults.RefuseReply({0x0C}, 2);
    }
    EXPECT_EQ(GetBeeperVolume(), 65535U);
    EXPECT_EQ(GetLastLibErr(), 0U);
    Entry().LastLibErr = 5;
    EXPECT_EQ(SetBeeperVolume(3), 0U);
    EXPECT_EQ(GetLastLibErr(), 0U);
    EXPECT_EQ(reader->state.volume, 2);
  }
  Port().Close();
  EXPECT_EQ(GetBeeperVolume(), 65535U);
  EXPECT_EQ(SetBeeperVolume(3), 0U);
}

TEST_F(VolumeFa, AnotherStatusFailsTheSet) {
  AddScript({{0x0C, 0x6A, 0x80}, {0x0C, 0x90, 0x00}});
  EXPECT_EQ(SetBeeperVolume(3), 0U);
  EXPECT_EQ(SetBeeperVolume(3), 1U);
}

}  // namespace
}  // namespace tavlyn::test
