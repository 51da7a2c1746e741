// What happens to tavlynctl amid its work: it is killed, its disk fills, its files are replaced. amid
// (amid_linux.cpp) does it at counted system calls.
#include <string>
#include <vector>

#include "tests/boundary/endurance.h"
#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

constexpr int kBadFile = 6;

class TavlynctlAmid : public SimulatedRun {
 protected:
  // Shell functions: calls COMMAND... prints how many system calls a command makes; at N DEED COMMAND...
  static std::string Functions(const std::string& link) {
    return "ctl='" + kCtl + " " + link +
           "'; at() { point=$1; deed=$2; shift 2; " TAVLYN_AMID
           " $point \"$deed\" $ctl \"$@\"; }\n"
           "calls() { AMID_COUNT=count at 0 : \"$@\" >/dev/null; cat count; }\n";
  }

  // Kills commands that read, write and save, each at points spread evenly over its work. Whatever a command
  // was doing, the next one works, and the file is whole.
  void KillAndGoOn(const std::string& devices, const std::string& link, int kills) {
    const std::string script = Functions(link) + "$ctl config save own.hwg --secure >/dev/null\n" +
                               "kills=" + std::to_string(kills) +
                               R"(
k=0
while [ $k -lt $kills ]; do
  k=$((k + 1))
  case $((k % 3)) in
    0) set -- read --timeout 0 ;;
    1) set -- config set iIDHoldTO=$((k * 50)) ;;
    2) set -- config save own.hwg --secure ;;
  esac
  n=$(calls "$@")
  [ "$1" = read ] || set -- $(echo "$@" | sed "s/=.*/=$((k * 50 + 5000))/")
  at $((n * k / (kills + 1))) 'kill -KILL $pid' "$@" >/dev/null
  echo "killed $?"
  $ctl config get iIDHoldTO >/dev/null
  echo "next $?"
  $ctl check own.hwg >/dev/null
  echo "file $?"
done)";
    const Ended ended = Run(devices, {script})[0];
    std::string expected;
    for (int kill = 0; kill < kills; ++kill) expected += "killed 137\nnext 0\nfile 0\n";
    EXPECT_EQ(ended.out, expected) << ended.err;
  }
};

TEST_F(TavlynctlAmid, AKillOverReports) { KillAndGoOn("--device plus:2", "", Times(80, 3)); }

// The dead program's lock on the port is gone.
TEST_F(TavlynctlAmid, AKillOverASerialPort) { KillAndGoOn("--device reader@com3", "--com 3", Times(60, 3)); }

TEST_F(TavlynctlAmid, AKillOverAnAdapter) {
  KillAndGoOn("--device reader@127.79.0.1:10001", "--ip 127.79.0.1:10001", Times(20, 1));
}

TEST_F(TavlynctlAmid, AKillOverABulkDevice) {
  if (Run("--device reader@bulk", {"ctl list"}).front().status != 0)
    GTEST_SKIP() << "only root's stand-in is used";
  KillAndGoOn("--device reader@bulk", "", Times(40, 1));
}

// Either file is loaded as a whole, or nothing is.
TEST_F(TavlynctlAmid, AFileThatIsReplacedIsNotMixed) {
  const std::string script = Functions("") + R"(
$ctl config save own.hwg >/dev/null
sed 's/^bBeepID = .*/bBeepID = 0/; s/^iIDHoldTO = .*/iIDHoldTO = 200/' own.hwg >one
sed 's/^bBeepID = .*/bBeepID = 1/; s/^iIDHoldTO = .*/iIDHoldTO = 300/' own.hwg >two
cp one file.hwg
n=$(calls config load --yes file.hwg)
k=0
while [ $k -lt )" + std::to_string(Times(100, 10)) +
                             R"( ]; do
  k=$((k + 1))
  $ctl config set bBeepID=1 iIDHoldTO=400 >/dev/null
  cp one file.hwg
  at $((n * k / )" + std::to_string(Times(101, 11)) +
                             R"()) 'cp two new; mv new file.hwg' config load --yes file.hwg >/dev/null 2>told
  echo $? $(cat told) $($ctl config get bBeepID iIDHoldTO | sed -n 's/.*\(bBeepID\|iIDHoldTO\) *//p')
done)";
  const Ended ended = Run("", {script})[0];
  std::istringstream lines(ended.out);
  int refused = 0;
  for (std::string line; std::getline(lines, line);) {
    const bool refusal =
        line ==
        "6 tavlynctl: file.hwg was changed while it was to be loaded; nothing was written, try "
        "again 1 400";
    if (refusal) ++refused;
    EXPECT_TRUE(refusal || line == "0 0 200" || line == "0 1 300") << line;
  }
  EXPECT_GT(refused, 0) << ended.out << ended.err;
}

// With a limit of the process the system would end the program.
TEST_F(TavlynctlAmid, ALimitOfFilesIsAFullDisk) {
  const auto ended = Run("--device plus:3", {"echo before >own.hwg; ulimit -f 1; ctl config save own.hwg",
                                             "cat own.hwg; ls -A | grep -c tavlynctl-"});
  EXPECT_EQ(ended[0].status, kBadFile) << ended[0].err;
  EXPECT_EQ(ended[0].err,
            "tavlynctl: own.hwg cannot be written completely and stays as it was; is the disk full?\n");
  EXPECT_EQ(ended[1].out, "before\n0\n");
}

// A file system of its own, where a user may make one.
TEST_F(TavlynctlAmid, ADiskThatIsFullOrReadOnly) {
  if (RunLine("unshare -rm true").status != 0) GTEST_SKIP() << "this user may not mount anything";
  const auto on = [](const std::string& how, const std::string& words) {
    return "mkdir -p disk; unshare -rm sh -c 'mount -t tmpfs -o size=4k none disk && cd disk && echo before "
           ">own.hwg "
           "&& mount -o remount," +
           how + " none . && { " + kCtl + " " + words + "; echo $?; cat own.hwg; ls -A; }'";
  };
  const auto ended = Run("--device plus:3", {on("rw", "config save own.hwg"), on("rw", "ble save own.hwg"),
                                             on("ro", "config save own.hwg"), on("ro", "ble save new.hwg")});
  for (const Ended& one : ended) EXPECT_EQ(one.out, "6\nbefore\nown.hwg\n") << one.err;
  EXPECT_TRUE(
      Holds(ended[0].err, "own.hwg cannot be written completely and stays as it was; is the disk full?"))
      << ended[0].err;
  EXPECT_TRUE(Holds(ended[2].err, "own.hwg cannot be written: Read-only file system")) << ended[2].err;
  EXPECT_TRUE(Holds(ended[3].err, "new.hwg cannot be written: Read-only file system")) << ended[3].err;
}

// What cannot be traced is left out; the command works.
TEST_F(TavlynctlAmid, ATraceThatCannotBeWritten) {
  const std::string traced = "export TAVLYNAPI_LOGGING=1 XDG_STATE_HOME=$PWD/state; ";
  const auto ended = Run("", {traced + "ctl info", traced + "ulimit -f 1; ctl info >/dev/null",
                              traced + "rm -r state; ln -s /dev/full state; ctl info", "ls -AR state"});
  for (int at = 0; at < 3; ++at) EXPECT_EQ(ended[static_cast<std::size_t>(at)].status, 0) << at;
}

}  // namespace
}  // namespace tavlyn::boundary
