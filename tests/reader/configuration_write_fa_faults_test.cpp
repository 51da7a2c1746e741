// A fault at each byte of a write over a serial link.
#include <algorithm>

#include "api.h"
#include "tests/support/beside.h"
#include "tests/support/dirty.h"

namespace tavlyn::test {
namespace {

using sim::Reader;
using sim::Settings;

class CfgWriteFaFaults : public BesideLine {
 protected:
  void Use() {
    AddReader(Reader::Plus(2), kPlusReader);
    com->onTimeout = [this] { line->Silence(); };
    factory_ = reader->state;
    Begin();
    EXPECT_EQ(WriteCfg(), 1U);
    bytes = line->faults.Exchanges();
    written_ = reader->state;
  }
  // The reader fresh from the factory, the mirror of both configurations changed.
  void Begin() {
    Heal();
    reader->state = factory_;
    EXPECT_EQ(ReadCfg(), 1U);
    for (std::size_t number = 0; number < 2; ++number) {
      tsCfgSlot& slot = Entry().CfgSlot[number];
      slot[field::IDBitCnts_iTotalBitCnt] = 99;
      slot[field::TimeParms_iBitStrmTO] = 400;
      slot[field::IDDispParms2_iCrdGnChr0] = 'g';
      slot.ExtBytes[3] = 0x44;
      slot.sFldSepData.fill(0x33);
      slot.sFldSepData[0] = 5;
      slot.sFldSepData[3] = 3;
      slot.HashKeyData[0].fill(0x11);
      slot.HashKeyData[1] = {};
      slot.bDirtyFmt = slot.bDirtyTime = slot.bDirtyDisp = slot.bDirtyExt = slot.bDirtySep = 1;
    }
    EXPECT_EQ(SetLUID(0x0708), 1U);
    line->faults.Restart();
    ForgetTraffic();
  }
  void Heal() {
    line->faults.Restart();
    line->Silence();
    reader->PowerCycle();
    Entry().PlusState = kPlusReader;
    Entry().MaxConfig = 1;
    Entry().ActConfig = 0;
    Entry().bSepFldCapable = Entry().bPartNumberPending = 1;
  }
  // The line works again and what the reader has stored can be read.
  void ExpectReadable() {
    Heal();
    EXPECT_EQ(ReadCfg(), 1U);
    for (std::size_t number = 0; number < 2; ++number) {
      const int kept = reader->state.configurations[number].stored.blocks[0][4];
      EXPECT_EQ(Entry().CfgSlot[number][field::IDBitCnts_iTotalBitCnt], std::max(kept, 26));
    }
  }
  void ExpectEachBlockOldOrNew() {
    for (std::size_t number = 0; number < 2; ++number) {
      const Settings& kept = reader->state.configurations[number].stored;
      const Settings& old = factory_.configurations[number].stored;
      const Settings& fresh = written_.configurations[number].stored;
      for (std::size_t block = 0; block < 4; ++block) {
        EXPECT_TRUE(kept.blocks[block] == old.blocks[block] || kept.blocks[block] == fresh.blocks[block])
            << block;
      }
      EXPECT_TRUE(kept.separated == old.separated || kept.separated == fresh.separated);
      EXPECT_TRUE(kept.hashKeys == old.hashKeys || kept.hashKeys == fresh.hashKeys);
      // The first block of a configuration never arrives without the others of its commit.
      if (kept.blocks[0] == old.blocks[0]) {
        EXPECT_EQ(kept.blocks, old.blocks);
      } else {
        EXPECT_EQ(kept.blocks, fresh.blocks);
      }
    }
  }

  int bytes = 0;

 private:
  sim::ReaderState factory_;
  sim::ReaderState written_;
};

TEST_F(CfgWriteFaFaults, ALineLostAtEachByteLeavesEachConfigurationOldOrNew) {
  Use();
  ASSERT_GT(bytes, 200);
  for (int byte = 1; byte <= bytes; ++byte) {
    SCOPED_TRACE(byte);
    Begin();
    line->faults.VanishAt(byte);
    const std::uint32_t result = WriteCfg();
    EXPECT_LE(result, 1U);
    if (result == 1) {
      EXPECT_EQ(reader->state.counters.commits, 2);
    }
    reader->PowerCycle();
    ExpectEachBlockOldOrNew();
    ExpectReadable();
  }
}

TEST_F(CfgWriteFaFaults, AByteLostAtEachPlaceLeavesEachConfigurationOldOrNew) {
  Use();
  for (int byte = 1; byte <= bytes; ++byte) {
    SCOPED_TRACE(byte);
    Begin();
    line->faults.RefuseAt(byte);
    const std::uint32_t result = WriteCfg();
    if (result == 1) {
      EXPECT_EQ(reader->state.counters.commits, 2);
      EXPECT_EQ(reader->state.storedLuid, 0x0708);
    }
    reader->PowerCycle();
    ExpectEachBlockOldOrNew();
    ExpectReadable();
  }
}

TEST_F(CfgWriteFaFaults, AByteGarbledAtEachPlaceHasAnEnd) {
  Use();
  for (int byte = 1; byte <= bytes; ++byte) {
    SCOPED_TRACE(byte);
    Begin();
    line->faults.GarbleAt(byte);
    EXPECT_LE(WriteCfg(), 1U);
    EXPECT_TRUE(Port().IsOpen());
    reader->PowerCycle();
    ExpectReadable();
  }
}

}  // namespace
}  // namespace tavlyn::test
