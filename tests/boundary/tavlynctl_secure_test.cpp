// tavlynctl handling keys and other protected memory.
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class TavlynctlSecure : public SimulatedRun {
 protected:
  void WriteKeys(const std::string& items) {
    std::ofstream(folder_ / "keys.ini", std::ios::binary)
        << items << "[EOF]\r\niEndOfIniFile=" << Sum(items) << "\r\n";
  }
  const std::string items_ = "[Blob1]\r\nhdr=20 7 5 9\r\ndata=C1 C2 C3 C4 C5\r\n";
};

TEST_F(TavlynctlSecure, KeysAreLoadedAndNotShown) {
  WriteKeys(items_);
  const auto ended = Run("", {"ctl keys load --yes keys.ini --json", "ctl secure read 20070509 --json",
                              "ctl secure read 20070509 --show-keys --json", "ctl secure read 20070509"});
  EXPECT_EQ(
      ParsedText(ended[0]),
      Json(
          {{"schema", 1}, {"command", "keys load"}, {"device", 0}, {"file", "keys.ini"}, {"written", true}}));
  EXPECT_EQ(
      ParsedText(ended[1]),
      Json(
          {{"schema", 1}, {"command", "secure read"}, {"device", 0}, {"header", "20070509"}, {"length", 5}}));
  EXPECT_EQ(ParsedText(ended[2])["data"], "C1C2C3C4C5");
  EXPECT_EQ(ended[3].out, "device  0\nheader  20070509\nlength  5\n");
  for (const std::size_t step : {0U, 1U, 3U}) {
    EXPECT_FALSE(Holds(ended[step].out + ended[step].err, "C1")) << step;
  }
}

TEST_F(TavlynctlSecure, ADryRunNeedsNoReader) {
  WriteKeys(items_);
  std::ofstream(folder_ / "bad.ini", std::ios::binary) << items_ << "[EOF]\r\niEndOfIniFile=12345678\r\n";
  const auto ended =
      Run("--do unplug", {"ctl keys load keys.ini --dry-run --json", "ctl keys load --yes keys.ini",
                          "ctl keys load bad.ini --dry-run", "ctl keys load none.ini --dry-run"});
  EXPECT_EQ(ParsedText(ended[0])["written"], false);
  EXPECT_EQ(ended[1].status, 2);
  EXPECT_EQ(ended[2].status, 6);
  EXPECT_EQ(ended[2].err, "tavlynctl: bad.ini was changed since it was written\n");
  EXPECT_EQ(ended[3].status, 6);
  const std::string dry = Traffic("", "keys load keys.ini --dry-run");
  EXPECT_FALSE(Holds(dry, "set 1")) << dry;
}

TEST_F(TavlynctlSecure, ItemsThatDoNotAddUp) {
  WriteKeys("[Blob1]\r\nhdr=20 7 6 9\r\ndata=C1 C2 C3 C4 C5\r\n");
  const Ended ended = Run("", {"ctl keys load --yes keys.ini"})[0];
  EXPECT_EQ(ended.status, 4);
  EXPECT_TRUE(Holds(ended.err, "the last item of keys.ini was not written")) << ended.err;
  EXPECT_FALSE(Holds(ended.err, "C1"));
}

TEST_F(TavlynctlSecure, AnItemIsWrittenAndReadBack) {
  const auto ended =
      Run("", {"ctl secure write 02010300 A1B2c3 --json", "ctl secure read 02010300 --show-keys",
               "echo A4B5 | ctl secure write 02010200 -", "ctl secure read 02010200 --show-keys --json"});
  EXPECT_EQ(ParsedText(ended[0]), Json({{"schema", 1},
                                        {"command", "secure write"},
                                        {"device", 0},
                                        {"header", "02010300"},
                                        {"length", 3}}));
  EXPECT_EQ(ended[1].out, "device  0\nheader  02010300\nlength  3\ndata    A1B2C3\n");
  EXPECT_EQ(ended[2].status, 0) << ended[2].err;
  EXPECT_EQ(ParsedText(ended[3])["data"], "A4B5");
  const std::string traffic = Traffic("", "secure write 02010300 A1B2C3");
  EXPECT_TRUE(Holds(traffic, "set 1 89 90 00 00 02 01 03\n")) << traffic;
  EXPECT_TRUE(Holds(traffic, "set 1 89 90 00 01 A1 B2 C3\n")) << traffic;
  EXPECT_TRUE(Holds(traffic, "set 1 89 90 00 FF\n")) << traffic;
}

