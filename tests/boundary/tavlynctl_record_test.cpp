// Recordings of devices, and their replay.
#include <algorithm>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "tests/boundary/simulated_run.h"
#include "tools/reference.h"

namespace tavlyn::boundary {
namespace {

const std::string kCard = "--card 01020303:26";
const std::string kCardAsRead = "03030201";

class Recording : public SimulatedRun {
 protected:
  static std::string OnLoopback(std::string text) {
    const std::string network = "10.0.0.";
    for (std::size_t at = 0; (at = text.find(network, at)) != std::string::npos;) {
      text.replace(at, network.size(), "127.5.9.");
    }
    return text;
  }

  // Without moments, which no replay repeats.
  static std::string Untimed(const std::string& text) {
    static const std::regex moment(R"(\d{4}-?\d\d-?\d\dT\d\d:?\d\d:?\d\d\.\d{3}Z)");
    return std::regex_replace(text, moment, "NOW");
  }

  [[nodiscard]] std::string File() const { return (folder_ / "kept.rec").string(); }
  [[nodiscard]] std::string Kept() const { return TextOf(File()); }

  // Runs a script with these devices in a folder of that name, where it finds nothing of an earlier run.
  [[nodiscard]] Ended RunIn(const std::string& name, const std::string& devices,
                            const std::string& script) const {
    const fs::path place = folder_ / name;
    fs::remove_all(place);
    fs::create_directory(place);
    std::ofstream(place / "script") << "PATH=" << fs::path(TAVLYNCTL).parent_path().string()
                                    << ":$PATH\nexport XDG_STATE_HOME=$PWD/state\n"
                                    << script;
    const Ended ended = RunLine("cd " + place.string() + " && " + kSim + " run --no-interactive " + devices +
                                " -- sh script");
    return {ended.status, Untimed(TextOf(place / "out")), Untimed(TextOf(place / "err"))};
  }

  // Records what a command does with its devices.
  [[nodiscard]] Ended Record(const std::string& devices, const std::string& words,
                             const std::string& options = "") const {
    return RunLine(kSim + " run --no-interactive " + devices + " -- " + kCtl + " record " + File() + " " +
                   options + " -- " + kCtl + " " + words);
  }

  [[nodiscard]] Ended Replay(const std::string& words, const std::string& manner = "") const {
    return RunLine(kCtl + " --device replay:" + File() + manner + " " + words);
  }

