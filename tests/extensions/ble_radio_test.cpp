// The BLE radio beside the card radio.
#include "api.h"
#include "tests/support/dirty.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

class BleRadio : public SerialBench {
 protected:
  void SetUp() override {
    SerialBench::SetUp();
    model = Connected(Reader::Plus(2));
    DevTable[0].LastLibErr = 5;
  }

  std::shared_ptr<Reader> model;
};

TEST_F(BleRadio, IsThereWithItsConfiguration) {
  model->state.extensions.ble = 2;
  EXPECT_EQ(IsBTLEPresent(), 1);
  ExpectTraffic({"set 8C 07", "get 8C 07 82"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  DevTable[0].LastLibErr = 5;
  EXPECT_EQ(GetBTLEConfiguration(), 2);
  ExpectTraffic({"set 8C 07", "get 8C 07 82"});
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(BleRadio, OnlyItsBitsCount) {
  model->faults.AnswerWith({0x8C, 0x07}, {0, 0, 0xFC}, 2);
  EXPECT_EQ(IsBTLEPresent(), 1);
  EXPECT_EQ(GetBTLEConfiguration(), 0);
  model->faults.AnswerWith({0x8C, 0x07}, {0x8C, 0x07, 0x7F}, 2);
  EXPECT_EQ(IsBTLEPresent(), 0);
  EXPECT_EQ(GetBTLEConfiguration(), 65535);
}

TEST_F(BleRadio, AReaderWithoutOneHasNoError) {
  model->state.extensions.hasBle = false;
  EXPECT_EQ(IsBTLEPresent(), 0);
  EXPECT_EQ(GetBTLEConfiguration(), 65535);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(BleRadio, TheConfigurationIsPassedOn) {
  EXPECT_EQ(SetBTLEConfiguration(3), 1);
  ExpectTraffic({"set 8C 87 03", "get 8C 87 83"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(GetBTLEConfiguration(), 3);
  ForgetTraffic();
  EXPECT_EQ(SetBTLEConfiguration(0xFE), 1);
  ExpectTraffic({"set 8C 87 FE", "get 8C 87 82"});
}

TEST_F(BleRadio, AnyReplyToASetIsGood) {
  model->state.lacks = {{0x8C, 0x87}};
  EXPECT_EQ(SetBTLEConfiguration(1), 1);
  ExpectTraffic({"set 8C 87 01", "get 00"});
  EXPECT_EQ(GetBTLEConfiguration(), 0) << "not taken";
}

TEST_F(BleRadio, AFailureOfEitherHalf) {
  StartTrace();
  const auto expectFailure = [&](auto call, std::uint16_t result, std::uint32_t word) {
    model->faults.RefuseNext(6);
    EXPECT_EQ(call(), result);
    EXPECT_EQ(GetLastLibErr(), word | 0x202U);
    EXPECT_EQ(Slept(), 480U);
    model->faults.RefuseReply({0x8C}, 1);
    EXPECT_EQ(call(), result);
    EXPECT_EQ(GetLastLibErr(), word);
    ForgetTraffic();
  };
  expectFailure([] { return IsBTLEPresent(); }, 0, 0x40000000);
  expectFailure([] { return GetBTLEConfiguration(); }, 65535, 0x40000000);
  expectFailure([] { return SetBTLEConfiguration(1); }, 0, 0x20000000);
  ExpectTrace({});
}

TEST_F(BleRadio, AnyProductIsAsked) {
  for (const std::uint32_t kind : {0U, kMagstripe, 3U, kSonar}) {
    DevTable[0].ProductKind = kind;
    EXPECT_EQ(IsBTLEPresent(), 1);
    EXPECT_EQ(SetBTLEConfiguration(1), 1);
    EXPECT_EQ(GetBTLEConfiguration(), 1);
  }
  DevTable[0].ProductKind = kReader;
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(BleRadio, ASerialReaderCannotBeAsked) {
  AddReader(Reader::Plus(2));
  Entry().hDev = platform::kNoHandle;
  EXPECT_EQ(GetBTLEConfiguration(), 65535);
  EXPECT_EQ(GetLastLibErr(), 0x40000202U);
}

}  // namespace
}  // namespace tavlyn::test
