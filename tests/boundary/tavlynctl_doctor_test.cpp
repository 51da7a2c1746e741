// tavlynctl doctor: what it finds on simulated devices, on nodes of all modes and on ports, and its bundle.
#include <sys/wait.h>
#include <unistd.h>

#include "tests/boundary/bare_port.h"
#include "tests/boundary/scratch_folder.h"
#include "tests/boundary/simulated_run.h"
#include "tests/boundary/stranger.h"
#include "tools/tavlynctl/trouble/doctor_nodes_linux.h"

namespace tavlyn::boundary {
namespace {

constexpr int kNothingThere = 2;
constexpr int kMayNotOpen = 3;

// The findings of one step, as "verdict: text $ advice" lines.
std::string Of(const Json& document, const std::string& step) {
  std::string text;
  for (const Json& one : document["findings"]) {
    if (one["step"] != step) continue;
    text += one["verdict"].get<std::string>() + ": " + one["text"].get<std::string>();
    if (one["advice"].is_string()) text += " $ " + one["advice"].get<std::string>();
    text += "\n";
  }
  return text;
}

class TavlynctlDoctor : public SimulatedRun {
 protected:
  Json Diagnosis(const std::string& devices, const std::string& words, int status) {
    const Ended ended = Run(devices, {"ctl doctor --json " + words})[0];
    EXPECT_EQ(ended.status, status) << ended.out << ended.err;
    return Json::parse(ended.out, nullptr, false);
  }
};

TEST_F(TavlynctlDoctor, AllIsWell) {
  const Json document = Diagnosis("", "", 0);
  EXPECT_TRUE(Holds(Of(document, "versions"), "ok: tavlynctl " TAVLYN_VERSION ", library " TAVLYN_VERSION));
  EXPECT_TRUE(Holds(Of(document, "hidapi"), "ok: /")) << document;
  EXPECT_TRUE(Holds(Of(document, "connect"),
                    "ok: card reader 0 (7A31:3BFA Orvantis, /dev/hidraw-sim1) was found and read in "));
  EXPECT_FALSE(document.contains("error"));
}

TEST_F(TavlynctlDoctor, EachProductAndEachDevice) {
  const Json document = Diagnosis("--device reader --device plus:2 --device magstripe --device sonar", "", 0);
  const std::string found = Of(document, "connect");
  for (const char* name :
       {"ok: card reader 0 ", "ok: card reader 1 ", "ok: magstripe reader 2 ", "ok: sonar sensor 3 "}) {
    EXPECT_TRUE(Holds(found, name)) << found;
  }
}

TEST_F(TavlynctlDoctor, TextSaysWhatToType) {
  const Ended ended = RunLine(kCtl + " doctor --com 77");
  EXPECT_EQ(ended.status, kNothingThere);
  EXPECT_TRUE(Holds(
      ended.out,
      "problem  port        COM77 (/dev/ttyS76) does not exist; docs/linux.md says which file a port is\n"
      "                     $ ls -l /dev/tavlyn "))
      << ended.out;
  EXPECT_TRUE(Holds(ended.err, "tavlynctl: there are 2 problems\n")) << ended.err;
}

TEST_F(TavlynctlDoctor, NothingIsAttached) {
  const Ended ended = RunLine(kCtl + " doctor --json");
  EXPECT_EQ(ended.status, kNothingThere) << ended.out;
  const Json document = Json::parse(ended.out, nullptr, false);
  EXPECT_EQ(Of(document, "connect"),
            "problem: no device is plugged in; --com and --ip look elsewhere than on USB $ lsusb\n");
  EXPECT_EQ(document["error"]["code"], kNothingThere);
  EXPECT_EQ(document["error"]["text"], "there is a problem");
}

TEST_F(TavlynctlDoctor, WithoutHidapi) {
  std::ofstream(folder_ / "libhidapi-hidraw.so.0") << "no library";
  const Ended ended = RunLine("LD_LIBRARY_PATH=" + folder_.string() + " " + kCtl + " doctor --json");
  EXPECT_EQ(ended.status, kNothingThere);
  EXPECT_TRUE(
      Holds(Of(Json::parse(ended.out, nullptr, false), "hidapi"),
            "problem: libhidapi-hidraw.so.0 cannot be loaded, and nothing on USB is found without it $ sudo "
            "apt install libhidapi-hidraw0\n"));
}

TEST_F(TavlynctlDoctor, ALibusbThatOthersMayWrite) {
  if (getuid() != 0) GTEST_SKIP() << "only root's files are taken at all";
  std::ofstream(folder_ / "libusb") << "";
  fs::permissions(folder_ / "libusb", fs::perms(0666));
  fs::permissions(folder_, fs::perms(0700));
  const auto at = [&] {
    return ParsedText(RunLine("TAVLYNAPI_LIBUSB=" + (folder_ / "libusb").string() + " " + kSim + " run -- " +
                              kCtl + " doctor --json"));
  };
  const std::string refused = Of(at(), "libusb-0.1");
  EXPECT_TRUE(Holds(refused, "warning: ")) << refused;
  EXPECT_TRUE(Holds(refused, "libusb, mode 0666, owner root, group root $ sudo install -D -m 644 "))
      << refused;
  EXPECT_TRUE(Holds(refused, " && export TAVLYNAPI_LIBUSB=/opt/tavlyn/libusb-0.1.so.4\n")) << refused;
  fs::permissions(folder_ / "libusb", fs::perms(0644));
  EXPECT_TRUE(Holds(Of(at(), "libusb-0.1"), "ok: "));
  EXPECT_TRUE(Holds(Of(at(), "variables"), "TAVLYNAPI_LIBUSB="));
}

TEST_F(TavlynctlDoctor, ADeviceThatFails) {
  const Json document = Diagnosis("--do 'vanish 20'", "", kDeviceError);
  EXPECT_TRUE(Holds(Of(document, "connect"), "; at the second attempt it was gone $ tavlynctl error 0x"))
      << document;
}

TEST_F(TavlynctlDoctor, ADeviceThatFailsOnceOnly) {
  const Json document = Diagnosis("--do 'drop 10'", "", 0);
  EXPECT_TRUE(Holds(Of(document, "connect"), "warning: card reader 0 ")) << document;
  EXPECT_TRUE(Holds(Of(document, "connect"), ", at the second attempt only\n")) << document;
}

TEST_F(TavlynctlDoctor, OverAPortAndText) {
  EXPECT_TRUE(Holds(Of(Diagnosis("--device reader@com3", "--com 3", 0), "port"), "ok: COM3 is "));
  EXPECT_TRUE(Holds(Of(Diagnosis("--device reader@com3", "--com 3-4", 0), "port"), "COM4 ("));
  EXPECT_TRUE(Holds(Of(Diagnosis("--device reader@com3:ascii", "--com 3 --ascii", 0), "connect"),
                    "ok: card reader 0 (COM3:"));
}

TEST_F(TavlynctlDoctor, BehindAnAdapter) {
  const Json document = Diagnosis("--ethernet 127.5.0.9:10001", "--ip 127.5.0.9:10001", 0);
  EXPECT_TRUE(Holds(Of(document, "network"), "ok: 127.5.0.9:10001 takes connections")) << document;
  const Json absent = Diagnosis("", "--ip 127.5.0.10:10001", kNothingThere);
  EXPECT_TRUE(Holds(Of(absent, "network"),
                    "refuses the connection; is the TCP port right? $ tavlynctl find 127.5.0.10"));
}

TEST_F(TavlynctlDoctor, APortThatAnotherProgramHolds) {
  PortFolder ports;
  const BarePort held = AddPort(ports, 3);
  const Ended ended =
      RunLine("exec 8<" + ports.PathOf(3) + "; flock 8; " + kCtl + " doctor --com 3 --json 8<&-");
  EXPECT_EQ(ended.status, kMayNotOpen);
  const std::string port = Of(Json::parse(ended.out, nullptr, false), "port");
  EXPECT_TRUE(Holds(port, " is held by ") && Holds(port, " $ ps -f -p ")) << port;
}

// What tar and gzip make of it, and who may read it.
TEST_F(TavlynctlDoctor, ABundle) {
  const auto ended = Run("--card A1B2C3D4:32", {"ctl doctor --bundle t.tar.gz --json", "tar -tzf t.tar.gz",
                                                "gzip -t t.tar.gz && stat -c %a t.tar.gz",
                                                "tar -xzf t.tar.gz && cat devices.json trace.txt doctor.txt",
                                                "grep -ric 'D4C3B2A1\\|A1 B2 C3 D4' *.txt *.json"});
  EXPECT_EQ(ended[0].status, 0) << ended[0].err;
  EXPECT_EQ(ended[1].out, "doctor.txt\ndoctor.json\ndevices.json\ntrace.txt\n") << ended[1].err;
  EXPECT_EQ(ended[2].out, "600\n") << ended[2].err;
  EXPECT_TRUE(Holds(ended[3].out, "\"part_number\": \"RDR-80581AKU\"")) << ended[3].out;
  EXPECT_TRUE(Holds(ended[3].out, " USBConnect ENTER\n"));
  EXPECT_TRUE(Holds(ended[3].out, "ok       connect     card reader 0 "));
  EXPECT_EQ(ended[4].out, "doctor.txt:0\ntrace.txt:0\ndevices.json:0\ndoctor.json:0\n");
  const Json bundle = Json::parse(ended[0].out, nullptr, false)["bundle"];
  EXPECT_EQ(bundle["file"], "t.tar.gz");
  ASSERT_EQ(bundle["contents"].size(), 4U);
  EXPECT_EQ(bundle["contents"][3]["name"], "trace.txt");
  EXPECT_EQ(bundle["contents"][3]["bytes"], fs::file_size(folder_ / "trace.txt"));
}

TEST_F(TavlynctlDoctor, ABundleWithCards) {
  const auto ended = Run("--card A1B2C3D4:32", {"ctl doctor --bundle t.tar.gz --with-cards",
                                                "tar -xzf t.tar.gz && cat cards.json trace.txt"});
  EXPECT_EQ(ended[0].status, 0) << ended[0].err;
  EXPECT_TRUE(Holds(ended[0].out, "t.tar.gz has\n  doctor.txt, ")) << ended[0].out;
  EXPECT_TRUE(Holds(ended[0].out, "\n  cards.json, ")) << ended[0].out;
  EXPECT_TRUE(Holds(ended[1].out, "\"id\": \"D4C3B2A1\"")) << ended[1].out;
  EXPECT_TRUE(Holds(ended[1].out, "  reply to Id")) << ended[1].out;
}

// Standard error shows them all the same.
TEST_F(TavlynctlDoctor, ABundleWithoutTheBytesOnTheWire) {
  for (const char* words : {"ctl -vv", "TAVLYNAPI_WIRE=1 ctl -v"}) {
    const auto ended = Run(
        "", {std::string(words) + " doctor --bundle t.tar.gz", "tar -xzOf t.tar.gz trace.txt; rm t.tar.gz"});
    EXPECT_TRUE(Holds(ended[0].err, " wire reader > ")) << words;
    EXPECT_TRUE(Holds(ended[1].out, " USBConnect ENTER\n")) << ended[1].out;
    EXPECT_FALSE(Holds(ended[1].out, " wire ")) << words;
  }
}

TEST_F(TavlynctlDoctor, ABundleThatCannotBeWritten) {
  const auto ended =
      Run("", {"ctl doctor --bundle none/t.tar.gz", "ctl doctor --with-cards", "ctl doctor --bundle ."});
  EXPECT_EQ(ended[0].status, 6) << ended[0].err;
  EXPECT_EQ(ended[0].out, "");
  EXPECT_EQ(ended[1].status, kUsage) << ended[1].err;
  EXPECT_EQ(ended[2].status, 6) << ended[2].err;
}

// A known node and what udev has noted of it.
class DoctorNodes : public testing::Test {
 protected:
  void SetUp() override {
    fs::permissions(folder_, fs::perms(0755));
    for (const char* name : {"sys", "dev", "usb", "udev/data", "rules"})
      fs::create_directories(folder_ / name);
  }

