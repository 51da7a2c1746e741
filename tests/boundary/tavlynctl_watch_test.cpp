// tavlynctl watching devices that come and go.
#include <cstdio>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "tests/boundary/endurance.h"
#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

// Lines of a script that runs a watch beside the test's own steps, which wait for what it has told.
constexpr const char* kBeside = R"(
told() { until grep -q -- "$1" out err; do LD_PRELOAD= sleep 0.01; done; }
watched() { : >out; : >err; )" TAVLYNCTL R"( watch "$@" >out 2>err & pid=$!; }
ended() { wait $pid; status=$?; cat out; cat err >&2; exit $status; }
)";

class TavlynctlWatch : public SimulatedRun {
 protected:
  Ended Beside(const std::string& devices, const std::string& steps) {
    return Run(devices, {std::string("tavlynctl() { " TAVLYNCTL " \"$@\"; }\n") + kBeside + steps})[0];
  }

  // "EVENT NAME", or "EVENT NAME ID".
  static std::string Summary(const Json& event) {
    return event["event"].get<std::string>() + " " + event["serial_number"].get<std::string>() +
           (event.contains("id") ? " " + event["id"].get<std::string>() : "");
  }
  static std::vector<std::string> Summaries(const std::string& out) {
    std::vector<std::string> all;
    for (const Json& line : JsonLines(out)) all.push_back(Summary(line));
    return all;
  }
};

TEST_F(TavlynctlWatch, ItWaitsForAReader) {
  const Ended watch = Beside("--do unplug",
                             "watched --count 1; told waiting; typed 'plug reader,serial=A1'; told arrived; "
                             "typed 'card 0102:13'; ended");
  EXPECT_EQ(watch.status, 0) << watch.err;
  EXPECT_EQ(watch.out, "arrived A1\ncard 13 bits 0201\n");
  EXPECT_EQ(watch.err, "tavlynctl: no reader is plugged in; waiting\n");
}

TEST_F(TavlynctlWatch, WithoutAReaderTheTimeEndsIt) {
  const Ended none = Beside("--do unplug", "watched --timeout 5; ended");
  EXPECT_EQ(none.status, 2) << none.err;
  EXPECT_EQ(Beside("", "watched --timeout 5; ended").status, kNoCard);
}

TEST_F(TavlynctlWatch, AReaderIsLostAndComesBack) {
  const Ended watch =
      Beside("--device reader,serial=A1",
             "watched --json --count 3; typed 'card 0A:8'; told card; typed unplug; told lost; "
             "typed 'plug reader,serial=A1'; told arrived; typed 'card 0B:8'; ended");
  EXPECT_EQ(watch.status, 0) << watch.err;
  EXPECT_EQ(Summaries(watch.out),
            std::vector<std::string>({"card A1 0A", "gone A1 0A", "lost A1", "arrived A1", "card A1 0B"}));
}

TEST_F(TavlynctlWatch, EventsAreStamped) {
  const Ended watch = Beside("--device reader,serial=A1",
                             "watched --json --count 2; typed 'card 0A:8'; told card; typed take; ended");
  const std::vector<Json> lines = JsonLines(watch.out);
  ASSERT_EQ(lines.size(), 2u) << watch.err;
  const std::regex stamp("20\\d\\d-[01]\\d-[0-3]\\dT[0-2]\\d:[0-5]\\d:[0-6]\\d\\.\\d{3}Z");
  for (std::size_t at = 0; at < lines.size(); ++at) {
    EXPECT_EQ(lines[at]["sequence"], at + 1);
    EXPECT_TRUE(std::regex_match(lines[at]["time"].get<std::string>(), stamp)) << lines[at];
    EXPECT_EQ(lines[at]["device"], 0);
    EXPECT_EQ(lines[at]["path"], "/dev/hidraw-sim1");
    EXPECT_EQ(lines[at]["serial_number"], "A1");
  }
}

// A third arrives while two are watched, which goes on with the cards on them.
TEST_F(TavlynctlWatch, AllReadersAreWatched) {
  const Ended watch =
      Beside("--device reader,serial=A1 --device plus:2,serial=B2",
             "watched --all --json --count 5; typed '#1 card 01:8'; told A1; typed '#2 card 02:8'; told B2; "
             "typed 'plug reader,serial=C3'; told C3; typed '#3 card 03:8'; told '\"03\"'; typed '#1 take'; "
             "told gone; typed '#2 unplug'; told lost; ended");
  EXPECT_EQ(watch.status, 0) << watch.err;
  EXPECT_EQ(Summaries(watch.out),
            std::vector<std::string>({"card A1 01", "card B2 02", "arrived C3", "card C3 03", "gone A1 01",
                                      "gone B2 02", "lost B2"}));
}

