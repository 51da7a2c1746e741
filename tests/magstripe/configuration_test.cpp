// The configuration of a magnetic-stripe reader, read from and written to the model; a fault at each
// exchange.
#include "tests/magstripe/model_bench.h"

namespace tavlyn::test {
namespace {

class MagModelConfiguration : public MagModelBench {
 protected:
  static void ExpectMarked() {
    for (std::uint16_t n = 1; n <= sim::kUserFields; ++n) {
      SCOPED_TRACE(n);
      const auto i = static_cast<std::uint32_t>(n - 1);
      EXPECT_EQ(sorbaneGetFieldEnable(n), i % 2);
      EXPECT_EQ(sorbaneGetFieldSkip(n), i % 3 == 1 ? 1U : 0U);
      EXPECT_EQ(sorbaneGetFieldKeyCount(n), i);
      for (std::uint16_t key = 0; key < 16; ++key) EXPECT_EQ(sorbaneGetFieldKeydata(n, key), i * 16 + key);
      EXPECT_EQ(sorbaneGetFieldTrack(n), i % 3 + 1);
      EXPECT_EQ(sorbaneGetFieldShowSepSen(n), i % 4 == 0 || i % 4 == 3 ? 1U : 0U);
      EXPECT_EQ(sorbaneGetFieldShowLRC(n), i % 4 == 1 || i % 4 == 3 ? 1U : 0U);
      EXPECT_EQ(sorbaneGetFieldIgnoreLRC(n), i % 4 >= 2 ? 1U : 0U);
      EXPECT_EQ(sorbaneGetFieldMagField(n), i + 1);
      EXPECT_EQ(sorbaneGetFieldOffset(n), i + 20);
      EXPECT_EQ(sorbaneGetFieldLength(n), i + 40);
      EXPECT_EQ(sorbaneGetFieldTerm(n), i + 60);
    }
    EXPECT_EQ(sorbaneGetTrackEnables(), 5U);
    EXPECT_EQ(sorbaneGetBeeper(2), 0x83U);
    EXPECT_EQ(sorbaneGetBeeper(3), 2U);
    EXPECT_EQ(GetLUID(), 0x1234U);
    EXPECT_EQ(sorbaneGetLED(0), 2U);
    for (std::uint16_t led = 1; led <= 4; ++led) EXPECT_EQ(sorbaneGetLED(led), led - 1U);
  }
  // A reader fresh from the factory, and distinctive settings in the mirror.
  void Begin() {
    magstripe->faults.Restart();
    magstripe->state.working = Marked();
    EXPECT_EQ(ReadCfg(), 1U);
    magstripe->state.working = sim::FactoryMagSettings();
    magstripe->faults.Restart();
    ForgetTraffic();
  }
};

TEST_F(MagModelConfiguration, AConnectReadsEverything) {
  magstripe->state.working = Marked();
  Plug(magstripe);
  SetDevTypeSrch(0);
  SetConnectProduct(2);
  std::uint32_t did = 0;
  EXPECT_EQ(USBConnect(&did), 1U);
  EXPECT_EQ(Told(), Exchanged(ReadCommands()));
  EXPECT_EQ(did, 0x0210U);
  EXPECT_EQ(GetProduct(), 2U);
  EXPECT_EQ(GetDevType(), 0);
  EXPECT_EQ(GetDID(), 0x0210U);
  EXPECT_EQ(GetFirmwareVersion(9, 0), 0x0210U);
  EXPECT_EQ(GetFirmwareVersion(0, 1), 0x0304U);
  EXPECT_EQ(GetFirmwareVersion(0, 2), 0U);
  EXPECT_STREQ(getPartNumberString(), "OMS-2100-AKU");
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectMarked();
}

TEST_F(MagModelConfiguration, ACommandIsFilledUpWithZerosAndEndsInACarriageReturn) {
  Connect();
  EXPECT_EQ(Ping(), 2U) << "milliseconds";
  ExpectTraffic(
      {"set 51 52 5A 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0D", "sleep 2", "get"});
}

TEST_F(MagModelConfiguration, APartNumberMayFillItsPacket) {
  magstripe->state.partNumber = "12345678901234567890";
  Connect();
  EXPECT_STREQ(getPartNumberString(), "12345678901234567890 ") << "the carriage return becomes a blank";
  magstripe->state.partNumber = "AB\rCD\rEF";
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_STREQ(getPartNumberString(), "AB CD\rEF") << "the first one only";
  EXPECT_EQ(std::string(EntryOfActDev().PartNumber + 9, 11), std::string(11, '\0'))
      << "nothing of the last one";
}

TEST_F(MagModelConfiguration, AReaderThatDoesNotSayWhoItIs) {
  Connect();
  AnswerTo("QRZ", "N");
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Told(), Join({{"QRZ", "sleep 2", "get", "sleep 2", "sleep 25"}, Exchanged(ReadCommands())}));
  AnswerTo("QRZ", "RRX", 2);
  EXPECT_EQ(ReadCfg(), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x20000U);
  EXPECT_EQ(Told(), Join({Exchanged({"QRZ"}), {"sleep 25"}, Exchanged({"QRZ"})}));
}

TEST_F(MagModelConfiguration, AReplyThatIsNoneFailsItsCommand) {
  Connect();
  struct Row {
    const char* command;
    std::uint32_t result, word;
  };
  for (const Row& row : {Row{"QSV", 1, 0},
                         {"Ga0", 0, 0x20001},
                         {"Ga1", 0, 0x20001},
                         {"GaC", 0, 0},
                         {"Gk0", 0, 0x20001},
                         {"Gk1", 0, 0x20001},
                         {"GkC", 0, 0},
                         {"GS0", 1, 0},
                         {"GL0", 0, 0}}) {
    for (const char* reply : {"", "N", "r00", "\xD2"}) {
      SCOPED_TRACE(std::string(row.command) + ' ' + reply);
      AnswerTo(row.command, reply);
      EXPECT_EQ(ReadCfg(), row.result);
      EXPECT_EQ(GetLastLibErr(), row.word);
    }
  }
}

TEST_F(MagModelConfiguration, RepliesWithLessThanTheirBytesReadAsZeros) {
  magstripe->state.working = Marked();
  Connect();
  AnswerTo("QSV", "RSV0A");
  AnswerTo("Gb0", "Rb0C5");
  AnswerTo("Gb1", "R");
  AnswerTo("GbC", "RbCE3\xFF");
  AnswerTo("GS0", "RS0");
  AnswerTo("GL0", "RL0FF");
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(GetDID(), 0x0A00U);
  EXPECT_EQ(GetFirmwareVersion(0, 1), 0U);
  EXPECT_EQ(sorbaneGetFieldKeyCount(2), 5U);
  EXPECT_EQ(sorbaneGetFieldEnable(2), 1U);
  EXPECT_EQ(sorbaneGetFieldSkip(2), 1U);
  EXPECT_EQ(sorbaneGetFieldKeydata(2, 0), 0U);
  EXPECT_EQ(sorbaneGetFieldKeydata(2, 15), 0U);
  EXPECT_EQ(sorbaneGetFieldTrack(2), 3U);
  EXPECT_EQ(sorbaneGetFieldMagField(2), 0U);
  EXPECT_EQ(GetLUID(), 0U);
  EXPECT_EQ(sorbaneGetTrackEnables(), 0U);
  EXPECT_EQ(sorbaneGetLED(1), 3U);
  EXPECT_EQ(sorbaneGetLED(0), 0U);
}

TEST_F(MagModelConfiguration, WhatAReaderDoesNotTellStaysAsItWas) {
  magstripe->state.working = Marked();
  Connect();
  magstripe->state.working.system = {0, 0, 0, 0, 0, 0};
  AnswerTo("QSV", "N");
  AnswerTo("GS0", "N");
  magstripe->state.did = 0x9999;
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(GetDID(), 0x0210U);
  ExpectMarked();
}

TEST_F(MagModelConfiguration, AWriteSendsEverythingAndCommits) {
  Connect();
  Begin();
  EXPECT_EQ(WriteCfg(), 1U);
  Lines expected = {"FR"};
  for (std::size_t n = 0; n < sim::kUserFields; ++n) {
    const sim::UserField field = Marked().fields[n];
    const std::string letter(1, static_cast<char>('a' + n));
    const auto digits = [](const auto& bytes) {
      std::string text = sim::HexText({bytes.begin(), bytes.end()});
      std::erase(text, ' ');
      return text;
    };
    expected.push_back("S" + letter + "0" + digits(field.first) + "00");
    expected.push_back("S" + letter + "1" + digits(field.second) + "0000");
    expected.push_back("S" + letter + "C" + digits(field.control));
  }
  expected = Join({expected, {"SS0C51EFF3412B2", "SL01B02", "FW"}});
  EXPECT_EQ(expected.size(), std::size_t{kTransactions});
  EXPECT_EQ(Told(), Join({Exchanged(expected), {"sleep 1100"}}));
  EXPECT_EQ(magstripe->state.stored, Marked());
  magstripe->PowerCycle();
  EXPECT_EQ(ReadCfg(), 1U);
  ExpectMarked();
}

TEST_F(MagModelConfiguration, ValuesAreCutToTheirRoom) {
  Connect();
  for (const std::uint8_t count : {std::uint8_t{63}, std::uint8_t{64}, std::uint8_t{0xFF}}) {
    EXPECT_EQ(sorbaneSetFieldKeyCount(1, count), 1U);
    EXPECT_EQ(sorbaneGetFieldKeyCount(1), count);
    EXPECT_EQ(WriteCfg(), 1U);
    EXPECT_EQ(magstripe->state.stored.fields[0].first[0] & 0x3F, count & 0x3F);
    EXPECT_EQ(magstripe->state.stored.fields[0].first[0] & 0xC0, 0x80);
  }
  EXPECT_EQ(sorbaneSetFieldTrack(1, 0xFE), 1U);
  EXPECT_EQ(sorbaneGetFieldTrack(1), 0xFEU);
  EXPECT_EQ(sorbaneSetFieldShowLRC(1, -1), 1U);
  EXPECT_EQ(SetLUID(0xFEDC), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(magstripe->state.stored.fields[0].control[0], 0x42);
  EXPECT_EQ(magstripe->state.stored.system[3], 0xDC);
  EXPECT_EQ(magstripe->state.stored.system[4], 0xFE);
  tsSorbaneCfg& cfg = EntryOfActDev().SorbaneBlock.Cfg;
  cfg.TrackEnables = 0xFF;
  cfg.KeyPressTime = 15;
  cfg.KeyReleaseTime = 1024;
  cfg.LedColor = {1, 0, 2, 1, 7};
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(magstripe->state.stored.system[0], 0x07);
  EXPECT_EQ(magstripe->state.stored.system[1], 3);
  EXPECT_EQ(magstripe->state.stored.system[2], 0);
  EXPECT_EQ(magstripe->state.stored.leds, (std::array<std::uint8_t, 2>{0x27, 0x01}));
}

TEST_F(MagModelConfiguration, AResetReadsTheFactorySettings) {
  Connect();
  Begin();
  EXPECT_EQ(WriteCfg(), 1U);
  ForgetTraffic();
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  EXPECT_EQ(Told(), Join({Exchanged({"FD"}), {"sleep 1100"}, Exchanged(ReadCommands())}));
  EXPECT_EQ(magstripe->state.stored, sim::FactoryMagSettings());
  EXPECT_EQ(GetLUID(), 1U);
  EXPECT_EQ(sorbaneGetTrackEnables(), 7U);
}

TEST_F(MagModelConfiguration, AResetThatFails) {
  Connect();
  AnswerTo("FD", "N");
  EXPECT_EQ(ResetFactoryDflts(), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x80000U);
  EXPECT_EQ(Told(), (Lines{"FD", "sleep 2", "sleep 200", "get", "sleep 2"}));
  magstripe->faults.Restart();
  magstripe->faults.RefuseFrom(1);
  EXPECT_EQ(ResetFactoryDflts(), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x80202U);
  magstripe->faults.Restart();
  AnswerTo("Gc1", "N");
  EXPECT_EQ(ResetFactoryDflts(), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x20001U);
}

// The place of an exchange in a read or a write.
struct Place {
  int transaction;  // from 0
  bool isSet;
};
Place PlaceOf(int exchange) { return {(exchange - 1) / 2, exchange % 2 == 1}; }

enum { kQrz = 0, kQsv = 1, kFields = 2, kGs0 = 35, kGl0 = 36 };

TEST_F(MagModelConfiguration, ARefusedFetchFailsItsCommandAndARefusedReportIsRepeated) {
  Connect();
  for (int exchange = 1; exchange <= 2 * kTransactions; ++exchange) {
    SCOPED_TRACE(exchange);
    Begin();
    magstripe->faults.RefuseAt(exchange);
    const auto [transaction, isSet] = PlaceOf(exchange);
    const bool passed = isSet || transaction < kFields || transaction == kGs0;
    const bool control = transaction >= kFields && transaction < kGs0 && transaction % 3 == 1;
    EXPECT_EQ(ReadCfg(), passed ? 1U : 0U);
    EXPECT_EQ(GetLastLibErr(), passed || control || transaction == kGl0 ? 0U : 0x20001U);
  }
}

TEST_F(MagModelConfiguration, AReaderThatVanishesInARead) {
  Connect();
  for (int exchange = 1; exchange <= 2 * kTransactions; ++exchange) {
    SCOPED_TRACE(exchange);
    Begin();
    magstripe->faults.VanishAt(exchange);
    const auto [transaction, isSet] = PlaceOf(exchange);
    EXPECT_EQ(ReadCfg(), 0U);
    std::uint32_t word = isSet ? 0x202 : 0;  // of a control part, and of the colours
    if (transaction == kQrz) word = 0x20000;
    if (transaction == kQsv || (transaction < kGs0 && transaction >= kFields && transaction % 3 != 1)) {
      word = 0x20001;
    }
    if (transaction == kGs0) word = 0x202;
    EXPECT_EQ(GetLastLibErr(), word);
  }
}

TEST_F(MagModelConfiguration, AWriteEndsAtItsFirstFailure) {
  Connect();
  for (int exchange = 1; exchange <= 2 * kTransactions; ++exchange) {
    for (const bool vanishes : {true, false}) {
      SCOPED_TRACE(exchange);
      Begin();
      if (vanishes) {
        magstripe->faults.VanishAt(exchange);
      } else {
        magstripe->faults.RefuseAt(exchange, PlaceOf(exchange).isSet ? 6 : 1);
      }
      EXPECT_EQ(WriteCfg(), 0U);
      const auto [transaction, isSet] = PlaceOf(exchange);
      const bool fieldPart = transaction >= 1 && transaction <= 33 && transaction % 3 != 0;
      EXPECT_EQ(GetLastLibErr(), fieldPart ? 0x20001U : isSet ? 0x202U : 0U);
      EXPECT_EQ(TrafficOf(host.transcript.Events()).back() == "sleep 1100", transaction == kTransactions - 1);
      magstripe->PowerCycle();
      const bool committed = exchange == 2 * kTransactions;
      EXPECT_EQ(magstripe->state.stored, committed ? Marked() : sim::FactoryMagSettings());
      magstripe->faults.Restart();
      EXPECT_EQ(WriteCfg(), 1U);
      EXPECT_EQ(magstripe->state.stored, Marked());
      magstripe->state.stored = sim::FactoryMagSettings();
    }
  }
}

TEST_F(MagModelConfiguration, AWriteRepeatsEachRefusedReport) {
  Connect();
  for (int transaction = 0; transaction < kTransactions; ++transaction) {
    Begin();
    magstripe->state.stored = sim::FactoryMagSettings();
    magstripe->faults.RefuseAt(2 * transaction + 1, 5);
    EXPECT_EQ(WriteCfg(), 1U);
    EXPECT_EQ(GetLastLibErr(), 0U);
    EXPECT_EQ(magstripe->state.stored, Marked());
  }
}

TEST_F(MagModelConfiguration, APacketTurnedOverFailsItsCommand) {
  Connect();
  for (int exchange = 1; exchange <= 2 * kTransactions; ++exchange) {
    SCOPED_TRACE(exchange);
    Begin();
    magstripe->faults.GarbleAt(exchange);
    EXPECT_EQ(WriteCfg(), 0U);
    magstripe->faults.Restart();
    magstripe->faults.GarbleAt(exchange);
    const int transaction = PlaceOf(exchange).transaction;
    EXPECT_EQ(ReadCfg(), transaction < kFields || transaction == kGs0 ? 1U : 0U);
  }
}

TEST_F(MagModelConfiguration, AnAnswerThatComesLateOrNotAtAllHarmsNothingElse) {
  Connect();
  for (int exchange = 1; exchange <= 2 * kTransactions; ++exchange) {
    for (const bool drop : {true, false}) {
      SCOPED_TRACE(exchange);
      Begin();
      drop ? magstripe->faults.DropAt(exchange) : magstripe->faults.DelayAt(exchange);
      ReadCfg();
      magstripe->state.working = Marked();
      EXPECT_EQ(ReadCfg(), 1U);
      ExpectMarked();
      magstripe->faults.Restart();
      drop ? magstripe->faults.DropAt(exchange) : magstripe->faults.DelayAt(exchange);
      WriteCfg();
      EXPECT_EQ(WriteCfg(), 1U);
      EXPECT_EQ(magstripe->state.stored, Marked());
    }
  }
}

TEST_F(MagModelConfiguration, APingAsksTwice) {
  Connect();
  EXPECT_EQ(Ping(), 2U);
  AnswerTo("QRZ", "RRX");
  ForgetTraffic();
  EXPECT_EQ(Ping(), 29U);
  EXPECT_EQ(Told(), Join({Exchanged({"QRZ"}), {"sleep 25"}, Exchanged({"QRZ"})}));
  AnswerTo("QRZ", "RRX", 2);
  const std::uint64_t before = host.clock.tick;
  EXPECT_EQ(Ping(), before) << "no reply, no duration";
}

TEST_F(MagModelConfiguration, AConnectWhoseReadFailsKeepsWhatItFound) {
  Plug(magstripe);
  Plug(std::make_shared<sim::Magstripe>());
  SetDevTypeSrch(0);
  SetConnectProduct(2);
  AnswerTo("GL0", "N");
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(GetDevCnt(), 2);
  EXPECT_EQ(GetActDev(), 0);
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(GetDevCnt(), 2);
}

}  // namespace
}  // namespace tavlyn::test