  void AddNode(const std::string& name, const std::string& id, unsigned mode) {
    fs::create_directories(folder_ / "sys" / name / "device");
    std::ofstream(folder_ / "sys" / name / "device" / "uevent") << "HID_ID=" << id << "\n";
    std::ofstream(folder_ / "dev" / name) << "";
    fs::permissions(folder_ / "dev" / name, fs::perms(mode));
  }
  void AddReader(unsigned mode) { AddNode("hidraw1", "0003:00007A31:00003BFA", mode); }
  void InstallRules() { std::ofstream(folder_ / "rules" / "70-tavlyn.rules") << ""; }
  // The number of a file that is no device is 0:0.
  void Tag() { std::ofstream(folder_ / "udev" / "data" / "c0:0") << "I:1\nG:seat\nG:uaccess\n"; }

  std::string Found() {
    const auto in = [&](const char* name) { return (folder_ / name).string(); };
    std::string text;
    for (const ctl::Finding& one :
         ctl::NodeFindings({in("sys"), in("dev"), in("usb"), in("dev"), in("udev"), {in("rules")}})) {
      const char* verdicts[] = {"ok", "warning", "problem"};
      text += std::string(verdicts[static_cast<int>(one.verdict)]) + " " + one.step + ": " + one.text +
              " $ " + one.advice + "\n";
    }
    return text;
  }

