// What tavlynctl says about nodes, ports and adapters where no reader is found.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/boundary/bare_port.h"
#include "tests/boundary/far_end.h"
#include "tests/boundary/scratch_folder.h"
#include "tests/boundary/simulated_run.h"
#include "tests/boundary/stranger.h"
#include "tools/tavlynctl/reach/nodes_linux.h"

namespace tavlyn::boundary {
namespace {

// A connection from this program.
class Client {
 public:
  Client(const Ip& ip, std::uint16_t port)
      : socket_(Checked(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")) {
    const sockaddr_in peer = sim::net::AddressOf(ip, port);
    Checked(connect(socket_.get(), reinterpret_cast<const sockaddr*>(&peer), sizeof peer), "connect");
  }

 private:
  Descriptor socket_;
};

// A TCP port whose connection queue is full.
class FullPort {
 public:
  explicit FullPort(const Ip& ip)
      : socket_(Checked(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")) {
    const sockaddr_in own = sim::net::AddressOf(ip, 0);
    Checked(bind(socket_.get(), reinterpret_cast<const sockaddr*>(&own), sizeof own), "bind");
    Checked(listen(socket_.get(), 0), "listen");
    port_ = sim::net::PortOf(socket_.get());
    const Client gone(ip, port_);  // which nobody has accepted yet
  }
  [[nodiscard]] std::uint16_t Port() const { return port_; }

 private:
  Descriptor socket_;
  std::uint16_t port_ = 0;
};

class TavlynctlReach : public testing::Test {
 protected:
  static Ended Ctl(const std::string& words) { return RunLine(kCtl + " " + words); }

  PortFolder ports_;
  sim::ReaderFa line_{sim::Reader::Plain()};
};

TEST_F(TavlynctlReach, NobodyAnswersOnAPort) {
  const BarePort silent = AddPort(ports_, 3);
  const Ended one = Ctl("list --com 3");
  EXPECT_EQ(one.status, 2);
  EXPECT_EQ(one.err, "tavlynctl: no reader answered on COM3\n");
  EXPECT_EQ(Ctl("list --com 3-5").err,
            "searching on COM3 to COM5 takes up to 5 seconds\n"
            "tavlynctl: no reader answered on COM3 to COM5\n");
}

TEST_F(TavlynctlReach, PortThatIsNotThere) {
  const Ended one = Ctl("read --com 3");
  EXPECT_EQ(one.status, 2);
  EXPECT_EQ(one.err, "tavlynctl: COM3 (" + ports_.PathOf(3) +
                         ") does not exist; docs/linux.md says which file a port is\n");
  const Ended several = Ctl("list --com 3-4");
  EXPECT_EQ(several.status, 2);
  EXPECT_TRUE(several.err.starts_with("tavlynctl: there is no port on COM3 to COM4: COM3 (")) << several.err;
}

TEST_F(TavlynctlReach, PortThatMayNotBeOpened) {
  if (getuid() != 0) GTEST_SKIP() << "only root can become someone else";
  std::ofstream(ports_.PathOf(3)) << "";
  fs::permissions(ports_.PathOf(3), fs::perms(0600));
  const Ended one =
      RunLine("env -u LD_PRELOAD setpriv --reuid 65534 --clear-groups " + kCtl + " list --com 3");
  EXPECT_EQ(one.status, 3);
  EXPECT_EQ(one.err,
            "tavlynctl: this user may not open COM3 (" + ports_.PathOf(3) +
                "), mode 0600, owner root, group root; join that group, or ask the owner for the right\n");
}

// Against root too, whom the terminal's own lock does not keep out.
TEST_F(TavlynctlReach, PortThatAnotherProgramHolds) {
  const PortDevice device(ports_, 3, line_);
  const Ended list = RunLine("exec 8<" + ports_.PathOf(3) + "; flock 8; " + kCtl + " list --com 2-3 8<&-");
  EXPECT_EQ(list.status, 3);
  EXPECT_TRUE(Holds(list.err, "tavlynctl: COM3 (" + ports_.PathOf(3) + ") is held by ")) << list.err;
  EXPECT_TRUE(Holds(list.err, "sh (process ")) << list.err;
}

TEST_F(TavlynctlReach, AdapterThatRefuses) {
  const Ip ip{127, 5, 0, 1};
  const std::string peer = "127.5.0.1:" + std::to_string(ClosedTcpPort(ip));
  const Ended ended = Ctl("list --ip " + peer);
  EXPECT_EQ(ended.status, 2);
  EXPECT_EQ(ended.err, "tavlynctl: " + peer + " refuses the connection; is the TCP port right?\n");
}

// Its queue of connections is full, so it ignores another one.
TEST_F(TavlynctlReach, AdapterThatDoesNotAnswer) {
  const FullPort full({127, 5, 0, 6});
  const std::string peer = "127.5.0.6:" + std::to_string(full.Port());
  const Ended ended = Ctl("read --ip " + peer);
  EXPECT_EQ(ended.status, 2);
  EXPECT_EQ(ended.err,
            "tavlynctl: " + peer + " does not answer; is the address right, and the adapter on?\n");
}

TEST_F(TavlynctlReach, AdapterWithoutAReader) {
  const DeafPort deaf({127, 5, 0, 7});
  const std::string peer = "127.5.0.7:" + std::to_string(deaf.Port());
  const Ended ended = Ctl("list --ip " + peer);
  EXPECT_EQ(ended.status, 2);
  EXPECT_TRUE(Holds(ended.err, "tavlynctl: " + peer + " takes the connection, but no reader answers; "))
      << ended.err;
}

TEST_F(TavlynctlReach, AdapterThatAnotherProgramHolds) {
  const Ip ip{127, 5, 0, 8};
  const TcpDevice device(ip, line_);
  const Client client(ip, device.Port());
  const Ended ended = Ctl("list --ip 127.5.0.8:" + std::to_string(device.Port()));
  EXPECT_EQ(ended.status, 3);
  EXPECT_TRUE(Holds(ended.err, " is held by tool_tests (process " + std::to_string(getpid()) + ")\n"))
      << ended.err;
}

// A folder of hidraw nodes, two of them readers'.
class Permission : public testing::Test {
 protected:
  void SetUp() override {
    fs::permissions(folder_, fs::perms(0755));
    fs::create_directories(folder_ / "dev");
    AddNode("hidraw0", "0003:0000046D:0000C077");
    AddNode("hidraw1", "0003:00007A31:00003BFA");
    AddNode("hidraw2", "0003:00007A31:00003B99");
    AddNode("hidraw3", "0003:00007A31:0000CCDA");
  }