// Of a card of up to 64 bits the first 8 bytes are enough.
TEST_F(TavlynctlWatch, AllOfAnIdIsAskedForWhereLongOnesAreSeen) {
  const std::string whole = "1A191817161514131211100F0E0D0C0B0A090807060504030201";
  const Ended watch =
      Beside("--device reader",
             "watched --json --count 5; typed 'card 0102030405060708:64'; told '\"bits\":64'; "
             "typed '#1 traffic'; typed 'card 0102030405060708090A0B0C0D0E0F101112131415161718191A:208'; "
             "told '\"bits\":208'; typed take; told '\"gone\".*\"bits\":208'; "
             "typed 'card 0A:8'; ended");
  const std::vector<Json> lines = JsonLines(watch.out);
  ASSERT_EQ(lines.size(), 5U) << watch.err;
  EXPECT_EQ(lines[0]["id"], "0807060504030201");
  EXPECT_EQ(lines[2]["id"], whole);
  EXPECT_EQ(lines[3]["id"], whole) << "it is gone";
  EXPECT_EQ(lines[4]["id"], "0A");
  EXPECT_TRUE(Holds(simulatorTold_, "set 1 8F")) << simulatorTold_;
  EXPECT_FALSE(Holds(simulatorTold_, "set 1 8D")) << simulatorTold_;
}

// A connect takes two seconds with four plain readers, each of which is asked six times whether it is
// another. The watch looks every second; when the second reader comes is between two looks in most of these.
TEST_F(TavlynctlWatch, ReadersThatComeAtOnceShareAConnect) {
  const std::array<std::pair<const char*, const char*>, 4> arrivals = {
      {{"20.00", "20.90"}, {"20.25", "21.15"}, {"20.50", "21.40"}, {"20.75", "21.65"}}};
  for (const auto& [first, second] : arrivals) {
    std::ofstream(folder_ / "a") << "tavlyn-scenario 1\n"
                                    "device a reader\ndevice b reader\ndevice c reader\ndevice d reader\n"
                                    "device e reader,serial=E1\ndevice f reader,serial=F1\n"
                                    "at 0 e unplug\nat 0 f unplug\n"
                                 << "at " << first << " e replug\nat " << second
                                 << " f replug\nexpect end a command 8901 12\nend 40\n";
    const Ended watch = RunLine(kSim + " run --scenario " + (folder_ / "a").string() + " -- " + kCtl +
                                " watch --all --format '{event} {serial}'");
    EXPECT_EQ(watch.status, 0) << watch.err;
    EXPECT_EQ(watch.out, "arrived E1\narrived F1\n") << first;
  }
}

TEST_F(TavlynctlWatch, LinesOfAllNameTheReader) {
  const Ended watch = Beside("--device reader,serial=A1 --device reader,serial=B2",
                             "watched --all --count 1; typed '#2 card 02:8'; ended");
  EXPECT_EQ(watch.out, "card 8 bits 02 on B2\n") << watch.err;
}

// Each of four readers is asked as often as one alone.
TEST_F(TavlynctlWatch, ManyReadersTakeTheTimeOfOne) {
  const auto asked = [&](const std::string& devices, const std::string& words) {
    Beside(devices, "typed '#1 heal'; watched --timeout 60 " + words + "; wait; typed '#1 exchanges'");
    return std::stoi(simulatorTold_.substr(simulatorTold_.rfind(' ')));
  };
  const int alone = asked("--device reader", "");
  const int among = asked("--device reader --device reader --device reader --device reader", "--all");
  EXPECT_GT(alone, 1000);
  EXPECT_GT(among, alone * 3 / 4);
}

TEST_F(TavlynctlWatch, TheChosenReaderComesBackWhereAnotherWas) {
  const Ended watch =
      Beside("--device reader,serial=A1 --device reader,serial=B2",
             "watched --count 3 --json; typed '#1 card 01:8'; told card; typed '#1 unplug'; told lost; kill "
             "-STOP $pid; "
             "typed reset; typed 'plug reader,serial=B2'; typed 'plug reader,serial=A1'; typed 'card 03:8'; "
             "until tavlynctl list | grep -q A1; do :; done; kill -CONT $pid; ended");
  EXPECT_EQ(Summaries(watch.out),
            std::vector<std::string>({"card A1 01", "gone A1 01", "lost A1", "arrived A1", "card A1 03"}));
}

