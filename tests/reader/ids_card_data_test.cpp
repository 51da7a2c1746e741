// Data of the card on the reader, forty bytes at a time.
#include <numeric>

#include "api.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

class CardData : public SerialBench {
 protected:
  std::shared_ptr<Reader> Use() {
    auto model = Reader::Plain();
    std::iota(model->state.cardData.begin(), model->state.cardData.end(), std::uint8_t{1});
    return Connected(std::move(model));
  }
};

TEST_F(CardData, FivePiecesMakeFortyBytes) {
  Use();
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(getActiveCardData(), 1U);
  ExpectTraffic({"set 88 01", "get", "set 88 01 01", "get", "set 88 01 02", "get", "set 88 01 03", "get",
                 "set 88 01 04", "get"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  for (std::uint16_t at = 0; at < 40; ++at) EXPECT_EQ(getActiveCardData_byte(at), at + 1U);
  EXPECT_EQ(getActiveCardData_byte(40), 0U);
  EXPECT_EQ(getActiveCardData_byte(255), 0U);
  EXPECT_EQ(getActiveCardData_byte(256), 0U);
  EXPECT_EQ(getActiveCardData_byte(65535), 0U);
  ExpectTraffic({});
}

TEST_F(CardData, AFaultAtEachExchange) {
  const auto model = Use();
  for (int exchange = 1; exchange <= 10; ++exchange) {
    const bool sendFails = exchange % 2 == 1;
    model->faults.Restart();
    model->faults.RefuseAt(exchange, sendFails ? 6 : 1);
    EXPECT_EQ(getActiveCardData(), 0U) << exchange;
    EXPECT_EQ(GetLastLibErr(), sendFails ? 0x1000202U : 0x1000000U) << exchange;
  }
}

TEST_F(CardData, ASerialReaderHasNone) {
  Use();
  EXPECT_EQ(getActiveCardData(), 1U);
  AddReader(Reader::Plain());
  Entry().LastLibErr = 5;
  EXPECT_EQ(getActiveCardData(), 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  for (std::uint16_t at = 0; at < 256; ++at) EXPECT_EQ(getActiveCardData_byte(at), 0U);
  ExpectTraffic({});
}

}  // namespace
}  // namespace tavlyn::test
