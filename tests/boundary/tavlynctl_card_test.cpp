// tavlynctl card on simulated readers and without any.
#include <fstream>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class TavlynctlCard : public SimulatedRun {};

// The facility 12 and card 34567 with both parity bits, and as a reader that strips them sends it.
const std::string kWhole = "--card 0F0E1902:26 ";
const std::string kStripped = "--card 07870C:24 ";

TEST_F(TavlynctlCard, AsTheReaderSplitsIt) {
  const Ended card = Simulated(kStripped, "card");
  EXPECT_EQ(card.status, 0) << card.err;
  EXPECT_EQ(card.out,
            "card 24 bits 0C8707\n"
            "                           1        10        20\n"
            "  bits                     ?000011001000011100000111?\n"
            "  as the reader splits it  PFFFFFFFFCCCCCCCCCCCCCCCCP\n"
            "  26-bit standard          PFFFFFFFFCCCCCCCCCCCCCCCCP\n"
            "  as sent: hexadecimal 0C8707, decimal 820999\n"
            "  bytes reversed: hexadecimal 07870C, decimal 493324\n"
            "  as the reader splits it: facility 12, card 34567\n"
            "  26 bits, parity stripped: facility 12, card 34567 (26-bit standard)\n"
            "  the reader strips 1 leading bit and 1 trailing bit; set iLeadParityBitCnt and "
            "iTrailParityBitCnt to 0 "
            "to see parity\n");
}

TEST_F(TavlynctlCard, WithParityOnceTheReaderStripsNothing) {
  const Ended card = Simulated(
      kWhole, "config set iLeadParityBitCnt=0 iTrailParityBitCnt=0 bStripFac=0 >/dev/null", "card --json");
  const Json document = ParsedText(card);
  EXPECT_EQ(document["device"], 0);
  EXPECT_EQ(document["configuration"], 0);
  EXPECT_EQ(document["sent"], "10000110010000111000001111");
  EXPECT_EQ(document["stripped"], Json({{"leading", 0}, {"trailing", 0}}));
  EXPECT_EQ(document["reader"]["fields"], Json({{"card", 35196431}}));
  EXPECT_EQ(document["notes"], Json::array());
  const Json standard{{"name", "26-bit standard"},
                      {"parity", "good"},
                      {"bad_bits", Json::array()},
                      {"letters", "PFFFFFFFFCCCCCCCCCCCCCCCCP"},
                      {"fields", {{"facility", 12}, {"card", 34567}}}};
  EXPECT_EQ(document["layouts"], Json::array({standard}));
}

TEST_F(TavlynctlCard, TheConfigurationThatItIsReadWith) {
  const std::string plus = "--device plus:2 " + kWhole;
  const Json document = ParsedText(Simulated(
      plus, "config set --config 1 iLeadParityBitCnt=3 bRevBytes=1 >/dev/null", "card --config 1 --json"));
  EXPECT_EQ(document["configuration"], 1);
  EXPECT_EQ(document["stripped"]["leading"], 3);
  EXPECT_EQ(document["notes"][0], "the reader reverses the order of the bytes (bRevBytes)");
  EXPECT_EQ(Simulated(plus, "card --config 2").status, kUsage);
}

TEST_F(TavlynctlCard, AsAWatchTellsIt) {
  const Ended text = Simulated(kStripped + "--on 900", "watch --decode --count 2");
  EXPECT_TRUE(text.out.starts_with("card 24 bits 0C8707\n")) << text.out;
  EXPECT_TRUE(Holds(text.out, "  as the reader splits it: facility 12, card 34567\n")) << text.out;
  EXPECT_TRUE(text.out.ends_with("to see parity\ngone 24 bits 0C8707\n")) << text.out;
  const Ended json = Simulated(kStripped, "watch --decode --count 1 --json");
  EXPECT_EQ(Json::parse(json.out)["reader"]["fields"]["card"], 34567);
}

TEST_F(TavlynctlCard, OtherLinksAndProducts) {
  EXPECT_TRUE(
      Simulated("--serial COM3 " + kStripped, "--com 3 card").out.starts_with("card 24 bits 0C8707\n"));
  const Ended inText = Simulated("--ascii COM3 " + kStripped, "--com 3 --ascii card");
  EXPECT_TRUE(Holds(inText.out, "  as the reader splits it: facility 12, card 34567\n"))
      << inText.out << inText.err;
  EXPECT_EQ(Simulated("--device sonar", "card").status, kUsage);
  EXPECT_EQ(Simulated("--device magstripe", "card").status, kUsage);
  EXPECT_EQ(Simulated("", "card --timeout 0").status, kNoCard);
}

