// tavlynctl showing and changing the configuration of simulated readers.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class TavlynctlConfig : public SimulatedRun {};

TEST_F(TavlynctlConfig, ConfigShowsEveryConfiguration) {
  const Ended show = Simulated("--device plus:3", "config show --json");
  ASSERT_EQ(show.status, 0) << show.err;
  const Json document = Json::parse(show.out);
  EXPECT_EQ(document["command"], "config show");
  const Json& all = document["configurations"];
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[0]["card_type"], "EF04");
  EXPECT_EQ(all[0]["priority"], "high");
  EXPECT_EQ(all[2]["card_type"], "F104");
  EXPECT_EQ(all[2]["priority"], "low");
  for (const Json& one : all) {
    EXPECT_EQ(one["records"].size(), 10u);
    const Json counts{
        {"iLeadParityBitCnt", 1}, {"iTrailParityBitCnt", 1}, {"iIDBitCnt", 16}, {"iTotalBitCnt", 26}};
    EXPECT_EQ(one["records"]["IDBitCnts"], counts);
    EXPECT_EQ(one["records"]["TimeParms"]["iIDHoldTO"], 1000);
    EXPECT_EQ(one["records"]["CfgFlags3"].size(), 8u);
  }
}

TEST_F(TavlynctlConfig, ConfigShowsOneConfiguration) {
  const Ended one = Simulated("--device plus:3", "config show --json --config 1");
  ASSERT_EQ(one.status, 0) << one.err;
  const Json document = Json::parse(one.out);
  ASSERT_EQ(document["configurations"].size(), 1u);
  EXPECT_EQ(document["configurations"][0]["index"], 1);
  EXPECT_EQ(document["configurations"][0]["card_type"], "F004");

  const Ended none = Simulated("--device plus:3", "config show --config 3");
  EXPECT_EQ(none.status, 1);
  EXPECT_TRUE(Holds(none.err, "has configurations 0 to 2")) << none.err;

  const Ended plain = Simulated("", "config show");
  EXPECT_EQ(plain.status, 0);
  EXPECT_TRUE(Holds(plain.out, "      iIDHoldTO     1000 ms ")) << plain.out;
  EXPECT_FALSE(Holds(plain.out, "card type"));
}

TEST_F(TavlynctlConfig, SetIsWrittenAndReadBack) {
  const auto ended =
      Run("--device plus:3", {"ctl config set --config 1 bDspHex=1 TimeParms.iIDHoldTO=500 --json",
                              "ctl config get --config 1 bDspHex iIDHoldTO --json",
                              "ctl config get CfgFlags2.bDspHex iIDHoldTO --json"});
  const Json set = ParsedText(ended[0]);
  EXPECT_EQ(set["schema"], 1);
  EXPECT_EQ(set["command"], "config set");
  EXPECT_EQ(set["written"], true);
  EXPECT_EQ(set["verified"], true);
  const Json changes = Json::parse(R"([
    {"configuration": 1, "field": "CfgFlags2.bDspHex", "old": 0, "new": 1, "stored": 1, "result": "stored"},
    {"configuration": 1, "field": "TimeParms.iIDHoldTO", "old": 1000, "new": 500, "stored": 500,
     "result": "stored"}])");
  EXPECT_EQ(set["changes"], changes);
  const Json there{{"CfgFlags2.bDspHex", 1}, {"TimeParms.iIDHoldTO", 500}};
  EXPECT_EQ(ParsedText(ended[1])["fields"], there);
  const Json elsewhere{{"CfgFlags2.bDspHex", 0}, {"TimeParms.iIDHoldTO", 1000}};
  EXPECT_EQ(ParsedText(ended[2])["fields"], elsewhere);
}

TEST_F(TavlynctlConfig, ValueBetweenStepsIsRounded) {
  const auto ended = Run("", {"ctl config set iIDHoldTO=130 --json", "ctl config get iIDHoldTO --json"});
  const Json row = ParsedText(ended[0])["changes"][0];
  EXPECT_EQ(row["new"], 130);
  EXPECT_EQ(row["stored"], 100);
  EXPECT_EQ(row["result"], "rounded");
  EXPECT_EQ(ParsedText(ended[1])["fields"]["TimeParms.iIDHoldTO"], 100);
}