  // What is said of a file with these lines.
  [[nodiscard]] std::string Problem(const std::string& text) const {
    std::ofstream(File()) << text;
    const Ended ended = Replay("list");
    EXPECT_EQ(ended.status, 125);
    const std::string start = "tavlynsim: " + File() + ":";
    EXPECT_TRUE(ended.err.starts_with(start)) << ended.err;
    return ended.err.substr(std::min(start.size(), ended.err.size()));
  }
};

TEST_F(Recording, OfEveryExampleHasItsResultsInReplay) {
  int number = 0;
  for (const Example& one : ctl::Examples()) {
    if (std::string_view(one.command).starts_with("fleet "))
      continue;  // they talk to a broker, not to a device
    const std::string script = "(" + (*one.before == '\0' ? ":" : OnLoopback(one.before)) +
                               ") >before 2>&1\n" + OnLoopback(one.line) + " >out 2>err\n";
    const std::string place = std::to_string(++number);
    const std::string file = (folder_ / (place + ".rec")).string();
    const Ended recorded =
        RunIn(place, OnLoopback(one.devices) + " --record " + file + " --with-ids --with-keys", script);
    const Ended replayed = RunIn(place, "--device replay:" + file, script);
    EXPECT_EQ(recorded.status, 0) << one.line << recorded.err;
    EXPECT_EQ(replayed.status, recorded.status) << one.line << replayed.err;
    EXPECT_EQ(replayed.out, recorded.out) << one.line;
    EXPECT_EQ(replayed.err, recorded.err) << one.line;
  }
}

TEST_F(Recording, OfTheDevicesOfTheMachine) {
  const std::string devices = "--device plus:3 --device magstripe --device sonar " + kCard;
  for (const std::string words :
       {"list", "info --json", "config show --config 1", "read", "watch --count 2"}) {
    const Ended recorded = Record(devices, words, "--with-ids");
    EXPECT_EQ(recorded.status, 0) << words << recorded.err;
    for (const char* manner : {"", ",strict"}) {
      const Ended replayed = Replay(words, manner);
      EXPECT_EQ(replayed.out, recorded.out) << words << manner;
      EXPECT_EQ(replayed.err, recorded.err) << words << manner;
      EXPECT_EQ(replayed.status, 0) << words << manner;
    }
  }
}

TEST_F(Recording, EndsAsTheProgramDid) {
  const std::string record = kCtl + " record " + File() + " -- sh -c \"exit 7\"";
  EXPECT_EQ(RunLine(kSim + " run --no-interactive -- " + record).status, 7);
}

TEST_F(Recording, OfOneCommandServesOthers) {
  ASSERT_EQ(Record("--device plus:3", "config show --config 2").status, 0);
  const std::string whole = Simulated("--device plus:3", "config get iIDHoldTO").out;
  EXPECT_EQ(Replay("config get iIDHoldTO").out, whole);
}

TEST_F(Recording, AnswersARequestThatComesNoMoreAsTheLastTime) {
  const Ended once = Record("--device plus:2", "list");
  const std::string twice = kSim + " run --no-interactive --device replay:" + File() + " -- sh -c '" + kCtl +
                            " list; " + kCtl + " list'";
  EXPECT_EQ(RunLine(twice).out, once.out + once.out);
}

TEST_F(Recording, IsItsOwnersAlone) {
  const fs::path other = folder_ / "other";
  std::ofstream(other) << "as it was";
  fs::create_symlink(other, File());
  ASSERT_EQ(Record("", "list").status, 0);
  EXPECT_EQ(TextOf(other), "as it was");
  EXPECT_EQ(fs::symlink_status(File()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Recording, HasOtherIdsInPlaceOfThoseOfCards) {
  const Ended recorded = Record(kCard + " " + kCard, "watch --count 4");
  ASSERT_TRUE(Holds(recorded.out, kCardAsRead));
  EXPECT_FALSE(Holds(Kept(), "01 02 03 03"));
  const std::string replayed = Replay("watch --count 4").out;
  EXPECT_FALSE(Holds(replayed, kCardAsRead));
  const std::string standIn = replayed.substr(replayed.find("bits ") + 5, kCardAsRead.size());
  EXPECT_EQ(replayed, "card 26 bits " + standIn + "\ngone 26 bits " + standIn + "\ncard 26 bits " + standIn +
                          "\ngone 26 bits " + standIn + "\n");
  ASSERT_EQ(Record(kCard, "read", "--with-ids").status, 0);
  EXPECT_TRUE(Holds(Kept(), "01 02 03 03"));
}

TEST_F(Recording, HasOtherDigitsInPlaceOfThoseOfSwipes) {
  const std::string devices = "--device magstripe --do 'swipe %B12^DOE/JOHN^?;77=1?'";
  const std::string own = Record(devices, "track 2").out;
  const std::string replayed = Replay("track 2").out;
  EXPECT_EQ(replayed.size(), own.size());
  EXPECT_NE(replayed, own);
  EXPECT_EQ(Record(devices, "track 2", "--with-ids").out, own);
  EXPECT_EQ(Replay("track 2").out, own);
}

TEST_F(Recording, HasNoKeys) {
  const std::string write = "secure write 20070509 C1C2C3C4C5";
  for (const std::string& words :
       {write, std::string("raw 77 C1 C2 C3 C4"), std::string("raw 85 C1 C2 C3 C4")}) {
    ASSERT_EQ(Record("", words).status, 0) << words;
    EXPECT_EQ(Holds(Kept(), "C1 C2 C3 C4"), words.starts_with("raw 85")) << words;
    ASSERT_EQ(Record("", words, "--with-keys").status, 0) << words;
    EXPECT_TRUE(Holds(Kept(), "C1 C2 C3 C4")) << words;
  }
}

TEST_F(Recording, TellsWhatItCannotAnswer) {
  ASSERT_EQ(Record("", "list").status, 0);
  const Ended beep = Replay("beep 1");
  EXPECT_NE(beep.status, 0);
  EXPECT_TRUE(Holds(beep.err, "hid1 > 00 8C 03 01 00 00 00 00 00: the recording has no such request"))
      << beep.err;
  const Ended strict = Replay("raw 8A 01", ",strict");
  EXPECT_TRUE(Holds(strict.err, "of the recording comes next")) << strict.err;
}

TEST_F(Recording, IsGoodUpToItsLastWholeLine) {
  const Ended recorded = Record("", "list");
  std::ofstream(File(), std::ios::app) << "9.9 hid1 > 00 8";
  EXPECT_EQ(Replay("list").out, recorded.out);
}

TEST_F(Recording, IsCheckedLineByLine) {
  const std::string start = "tavlyn-recording 1\n";
  const std::string device = start + "0.0 hid1 is 7A31:3BFA report=0 bytes=8\n";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", "1: the file is empty\n"},
      {"tavlyn-recording 2\n", "1: this is no recording of version 1, which begins \"tavlyn-recording 1\"\n"},
      {start + "0.0 hid1\n", "2: a line has a time, a link and what happened there\n"},
      {start + "# a word\n\nsoon hid1 > 00\n", "4: soon is not a time in seconds\n"},
      {start + "0.0 hid1 > 00\n", "2: hid1: no line before says what it is\n"},
      {start + "0.0 hid0 is 7A31:3BFA\n", "2: hid0: devices are numbered from 1\n"},
      {start + "0.0 hid1 is 7A31\n", "2: hid1: that is no identity\n"},
      {start + "0.0 hid1 is 7A31:3BFA bytes=8000\n", "2: hid1: that is no identity\n"},
      {start + "0.0 hid1 is 7A31:3BFA serial=%2\n", "2: hid1: that is no identity\n"},
      {start + "0.0 com999 is reader\n", "2: com999 is no link\n"},
      {start + "0.0 com3 is sonar\n", "2: com3 is a reader or a magstripe\n"},
      {device + "0.0 hid1 is 7A31:3BFA\n", "3: hid1 has been there before\n"},
      {device + "0.0 hid1 ? 00\n", "3: ? is none of is, <, >, !, went, came\n"},
      {device + "0.0 hid1 > 00 8\n", "3: 8 is not a byte of two hexadecimal digits\n"},
      {device + "0.0 hid1 > refused 00\n", "3: refused is not a byte of two hexadecimal digits\n"},
  };
  for (const auto& [text, problem] : cases) EXPECT_EQ(Problem(text), problem) << text;
}

TEST_F(Recording, CommandLinesThatAreRefused) {
  EXPECT_EQ(RunLine(kCtl + " --com 3 record " + File() + " -- true").status, kUsage);
  EXPECT_EQ(RunLine(kCtl + " record " + File()).status, kUsage);
  EXPECT_EQ(RunLine(kSim + " run --with-keys -- true").status, 1);
  EXPECT_EQ(RunLine(kSim + " run --record " + folder_.string() + " -- true").status, 125);
  EXPECT_EQ(RunLine(kSim + " run --serial COM3 --with-ids --record " + File() + " -- true").status, 125);
  EXPECT_EQ(RunLine(kSim + " run --device attached --device reader -- true").status, 125);
  EXPECT_EQ(RunLine(kCtl + " --device replay:" + folder_.string() + " list").status, 125);
  EXPECT_EQ(RunLine("mkfifo " + File() + " && " + kCtl + " --device replay:" + File() + " list").status, 125);
}

}  // namespace
}  // namespace tavlyn::boundary