TEST_F(TavlynctlSecure, WrongWordsSendNothing) {
  const auto ended =
      Run("", {"ctl secure write 02010300 A1B2", "ctl secure write 020103 A1B2C3",
               "ctl secure write 02010300 A1B2C", "ctl secure write 02010300 A1B2CX",
               "ctl secure write 02010000 ''", "ctl secure read 0201", "ctl secure read 0201030G",
               "ctl secure", "ctl secure write 02010300 - </dev/null", "ctl ble", "ctl keys",
               "ctl secure write 02010300 A1B2C3 A1B2", "ctl secure write 02010300 --data=A1B2C3 --json",
               "ctl secure write 02010300 A1 --device A1B2", "ctl secure write A1B2C3"});
  for (std::size_t i = 0; i < ended.size(); ++i) {
    EXPECT_EQ(ended[i].status, 1) << i;
    EXPECT_FALSE(Holds(ended[i].out + ended[i].err, "A1B2")) << ended[i].err;
  }
}

// The lines that begin with "$ " in one section of a page, as a script.
std::string LinesOfPage(const std::string& part) {
  const std::string page = TextOf(TAVLYN_PAGES "/tavlynctl.md");
  std::istringstream lines(page.substr(std::min(page.find(part), page.size())));
  std::string script;
  std::string line;
  for (std::getline(lines, line); std::getline(lines, line) && !line.starts_with("#");) {
    if (line.starts_with("    $ ")) script += line.substr(6) + "\n";
  }
  return script;
}

TEST_F(TavlynctlSecure, TheKeyFileOfThePageIsWholeAndLoads) {
  const std::string script = LinesOfPage("### Key-load files");
  ASSERT_TRUE(Holds(script, "tavlynctl keys load items.ini --dry-run")) << script;
  const auto ended = Run("", {"tavlynctl() { ctl \"$@\"; }\n" + script, "ctl keys load --yes items.ini",
                              "ctl secure read 20070509 --show-keys --json", "stat -c %a items.ini"});
  EXPECT_EQ(ended[0].out, "file     items.ini\nwritten  no\n") << ended[0].err;
  EXPECT_EQ(ended[1].status, 0) << ended[1].err;
  EXPECT_EQ(ParsedText(ended[2])["data"], "C1C2C3C4C5");
  EXPECT_EQ(ended[3].out, "600\n");
}

TEST_F(TavlynctlSecure, AnItemThatIsNotThere) {
  const Ended ended = Run("", {"ctl secure read 7F010300"})[0];
  EXPECT_EQ(ended.status, 4);
  EXPECT_TRUE(Holds(ended.err, "the item 7F010300 could not be read from card reader 0")) << ended.err;
}

TEST_F(TavlynctlSecure, BleBlocksMoveToAnotherReader) {
  const auto ended = Run(
      "--device reader --device reader",
      {"ctl ble save data.hwg --json", "ctl ble load --yes data.hwg --device 1 --json",
       "ctl ble save keys.hwg --keys", "ctl ble load --yes keys.hwg --keys --device 1 --json",
       "ctl ble save again.hwg --keys --device 1", "cmp keys.hwg again.hwg", "ctl check data.hwg",
       "ctl ble load --yes data.hwg --keys", "ctl ble load --yes keys.hwg",
       "sed 's/^00\\./01./' data.hwg >bad.hwg; ctl ble load --yes bad.hwg", "ctl ble save none/data.hwg"});
  EXPECT_EQ(
      ParsedText(ended[0]),
      Json({{"schema", 1}, {"command", "ble save"}, {"device", 0}, {"file", "data.hwg"}, {"block", "data"}}));
  EXPECT_EQ(ParsedText(ended[1])["device"], 1);
  EXPECT_EQ(ended[2].status, 0) << ended[2].err;
  EXPECT_EQ(ParsedText(ended[3])["block"], "keys");
  for (std::size_t i = 4; i < 7; ++i) EXPECT_EQ(ended[i].status, 0) << i << ended[i].err;
  EXPECT_EQ(ended[7].err, "tavlynctl: data.hwg holds no BLE keys\n");
  EXPECT_EQ(ended[8].err, "tavlynctl: keys.hwg holds no BLE data\n");
  EXPECT_EQ(ended[9].err, "tavlynctl: bad.hwg was changed since it was written\n");
  EXPECT_EQ(ended[10].err, "tavlynctl: none/data.hwg cannot be written: No such file or directory\n");
  for (std::size_t i = 7; i < 11; ++i) EXPECT_EQ(ended[i].status, 6) << i;
}

TEST_F(TavlynctlSecure, ALoadedBlockComesBack) {
  const auto ended = Run(
      "", {"ctl ble save own.hwg", "sed -e '/iEndOfHwgFile=/d' -e 's/^00\\.00/A5.5A/' own.hwg >body.hwg"});
  ASSERT_EQ(ended[1].status, 0);
  const std::string body = TextOf(folder_ / "body.hwg");
  std::ofstream(folder_ / "new.hwg", std::ios::binary) << body << "iEndOfHwgFile=" << Sum(body);
  const auto again = Run("", {"ctl ble load --yes new.hwg", "ctl ble save back.hwg", "cmp new.hwg back.hwg",
                              "grep -c '^A5.5A.00' back.hwg"});
  for (const Ended& one : again) EXPECT_EQ(one.status, 0) << one.err;
  EXPECT_EQ(again[3].out, "48\n");
}