// The reader stores seven bits of the one, and the other only with extended fields.
TEST_F(TavlynctlConfig, ValueThatIsNotKept) {
  const auto ended = Run("", {"ctl config set iIDBitCnt=200 --json", "ctl config set iExOutputFormat=1"});
  EXPECT_EQ(ended[0].status, 4);
  EXPECT_TRUE(Holds(ended[0].err, "does not keep what was written of IDBitCnts.iIDBitCnt")) << ended[0].err;
  const Json document = Json::parse(ended[0].out);
  EXPECT_EQ(document["verified"], false);
  EXPECT_EQ(document["changes"][0]["stored"], 72);
  EXPECT_EQ(document["changes"][0]["result"], "different");
  EXPECT_EQ(document["error"]["code"], 4);
  EXPECT_EQ(ended[1].status, 4) << ended[1].out;
}

// It is sent in a block that it does not mark dirty.
TEST_F(TavlynctlConfig, NotBootDeviceArrives) {
  const auto ended = Run("", {"ctl config set bNotBootDev=1", "ctl config get bNotBootDev --json"});
  EXPECT_EQ(ended[0].status, 0) << ended[0].err;
  EXPECT_EQ(ParsedText(ended[1])["fields"]["CfgFlags3.bNotBootDev"], 1);
}

TEST_F(TavlynctlConfig, DryRunSendsNothing) {
  const std::string plus = "--device plus:2";
  const std::string looking = Traffic(plus, "config show");
  ASSERT_TRUE(Holds(looking, "set 1 80\n")) << looking;
  EXPECT_FALSE(Holds(looking, "set 1 90"));
  EXPECT_EQ(Traffic(plus, "config set bBeepID=0 iIDHoldTO=100 bNotBootDev=1 --dry-run"), looking);
  EXPECT_EQ(Traffic(plus, "cards set 1 EF04 high --dry-run"), looking);
  Run(plus, {Edited("s/bBeepID = 1/bBeepID = 0/;s/CardPriority: 1/CardPriority: 0/")});
  EXPECT_EQ(Traffic(plus, "config load file.hwg --dry-run"), looking);
  EXPECT_TRUE(Holds(Traffic(plus, "config set bBeepID=0"), "set 1 90 04\n"));
}

TEST_F(TavlynctlConfig, DryRunTellsWhatWouldChange) {
  const auto ended = Run("", {"ctl config set bBeepID=0 bDspHex=0 iIDHoldTO=130 --dry-run",
                              "ctl config set iIDBitCnt=256 --dry-run", "ctl config get bBeepID --json"});
  EXPECT_EQ(ended[0].status, 0) << ended[0].err;
  EXPECT_EQ(ended[0].out,
            "device   0\n"
            "written  no\n"
            "changes\n"
            "  configuration  field                old   new\n"
            "  0              CfgFlags2.bBeepID    1     0\n"
            "  0              TimeParms.iIDHoldTO  1000  130\n");
  EXPECT_EQ(ended[1].status, 1);
  EXPECT_EQ(ParsedText(ended[2])["fields"]["CfgFlags2.bBeepID"], 1);
}

TEST_F(TavlynctlConfig, RecordsAreToldFromFields) {
  const auto ended =
      Run("", {"ctl config get IDBitCnts", "ctl config get TimeParm", "ctl config set TimeParms=1"});
  EXPECT_EQ(
      ended[0].err,
      "tavlynctl: IDBitCnts is a record; its fields are iLeadParityBitCnt, iTrailParityBitCnt, iIDBitCnt, "
      "iTotalBitCnt\n");
  EXPECT_EQ(ended[1].err, "tavlynctl: there is no field TimeParm; did you mean TimeParms?\n");
  EXPECT_TRUE(Holds(ended[2].err, "TimeParms is a record")) << ended[2].err;
  for (const Ended& one : ended) EXPECT_EQ(one.status, 1);
}

