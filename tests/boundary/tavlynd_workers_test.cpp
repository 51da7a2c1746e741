// What the agent's workers tell of devices, and what becomes of workers.
#include <algorithm>
#include <string>
#include <vector>

#include "tests/boundary/workers.h"

namespace tavlyn::boundary {
namespace {

using Lines = std::vector<std::string>;

class TavlyndWorkers : public Workers {
 protected:
  // Nothing but what the parent itself says.
  static bool AreNotes(const std::vector<Said>& all) {
    return std::ranges::all_of(all, [](const Said& one) {
      return one.whole.value("event", "") == "note" && one.whole.value("time", "") != "";
    });
  }
};

TEST_F(TavlyndWorkers, CardsComeAndGo) {
  const auto heard =
      Owned("--device plus:2,serial=A1,luid=7",
            "owned usb:reader; told arrived; typed 'card 01020303:26'; told '\"card\"'; typed take; "
            "told gone; ended");
  EXPECT_EQ(Summaries(heard),
            Lines({"usb:reader arrived A1", "usb:reader card A1 03030201", "usb:reader gone A1 03030201"}));
  EXPECT_EQ(Only(heard, "card")["bits"], 26);
  const Json place = Only(heard, "arrived")["device"];
  EXPECT_EQ(place["path"], "/dev/hidraw-sim1");
  EXPECT_EQ(place["product"], "card reader");
  EXPECT_EQ(place["luid"], 7);
  EXPECT_EQ(place["configurations"], 2);
  EXPECT_FALSE(place["firmware"].get<std::string>().empty());
  EXPECT_FALSE(place["part"].get<std::string>().empty());
}

TEST_F(TavlyndWorkers, AReaderThatGoesTakesItsCardAndComesBack) {
  const auto heard =
      Owned("--device reader,serial=A1",
            "owned usb:reader; told arrived; typed 'card 0A:8'; told '\"card\"'; typed unplug; told "
            "lost; typed 'plug reader,serial=A1'; told arrived 2; ended");
  EXPECT_EQ(Summaries(heard),
            Lines({"usb:reader arrived A1", "usb:reader card A1 0A", "usb:reader gone A1 0A",
                   "usb:reader lost A1", "usb:reader arrived A1"}));
}

TEST_F(TavlyndWorkers, EachProductHasAWorker) {
  const auto heard =
      Owned("--device reader,serial=A1 --device magstripe --device sonar,serial=C3",
            "owned usb:reader usb:magstripe usb:sonar; told arrived 3; typed '#1 card 0A:8'; typed '#2 "
            "swipe %B12^DOE/JOHN^?'; told presence; told "
            "swipe; told '\"card\"'; ended");
  const Json swipe = Only(heard, "swipe");
  EXPECT_EQ(swipe["tracks"][0]["text"], "%B12^DOE/JOHN^?9");
  EXPECT_EQ(Only(heard, "card")["id"], "0A");
  const Json presence = Only(heard, "presence");
  EXPECT_EQ(presence["present"], true);
  EXPECT_EQ(presence["inches"], 30);
}

// Each search asks every reader for its whole configuration.
TEST_F(TavlyndWorkers, NobodySearchesForWhatIsOfAnotherProduct) {
  Owned("--device reader,serial=A1",
        "owned usb:reader usb:sonar; told arrived; typed '#1 clear'; typed 'plug sonar'; told arrived 2; "
        "echo pass 3 >&3; "
        "typed '#1 card 0A:8'; told '\"card\"'; echo pass 3 >&3; typed '#1 take'; told gone; typed '#1 "
        "traffic'; ended");
  std::istringstream traffic(simulatorTold_);
  int asked = 0;
  for (std::string line; std::getline(traffic, line);) {
    if (!line.starts_with("set 1 ")) continue;
    EXPECT_TRUE(line.starts_with("set 1 8F") || line.starts_with("set 1 8E"))
        << line << " is no question for a card";
    ++asked;
  }
  EXPECT_GT(asked, 0);
}

// The other one is stopped: exchanges of two programs with one reader disturb each other.
TEST_F(TavlyndWorkers, AReaderThatAnotherProgramHasIsWaitedFor) {
  const auto heard =
      Owned("--device reader,serial=A1 --device reader,serial=B2",
            "ctl() { exec " TAVLYNCTL
            " \"$@\"; }; ctl watch --device A1 >other 2>&1 & other=$!; until grep -q watching "
            "other; do LD_PRELOAD= sleep 0.02; done; kill -STOP $other; owned usb:reader; "
            "told arrived; told 'in use by tavlynctl watch'; typed '#1 clear'; echo pass 70 >&3; "
            "typed '#2 card 0A:8'; told '\"card\"'; typed '#1 traffic'; kill -9 $other; told "
            "'arrived.*A1'; ended");
  EXPECT_EQ(Summaries(heard)[0], "usb:reader arrived B2");
  EXPECT_FALSE(Holds(simulatorTold_, "set 1 ")) << simulatorTold_;
  EXPECT_EQ(All(heard, "note").size(), 1U) << ended_.out;
}

// One that is finishing a command is there for a while after its parent.
TEST_F(TavlyndWorkers, ALinkHasOneWorker) {
  const auto heard = Owned("--device reader,serial=A1",
                           "owned usb:reader; told arrived; first=$pid; exec 4>&3; rm in out err; owned "
                           "usb:reader; told 'waits for tavlynd (process '; echo pass 30 >&3; [ $(count "
                           "arrived) = 0 ] || exit 9; kill -9 $first; told arrived; one_worker; ended");
  EXPECT_EQ(Summaries(heard), Lines({"usb:reader arrived A1"}));
  EXPECT_EQ(All(heard, "note").size(), 1U) << ended_.out;
}

TEST_F(TavlyndWorkers, AReaderOnALineThatIsCut) {
  const auto heard = Owned("--device reader@com3,serial=A1",
                           "owned com3; told arrived; typed 'card 0A:8'; told '\"card\"'; typed "
                           "'cut 1'; told lost; typed heal; told arrived 2; ended");
  const Lines all = Summaries(heard);
  ASSERT_GE(all.size(), 5U);
  EXPECT_EQ(
      Lines(all.begin(), all.begin() + 5),
      Lines({"com3 arrived A1", "com3 card A1 0A", "com3 gone A1 0A", "com3 lost A1", "com3 arrived A1"}));
}

// Its back-off is waited for, then it is all told again.
TEST_F(TavlyndWorkers, AWorkerThatIsKilledIsMadeUpForAndStartedAgain) {
  const auto heard =
      Owned("--device reader,serial=A1",
            "owned usb:reader; told arrived; typed 'card 0A:8'; told '\"card\"'; kill -9 $(workers "
            "usb:reader); told 'signal Killed'; echo pass 1 >&3; told '\"card\"' 2; one_worker; ended");
  EXPECT_EQ(Summaries(heard),
            Lines({"usb:reader arrived A1", "usb:reader card A1 0A", "usb:reader gone A1 0A",
                   "usb:reader lost A1", "usb:reader arrived A1", "usb:reader card A1 0A"}));
}

// A worker that is stopped says nothing, like one whose device never answers.
TEST_F(TavlyndWorkers, AWorkerThatHangsIsReplacedWhileTheOtherGoesOn) {
  const auto heard =
      Owned("--device reader,serial=A1 --device magstripe",
            "owned usb:reader usb:magstripe; told arrived 2; kill -STOP $(workers usb:reader); typed '#2 "
            "swipe %B12^DOE/JOHN^?'; told swipe; echo pass 300 >&3; told 'says nothing'; echo pass 60 "
            ">&3; told '\"A1\".*product' 2; ended");
  EXPECT_TRUE(Holds(ended_.out, "the worker of usb:reader says nothing"));
  EXPECT_TRUE(Holds(ended_.out, "signal Killed"));
}

// Even one that cannot be told.
TEST_F(TavlyndWorkers, WorkersEndWithTheirParent) {
  const Ended ended = Run(
      "--device reader,serial=A1 --device magstripe",
      {std::string(kOwner) + "owned usb:reader usb:magstripe; told arrived 2; all=$(workers usb); kill -9 "
                             "$pid; wait $pid; for one in $all; do left $one; done; echo $all | wc -w"})[0];
  EXPECT_EQ(ended.out, "2\n") << ended.err;
}

TEST_F(TavlyndWorkers, WorkersHaveNoDescriptorOfTheirParent) {
  const Ended ended =
      Run("--device reader,serial=A1",
          {std::string(kOwner) + "owned usb:reader; told arrived; ls -l /proc/$(workers "
                                 "usb)/fd | grep -c 'null$\\|in$\\|out$'; exec 3>&-; wait $pid"})[0];
  EXPECT_EQ(ended.out, "0\n") << ended.err;
}

TEST_F(TavlyndWorkers, LinksChangeWhileOthersGoOn) {
  const auto heard =
      Owned("--device reader,serial=A1 --device magstripe",
            "owned usb:reader; told arrived; echo be usb:reader usb:magstripe >&3; told arrived 2; echo be "
            "usb:magstripe >&3; told lost; while workers usb:reader >pids; do LD_PRELOAD= sleep 0.02; "
            "done; typed '#2 swipe %B12^DOE/JOHN^?'; told swipe; ended");
  EXPECT_EQ(Summaries(heard)[0], "usb:reader arrived A1");
  EXPECT_EQ(Summaries(heard)[2], "usb:reader lost A1");
}

// What no worker says ends it; nothing of it comes through.
TEST_F(TavlyndWorkers, AHostileWorkerIsNotListenedTo) {
  for (const char* line :
       {"garbage", "[]", "{}", R"({"event":"card"})",
        R"({"event":"card","time":"","device":{"path":""},"bits":1,"id":""})",
        R"({"event":"alive","time":"","patience":-1})", R"({"event":"alive","time":"","patience":1e300})",
        R"({"event":"swipe","time":"","device":{"path":"a","serial":[]},"tracks":[]})",
        R"({"event":"note","time":"","text":{"a":{"a":{"a":{"a":{"a":{"a":{"a":{"a":{"a":1}}}}}}}}}})"}) {
    std::ofstream(folder_ / "line") << line << "\n";
    std::ofstream(folder_ / "hostile") << "#!/bin/sh\ncat line\nLD_PRELOAD= exec sleep 1000\n";
    fs::permissions(folder_ / "hostile", fs::perms::owner_all);
    const auto heard = Owned("", "program=./hostile; owned usb:reader; told 'signal Killed'; ended");
    EXPECT_TRUE(AreNotes(heard)) << line << ended_.out;
    fs::remove(folder_ / "in");
  }
}

TEST_F(TavlyndWorkers, ALineWithoutEndIsNotKept) {
  std::ofstream(folder_ / "hostile") << "#!/bin/sh\nexec cat /dev/zero\n";
  fs::permissions(folder_ / "hostile", fs::perms::owner_all);
  const auto heard = Owned("", "program=./hostile; owned usb:reader; told 'signal Killed'; ended");
  EXPECT_TRUE(AreNotes(heard)) << ended_.out.substr(0, 1000);
}

TEST_F(TavlyndWorkers, AProgramThatIsNotThereIsTriedAgain) {
  const auto heard =
      Owned("",
            "program=./none; owned usb:reader; told 'cannot be started'; echo pass 1 >&3; told "
            "'cannot be started' 2; ended");
  EXPECT_TRUE(heard.front().whole["text"].get<std::string>().ends_with("No such file or directory"));
}

}  // namespace
}  // namespace tavlyn::boundary