// Before it is missed, and so beside one that nobody wants.
TEST_F(TavlynctlWatch, TheChosenReaderComesBackAtOnceInAnotherPlace) {
  const Ended watch =
      Beside("--device reader,serial=A1 --device reader,serial=B2",
             "watched --count 3 --json; typed '#1 card 01:8'; told card; kill -STOP $pid; typed '#1 unplug'; "
             "typed 'plug reader,serial=A1'; typed '#3 card 03:8'; "
             "until tavlynctl list | grep -q A1; do :; done; kill -CONT $pid; ended");
  EXPECT_EQ(Summaries(watch.out),
            std::vector<std::string>({"card A1 01", "gone A1 01", "lost A1", "arrived A1", "card A1 03"}));
}

// The other one is not taken in its place.
TEST_F(TavlynctlWatch, TheChosenReaderIsWaitedFor) {
  const Ended watch =
      Beside("--device reader,serial=A1 --device reader,serial=B2",
             "watched --count 3 --json; typed '#2 card 02:8'; typed '#1 card 01:8'; told card; "
             "typed '#1 unplug'; told lost; typed 'plug reader,serial=A1'; told arrived; "
             "typed '#3 card 03:8'; ended");
  EXPECT_EQ(watch.status, 0) << watch.err;
  EXPECT_EQ(Summaries(watch.out),
            std::vector<std::string>({"card A1 01", "gone A1 01", "lost A1", "arrived A1", "card A1 03"}));
}

// The one that was there is left to others meanwhile.
TEST_F(TavlynctlWatch, WhatIsPluggedInLaterIsTakenBesideOneThatWasThere) {
  const Ended watch = Beside("--device reader,serial=A1 --device reader,serial=B2",
                             "watched --count 3 --json; typed '#1 card 01:8'; told card; typed '#1 unplug'; "
                             "told lost; LD_PRELOAD= sleep 0.5; "
                             "for n in 1 2 3 4 5 6 7 8; do tavlynctl beep --device B2 >beeps && break; done "
                             "|| { kill $pid; exit; }; "
                             "typed 'plug reader,serial=C3'; told arrived; typed '#3 card 03:8'; ended");
  EXPECT_EQ(watch.status, 0) << watch.err;
  EXPECT_EQ(Summaries(watch.out),
            std::vector<std::string>({"card A1 01", "gone A1 01", "lost A1", "arrived C3", "card C3 03"}));
}

// By the machine's own clock: who waits for the library is told so after three seconds, and the watch looks
// for the reader 1, 3 and 7 seconds after it went.
TEST_F(TavlynctlWatch, WaitingForAReaderIsNoWaitForTheLibrary) {
  const Ended watch = Beside("--device reader,serial=A1",
                             "unset LD_PRELOAD; watched; told watching; typed unplug; told lost; sleep 6.5; "
                             "typed 'plug reader,serial=A1'; told arrived; kill $pid; cat out err");
  EXPECT_EQ(watch.out,
            "lost A1\narrived A1\nwatching card reader 0 (7A31:3BFA Orvantis, /dev/hidraw-sim1)\n");
}

TEST_F(TavlynctlWatch, WithNoWaitItEnds) {
  EXPECT_EQ(Beside("--do unplug", "watched --no-wait; ended").status, 2);
  const Ended lost = Beside("", "watched --no-wait; told watching; typed unplug; ended");
  EXPECT_EQ(lost.status, 4);
  EXPECT_TRUE(Holds(lost.err, "does not answer")) << lost.err;
  EXPECT_EQ(lost.out, "");
}

// An ID of zeros is believed when the next answer confirms it.
TEST_F(TavlynctlWatch, ACardOfZerosIsToldToo) {
  const Ended zeros =
      Beside("", "watched --count 2; told watching; typed 'card 0000:13'; told bits; typed take; ended");
  EXPECT_EQ(zeros.out, "card 13 bits 0000\ngone 13 bits 0000\n") << "a card of zeros is one too";
}

TEST_F(TavlynctlWatch, AReaderOnAPortComesBack) {
  const Ended watch =
      Beside("--serial COM3",
             "watched --com 3 --count 3; typed 'card 0A:8'; told 0A; typed unplug; told lost; "
             "typed 'plug reader@com3'; told arrived; typed 'card 0B:8'; ended");
  EXPECT_EQ(watch.status, 0) << watch.err;
  EXPECT_EQ(watch.out,
            "card 8 bits 0A\ngone 8 bits 0A\nlost 0400123456\narrived 0400123457\ncard 8 bits 0B\n");
}