TEST_F(TavlynctlConfig, WrongFieldsAndValues) {
  const auto ended = Run(
      "", {"ctl config set bBepID=1 --json", "ctl config get CfgFlag2.bDspHex", "ctl config get bVolatile",
           "ctl config set iTotalBitCnt=25", "ctl config set iTrailChrCnt=4", "ctl config set bDspHex=2",
           "ctl config set bDspHex=soon", "ctl config set bDspHex", "ctl config set LEDCtrl.bVolatile=1",
           "ctl config set --config 1 bDspHex=1", "ctl config get quite_another_word"});
  for (const Ended& one : ended) EXPECT_EQ(one.status, 1) << one.err;
  EXPECT_TRUE(Holds(ended[0].err, "there is no field bBepID; did you mean CfgFlags2.bBeepID?"));
  EXPECT_EQ(Json::parse(ended[0].out)["error"]["code"], 1);
  EXPECT_TRUE(Holds(ended[1].err, "did you mean CfgFlags2.bDspHex?")) << ended[1].err;
  EXPECT_TRUE(Holds(ended[2].err, "LEDCtrl.bVolatile and BprRlyCtrl.bVolatile")) << ended[2].err;
  EXPECT_TRUE(
      Holds(ended[3].err,
            "IDBitCnts.iTotalBitCnt takes 26 to 255, error word 0x201013: a value is out of its range"));
  EXPECT_TRUE(
      Holds(ended[4].err,
            "IDDispParms3.iTrailChrCnt takes 0 to 3, error word 0x201050: a value is out of its range"));
  EXPECT_TRUE(Holds(ended[5].err, "takes decimal (0) or hex (1)"));
  EXPECT_TRUE(Holds(ended[6].err, "takes decimal (0) or hex (1)"));
  EXPECT_TRUE(Holds(ended[9].err, "has only configuration 0")) << ended[9].err;
  EXPECT_FALSE(Holds(ended[10].err, "did you mean")) << ended[10].err;
}

TEST_F(TavlynctlConfig, ResetAndDefaults) {
  const auto ended =
      Run("--device plus:2",
          {"ctl config set bDspHex=1", "ctl config reset", "ctl config get bDspHex --json",
           "ctl config reset --yes", "ctl config get bDspHex --json", "ctl config set bDspHex=1",
           "ctl config defaults save --json", "ctl config set bDspHex=0", "ctl config defaults restore --yes",
           "ctl config get bDspHex --json", "ctl config defaults plus --yes", "ctl config get bDspHex --json",
           "ctl config defaults other"});
  EXPECT_EQ(ended[1].status, 1);
  const Json one{{"CfgFlags2.bDspHex", 1}};
  const Json none{{"CfgFlags2.bDspHex", 0}};
  EXPECT_EQ(ParsedText(ended[2])["fields"], one);
  EXPECT_EQ(ended[3].status, 0) << ended[3].err;
  EXPECT_EQ(ParsedText(ended[4])["fields"], none);
  EXPECT_EQ(ParsedText(ended[6])["done"], "save");
  EXPECT_EQ(ParsedText(ended[9])["fields"], one);
  EXPECT_EQ(ParsedText(ended[11])["fields"], none);
  EXPECT_EQ(ended[12].status, 1);
  EXPECT_EQ(Run("", {"ctl config defaults save"})[0].status, 1);
}

TEST_F(TavlynctlConfig, CardTypes) {
  const auto ended = Run("--device plus:3", {"ctl cards set 2 EF04 high --json", "ctl cards --json",
                                             "ctl cards set 3 EF04 low", "ctl cards set 1 1234 low",
                                             "ctl cards set 1 card low", "ctl cards set 1 EF04 middle"});
  const Json set = ParsedText(ended[0]);
  EXPECT_EQ(set["command"], "cards set");
  EXPECT_EQ(set["verified"], true);
  ASSERT_EQ(set["changes"].size(), 2u);
  EXPECT_EQ(set["changes"][0]["stored"], "EF04");
  EXPECT_EQ(set["changes"][1]["stored"], "high");
  const Json all = ParsedText(ended[1])["configurations"];
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[1], Json({{"index", 1}, {"card_type", "F004"}, {"priority", "low"}}));
  EXPECT_EQ(all[2], Json({{"index", 2}, {"card_type", "EF04"}, {"priority", "high"}}));
  for (std::size_t i = 2; i < ended.size(); ++i) EXPECT_EQ(ended[i].status, 1) << i;
  EXPECT_EQ(Run("", {"ctl cards"})[0].status, 1);
}

TEST_F(TavlynctlConfig, NoReader) {
  for (const char* words : {"config get bBeepID", "config set bBeepID=1", "config defaults save", "beep",
                            "led off", "relay off", "volume", "cards"}) {
    const Ended ended = Run("--do unplug", {std::string("ctl ") + words})[0];
    EXPECT_EQ(ended.status, 2) << words;
    EXPECT_EQ(ended.err, "tavlynctl: no reader is plugged in\n");
  }
  for (const char* words : {"config save file", "config reset --yes"}) {
    const Ended ended = Run("--do unplug", {std::string("ctl ") + words})[0];
    EXPECT_EQ(ended.status, 2) << words;
    EXPECT_EQ(ended.err, "tavlynctl: no device is plugged in\n");
  }
}

}  // namespace
}  // namespace tavlyn::boundary
