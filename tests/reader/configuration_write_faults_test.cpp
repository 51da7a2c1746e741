// A fault at each exchange of a write, a reset and a bank move over feature reports: what the library
// reports, what the reader has after a restart, and that it can be read again.
#include <algorithm>
#include <array>
#include <string>

#include "api.h"
#include "tests/support/beside.h"
#include "tests/support/dirty.h"

namespace tavlyn::test {
namespace {

using sim::Block;
using sim::Reader;
using sim::Settings;

// A mirror that differs from the factory configuration in every block, with three pages and both keys.
void ChangeAll(tsDevEntry& entry, tsCfgSlot& slot, std::uint16_t luid) {
  slot[field::IDDispParms_iFACDispLen] = 7;
  slot[field::IDBitCnts_iTotalBitCnt] = 99;
  slot[field::TimeParms_iBitStrmTO] = 400;
  slot[field::IDDispParms2_iCrdGnChr0] = 'g';
  slot.ExtBytes[3] = 0x44;
  for (std::size_t i = 0; i < slot.sFldSepData.size(); ++i) {
    slot.sFldSepData[i] = static_cast<std::uint8_t>(0x21 + i % 64);
  }
  slot.sFldSepData[0] = 5;
  slot.sFldSepData[3] = 3;
  slot.HashKeyData[0].fill(0x11);
  slot.HashKeyData[1].fill(0x12);
  slot.bDirtyFmt = slot.bDirtyTime = slot.bDirtyDisp = slot.bDirtyExt = slot.bDirtySep = 1;
  entry.LUID = luid;
  entry.bLUIDDirty = 1;
}

template <typename Bytes>
Bytes TurnedOver(Bytes bytes) {
  sim::Garble(bytes);
  return bytes;
}

class CfgWriteFaults : public BesideReader {
 protected:
  static constexpr std::uint16_t kNewLuid = 0x0708;

  static tsCfgSlot& Slot(std::size_t number) { return Entry().CfgSlot[number]; }
  [[nodiscard]] std::size_t Configurations() const { return factory_.configurations.size(); }
  [[nodiscard]] const Settings& Old(std::size_t number) const {
    return factory_.configurations[number].stored;
  }
  [[nodiscard]] const Settings& New(std::size_t number) const {
    return written_.configurations[number].stored;
  }
  [[nodiscard]] const Settings& Kept(std::size_t number) const {
    return reader->state.configurations[number].stored;
  }

  // Connects and runs the change and its write once without a fault.
  void Use(std::shared_ptr<Reader> model) {
    reader = Connected(std::move(model));
    factory_ = reader->state;
    Begin();
    EXPECT_EQ(WriteCfg(), 1U);
    NoteExchanges();
    written_ = reader->state;
    for (std::size_t i = 0; i < exchanges.size(); ++i) {
      if (exchanges[i].starts_with("set 90")) commits.push_back(static_cast<int>(i) + 1);
    }
    EXPECT_EQ(commits.size(), Configurations());
  }
  void NoteExchanges() {
    exchanges.clear();
    for (const std::string& line : TrafficOf(host.transcript.Events())) {
      if (!line.starts_with("sleep")) exchanges.push_back(line);
    }
    ForgetTraffic();
  }
  // The reader fresh from the factory, everything in the mirror changed.
  void Begin() {
    Restore();
    for (std::size_t number = 0; number < Configurations(); ++number)
      ChangeAll(Entry(), Slot(number), kNewLuid);
    reader->faults.Restart();
    ForgetTraffic();
  }
  void Restore() {
    reader->faults.Restart();
    reader->state = factory_;
    reader->PowerCycle();
    Reconnect();
    reader->faults.Restart();
    ForgetTraffic();
  }
  // Power comes back and the library connects again: the mirror is what the reader has stored.
  void Recover() {
    reader->faults.Restart();
    reader->PowerCycle();
    Reconnect();
    for (std::size_t number = 0; number < Configurations(); ++number) {
      const Block& block = Kept(number).blocks[0];
      EXPECT_EQ(Slot(number)[field::IDBitCnts_iTotalBitCnt], std::max<int>(block[4], 26));
      EXPECT_NE(Slot(number).bCfgLoaded, 0U);
    }
    EXPECT_EQ(GetLUID(), reader->state.storedLuid);
  }
  // If the write sends the card type, the reader stores it at once, committed or not.
  static void ExpectSame(const Settings& kept, const Settings& expected, const char* which) {
    EXPECT_EQ(kept.blocks, expected.blocks) << which;
    EXPECT_EQ(kept.separated, expected.separated) << which;
    EXPECT_EQ(kept.hashKeys, expected.hashKeys) << which;
  }
  // The exchange is part of a selection that the walk depends on.
  [[nodiscard]] bool Selects(std::size_t exchange) const {
    return (exchanges[exchange - 1].starts_with("set 89 81") ||
            exchanges[exchange - 1].starts_with("get 89 81")) &&
           exchange < exchanges.size() - 1;
  }