  std::string FoundByAStranger() {
    return SaidToAStranger([this] { return Found(); });
  }

  const ScratchFolder own_;
  const fs::path& folder_ = own_.Path();
};

const std::string kInstall =
    "$ sudo cp packaging/70-tavlyn.rules /etc/udev/rules.d/ && sudo udevadm control --reload";
const std::string kReload = "$ sudo udevadm control --reload && sudo udevadm trigger";

TEST_F(DoctorNodes, WithoutRules) {
  AddReader(0600);
  AddNode("hidraw2", "0003:0000046D:0000C077", 0600);
  const std::string found = Found();
  EXPECT_TRUE(Holds(found, "warning udev rules: not installed; only root may then open a device " + kInstall))
      << found;
  EXPECT_TRUE(Holds(found, "ok node: " + (folder_ / "dev" / "hidraw1").string() + ", mode 0600, owner "))
      << found;
  EXPECT_FALSE(Holds(found, "hidraw2")) << found;
}

TEST_F(DoctorNodes, RulesThatAreInstalledAndLoaded) {
  InstallRules();
  EXPECT_TRUE(Holds(
      Found(), "ok udev rules: " + (folder_ / "rules").string() + "/70-tavlyn.rules $ \nok node: no device "))
      << Found();
  AddReader(0600);
  EXPECT_TRUE(Holds(Found(), "not yet used for the devices that are there " + kReload)) << Found();
  Tag();
  EXPECT_TRUE(Holds(Found(), "70-tavlyn.rules, loaded $ \n")) << Found();
}

TEST_F(DoctorNodes, WhatToTypeForAForbiddenNode) {
  if (getuid() != 0) GTEST_SKIP() << "only root can become someone else";
  AddReader(0600);
  EXPECT_TRUE(Holds(FoundByAStranger(), ": this user may not open it " + kInstall)) << FoundByAStranger();
  InstallRules();
  EXPECT_TRUE(Holds(FoundByAStranger(), ": this user may not open it " + kReload)) << FoundByAStranger();
  Tag();
  EXPECT_TRUE(
      Holds(FoundByAStranger(), "$ sudo setfacl -m u:$USER:rw " + (folder_ / "dev" / "hidraw1").string()))
      << FoundByAStranger();
}

TEST_F(DoctorNodes, ANodeThatAnotherProgramHasOpen) {
  AddReader(0600);
  const std::string node = (folder_ / "dev" / "hidraw1").string();
  const pid_t child = fork();
  if (child == 0) {
    execl("/bin/sh", "sh", "-c", ("exec 8<" + node + "; echo >" + node + ".open; exec sleep 100000").c_str(),
          nullptr);
    _exit(1);
  }
  while (!fs::exists(node + ".open")) usleep(1000);
  const std::string found = Found();
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_TRUE(Holds(found, "warning node: ")) << found;
  EXPECT_TRUE(Holds(found, ": also open in ") && Holds(found, "$ ps -f -p " + std::to_string(child) + "\n"))
      << found;
}

}  // namespace
}  // namespace tavlyn::boundary