TEST_F(TavlynctlWatch, AReaderBehindAnAdapterComesBack) {
  const Ended watch =
      Beside("--ethernet 127.91.0.9:10001",
             "watched --ip 127.91.0.9:10001 --count 3; told watching; typed 'card 0A:8'; told 0A; "
             "typed 'cut 1'; ended");
  EXPECT_EQ(watch.status, 0) << watch.err;
  EXPECT_EQ(watch.out,
            "card 8 bits 0A\ngone 8 bits 0A\nlost 0400123456\narrived 0400123456\ncard 8 bits 0A\n");
}

TEST_F(TavlynctlWatch, LinesInAFormatOfOnesOwn) {
  const std::string steps = "told watching; typed 'card 0A:8'; told :0A; typed take; ";
  const Ended cards =
      Beside("--device reader,serial=A1",
             "watched --count 2 --format '{{{serial}}} {bits}:{id}'; " + steps + "typed 'card 0B:8'; ended");
  EXPECT_EQ(cards.out, "{A1} 8:0A\n{A1} 8:0B\n") << cards.err << "only what comes";
  const Ended all =
      Beside("--device reader,serial=A1",
             "watched --count 2 --format '{sequence} {event}:{id} {device} {path}'; " + steps + "ended");
  EXPECT_EQ(all.out, "1 card:0A 0 /dev/hidraw-sim1\n2 gone:0A 0 /dev/hidraw-sim1\n") << all.err;
  const Ended none = Beside("--do unplug",
                            "watched --count 1 --format '{event} {id}'; told waiting; "
                            "typed 'plug reader'; told arrived; typed 'card 0A:8'; ended");
  EXPECT_EQ(none.out, "arrived -\ncard 0A\n") << none.err;
}

TEST_F(TavlynctlWatch, WrongFormatsAreRefused) {
  const struct {
    const char* words;
    const char* problem;
  } kCases[] = {
      {"--format '{bit}'", "there is no {bit}; did you mean bits?"},
      {"--format '{xyzzy}'", "there is no {xyzzy}; there are {time}, {sequence}, {event}"},
      {"--format '{id'", "a brace without its other; two braces stand for one"},
      {"--format 'id}'", "a brace without its other; two braces stand for one"},
      {"--format '{id}' --json", "--format and --json exclude each other"},
      {"--all --device 0", "--device excludes --all"},
  };
  for (const auto& one : kCases) {
    const Ended ended = RunLine(kCtl + " watch " + one.words);
    EXPECT_EQ(ended.status, kUsage) << one.words;
    EXPECT_TRUE(Holds(ended.err, one.problem)) << ended.err;
  }
}

// The ID is in no command line of a process.
TEST_F(TavlynctlWatch, ACommandIsRunForEachEvent) {
  const Ended watch = Beside(
      "--device reader,serial=A1",
      "watched --json --count 2 --exec 'echo $TAVLYN_SEQUENCE $TAVLYN_EVENT $TAVLYN_SERIAL $TAVLYN_BITS "
      "$TAVLYN_ID >>ran; case $TAVLYN_EVENT in gone) exit 7; esac'; typed 'card 0A0B:16'; told card; typed "
      "take; ended");
  EXPECT_EQ(watch.status, 0);
  EXPECT_EQ(TextOf(folder_ / "ran"), "1 card A1 16 0B0A\n2 gone A1 16 0B0A\n");
  EXPECT_EQ(watch.err, "tavlynctl: the command for event 2 ended with 7\n");
}

// It hangs until the second event has been told.
TEST_F(TavlynctlWatch, ASlowCommandHoldsNothingUp) {
  const Ended watch =
      Beside("",
             "mkfifo card gone; watched --json --count 2 --exec 'read line <$TAVLYN_EVENT; echo "
             "$TAVLYN_EVENT >>ran'; "
             "typed 'card 0A:8'; told card; typed take; told gone; echo >card; echo >gone; ended");
  EXPECT_EQ(watch.status, 0) << watch.err;
  EXPECT_EQ(TextOf(folder_ / "ran"), "card\ngone\n");
}

TEST_F(TavlynctlWatch, ABrokenPipeEndsIt) {
  const Ended watch =
      Beside("--card 0A:8", "{ " TAVLYNCTL " watch --json; echo $? >status; } | true; cat status");
  EXPECT_EQ(watch.out, "6\n") << watch.err;
  EXPECT_TRUE(watch.err.ends_with("tavlynctl: the standard output cannot be written\n")) << watch.err;
}

TEST_F(TavlynctlWatch, AFullDiskEndsIt) {
  const Ended watch = Beside("--card 0A:8", TAVLYNCTL " watch --json >/dev/full");
  EXPECT_EQ(watch.status, 6);
  EXPECT_EQ(watch.err, "tavlynctl: the standard output cannot be written\n");
}

