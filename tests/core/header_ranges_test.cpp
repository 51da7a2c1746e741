// The ranges in the comments of the public records against what the record sets take.
#include <array>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "api.h"
#include "sim/devices/sonar.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

constexpr std::string_view kTypesHeader =
#include "types.h.inc"
    ;
constexpr std::string_view kSonarHeader =
#include "sonar.h.inc"
    ;

// Room for the largest record, word by word.
using RecordRoom = std::array<std::uint16_t, 16>;

struct RecordCalls {
  std::string name;
  std::function<std::uint32_t(RecordRoom&)> get;
  std::function<std::uint32_t(const RecordRoom&)> set;
};

template <typename Record>
RecordCalls CallsOf(std::string name, std::uint32_t (*get)(Record*), std::uint32_t (*set)(const Record*)) {
  return {std::move(name), [get](RecordRoom& words) { return get(reinterpret_cast<Record*>(words.data())); },
          [set](const RecordRoom& words) { return set(reinterpret_cast<const Record*>(words.data())); }};
}

// The comments of a record's words, in their order.
std::vector<std::string> CommentsOf(const std::string& record, std::string_view header) {
  const std::size_t begin = header.find("typedef struct " + record + " {");
  std::string_view body = header.substr(begin, header.find("} " + record + ";") - begin);
  std::vector<std::string> comments;
  for (std::size_t at = body.find("/**<"); at != std::string_view::npos; at = body.find("/**<")) {
    body.remove_prefix(at);
    comments.emplace_back(body.substr(0, body.find("*/")));
    body.remove_prefix(comments.back().size());
  }
  return comments;
}

struct ToldRange {
  int least = -32768;
  int most = 32767;
};

// "1 to 255" or "at most 255"; any word for a comment that names no range.
ToldRange RangeIn(const std::string& comment) {
  constexpr std::string_view kAtMost = "at most ";
  ToldRange range;
  const std::size_t most = comment.find(kAtMost);
  const std::size_t to = comment.find(" to ");
  if (most != std::string::npos) {
    range.most = std::atoi(comment.c_str() + most + kAtMost.size());
  } else if (to != std::string::npos && std::isdigit(static_cast<unsigned char>(comment[to + 4])) != 0) {
    range.least = std::atoi(comment.c_str() + comment.rfind(' ', to - 1));
    range.most = std::atoi(comment.c_str() + to + 4);
  }
  return range;
}

class HeaderRanges : public Bench {
 protected:
  static void ExpectRange(const RecordCalls& calls, std::size_t word, ToldRange range) {
    const auto takes = [&](int value) {
      RecordRoom words{};
      EXPECT_EQ(calls.get(words), 1U);
      const std::uint16_t before = words.at(word);
      words.at(word) = static_cast<std::uint16_t>(value);
      const bool taken = calls.set(words) == 1;
      words.at(word) = before;
      EXPECT_EQ(calls.set(words), 1U);
      return taken;
    };
    EXPECT_TRUE(takes(range.least));
    EXPECT_TRUE(takes(range.most));
    if (range.least > -32768) {
      EXPECT_FALSE(takes(range.least - 1));
    }
    if (range.most < 32767) {
      EXPECT_FALSE(takes(range.most + 1));
    }
  }

  static void ExpectRanges(const RecordCalls& calls, std::string_view header, std::size_t wordCount) {
    const std::vector<std::string> comments = CommentsOf(calls.name, header);
    ASSERT_EQ(comments.size(), wordCount) << calls.name;
    for (std::size_t word = 0; word < wordCount; ++word) {
      SCOPED_TRACE(calls.name + " " + comments[word]);
      ExpectRange(calls, word, RangeIn(comments[word]));
    }
  }
};

TEST_F(HeaderRanges, AreThoseOfACardReader) {
  Connected(sim::Reader::Plain());
  for (const RecordCalls& calls :
       {CallsOf("tsCfgFlags", GetFlags, SetFlags), CallsOf("tsCfgFlags2", GetFlags2, SetFlags2),
        CallsOf("tsCfgFlags3", GetFlags3, SetFlags3), CallsOf("tsIDBitCnts", GetIDBitCnts, SetIDBitCnts),
        CallsOf("tsIDDispParms", GetIDDispParms, SetIDDispParms),
        CallsOf("tsIDDispParms2", GetIDDispParms2, SetIDDispParms2),
        CallsOf("tsIDDispParms3", GetIDDispParms3, SetIDDispParms3),
        CallsOf("tsTimeParms", GetTimeParms, SetTimeParms), CallsOf("tsLEDCtrl", GetLEDCtrl, SetLEDCtrl),
        CallsOf("tsBprRlyCtrl", GetBprRlyCtrl, SetBprRlyCtrl)}) {
    ExpectRanges(calls, kTypesHeader, 8);
  }
  ForgetTraffic();
}

TEST_F(HeaderRanges, AreThoseOfASonarSensor) {
  Plug(std::make_shared<sim::Sonar>());
  SetDevTypeSrch(0);
  SetConnectProduct(4);
  ASSERT_EQ(USBConnect(nullptr), 1U);
  ExpectRanges(CallsOf("tsSonarParms", GetSonarParms, SetSonarParms), kSonarHeader, 8);
  ExpectRanges(CallsOf("tsWalkAwayParms", GetWalkAwayParms, SetWalkAwayParms), kSonarHeader, 16);
  ExpectRanges(CallsOf("tsWalkUpParms", GetWalkUpParms, SetWalkUpParms), kSonarHeader, 16);
  ExpectRanges(CallsOf("tsIdleParms", GetIdleParms, SetIdleParms), kSonarHeader, 8);
  ForgetTraffic();
}

TEST_F(HeaderRanges, ParityCountsReachFartherWithBit7OfTheFeatures) {
  Connected(sim::Reader::Plain());
  tsTimeParms times{};
  GetTimeParms(&times);
  times.ExFeatures01 = 0x80;
  SetTimeParms(&times);
  const RecordCalls calls = CallsOf("tsIDBitCnts", GetIDBitCnts, SetIDBitCnts);
  const std::vector<std::string> comments = CommentsOf(calls.name, kTypesHeader);
  for (const std::size_t word : {0U, 1U}) {
    EXPECT_NE(comments.at(word).find("(142"), std::string::npos);
    ExpectRange(calls, word, {.most = 142});
  }
}

}  // namespace
}  // namespace tavlyn::test
