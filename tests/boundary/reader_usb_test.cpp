// A card reader on USB, through the exports of the built library.
#include "tests/boundary/reader_usb.h"

#include <algorithm>

namespace tavlyn::boundary {
namespace {

TEST_F(ReaderUsb, NothingPluggedInIsNothingFound) {
  EXPECT_EQ(Connect(), 0u);
  EXPECT_EQ(did_, kNotWritten);
  EXPECT_EQ(CALL(*library_, GetDevCnt)(), 0);
  CALL(*library_, SetUnsupportedProductErrorCode)(0x8000);
  EXPECT_EQ(CALL(*library_, GetLastLibErr)(), 0xFFFF8000u);
  tsCfgFlags flags{};
  EXPECT_EQ(CALL(*library_, GetFlags)(&flags), 0x8000u);
  EXPECT_EQ(CALL(*library_, USBDisconnect)(), 1u);
}

TEST_F(ReaderUsb, PlainReaderConnects) {
  Do("plug reader");
  ASSERT_EQ(Connect(), 1u);
  EXPECT_EQ(did_, kDid);
  EXPECT_EQ(CALL(*library_, GetDID)(), kDid);
  EXPECT_EQ(CALL(*library_, GetLUID)(), 1u);
  EXPECT_EQ(CALL(*library_, GetDevCnt)(), 1);
  EXPECT_EQ(CALL(*library_, GetActDev)(), 0);
  EXPECT_EQ(CALL(*library_, GetProduct)(), 1u);
  EXPECT_EQ(CALL(*library_, GetDevType)(), 0);
  EXPECT_STREQ(CALL(*library_, GetVidPidVendorName)(), "7A31:3BFA Orvantis");
  std::array<char, 512> name{};
  EXPECT_EQ(CALL(*library_, GetDevName)(name.data()), 999u);
  EXPECT_NE(name[0], '\0');
  EXPECT_EQ(CALL(*library_, GetFirmwareVersion)(0, 0), 0u);
  EXPECT_EQ(CALL(*library_, GetMaxConfig)(), 0);
  EXPECT_EQ(CALL(*library_, GetCardType)(), -1);
  EXPECT_STREQ(CALL(*library_, getPartNumberString)(), "RDR-80581AKU");
}

// The only test in this program that asks for these characters, so nothing has been copied before.
TEST_F(ReaderUsb, PartNumberCharactersNeedTheFirstOne) {
  Do("plug reader");
  ASSERT_EQ(Connect(), 1u);
  EXPECT_EQ(CALL(*library_, getPartNumberString_char)(3), 0);
  EXPECT_EQ(CALL(*library_, getPartNumberString_char)(0), 'R');
  EXPECT_EQ(CALL(*library_, getPartNumberString_char)(3), '-');
}

TEST_F(ReaderUsb, PlainReaderIsMirrored) {
  Do("plug reader");
  ASSERT_EQ(Connect(), 1u);
  ExpectMirror(0x20);

  tsIDBitCnts counts{};
  EXPECT_EQ(CALL(*library_, GetIDBitCnts)(&counts), 1u);
  EXPECT_EQ((std::array<int, 4>{counts.iLeadParityBitCnt, counts.iTrailParityBitCnt, counts.iIDBitCnt,
                                counts.iTotalBitCnt}),
            (std::array{1, 1, 16, 26}));
  tsIDDispParms display{};
  EXPECT_EQ(CALL(*library_, GetIDDispParms)(&display), 1u);
  EXPECT_EQ((std::array<int, 5>{display.iFACIDDelim, display.iELDelim, display.iIDDispLen,
                                display.iFACDispLen, display.iExOutputFormat}),
            (std::array{0x3A, 0x28, 5, 3, 0}));
  tsCfgFlags2 flags2{};
  EXPECT_EQ(CALL(*library_, GetFlags2)(&flags2), 1u);
  EXPECT_EQ((std::array<int, 3>{flags2.bDspHex, flags2.bBeepID, flags2.isASCIIpresent}),
            (std::array{0, 1, 1}));
  tsCfgFlags3 flags3{};
  EXPECT_EQ(CALL(*library_, GetFlags3)(&flags3), 1u);
  EXPECT_EQ((std::array<int, 3>{flags3.bUseNumKP, flags3.bSndSFON, flags3.bSndSFFC}), (std::array{0, 1, 0}));
  tsLEDCtrl leds{};
  EXPECT_EQ(CALL(*library_, GetLEDCtrl)(&leds), 1u);
  EXPECT_EQ((std::array<int, 3>{leds.iRedLEDState, leds.iGrnLEDState, leds.bVolatile}),
            (std::array{1, 0, 0}));

  EXPECT_EQ(CALL(*library_, GetTimeParms)(nullptr), 0u);
  EXPECT_EQ(CALL(*library_, GetLastLibErr)(), 0x100001u);
}

TEST_F(ReaderUsb, CardIsReadAndCached) {
  Do("plug reader");
  Do("card 0102030405060708:58");
  ASSERT_EQ(Connect(), 1u);
  const std::array<std::uint8_t, 8> card{1, 2, 3, 4, 5, 6, 7, 8};

  WaitForGate();
  int before = Exchanges();
  std::array<std::uint8_t, 8> id{};
  EXPECT_EQ(CALL(*library_, GetActiveID)(id.data(), 8), 58);
  EXPECT_EQ(id, card);
  EXPECT_EQ(Exchanges(), before + 4);

  Do("take");
  id = {};
  EXPECT_EQ(CALL(*library_, GetActiveID)(id.data(), 8), 58);
  EXPECT_EQ(id, card);
  EXPECT_EQ(Exchanges(), before + 4);

  WaitForGate();
  EXPECT_EQ(CALL(*library_, GetActiveID)(id.data(), 8), 0);
  EXPECT_EQ(id, (std::array<std::uint8_t, 8>{}));
  EXPECT_EQ(Exchanges(), before + 8);
  EXPECT_EQ(CALL(*library_, GetLastLibErr)(), 0u);
}

TEST_F(ReaderUsb, LongCardIsReadInFourPages) {
  Do("plug reader");
  Do("card 000102030405060708090A0B0C0D0E0F:128");
  ASSERT_EQ(Connect(), 1u);
  WaitForGate();
  const int before = Exchanges();
  std::array<std::uint8_t, 32> id{};
  EXPECT_EQ(CALL(*library_, GetActiveID32)(id.data(), 32), 128);
  EXPECT_EQ(Exchanges(), before + 10);
  for (std::uint8_t i = 0; i < 16; ++i) EXPECT_EQ(id[i], i);
  for (std::size_t i = 16; i < 32; ++i) EXPECT_EQ(id[i], 0);
}

TEST_F(ReaderUsb, FailedIdReadIsToldByTheErrorWord) {
  Do("plug reader");
  Do("card 0102:13");
  ASSERT_EQ(Connect(), 1u);
  WaitForGate();
  Do("refuse 2");
  std::array<std::uint8_t, 8> id{};
  EXPECT_EQ(CALL(*library_, GetActiveID)(id.data(), 8), 0);
  EXPECT_EQ(CALL(*library_, GetLastLibErr)(), 0x1000000u);
  WaitForGate();
  EXPECT_EQ(CALL(*library_, GetActiveID)(id.data(), 8), 13);
  EXPECT_EQ(CALL(*library_, GetLastLibErr)(), 0u);
}

TEST_F(ReaderUsb, PlusReaderHasConfigurationsAndFirmwareWords) {
  Do("plug plus:3");
  ASSERT_EQ(Connect(), 1u);
  EXPECT_EQ(did_, kDid);
  EXPECT_EQ(CALL(*library_, GetMaxConfig)(), 2);
  EXPECT_EQ(CALL(*library_, GetActConfig)(), 0);
  EXPECT_EQ(CALL(*library_, GetCardType)(), 0xEF04);
  EXPECT_EQ(CALL(*library_, GetCardPriority)(), 1);
  ExpectMirror(0xE0);

  EXPECT_EQ(CALL(*library_, SetActConfig)(2), 1u);
  EXPECT_EQ(CALL(*library_, GetCardType)(), 0xF104);
  EXPECT_EQ(CALL(*library_, GetCardPriority)(), 0);
  ExpectMirror(0xE0);
  EXPECT_EQ(CALL(*library_, SetActConfig)(3), 0u);

  EXPECT_EQ(CALL(*library_, GetFirmwareVersion)(0, 0), 0x10072005u);
  EXPECT_EQ(CALL(*library_, GetFirmwareVersion)(0, 1), 0x10070101u);
  EXPECT_EQ(CALL(*library_, GetFirmwareVersion)(0, 2), 0u);
  EXPECT_EQ(CALL(*library_, GetFirmwareVersion)(1, 0), 0x20010009u);
  EXPECT_EQ(CALL(*library_, GetFirmwareVersion)(2, 0), 0u);
}

TEST_F(ReaderUsb, SecondIdentityIsFoundAndBeeps) {
  Do("plug reader@19E5:2021");
  ASSERT_EQ(Connect(), 1u);
  EXPECT_EQ(did_, kDid);
  EXPECT_STREQ(CALL(*library_, GetVidPidVendorName)(), "19E5:2021 Orvantis Quill");
  EXPECT_EQ(CALL(*library_, GetVidPidFilterMask)(1), 0x8000u);
  EXPECT_EQ(CALL(*library_, GetVidPidFilterMask)(0), 0u);
  EXPECT_TRUE(TrafficHolds("set 1 8C 03"));
}

TEST_F(ReaderUsb, UnknownIdentityIsLeftAlone) {
  Do("plug reader@1234:5678");
  EXPECT_EQ(Connect(), 0u);
  EXPECT_EQ(CALL(*library_, GetDevCnt)(), 0);
  EXPECT_EQ(Exchanges(), 0);
}

TEST_F(ReaderUsb, InterfacesFromThe128thOnAreNotLookedAt) {
  for (int i = 0; i < 126; ++i) Do("plug reader@1234:5678");
  Do("plug plus:2");
  Do("plug reader");
  ASSERT_EQ(Connect(), 1u);
  EXPECT_EQ(CALL(*library_, GetDevCnt)(), 1);
  EXPECT_EQ(CALL(*library_, GetMaxConfig)(), 1);
}

TEST_F(ReaderUsb, SeveralReadersKeepTheirOrder) {
  Do("plug reader");
  Do("plug plus:2");
  Do("plug reader@19E5:2021");
  ASSERT_EQ(Connect(), 1u);
  EXPECT_EQ(CALL(*library_, GetDevCnt)(), 3);
  EXPECT_EQ(CALL(*library_, GetActDev)(), 0);
  EXPECT_EQ(CALL(*library_, SetActDev)(1), 1u);
  EXPECT_EQ(CALL(*library_, GetMaxConfig)(), 1);
  EXPECT_EQ(CALL(*library_, SetActDev)(2), 1u);
  EXPECT_STREQ(CALL(*library_, GetVidPidVendorName)(), "19E5:2021 Orvantis Quill");
  EXPECT_EQ(CALL(*library_, SetActDev)(3), 0u);
}

// Two interfaces under one identity: the keyboard fails the usage test, the reader's own passes.
TEST_F(ReaderUsb, NumberedReportsAndInputReports) {
  Do("plug plus:2@7A31:3BFB");
  Do("card AABB:16");
  ASSERT_EQ(Connect(), 1u);
  EXPECT_EQ(CALL(*library_, GetDevCnt)(), 1);
  EXPECT_STREQ(CALL(*library_, GetVidPidVendorName)(), "7A31:3BFB Orvantis Kelda");
  EXPECT_EQ(CALL(*library_, GetMaxConfig)(), 1);
  EXPECT_FALSE(TrafficHolds("refused"));

  WaitForGate();
  int before = Exchanges();
  std::array<std::uint8_t, 8> id{};
  EXPECT_EQ(CALL(*library_, GetActiveID)(id.data(), 8), 0);
  EXPECT_EQ(Exchanges(), before);

  Do("input 010000000000000000");
  Do("input 010000000000000000");
  EXPECT_EQ(CALL(*library_, GetActiveID)(id.data(), 8), 16);
  EXPECT_EQ(id[0], 0xAA);
  EXPECT_EQ(id[1], 0xBB);
  EXPECT_EQ(Exchanges(), before + 4);

  // The second report went with the first.
  WaitForGate();
  EXPECT_EQ(CALL(*library_, GetActiveID)(id.data(), 8), 0);
  EXPECT_EQ(Exchanges(), before + 4);
}

TEST_F(ReaderUsb, UnpluggedReaderFailsAndTheNextConnectFindsTheOther) {
  Do("plug reader");
  ASSERT_EQ(Connect(), 1u);
  Do("unplug");
  EXPECT_EQ(CALL(*library_, ReadCfg)(), 0u);
  EXPECT_EQ(CALL(*library_, USBDisconnect)(), 1u);
  EXPECT_EQ(Connect(), 0u);
  Do("plug plus:2");
  ASSERT_EQ(Connect(), 1u);
  EXPECT_EQ(CALL(*library_, GetMaxConfig)(), 1);
}

// A refused command is sent again, so only a refused reply can make a connect fail; and whatever happened, a
// reader that has recovered connects as if nothing had happened.
TEST_F(ReaderUsb, RefusalAtEachExchange) {
  Do("plug plus:2");
  ASSERT_EQ(Connect(), 1u);
  const std::vector<std::string> clean = Lines(Do("traffic"));
  const int count = Exchanges();
  ASSERT_EQ(clean.size(), static_cast<std::size_t>(count));
  ASSERT_GT(count, 100);
  int failed = 0;
  for (int n = 1; n <= count; ++n) {
    SCOPED_TRACE("exchange " + std::to_string(n) + ": " + clean[static_cast<std::size_t>(n) - 1]);
    CALL(*library_, USBDisconnect)();
    Do("clear");
    Do("refuse " + std::to_string(n));
    const std::uint32_t result = Connect();
    EXPECT_EQ(CALL(*library_, GetDevCnt)(), 1);
    EXPECT_TRUE(TrafficHolds("refused"));
    const bool wasCommand = clean[static_cast<std::size_t>(n) - 1].starts_with("set");
    EXPECT_TRUE(result == 1 || (result == 0 && !wasCommand));
    EXPECT_EQ(did_, result == 1 ? kDid : kNotWritten);
    failed += result == 1 ? 0 : 1;

    Do("heal");
    CALL(*library_, USBDisconnect)();
    ASSERT_EQ(Connect(), 1u);
    ASSERT_EQ(did_, kDid);
    ASSERT_EQ(Exchanges(), count);
    ExpectMirror(0xE0);
  }
  EXPECT_GT(failed, 0);
}

// Gone in the middle of its configuration: each further command takes its six attempts.
TEST_F(ReaderUsb, ReaderThatVanishesDuringConnect) {
  Do("plug reader");
  ASSERT_EQ(Connect(), 1u);
  const std::vector<std::string> clean = Lines(Do("traffic"));
  const auto last = std::find(clean.rbegin(), clean.rend(), "set 1 83");
  ASSERT_NE(clean.rend(), last);
  CALL(*library_, USBDisconnect)();
  Do("vanish " + std::to_string(clean.rend() - last));
  EXPECT_EQ(Connect(), 0u);
  EXPECT_EQ(did_, kNotWritten);
  EXPECT_EQ(CALL(*library_, GetDevCnt)(), 1);
  CALL(*library_, USBDisconnect)();
  EXPECT_EQ(Connect(), 0u);
  EXPECT_EQ(CALL(*library_, GetDevCnt)(), 0);
  Do("heal");
  ASSERT_EQ(Connect(), 1u);
  EXPECT_EQ(did_, kDid);
}

}  // namespace
}  // namespace tavlyn::boundary
