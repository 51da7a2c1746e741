// tavlynsim with devices on lines, and a program that finds them there through the built library.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

const std::string kRun = TAVLYNSIM " run ";
const std::string kReader = " -- " LINE_READER;
const std::string kCard = "7431 26 bits 1234\n";

TEST(TavlynsimLines, ReaderOnASerialPort) {
  const Ended ended = RunLine(kRun + "--serial COM3 --card 34120000:26" + kReader + " com 3");
  EXPECT_EQ(ended.out, kCard + kCard) << ended.err;
  EXPECT_TRUE(Holds(ended.err, "tavlynsim: TAVLYNAPI_PORT_DIR=/")) << ended.err;
  EXPECT_TRUE(Holds(ended.err, " tavlynctl --com 3 read\n")) << ended.err;
}

TEST(TavlynsimLines, AMagneticStripeReaderOnAPortIsNotPromised) {
  const Ended ended = RunLine(kRun + "--device magstripe@com3 -- " TAVLYNCTL " --com 3 track");
  EXPECT_EQ(ended.status, 2);
  EXPECT_TRUE(Holds(ended.err, "(a magnetic-stripe reader on COM3, where no search finds one)\n"))
      << ended.err;
  EXPECT_TRUE(Holds(ended.err,
                    "tavlynctl: no magstripe reader answered on COM3; one on a serial port is never "
                    "found, only those on USB\n"))
      << ended.err;
}

TEST(TavlynsimLines, ReaderThatSpeaksText) {
  const Ended ended = RunLine(kRun + "--ascii COM4 --card 34120000:26" + kReader + " ascii 4");
  EXPECT_EQ(ended.out, kCard + kCard) << ended.err;
  EXPECT_TRUE(Holds(ended.err, " tavlynctl --com 4 --ascii read\n")) << ended.err;
}

TEST(TavlynsimLines, ReaderBehindAnEthernetAdapter) {
  const Ended ended =
      RunLine(kRun + "--ethernet 127.78.0.1:10001 --card 34120000:26" + kReader + " ip 127.78.0.1 10001");
  EXPECT_EQ(ended.out, kCard + kCard) << ended.err;
  EXPECT_EQ(ended.err, "tavlynsim: tavlynctl --ip 127.78.0.1:10001 watch\n");
}

// The library loads a stand-in only if root alone can have put it there.
TEST(TavlynsimLines, BulkReader) {
  const Ended ended = RunLine(kRun + "--bulk --card 34120000:26" + kReader + " usb");
  if (Holds(ended.err, "belong to root")) {
    EXPECT_EQ(ended.status, 125);
    return;
  }
  EXPECT_EQ(ended.out, kCard + kCard) << ended.err;
  EXPECT_TRUE(Holds(ended.err, "tavlynsim: TAVLYNAPI_LIBUSB=/")) << ended.err;
}

TEST(TavlynsimLines, AVirtualPortNeedsTheKernel) {
  const Ended ended = RunLine(kRun + "--device reader@acm -- true");
  EXPECT_EQ(ended.status, 125);
  EXPECT_TRUE(Holds(ended.err, "is there with --carrier vhci only")) << ended.err;
}

TEST(TavlynsimLines, CardsComeByTheClock) {
  const Ended ended =
      RunLine(kRun + "--serial COM3 --card 34120000:26 --on 100 --off 5000" + kReader + " com 3");
  EXPECT_EQ(ended.out, kCard + "7431 0 bits 0000\n") << ended.err;
}

TEST(TavlynsimLines, OrdersActOnTheLine) {
  const Ended vanished = RunLine(kRun + "--serial COM3 --do 'vanish 1'" + kReader + " com 3");
  EXPECT_EQ(vanished.status, 2);
  const Ended plugged =
      RunLine(kRun + "--serial COM3 --do 'plug plus:2@com5' --do 'card 34120000:26'" + kReader + " com 5");
  EXPECT_EQ(plugged.out, kCard + kCard) << plugged.err;
  const Ended slow = RunLine(kRun + "--serial COM3 --do 'card 34120000:26' --do 'delay 20' --do 'slow 2'" +
                             kReader + " com 3");
  EXPECT_EQ(slow.out, kCard + kCard) << slow.err;
  const Ended later =
      RunLine("echo plug reader@com5 | " + kRun +
              "--interactive -- sh -c 'cd ${TAVLYNSIM_SOCKET%/socket}; until test -e com5; do :; done; ls'");
  EXPECT_EQ(later.out, "com5\nsocket\n") << later.err;
  EXPECT_EQ(RunLine(kRun + "--do 'slow 2' -- true").status, 1);
}

TEST(TavlynsimLines, PortFolderOfTheUserIsUsed) {
  const Ended ended =
      RunLine("folder=$(mktemp -d); TAVLYNAPI_PORT_DIR=$folder " + kRun +
              "--serial COM3 -- sh -c 'readlink $TAVLYNAPI_PORT_DIR/com3'; ls $folder; rmdir $folder");
  EXPECT_TRUE(Holds(ended.out, "/dev/pts/")) << ended.out;
  EXPECT_EQ(std::count(ended.out.begin(), ended.out.end(), '\n'), 1);
}

