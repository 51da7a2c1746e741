// What tavlynctl says of ports and adapters at which no reader is found.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/boundary/bare_port.h"
#include "tests/boundary/far_end.h"
#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

// A connection of this program's.
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

// A TCP port that has as many connections as it takes.
class FullPort {
 public:
  explicit FullPort(const Ip& ip)
      : socket_(Checked(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")) {
    const sockaddr_in own = sim::net::AddressOf(ip, 0);
    Checked(bind(socket_.get(), reinterpret_cast<const sockaddr*>(&own), sizeof own), "bind");
    Checked(listen(socket_.get(), 0), "listen");
    port_ = sim::net::PortOf(socket_.get());
    const Client gone(ip, port_);  // which nobody has taken yet
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
  EXPECT_EQ(2, one.status);
  EXPECT_EQ("tavlynctl: no reader answered on COM3\n", one.err);
  EXPECT_EQ(
      "searching on COM3 to COM5 takes up to 5 seconds\n"
      "tavlynctl: no reader answered on COM3 to COM5\n",
      Ctl("list --com 3-5").err);
}

TEST_F(TavlynctlReach, PortThatIsNotThere) {
  const Ended one = Ctl("read --com 3");
  EXPECT_EQ(2, one.status);
  EXPECT_EQ(
      "tavlynctl: COM3 (" + ports_.PathOf(3) + ") does not exist; docs/linux.md tells which file a port is\n",
      one.err);
  const Ended several = Ctl("list --com 3-4");
  EXPECT_EQ(2, several.status);
  EXPECT_TRUE(several.err.starts_with("tavlynctl: there is no port on COM3 to COM4: COM3 (")) << several.err;
}

TEST_F(TavlynctlReach, PortThatMayNotBeOpened) {
  if (getuid() != 0) GTEST_SKIP() << "only root can become someone else";
  std::ofstream(ports_.PathOf(3)) << "";
  fs::permissions(ports_.PathOf(3), fs::perms(0600));
  const Ended one =
      RunLine("env -u LD_PRELOAD setpriv --reuid 65534 --clear-groups " + kCtl + " list --com 3");
  EXPECT_EQ(3, one.status);
  EXPECT_EQ("tavlynctl: this user may not open COM3 (" + ports_.PathOf(3) +
                "), mode 0600, owner root, group root; join that group, or ask the owner for the right\n",
            one.err);
}

// Against root too, whom the terminal's own lock does not keep off.
TEST_F(TavlynctlReach, PortThatAnotherProgramHolds) {
  const PortDevice device(ports_, 3, line_);
  const Ended list = RunLine("exec 8<" + ports_.PathOf(3) + "; flock 8; " + kCtl + " list --com 2-3 8<&-");
  EXPECT_EQ(3, list.status);
  EXPECT_TRUE(Holds(list.err, "tavlynctl: COM3 (" + ports_.PathOf(3) + ") is held by ")) << list.err;
  EXPECT_TRUE(Holds(list.err, "sh (process ")) << list.err;
}

TEST_F(TavlynctlReach, AdapterThatRefuses) {
  const Ip ip{127, 5, 0, 1};
  const std::string peer = "127.5.0.1:" + std::to_string(ClosedTcpPort(ip));
  const Ended ended = Ctl("list --ip " + peer);
  EXPECT_EQ(2, ended.status);
  EXPECT_EQ("tavlynctl: " + peer + " refuses the connection; is the TCP port right?\n", ended.err);
}

// Its queue of connections is full, so that it takes no notice of another.
TEST_F(TavlynctlReach, AdapterThatDoesNotAnswer) {
  const FullPort full({127, 5, 0, 6});
  const std::string peer = "127.5.0.6:" + std::to_string(full.Port());
  const Ended ended = Ctl("read --ip " + peer);
  EXPECT_EQ(2, ended.status);
  EXPECT_EQ("tavlynctl: " + peer + " does not answer; is the address right, and the adapter on?\n",
            ended.err);
}

TEST_F(TavlynctlReach, AdapterWithoutAReader) {
  const DeafPort deaf({127, 5, 0, 7});
  const std::string peer = "127.5.0.7:" + std::to_string(deaf.Port());
  const Ended ended = Ctl("list --ip " + peer);
  EXPECT_EQ(2, ended.status);
  EXPECT_TRUE(Holds(ended.err, "tavlynctl: " + peer + " takes the connection, but no reader answers; "))
      << ended.err;
}

TEST_F(TavlynctlReach, AdapterThatAnotherProgramHolds) {
  const Ip ip{127, 5, 0, 8};
  const TcpDevice device(ip, line_);
  const Client client(ip, device.Port());
  const Ended ended = Ctl("list --ip 127.5.0.8:" + std::to_string(device.Port()));
  EXPECT_EQ(3, ended.status);
  EXPECT_TRUE(Holds(ended.err, " is held by tool_tests (process " + std::to_string(getpid()) + ")\n"))
      << ended.err;
}

}  // namespace
}  // namespace tavlyn::boundary