TEST_F(TavlynctlCard, WithoutAReader) {
  const Ended card = RunLine(kCtl + " card 26:2190E0F --find 34567");
  EXPECT_EQ(card.status, 0) << card.err;
  EXPECT_TRUE(card.out.starts_with("card 26 bits 02190E0F\n")) << card.out;
  EXPECT_TRUE(
      card.out.ends_with("  26 bits, parity good: facility 12, card 34567 (26-bit standard)\n"
                         "  34567 is the card of 26-bit standard\n"
                         "  34567 stands in bits 10-25 (with the zeros before it 8-25), as sent\n"))
      << card.out;
  const Json stripped = ParsedText(RunLine(kCtl + " card 0C8707 --leading 1 --trailing 1 --json"));
  EXPECT_EQ(stripped["bits"], 24);
  EXPECT_EQ(stripped["layouts"][0]["parity"], "stripped");
  EXPECT_FALSE(stripped.contains("device"));
}

TEST_F(TavlynctlCard, ANumberThatIsNotThere) {
  const Ended text = RunLine(kCtl + " card 26:2190E0F --find 99999");
  EXPECT_EQ(text.status, kNoCard);
  EXPECT_EQ(text.err, "tavlynctl: 99999 does not stand in the card\n");
  EXPECT_TRUE(text.out.starts_with("card 26 bits 02190E0F\n")) << text.out;
  const Ended json = RunLine(kCtl + " card 26:2190E0F --find 99999 --json");
  EXPECT_EQ(Json::parse(json.out)["found"], Json::array());
  EXPECT_EQ(Json::parse(json.out)["error"]["code"], kNoCard);
}

TEST_F(TavlynctlCard, WordsThatAreNoCard) {
  const std::string most(64, 'F');
  for (const std::string& words :
       {std::string("xyz"), std::string("26:"), std::string(":12"), std::string("0:0"), std::string("2:4"),
        std::string("256:0"), "256:" + most, most, "255:0" + most + "0", std::string("26:12:34"),
        std::string("-1:0"), std::string("--leading 1"), std::string("26:0 --leading 143"),
        std::string("26:0 --find 0")}) {
    EXPECT_EQ(RunLine(kCtl + " card " + words).status, kUsage) << words;
  }
  EXPECT_EQ(RunLine(kCtl + " card 255:7" + most.substr(1)).status, 0);
}

TEST_F(TavlynctlCard, LayoutsOfOnesOwn) {
  const std::string folder = folder_.string();
  std::ofstream(folder_ / "own.txt") << "door: 4 bits, card 2-4, odd 1 over 2-4\n";
  EXPECT_TRUE(Holds(RunLine(kCtl + " card 4:A --layouts " + folder + "/own.txt").out,
                    "  4 bits, parity bad at bit 1: card 2 (door)\n"));
  fs::create_directories(folder_ / "tavlynctl");
  std::ofstream(folder_ / "tavlynctl/wiegand-layouts.txt") << "gate: 4 bits, card 1-4\n";
  const std::string own = "XDG_CONFIG_HOME=" + folder + " " + kCtl + " card 4:A";
  EXPECT_TRUE(Holds(RunLine(own).out, "  4 bits, no parity: card 10 (gate)\n"));
  EXPECT_FALSE(Holds(RunLine(own + " --layouts " + folder + "/own.txt").out, "gate"));
  fs::create_directories(folder_ / ".config");
  fs::rename(folder_ / "tavlynctl", folder_ / ".config/tavlynctl");
  EXPECT_TRUE(
      Holds(RunLine("unset XDG_CONFIG_HOME; HOME=" + folder + " " + kCtl + " card 4:A").out, "(gate)"));

  std::ofstream(folder_ / "bad.txt") << "\nwrong\n";
  const Ended bad = RunLine(kCtl + " card 4:A --layouts " + folder + "/bad.txt");
  EXPECT_EQ(bad.status, 6);
  EXPECT_EQ(bad.err,
            "tavlynctl: " + folder + "/bad.txt, line 2: it does not begin with a name and a colon\n");
  EXPECT_EQ(RunLine(kCtl + " card 4:A --layouts " + folder + "/none.txt").status, 6);
  EXPECT_EQ(RunLine(kCtl + " card 4:A --layouts /dev/zero").status, 6);
}

}  // namespace
}  // namespace tavlyn::boundary