// A user's folder in which a port's name is already taken.
Ended RunOver(const std::string& made, const std::string& command) {
  return RunLine("folder=$(mktemp -d); cd $folder; " + made + "; export TAVLYNAPI_PORT_DIR=$folder; " + kRun +
                 "--serial COM3 -- " + command +
                 "; status=$?; ls; test -f com3 && cat com3; rm -r $folder; exit $status");
}

TEST(TavlynsimLines, NoFileOfTheUserGivesWayToAPort) {
  for (const char* made :
       {"echo mine >com3", "echo mine >other; ln -s other com3", "mkdir com3", "ln -s /dev/null com3"}) {
    const Ended ended = RunOver(std::string(made) + "; echo mine >com3.new", "true");
    EXPECT_EQ(ended.status, 125) << made;
    EXPECT_TRUE(Holds(ended.out, "com3\ncom3.new\n")) << ended.out;
    EXPECT_TRUE(Holds(ended.err, "/com3 is there already; remove it")) << ended.err;
  }
  const Ended kept = RunOver("echo mine >com3", "true");
  EXPECT_EQ(kept.out, "com3\nmine\n");
  const Ended replaced = RunOver("true", "sh -c 'rm com3; echo mine >com3'");
  EXPECT_EQ(replaced.status, 0) << replaced.err;
  EXPECT_EQ(replaced.out, "com3\nmine\n");
}

TEST(TavlynsimLines, LinkOfOneThatWasKilledGivesWay) {
  for (const char* made :
       {"ln -s /dev/pts/999999 com3", "(" TAVLYNSIM " run --serial COM3 -- sh -c 'kill -9 $PPID')"}) {
    const Ended ended = RunOver(std::string("export TAVLYNAPI_PORT_DIR=$PWD; ") + made, "readlink com3");
    EXPECT_EQ(ended.status, 0) << made << ended.err;
    EXPECT_TRUE(Holds(ended.out, "/dev/pts/")) << ended.out;
    EXPECT_FALSE(Holds(ended.out, "com3")) << ended.out;
  }
}

// The number of a port goes to the next who opens one; a link of the user to it is kept.
TEST(TavlynsimLines, LinkOfOneThatWasKilledGivesWayWhenItsNumberIsInUse) {
  const Ended ended =
      RunLine("folder=$(mktemp -d); cd $folder; export TAVLYNAPI_PORT_DIR=$folder; " + kRun +
              "--serial COM3 -- sh -c 'ln -s $(readlink com3 | sed s,/[0-9]*/root,/2147483646/root,) com4; "
              "ln -s /dev/pts/$(basename $(readlink com3)) com5; for n in 4 5; do " TAVLYNSIM
              " run --serial COM$n -- true; echo $?; done; ls'; rm -r $folder");
  EXPECT_EQ(ended.out, "0\n125\ncom3\ncom5\n") << ended.err;
  EXPECT_TRUE(Holds(ended.err, "/com5 is there already; remove it")) << ended.err;
}

TEST(TavlynsimLines, NothingListensBeyondTheLoopbackUntold) {
  for (const char* words : {"--ethernet 0.0.0.0:10001", "--serial COM3 --do 'plug reader@0.0.0.0:10001'"}) {
    const Ended ended = RunLine(kRun + words + " -- true");
    EXPECT_EQ(ended.status, 125) << words;
    EXPECT_TRUE(
        Holds(ended.err, "0.0.0.0 is beyond the loopback, others could use the device; --expose permits it"))
        << ended.err;
  }
  const Ended told = RunLine(kRun + "--expose --ethernet 0.0.0.0:10001 --card 34120000:26" + kReader +
                             " ip 127.0.0.1 10001");
  EXPECT_EQ(kCard + kCard, told.out) << told.err;
}

TEST(TavlynsimLines, StayWithoutACommandUntilTold) {
  const Ended ended = RunLine("upon 'kill -INT $pid' " TAVLYNSIM " serve --serial COM3");
  EXPECT_EQ(ended.status, 0);
  EXPECT_TRUE(Holds(ended.err, "tavlynctl --com 3 read\n")) << ended.err;
  const Ended none = RunLine(kRun + "--serial COM3");
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.err,
            "tavlynsim: COMMAND is missing; tavlynsim serve has devices for programs started elsewhere\n");
}

TEST(TavlynsimLines, WrongPlacesAreRefused) {
  for (const char* words : {"--serial 3", "--serial COM0", "--ascii COM4:ascii", "--ethernet 127.0.0.1",
                            "--serial COM3 --ascii COM3", "--bulk --device reader@bulk"}) {
    EXPECT_EQ(RunLine(kRun + words + " -- true").status, 1) << words;
  }
  EXPECT_EQ(RunLine(kRun + "--serial 3 -- true").err,
            "tavlynsim: --serial: 3 is not of the form COMn; tavlynsim run --help says more\n");
}

TEST(TavlynsimLines, PlaceThatCannotBeHadIsTold) {
  const Ended ended = RunLine(kRun + "--expose --ethernet 192.0.2.1:10001 -- true");
  EXPECT_EQ(ended.status, 125);
  EXPECT_TRUE(Holds(ended.err, "tavlynctl --ip 192.0.2.1:10001 watch")) << ended.err;
}

}  // namespace
}  // namespace tavlyn::boundary