// What fits is there once, and nothing after it.
TEST_F(TavlynctlWatch, ALimitOfTheFileEndsIt) {
  const Ended watch = Beside("--card 0A:8 --on 600 --off 600 --repeat",
                             "ulimit -f 1; " TAVLYNCTL " watch --json >lines; echo $?");
  EXPECT_EQ(watch.out, "6\n") << watch.err;
  const std::string lines = TextOf(folder_ / "lines");
  EXPECT_LE(lines.size(), 1024u);
  EXPECT_FALSE(Holds(lines, "error")) << lines;
  std::size_t number = 0;
  for (std::size_t at = 0; (at = lines.find("\"sequence\":", at)) != std::string::npos; ++at) ++number;
  EXPECT_TRUE(Holds(lines, "\"sequence\":" + std::to_string(number) + ",")) << lines;
  EXPECT_GE(number, 3u);
}

// A reader is plugged in, given a card of its own and unplugged, every third time with the card on it, CYCLES
// times; then the watch goes on to the end of its TIME, or is ended if it has none. Each step waits for the
// event of the one before, and any other event is wrong. The last line has what was told, and the memory of
// the watch early on and at the end.
constexpr const char* kCycles = R"(
mkfifo lines
)" TAVLYNCTL R"( watch $TIME --format '{sequence} {event} {id}' >lines 2>err & pid=$!
memory() { while read name size unit; do [ $name = VmRSS: ] && echo $size; done </proc/$pid/status; }
lay() {
  cycle=$((cycle + 1))
  high=$(printf %02d $((cycle / 100 % 100)))
  low=$(printf %02d $((cycle % 100)))
  typed "card $low$high:16"
  expected=card
}
cycle=0 told=0 expected=card
exec 4<lines
until grep -q watching err; do LD_PRELOAD= sleep 0.01; done
lay
while read sequence event id <&4; do
  told=$((told + 1))
  [ $id != - ] || id=$high$low
  case "$told $expected $high$low" in
    "$sequence $event $id") ;;
    *) echo "cycle $cycle, expected $told $expected $high$low: $sequence $event $id"; kill $pid; break ;;
  esac
  case $event in
    card) if [ $((cycle % 3)) = 0 ]; then typed unplug; else typed take; fi; expected=gone ;;
    gone) [ $((cycle % 3)) = 0 ] || typed unplug; expected=lost ;;
    lost)
      [ $cycle = $((CYCLES / 5)) ] && early=$(memory)
      [ $cycle = $CYCLES ] && { last=$(memory); [ "$TIME" ] || kill $pid; continue; }
      typed reset; typed plug\ reader,serial=E$((cycle % 2)); expected=arrived ;;
    arrived) lay ;;
  esac
done
wait $pid
echo $? $cycle $told $early $last
)";

TEST_F(TavlynctlWatch, NoEventIsLostOverManyCycles) {
  const int cycles = Times(10'000, 50);
  const bool lastsADay = Times(1, 0) != 0;
  const std::string numbers =
      "CYCLES=" + std::to_string(cycles) + " TIME='" + (lastsADay ? "--timeout 86400" : "") + "'\n";
  const Ended run = Beside("", numbers + kCycles);
  std::istringstream last(run.out);
  int status = -1;
  int ran = 0;
  int told = 0;
  int early = 0;
  int late = 0;
  last >> status >> ran >> told >> early >> late;
  EXPECT_EQ(status, 0) << run.out << run.err;
  EXPECT_EQ(ran, cycles) << run.out;
  EXPECT_EQ(told, 4 * cycles - 1) << "card, gone, lost and, but for the first, arrived";
#if !defined(__SANITIZE_ADDRESS__)  // which keeps freed memory for a while
  constexpr int kPage = 4;          // kB
  EXPECT_LE(late, early + kPage) << run.out;
#endif
  std::printf("%d cycles, %d events, %d kB after a fifth of them, %d kB at the end\n", ran, told, early,
              late);
}

TEST_F(TavlynctlWatch, SwipesGoOn) {
  const Ended watch =
      Beside("--device magstripe",
             "tavlynctl swipe watch --count 1 >out 2>err & pid=$!; told watching; typed unplug; "
             "told lost; typed 'plug magstripe'; told arrived; typed 'swipe ;77=1?'; ended");
  EXPECT_EQ(watch.status, 0) << watch.err;
  EXPECT_TRUE(watch.out.ends_with("swipe 2 ;77=1?8\n")) << watch.out;
}

}  // namespace
}  // namespace tavlyn::boundary