TEST_F(TavlynctlSecure, AReadThatFailsLeavesNoFile) {
  // Determined from a good run, so that the connect may take any number of exchanges.
  const auto ended = Run("", {"typed exchanges; ctl ble save good.hwg; typed exchanges", "true"});
  ASSERT_EQ(ended[0].status, 0) << ended[0].err;
  int before = 0;
  int behind = 0;
  ASSERT_EQ(std::sscanf(simulatorTold_.c_str(), "tavlynsim: %d tavlynsim: %d", &before, &behind), 2)
      << simulatorTold_;
  ASSERT_GT(behind, before + 100) << simulatorTold_;
  const auto failed = Run("", {"typed 'refuse " + std::to_string(behind - before - 50) +
                                   "'; typed exchanges; " + "ctl ble save bad.hwg",
                               "ls bad.hwg"});
  EXPECT_EQ(failed[0].status, 4) << failed[0].err;
  EXPECT_TRUE(Holds(failed[0].err, "the BLE data could not be read from")) << failed[0].err;
  EXPECT_NE(failed[1].status, 0);
}

TEST_F(TavlynctlSecure, NoMessageRepeatsAWordThatMayBeAKey) {
  const auto ended =
      Run("", {"ctl secure read 20070509 A1B2C3", "ctl secure read 20070509 --show-keys=A1B2C3",
               "ctl raw A1B2C3D4E5F6", "ctl raw 8A --device A1B2C3", "ctl raw 89 A1B2C3 --json",
               "ctl secure writ 20070509 A1B2C3", "ctl secur write 20070509 --data=A1B2C3",
               "ctl serial write A1B2C3D", "ctl --com 3 serial write 01 --rad A1B2C3",
               "ctl raw A1 B2 C3 A1 B2 C3 A1 B2C3 09"});
  for (std::size_t i = 0; i < ended.size(); ++i) {
    EXPECT_EQ(ended[i].status, i == 3 ? 2 : 1) << i << ", where no device has that serial number";
    EXPECT_FALSE(Holds(ended[i].out + ended[i].err, "1B2C3")) << ended[i].err;
    EXPECT_FALSE(Holds(ended[i].out + ended[i].err, "B2C3")) << ended[i].err;
  }
}

// A terminal of its own; the program has one side of it.
class OwnTerminal {
 public:
  OwnTerminal() : other_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    EXPECT_EQ(grantpt(other_), 0);
    EXPECT_EQ(unlockpt(other_), 0);
  }
  ~OwnTerminal() { close(other_); }
  OwnTerminal(const OwnTerminal&) = delete;
  OwnTerminal& operator=(const OwnTerminal&) = delete;

  [[nodiscard]] std::string Name() const { return ptsname(other_); }
  void Type(const std::string& text) const {
    EXPECT_EQ(write(other_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  // What the person sees; call it while the other side is open.
  [[nodiscard]] std::string Seen() const {
    EXPECT_EQ(fcntl(other_, F_SETFL, O_NONBLOCK), 0);
    char text[256];
    const ssize_t count = read(other_, text, sizeof text);
    return {text, count > 0 ? static_cast<std::size_t>(count) : 0};
  }

 private:
  int other_;
};

TEST_F(TavlynctlSecure, AKeyIsTypedUnseenAndLeavesNoCoreImage) {
  const OwnTerminal terminal;
  ASSERT_EQ(mkfifo((folder_ / "asked").c_str(), 0600), 0);
  std::thread person([&] {
    std::ifstream asked(folder_ / "asked");
    for (std::string line; std::getline(asked, line);) {
    }
    terminal.Type("C1C2C3C4C5\n");
  });
  const std::string typed = "sh -c 'exec " + kCtl + " secure write 20070509 - <" + terminal.Name() + "'";
  const auto ended =
      Run("", {"exec 8<" + terminal.Name() + "; upon 'grep core /proc/$pid/limits >limits; echo >asked' " +
                   typed + "; stty -a <" + terminal.Name() + " >after",
               "ctl secure read 20070509 --show-keys --json"});
  person.join();
  EXPECT_EQ(ended[0].status, 0) << ended[0].err;
  EXPECT_EQ(ended[0].err, "DATA is not shown while it is typed\n");
  EXPECT_EQ(ParsedText(ended[1])["data"], "C1C2C3C4C5");
  EXPECT_FALSE(Holds(terminal.Seen(), "C1"));
  std::string limit = TextOf(folder_ / "limits");
  limit.erase(std::unique(limit.begin(), limit.end()), limit.end());
  EXPECT_EQ(limit, "Max core file size 0 0 bytes \n");
  EXPECT_TRUE(Holds(TextOf(folder_ / "after"), " echo ")) << "shown again";
}

}  // namespace
}  // namespace tavlyn::boundary
