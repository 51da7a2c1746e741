// A card reader on USB, through the exports of the built library.
#include "tests/boundary/reader_usb.h"

#include <algorithm>

namespace tavlyn::boundary {
namespace {

TEST_F(ReaderUsb, NothingPluggedInIsNothingFound) {
  EXPECT_EQ(0u, Connect());
  EXPECT_EQ(kNotWritten, did_);
  EXPECT_EQ(0, CALL(*library_, GetDevCnt)());
  CALL(*library_, SetUnsupportedProductErrorCode)(0x8000);
  EXPECT_EQ(0xFFFF8000u, CALL(*library_, GetLastLibErr)());
  tsCfgFlags flags{};
  EXPECT_EQ(0x8000u, CALL(*library_, GetFlags)(&flags));
  EXPECT_EQ(1u, CALL(*library_, USBDisconnect)());
}

TEST_F(ReaderUsb, PlainReaderConnects) {
  Do("plug reader");
  ASSERT_EQ(1u, Connect());
  EXPECT_EQ(kDid, did_);
  EXPECT_EQ(kDid, CALL(*library_, GetDID)());
  EXPECT_EQ(1u, CALL(*library_, GetLUID)());
  EXPECT_EQ(1, CALL(*library_, GetDevCnt)());
  EXPECT_EQ(0, CALL(*library_, GetActDev)());
  EXPECT_EQ(1u, CALL(*library_, GetProduct)());
  EXPECT_EQ(0, CALL(*library_, GetDevType)());
  EXPECT_STREQ("7A31:3BFA Orvantis", CALL(*library_, GetVidPidVendorName)());
  std::array<char, 512> name{};
  EXPECT_EQ(999u, CALL(*library_, GetDevName)(name.data()));
  EXPECT_NE('\0', name[0]);
  EXPECT_EQ(0u, CALL(*library_, GetFirmwareVersion)(0, 0));
  EXPECT_EQ(0, CALL(*library_, GetMaxConfig)());
  EXPECT_EQ(-1, CALL(*library_, GetCardType)());
  EXPECT_STREQ("RDR-80581AKU", CALL(*library_, getPartNumberString)());
}

// The only test in this program that asks for these characters, so nothing has been copied before.
TEST_F(ReaderUsb, PartNumberCharactersNeedTheFirstOne) {
  Do("plug reader");
  ASSERT_EQ(1u, Connect());
  EXPECT_EQ(0, CALL(*library_, getPartNumberString_char)(3));
  EXPECT_EQ('R', CALL(*library_, getPartNumberString_char)(0));
  EXPECT_EQ('-', CALL(*library_, getPartNumberString_char)(3));
}

TEST_F(ReaderUsb, PlainReaderIsMirrored) {
  Do("plug reader");
  ASSERT_EQ(1u, Connect());
  ExpectMirror(0x20);

  tsIDBitCnts counts{};
  EXPECT_EQ(1u, CALL(*library_, GetIDBitCnts)(&counts));
  EXPECT_EQ((std::array{1, 1, 16, 26}),
            (std::array<int, 4>{counts.iLeadParityBitCnt, counts.iTrailParityBitCnt, counts.iIDBitCnt,
                                counts.iTotalBitCnt}));
  tsIDDispParms display{};
  EXPECT_EQ(1u, CALL(*library_, GetIDDispParms)(&display));
  EXPECT_EQ((std::array{0x3A, 0x28, 5, 3, 0}),
            (std::array<int, 5>{display.iFACIDDelim, display.iELDelim, display.iIDDispLen,
                                display.iFACDispLen, display.iExOutputFormat}));
  tsCfgFlags2 flags2{};
  EXPECT_EQ(1u, CALL(*library_, GetFlags2)(&flags2));
  EXPECT_EQ((std::array{0, 1, 1}),
            (std::array<int, 3>{flags2.bDspHex, flags2.bBeepID, flags2.isASCIIpresent}));
  tsCfgFlags3 flags3{};
  EXPECT_EQ(1u, CALL(*library_, GetFlags3)(&flags3));
  EXPECT_EQ((std::array{0, 1, 0}), (std::array<int, 3>{flags3.bUseNumKP, flags3.bSndSFON, flags3.bSndSFFC}));
  tsLEDCtrl leds{};
  EXPECT_EQ(1u, CALL(*library_, GetLEDCtrl)(&leds));
  EXPECT_EQ((std::array{1, 0, 0}),
            (std::array<int, 3>{leds.iRedLEDState, leds.iGrnLEDState, leds.bVolatile}));

  EXPECT_EQ(0u, CALL(*library_, GetTimeParms)(nullptr));
  EXPECT_EQ(0x100001u, CALL(*library_, GetLastLibErr)());
}

TEST_F(ReaderUsb, CardIsReadAndCached) {
  Do("plug reader");
  Do("card 0102030405060708:58");
  ASSERT_EQ(1u, Connect());
  const std::array<std::uint8_t, 8> card{1, 2, 3, 4, 5, 6, 7, 8};

  WaitForGate();
  int before = Exchanges();
  std::array<std::uint8_t, 8> id{};
  EXPECT_EQ(58, CALL(*library_, GetActiveID)(id.data(), 8));
  EXPECT_EQ(card, id);
  EXPECT_EQ(before + 4, Exchanges());

  Do("take");
  id = {};
  EXPECT_EQ(58, CALL(*library_, GetActiveID)(id.data(), 8));
  EXPECT_EQ(card, id);
  EXPECT_EQ(before + 4, Exchanges());

  WaitForGate();
  EXPECT_EQ(0, CALL(*library_, GetActiveID)(id.data(), 8));
  EXPECT_EQ((std::array<std::uint8_t, 8>{}), id);
  EXPECT_EQ(before + 8, Exchanges());
  EXPECT_EQ(0u, CALL(*library_, GetLastLibErr)());
}

TEST_F(ReaderUsb, LongCardIsReadInFourPages) {
  Do("plug reader");
  Do("card 000102030405060708090A0B0C0D0E0F:128");
  ASSERT_EQ(1u, Connect());
  WaitForGate();
  const int before = Exchanges();
  std::array<std::uint8_t, 32> id{};
  EXPECT_EQ(128, CALL(*library_, GetActiveID32)(id.data(), 32));
  EXPECT_EQ(before + 10, Exchanges());
  for (std::uint8_t i = 0; i < 16; ++i) EXPECT_EQ(i, id[i]);
  for (std::size_t i = 16; i < 32; ++i) EXPECT_EQ(0, id[i]);
}

TEST_F(ReaderUsb, FailedIdReadIsToldByTheErrorWord) {
  Do("plug reader");
  Do("card 0102:13");
  ASSERT_EQ(1u, Connect());
  WaitForGate();
  Do("refuse 2");
  std::array<std::uint8_t, 8> id{};
  EXPECT_EQ(0, CALL(*library_, GetActiveID)(id.data(), 8));
  EXPECT_EQ(0x1000000u, CALL(*library_, GetLastLibErr)());
  WaitForGate();
  EXPECT_EQ(13, CALL(*library_, GetActiveID)(id.data(), 8));
  EXPECT_EQ(0u, CALL(*library_, GetLastLibErr)());
}

TEST_F(ReaderUsb, PlusReaderHasConfigurationsAndFirmwareWords) {
  Do("plug plus:3");
  ASSERT_EQ(1u, Connect());
  EXPECT_EQ(kDid, did_);
  EXPECT_EQ(2, CALL(*library_, GetMaxConfig)());
  EXPECT_EQ(0, CALL(*library_, GetActConfig)());
  EXPECT_EQ(0xEF04, CALL(*library_, GetCardType)());
  EXPECT_EQ(1, CALL(*library_, GetCardPriority)());
  ExpectMirror(0xE0);

  EXPECT_EQ(1u, CALL(*library_, SetActConfig)(2));
  EXPECT_EQ(0xF104, CALL(*library_, GetCardType)());
  EXPECT_EQ(0, CALL(*library_, GetCardPriority)());
  ExpectMirror(0xE0);
  EXPECT_EQ(0u, CALL(*library_, SetActConfig)(3));

  EXPECT_EQ(0x10072005u, CALL(*library_, GetFirmwareVersion)(0, 0));
  EXPECT_EQ(0x10070101u, CALL(*library_, GetFirmwareVersion)(0, 1));
  EXPECT_EQ(0u, CALL(*library_, GetFirmwareVersion)(0, 2));
  EXPECT_EQ(0x20010009u, CALL(*library_, GetFirmwareVersion)(1, 0));
  EXPECT_EQ(0u, CALL(*library_, GetFirmwareVersion)(2, 0));
}

TEST_F(ReaderUsb, SecondIdentityIsFoundAndBeeps) {
  Do("plug reader@19E5:2021");
  ASSERT_EQ(1u, Connect());
  EXPECT_EQ(kDid, did_);
  EXPECT_STREQ("19E5:2021 Orvantis Quill", CALL(*library_, GetVidPidVendorName)());
  EXPECT_EQ(0x8000u, CALL(*library_, GetVidPidFilterMask)(1));
  EXPECT_EQ(0u, CALL(*library_, GetVidPidFilterMask)(0));
  EXPECT_TRUE(TrafficHolds("set 1 8C 03"));
}

TEST_F(ReaderUsb, UnknownIdentityIsLeftAlone) {
  Do("plug reader@1234:5678");
  EXPECT_EQ(0u, Connect());
  EXPECT_EQ(0, CALL(*library_, GetDevCnt)());
  EXPECT_EQ(0, Exchanges());
}

TEST_F(ReaderUsb, InterfacesFromThe128thOnAreNotLookedAt) {
  for (int i = 0; i < 126; ++i) Do("plug reader@1234:5678");
  Do("plug plus:2");
  Do("plug reader");
  ASSERT_EQ(1u, Connect());
  EXPECT_EQ(1, CALL(*library_, GetDevCnt)());
  EXPECT_EQ(1, CALL(*library_, GetMaxConfig)());
}

TEST_F(ReaderUsb, SeveralReadersKeepTheirOrder) {
  Do("plug reader");
  Do("plug plus:2");
  Do("plug reader@19E5:2021");
  ASSERT_EQ(1u, Connect());
  EXPECT_EQ(3, CALL(*library_, GetDevCnt)());
  EXPECT_EQ(0, CALL(*library_, GetActDev)());
  EXPECT_EQ(1u, CALL(*library_, SetActDev)(1));
  EXPECT_EQ(1, CALL(*library_, GetMaxConfig)());
  EXPECT_EQ(1u, CALL(*library_, SetActDev)(2));
  EXPECT_STREQ("19E5:2021 Orvantis Quill", CALL(*library_, GetVidPidVendorName)());
  EXPECT_EQ(0u, CALL(*library_, SetActDev)(3));
}

// Two interfaces under one identity: the keyboard fails the usage test, the reader's own passes.
TEST_F(ReaderUsb, NumberedReportsAndInputReports) {
  Do("plug plus:2@7A31:3BFB");
  Do("card AABB:16");
  ASSERT_EQ(1u, Connect());
  EXPECT_EQ(1, CALL(*library_, GetDevCnt)());
  EXPECT_STREQ("7A31:3BFB Orvantis Kelda", CALL(*library_, GetVidPidVendorName)());
  EXPECT_EQ(1, CALL(*library_, GetMaxConfig)());
  EXPECT_FALSE(TrafficHolds("refused"));

  WaitForGate();
  int before = Exchanges();
  std::array<std::uint8_t, 8> id{};
  EXPECT_EQ(0, CALL(*library_, GetActiveID)(id.data(), 8));
  EXPECT_EQ(before, Exchanges());

  Do("input 010000000000000000");
  Do("input 010000000000000000");
  EXPECT_EQ(16, CALL(*library_, GetActiveID)(id.data(), 8));
  EXPECT_EQ(0xAA, id[0]);
  EXPECT_EQ(0xBB, id[1]);
  EXPECT_EQ(before + 4, Exchanges());

  // The second report went with the first.
  WaitForGate();
  EXPECT_EQ(0, CALL(*library_, GetActiveID)(id.data(), 8));
  EXPECT_EQ(before + 4, Exchanges());
}

TEST_F(ReaderUsb, UnpluggedReaderFailsAndTheNextConnectFindsTheOther) {
  Do("plug reader");
  ASSERT_EQ(1u, Connect());
  Do("unplug");
  EXPECT_EQ(0u, CALL(*library_, ReadCfg)());
  EXPECT_EQ(1u, CALL(*library_, USBDisconnect)());
  EXPECT_EQ(0u, Connect());
  Do("plug plus:2");
  ASSERT_EQ(1u, Connect());
  EXPECT_EQ(1, CALL(*library_, GetMaxConfig)());
}

// A refused command is sent again, so only a refused reply can make a connect fail; and whatever happened, a
// reader that has recovered connects as if nothing had happened.
TEST_F(ReaderUsb, RefusalAtEachExchange) {
  Do("plug plus:2");
  ASSERT_EQ(1u, Connect());
  const std::vector<std::string> clean = Lines(Do("traffic"));
  const int count = Exchanges();
  ASSERT_EQ(static_cast<std::size_t>(count), clean.size());
  ASSERT_GT(count, 100);
  int failed = 0;
  for (int n = 1; n <= count; ++n) {
    SCOPED_TRACE("exchange " + std::to_string(n) + ": " + clean[static_cast<std::size_t>(n) - 1]);
    CALL(*library_, USBDisconnect)();
    Do("clear");
    Do("refuse " + std::to_string(n));
    const std::uint32_t result = Connect();
    EXPECT_EQ(1, CALL(*library_, GetDevCnt)());
    EXPECT_TRUE(TrafficHolds("refused"));
    const bool wasCommand = clean[static_cast<std::size_t>(n) - 1].starts_with("set");
    EXPECT_TRUE(result == 1 || (result == 0 && !wasCommand));
    EXPECT_EQ(result == 1 ? kDid : kNotWritten, did_);
    failed += result == 1 ? 0 : 1;

    Do("heal");
    CALL(*library_, USBDisconnect)();
    ASSERT_EQ(1u, Connect());
    ASSERT_EQ(kDid, did_);
    ASSERT_EQ(count, Exchanges());
    ExpectMirror(0xE0);
  }
  EXPECT_GT(failed, 0);
}

// Gone in the middle of its configuration: each further command takes its six attempts.
TEST_F(ReaderUsb, ReaderThatVanishesDuringConnect) {
  Do("plug reader");
  ASSERT_EQ(1u, Connect());
  const std::vector<std::string> clean = Lines(Do("traffic"));
  const auto last = std::find(clean.rbegin(), clean.rend(), "set 1 83");
  ASSERT_NE(clean.rend(), last);
  CALL(*library_, USBDisconnect)();
  Do("vanish " + std::to_string(clean.rend() - last));
  EXPECT_EQ(0u, Connect());
  EXPECT_EQ(kNotWritten, did_);
  EXPECT_EQ(1, CALL(*library_, GetDevCnt)());
  CALL(*library_, USBDisconnect)();
  EXPECT_EQ(0u, Connect());
  EXPECT_EQ(0, CALL(*library_, GetDevCnt)());
  Do("heal");
  ASSERT_EQ(1u, Connect());
  EXPECT_EQ(kDid, did_);
}

}  // namespace
}  // namespace tavlyn::boundary