  void AddNode(const std::string& name, const std::string& id) {
    fs::create_directories(folder_ / "sys" / name / "device");
    std::ofstream(folder_ / "sys" / name / "device" / "uevent")
        << "DRIVER=hid-generic\nHID_ID=" << id << "\n";
    std::ofstream(folder_ / "dev" / name) << "";
    fs::permissions(folder_ / "dev" / name, fs::perms(0600));
  }

  // The bulk device as well, on bus 1.
  void AddBulkNode() {
    const fs::path device = folder_ / "usb" / "1-2";
    fs::create_directories(device);
    fs::create_directories(folder_ / "dev" / "001");
    for (const auto& [name, text] : {std::pair{"idVendor", "171b"}, std::pair{"idProduct", "1004"},
                                     std::pair{"busnum", "1"}, std::pair{"devnum", "4"}}) {
      std::ofstream(device / name) << text << "\n";
    }
    std::ofstream(folder_ / "dev" / "001" / "004") << "";
    fs::permissions(folder_ / "dev" / "001" / "004", fs::perms(0600));
  }

  std::string Problem() {
    const std::string bulk = ctl::BulkProblem((folder_ / "usb").string(), (folder_ / "dev").string());
    if (!bulk.empty()) return bulk;
    return ctl::HidProblem((folder_ / "sys").string(), (folder_ / "dev").string());
  }

  std::string ProblemOfAStranger() {
    return SaidToAStranger([this] { return Problem(); });
  }

  const ScratchFolder own_;
  const fs::path& folder_ = own_.Path();
};

TEST_F(Permission, OwnNodeIsNoProblem) { EXPECT_EQ(Problem(), ""); }

TEST_F(Permission, ForbiddenReaderIsNamed) {
  if (getuid() != 0) GTEST_SKIP() << "only root can become someone else";
  const std::string problem = ProblemOfAStranger();
  EXPECT_TRUE(Holds(problem, (folder_ / "dev" / "hidraw1").string() + " (mode 0600, owner root, group root)"))
      << problem;
  EXPECT_TRUE(Holds(problem, "hidraw3"));
  EXPECT_FALSE(Holds(problem, "hidraw0") || Holds(problem, "hidraw2")) << "no rule gives a right to others";
  EXPECT_TRUE(Holds(problem, "udev rules"));
}

TEST_F(Permission, ForbiddenBulkReaderIsNamed) {
  if (getuid() != 0) GTEST_SKIP() << "only root can become someone else";
  AddBulkNode();
  const std::string problem = ProblemOfAStranger();
  EXPECT_TRUE(
      Holds(problem, (folder_ / "dev" / "001" / "004").string() + " (mode 0600, owner root, group root)"))
      << problem;
}

TEST_F(Permission, BulkReaderThatAnotherProgramHoldsIsNamed) {
  AddBulkNode();
  EXPECT_EQ(Problem(), "");
  const std::string node = (folder_ / "dev" / "001" / "004").string();
  std::FILE* holder = popen(("read line <&0 9<" + node).c_str(), "w");
  ASSERT_NE(holder, nullptr);
  std::string problem;
  while (problem.empty()) problem = Problem();
  EXPECT_TRUE(problem.starts_with("the reader at " + node + " is held by sh (process ")) << problem;
  pclose(holder);
}

}  // namespace
}  // namespace tavlyn::boundary
