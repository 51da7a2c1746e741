// Lead and trail characters, which share three places of the display block.
#include <gtest/gtest.h>

#include <array>
#include <memory>

#include "reader/layout.h"

namespace tavlyn::test {
namespace {

using Characters = std::array<std::int16_t, 4>;  // count, then three characters
using reader::Block;
using reader::BuildBlock;
using reader::kDisplayBlock;
using reader::TakeBlock;

Characters First4(const RecordWords& words) { return {words[0], words[1], words[2], words[3]}; }

Block SentAs(const Characters& lead, const Characters& trail) {
  const auto slot = std::make_unique<tsCfgSlot>();
  std::copy(lead.begin(), lead.end(), slot->record[kIDDispParms2].begin());
  std::copy(trail.begin(), trail.end(), slot->record[kIDDispParms3].begin());
  return BuildBlock(kDisplayBlock, *slot);
}

struct CountRow {
  std::int16_t lead;
  std::int16_t trail;
  Block sent;
};

TEST(BlockCharacters, LeadCharactersHavePriorityOnSending) {
  const std::array<CountRow, 16> rows = {{
      {0, 0, {0, 0, 0, 0, 0x00}},
      {0, 1, {0, 0, 0, 0, 0x10, 'x'}},
      {0, 2, {0, 0, 0, 0, 0x20, 'x', 'y'}},
      {0, 3, {0, 0, 0, 0, 0x30, 'x', 'y', 'z'}},
      {1, 0, {0, 0, 0, 0, 0x01, 'a'}},
      {1, 1, {0, 0, 0, 0, 0x11, 'a', 'x'}},
      {1, 2, {0, 0, 0, 0, 0x21, 'a', 'x', 'y'}},
      {1, 3, {0, 0, 0, 0, 0x21, 'a', 'x', 'y'}},
      {2, 0, {0, 0, 0, 0, 0x02, 'a', 'b'}},
      {2, 1, {0, 0, 0, 0, 0x12, 'a', 'b', 'x'}},
      {2, 2, {0, 0, 0, 0, 0x12, 'a', 'b', 'x'}},
      {2, 3, {0, 0, 0, 0, 0x12, 'a', 'b', 'x'}},
      {3, 0, {0, 0, 0, 0, 0x03, 'a', 'b', 'c'}},
      {3, 1, {0, 0, 0, 0, 0x03, 'a', 'b', 'c'}},
      {3, 2, {0, 0, 0, 0, 0x03, 'a', 'b', 'c'}},
      {3, 3, {0, 0, 0, 0, 0x03, 'a', 'b', 'c'}},
  }};
  for (const CountRow& row : rows) {
    EXPECT_EQ(SentAs({row.lead, 'a', 'b', 'c'}, {row.trail, 'x', 'y', 'z'}), row.sent)
        << row.lead << " and " << row.trail;
  }
}

TEST(BlockCharacters, ALeadCountAbove3IsCutOnSending) {
  EXPECT_EQ(SentAs({9, 'a', 'b', 'c'}, {2, 'x', 'y', 'z'}), (Block{0, 0, 0, 0, 0x03, 'a', 'b', 'c'}));
  EXPECT_EQ(SentAs({0, 'a', 'b', 'c'}, {9, 'x', 'y', 'z'}), (Block{0, 0, 0, 0, 0x30, 'x', 'y', 'z'}));
}

TEST(BlockCharacters, CharactersSendTheirLowByte) {
  EXPECT_EQ(SentAs({1, 0x141, 0, 0}, {1, -1, 0, 0}), (Block{0, 0, 0, 0, 0x11, 0x41, 0xFF}));
}

TEST(BlockCharacters, AllPlacesBehindTheLeadCountAreTrailCharactersOnReading) {
  for (std::uint8_t lead = 0; lead <= 3; ++lead) {
    for (std::uint8_t trail = 0; trail <= 3; ++trail) {
      const auto slot = std::make_unique<tsCfgSlot>();
      for (const Record record : {kIDDispParms2, kIDDispParms3}) slot->record[record].fill(99);
      TakeBlock(kDisplayBlock,
                Block{0, 0, 0, 0, static_cast<std::uint8_t>(0xCC | lead | trail << 4), 'a', 'b', 0xFF}, *slot,
                true);
      Characters leads{lead};
      Characters trails{trail};
      const std::array<std::int16_t, 3> places = {'a', 'b', 0xFF};
      for (std::size_t place = 0; place < 3; ++place) {
        if (place < lead) {
          leads[1 + place] = places[place];
        } else {
          trails[1 + place - lead] = places[place];
        }
      }
      EXPECT_EQ(First4(slot->record[kIDDispParms2]), leads) << int{lead} << ' ' << int{trail};
      EXPECT_EQ(First4(slot->record[kIDDispParms3]), trails) << int{lead} << ' ' << int{trail};
    }
  }
}

}  // namespace
}  // namespace tavlyn::test
