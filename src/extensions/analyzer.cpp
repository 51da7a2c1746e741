// The card analyzer: a list of the cards that the reader has seen, with the raw bits of each.
#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "api.h"
#include "core/openings.h"
#include "core/trace.h"
#include "extensions/exchange.h"

namespace tavlyn {
namespace {

constexpr std::uint32_t kNoAnalyzer = 5;
constexpr const char* kDataTag = "CardAnalyzer::getCardAnalyzerData";

constexpr std::size_t kArea = sizeof(CardAnalyzerRecord::CardBits);
constexpr std::size_t kBlock = 8;

static_assert(sizeof(CardAnalyzerRecord) == 40 && offsetof(CardAnalyzerRecord, BitCount) == 4 &&
              offsetof(CardAnalyzerRecord, CardBits) == 8);

// Clears the error word of any active device, even one without an analyzer.
bool AnalyzerIsActive() {
  if (!ActiveInRange()) return false;
  EntryOfActDev().LastLibErr = 0;
  return ReaderIsActive() && EntryOfActDev().LinkKind == kByReports;
}

bool Echoes(const ReportPair& pair, std::size_t bytes) {
  return std::equal(pair.request.begin() + 1, pair.request.begin() + 1 + static_cast<std::ptrdiff_t>(bytes),
                    pair.reply.begin() + 1);
}

std::uint32_t Word(std::uint8_t low, std::uint8_t high) {
  return low | static_cast<std::uint32_t>(high) << 8;
}

// The reader may announce more data than a record holds: all of it is fetched, but only what fits is kept.
void Keep(const Report& reply, std::size_t at, CardAnalyzerRecord& record) {
  if (at >= kArea) return;
  std::copy_n(reply.begin() + 1, kBlock, record.CardBits + at);
  const std::size_t bytes = (record.BitCount + 7) / 8;
  if ((at + kBlock) * 8 > record.BitCount && bytes < kArea) {
    std::fill(record.CardBits + bytes, record.CardBits + kArea, std::uint8_t{0});
  }
}

void FetchBits(std::uint8_t number, CardAnalyzerRecord& record) {
  const std::size_t blocks = ((record.BitCount + 7) / 8 + kBlock - 1) / kBlock;
  for (std::size_t block = 1; block <= blocks; ++block) {
    ReportPair pair;
    if (ExchangePair(reader::command::kAnalyzerData, pair, number, static_cast<std::uint8_t>(block))) {
      Keep(pair.reply, (block - 1) * kBlock, record);
    } else {
      Fail(kDataTag, TAVLYN_ERR_ANALYZER_DATA);
    }
  }
  std::reverse(record.CardBits, record.CardBits + kArea);
}

CardAnalyzerRecord FetchRecord(std::uint8_t number) {
  // Cleared for each record: in the end the error word deliberately covers only the last one.
  EntryOfActDev().LastLibErr = 0;
  CardAnalyzerRecord record{};
  ReportPair pair;
  if (ExchangePair(reader::command::kAnalyzerData, pair, number)) {
    record.RecType = Word(pair.reply[1], pair.reply[2]);
    record.BitCount = Word(pair.reply[3], pair.reply[4]);
  } else {
    Fail(kDataTag, TAVLYN_ERR_ANALYZER_DATA);
  }
  FetchBits(number, record);
  return record;
}

}  // namespace
}  // namespace tavlyn

using namespace tavlyn;

std::uint32_t GetCardAnalyzerStatus() {
  if (!AnalyzerIsActive()) return kNoAnalyzer;
  shared.analyzer.AnalyzerStatus = -1;
  ReportPair pair;
  if (!ExchangePair(reader::command::kAnalyzerState, pair)) {
    Fail("CardAnalyzer::getCardAnalyzerStatus", TAVLYN_ERR_ANALYZER_STATUS);
  } else if (Echoes(pair, 2)) {
    shared.analyzer.AnalyzerCount = pair.reply[4];
    shared.analyzer.AnalyzerStatus = pair.reply[3];
  }
  return static_cast<std::uint32_t>(shared.analyzer.AnalyzerStatus);
}

std::uint32_t GetCardCount() { return shared.analyzer.AnalyzerCount; }

std::uint32_t SetCardAnalyzerControlState(std::uint32_t state) {
  if (!AnalyzerIsActive()) return 0;
  ReportPair pair;
  if (ExchangePair(reader::command::kSetAnalyzer, pair, static_cast<std::uint8_t>(state)) && Echoes(pair, 4))
    return 1;
  Fail("CardAnalyzer::setCardAnalyzerControlState", TAVLYN_ERR_ANALYZER_CONTROL);
  return 0;
}

CardAnalyzerRecord* GetCardAnalyzerData() {
  if (!AnalyzerIsActive()) return nullptr;
  const std::size_t count = shared.analyzer.AnalyzerCount;
  // malloc, because the caller need not be a C++ program; at least one record, because null would mean a
  // failure.
  auto* records = static_cast<CardAnalyzerRecord*>(
      std::malloc(std::max<std::size_t>(count, 1) * sizeof(CardAnalyzerRecord)));
  if (records == nullptr) return nullptr;
  std::uint8_t number = 0;
  std::generate_n(records, count, [&] { return FetchRecord(number++); });
  return records;
}