  std::shared_ptr<Reader> reader;
  Lines exchanges;           // of the write without a fault
  std::vector<int> commits;  // their numbers in it, from the highest configuration down

 private:
  sim::ReaderState factory_;
  sim::ReaderState written_;
};

TEST_F(CfgWriteFaults, PowerLostAtEachExchangeLeavesEachConfigurationOldOrNew) {
  Use(Reader::Plus(2));
  for (int exchange = 1; exchange <= static_cast<int>(exchanges.size()); ++exchange) {
    SCOPED_TRACE(std::to_string(exchange) + ' ' + exchanges[static_cast<std::size_t>(exchange) - 1]);
    Begin();
    reader->faults.VanishAt(exchange);
    EXPECT_EQ(WriteCfg(), exchange > commits.back() ? 1U : 0U);
    EXPECT_EQ(DirtyOf(Entry(), Slot(1)) & 0x7FU, exchange > commits[0] ? 0U : unsigned{kAllDirty & 0x7F});
    EXPECT_EQ(DirtyOf(Entry(), Slot(0)) & 0x7FU, exchange > commits[1] ? 0U : unsigned{kAllDirty & 0x7F});
    EXPECT_EQ(Entry().bLUIDDirty, exchange > commits[0] ? 0U : 1U);
    reader->PowerCycle();
    ExpectSame(Kept(1), exchange > commits[0] ? New(1) : Old(1), "the higher");
    ExpectSame(Kept(0), exchange > commits[1] ? New(0) : Old(0), "the lower");
    EXPECT_EQ(reader->state.storedLuid, exchange > commits[0] ? kNewLuid : 1);
    EXPECT_EQ(reader->state.configurations[0].working, Kept(0)) << "it starts with what it kept";
    Recover();
  }
}

TEST_F(CfgWriteFaults, PowerLostAtEachExchangeOfAPlainReader) {
  Use(Reader::Plain());
  for (int exchange = 1; exchange <= static_cast<int>(exchanges.size()); ++exchange) {
    SCOPED_TRACE(exchange);
    Begin();
    reader->faults.VanishAt(exchange);
    EXPECT_EQ(WriteCfg(), exchange > commits[0] ? 1U : 0U);
    EXPECT_EQ(GetLastLibErr(), exchange == commits[0] + 2 ? 0x1000000U : 0x1000202U) << "of the store query";
    reader->PowerCycle();
    ExpectSame(Kept(0), exchange > commits[0] ? New(0) : Old(0), "");
    Recover();
  }
}

TEST_F(CfgWriteFaults, ARefusedReportIsRepeatedAtEachExchange) {
  Use(Reader::Plus(2));
  for (std::size_t exchange = 1; exchange <= exchanges.size(); ++exchange) {
    SCOPED_TRACE(std::to_string(exchange) + ' ' + exchanges[exchange - 1]);
    Begin();
    reader->faults.RefuseAt(static_cast<int>(exchange));
    const bool fatal = Selects(exchange) && exchanges[exchange - 1].starts_with("get");
    EXPECT_EQ(WriteCfg(), fatal ? 0U : 1U);
    reader->PowerCycle();
    for (const std::size_t number : {std::size_t{0}, std::size_t{1}}) {
      const bool lost = fatal && static_cast<int>(exchange) < commits[1 - number];
      ExpectSame(Kept(number), lost ? Old(number) : New(number), "");
    }
    Recover();
  }
}

TEST_F(CfgWriteFaults, AGarbledReportAtEachExchangeSpoilsNoMoreThanItself) {
  Use(Reader::Plus(2));
  for (std::size_t exchange = 1; exchange <= exchanges.size(); ++exchange) {
    SCOPED_TRACE(std::to_string(exchange) + ' ' + exchanges[exchange - 1]);
    Begin();
    reader->faults.GarbleAt(static_cast<int>(exchange));
    EXPECT_EQ(WriteCfg(), Selects(exchange) ? 0U : 1U) << "nothing is read back";
    reader->PowerCycle();
    for (const std::size_t number : {std::size_t{0}, std::size_t{1}}) {
      for (std::size_t block = 0; block < 4; ++block) {
        const Block& kept = Kept(number).blocks[block];
        const Block& fresh = New(number).blocks[block];
        EXPECT_TRUE(kept == Old(number).blocks[block] || kept == fresh || kept == TurnedOver(fresh)) << block;
      }
    }
    Recover();
  }
}

TEST_F(CfgWriteFaults, ARepeatedWriteMendsWhatAnyFaultLeft) {
  Use(Reader::Plus(2));
  for (std::size_t exchange = 1; exchange <= exchanges.size(); ++exchange) {
    SCOPED_TRACE(std::to_string(exchange) + ' ' + exchanges[exchange - 1]);
    Begin();
    reader->faults.VanishAt(static_cast<int>(exchange));
    WriteCfg();
    reader->faults.Restart();
    reader->PowerCycle();
    Entry().bSepFldCapable = 1;
    EXPECT_EQ(WriteCfg(), 1U);
    reader->PowerCycle();
    for (const std::size_t number : {std::size_t{0}, std::size_t{1}}) {
      EXPECT_EQ(Kept(number), New(number));
      EXPECT_EQ(DirtyOf(Entry(), Slot(number)), 0U);
    }
    EXPECT_EQ(reader->state.storedLuid, kNewLuid);
  }
}

// Reports of a plain reader with a short area and no key.
enum ReportOf { kLastBeforeDisp = 6, kLastDisp = 8, kLastExt = 10, kLastSepReport = 16, kCommit = 17 };

TEST_F(CfgWriteFaults, AReportThatFailsForGoodAtEachPlace) {
  Use(Reader::Plain());
  ASSERT_EQ(commits[0], int{kCommit});
  StartTrace();
  for (int report = 1; report <= kCommit; ++report) {
    SCOPED_TRACE(report);
    Begin();
    ExpectTrace(Trace());
    reader->faults.RefuseAt(report, 6);
    const bool inArea = report > kLastExt && report <= kLastSepReport;
    EXPECT_EQ(WriteCfg(), inArea ? 1U : 0U);
    // A reader that misses data takes the next report for it, which can be the store query after a failure.
    EXPECT_EQ(GetLastLibErr(), 0U);
    EXPECT_EQ(DirtyOf(Entry(), Slot(0)), inArea ? 0U : unsigned{kAllDirty});
    EXPECT_EQ(Entry().bSepFldCapable, inArea ? 0U : 1U);
    EXPECT_EQ(Entry().bPartNumberPending, inArea && report % 2 == 0 ? 0U : 1U);
    Lines trace = {"tavlyn_write_cfg ERROR CODE: 0", "tavlyn_write_cfg Failed !!"};
    if (report > kLastBeforeDisp && report <= kLastDisp) trace = {"WrtIDFrmtParms2 ERROR CODE 0x00040000"};
    if (inArea) trace = {"WriteCfg Success !!"};
    ExpectTrace(Join({{"WriteCfg ENTER"}, trace, {"WriteCfg EXIT"}}));
    reader->PowerCycle();
    if (!inArea) ExpectSame(Kept(0), Old(0), "nothing is committed");
    Recover();
  }
}

TEST_F(CfgWriteFaults, AResetAtEachExchange) {
  Use(Reader::Plus(2));
  const auto changed = [this] {
    Restore();
    for (sim::Configuration& configuration : reader->state.configurations) {
      configuration.working.blocks[0][4] = configuration.stored.blocks[0][4] = 77;
    }
    reader->faults.Restart();
    ForgetTraffic();
  };
  changed();
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  NoteExchanges();
  // For the last configuration the texts can be lost, and so can a fetch of its area that is the only or the
  // last one: it counts as zeros.
  const auto lastOf = [this](const char* line) {
    return static_cast<int>(exchanges.rend() - std::find(exchanges.rbegin(), exchanges.rend(), line));
  };
  const int firstFetch = lastOf("set 85 00 00 10") + 1;
  const int lastFetch = lastOf("set 8C 04 07") - 1;
  for (int exchange = 1; exchange <= static_cast<int>(exchanges.size()); ++exchange) {
    SCOPED_TRACE(std::to_string(exchange) + ' ' + exchanges[static_cast<std::size_t>(exchange) - 1]);
    changed();
    reader->faults.VanishAt(exchange);
    EXPECT_EQ(ResetFactoryDflts(), exchange == firstFetch || exchange >= lastFetch ? 1U : 0U);
    if (exchange == 1) {
      EXPECT_EQ(GetLastLibErr(), 0x80202U);
    }
    reader->PowerCycle();
    for (const std::size_t number : {std::size_t{0}, std::size_t{1}}) {
      EXPECT_EQ(Kept(number).blocks[0][4], exchange == 1 ? 77 : 26);
    }
    Recover();
    changed();
    reader->faults.GarbleAt(exchange);
    ResetFactoryDflts();
    EXPECT_LE(Entry().MaxConfig, 10);
    EXPECT_LE(Entry().ActConfig, 10);
    Recover();
  }
}

struct MoveRow {
  sim::Fault fault;
  int exchange;
  std::uint32_t result;
  bool moved;
};

TEST_F(CfgWriteFaults, ABankMoveAtEachExchange) {
  Use(Reader::Plus(2));
  for (const MoveRow& row : {MoveRow{sim::Fault::kRefuse, 1, 1, true},
                             {sim::Fault::kRefuse, 2, 0, true},
                             {sim::Fault::kVanish, 1, 0, false},
                             {sim::Fault::kVanish, 2, 0, true},
                             {sim::Fault::kGarble, 1, 1, false},
                             {sim::Fault::kGarble, 2, 1, true}}) {
    SCOPED_TRACE(std::to_string(static_cast<int>(row.fault)) + ' ' + std::to_string(row.exchange));
    Restore();
    for (sim::Configuration& configuration : reader->state.configurations)
      configuration.plus.blocks[0][4] = 44;
    if (row.fault == sim::Fault::kRefuse) reader->faults.RefuseAt(row.exchange);
    if (row.fault == sim::Fault::kVanish) reader->faults.VanishAt(row.exchange);
    if (row.fault == sim::Fault::kGarble) reader->faults.GarbleAt(row.exchange);
    EXPECT_EQ(PlusBlockMove(3, 1), row.result);
    reader->PowerCycle();
    EXPECT_EQ(Kept(0).blocks[0][4], row.moved ? 44 : 26);
    EXPECT_EQ(Kept(1).blocks[0][4], row.moved ? 44 : 26);
    Recover();
  }
}

}  // namespace
}  // namespace tavlyn::test
