// A magnetic-stripe reader on the bench: plugged in, connected and active; its commands as texts.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "api.h"
#include "sim/devices/magstripe.h"
#include "tests/support/bench.h"
#include "tests/support/entry0.h"

namespace tavlyn::test {

class MagModelBench : public Bench {
 protected:
  static constexpr int kTransactions = 37;  // of a whole read, or write

  // Active, after another reader, which does not change.
  void Connect() {
    Plug(other_, "other");
    Plug(magstripe, "magstripe");
    SetDevTypeSrch(0);
    SetConnectProduct(2);
    EXPECT_EQ(USBConnect(nullptr), 1U);
    EXPECT_EQ(SetActDev(1), 1U);
    LetTimePass();
    ForgetTraffic();
    magstripe->faults.Restart();
    other_->faults.Restart();
    entry0_.emplace().Note();
  }
  void TearDown() override {
    if (entry0_) entry0_->ExpectAsNoted();
    EXPECT_EQ(other_->faults.Exchanges(), 0) << "the other reader was asked";
    Bench::TearDown();
  }
  // For tests that end with other devices.
  void Disconnect() {
    USBDisconnect();
    entry0_.reset();
  }

  // A packet, as long as one on the wire.
  static sim::Bytes Packet(const std::string& text) {
    sim::Bytes packet(text.begin(), text.end());
    packet.resize(sim::kMagPacketBytes);
    packet.back() = '\r';
    return packet;
  }
  void AnswerTo(const std::string& command, const std::string& reply, int times = 1) {
    // The models take prefixes as lists; every command here has three letters or fewer.
    const auto letter = [&](std::size_t i) {
      return i < command.size() ? static_cast<std::uint8_t>(command[i]) : std::uint8_t{0};
    };
    magstripe->faults.AnswerWith({letter(0), letter(1), letter(2)}, Packet(reply), times);
  }
  void SwipeCard(const std::string& text) {
    const auto card = sim::ParseMagCard(text);
    ASSERT_TRUE(card) << text;
    magstripe->Swipe(*card);
  }

  // The traffic with packets as texts: "QRZ", "sleep 2", "get"; failed ones followed by "refused".
  Lines Told() {
    Lines lines;
    for (const sim::Event& event : host.transcript.Events()) {
      std::string line;
      if (event.kind == sim::EventKind::kSet) {
        EXPECT_EQ(event.bytes.size(), sim::kMagPacketBytes);
        EXPECT_EQ(event.bytes.back(), '\r');
        EXPECT_EQ(event.reportId, 0);
        for (std::size_t i = 0; i + 1 < event.bytes.size() && event.bytes[i] != 0; ++i) {
          line += static_cast<char>(event.bytes[i]);
        }
      } else if (event.kind == sim::EventKind::kGet) {
        line = "get";
      } else if (event.kind == sim::EventKind::kSleep) {
        line = event.Line();
      } else {
        continue;
      }
      lines.push_back(event.ok ? line : line + " refused");
    }
    ForgetTraffic();
    return lines;
  }
  // The commands alone.
  Lines Commands() {
    Lines commands;
    for (const std::string& line : Told()) {
      if (!line.starts_with("get") && !line.starts_with("sleep")) commands.push_back(line);
    }
    return commands;
  }
  // Each command with its pause and its reply.
  static Lines Exchanged(const Lines& commands) {
    Lines lines;
    for (const std::string& command : commands) {
      const bool busy = command == "FW" || command == "FD";
      lines = Join({lines, {command, "sleep 2"}, busy ? Lines{"sleep 200"} : Lines{}, {"get"}});
    }
    return lines;
  }

  static Lines ReadCommands() {
    Lines commands = {"QRZ", "QSV"};
    for (char letter = 'a'; letter <= 'k'; ++letter) {
      for (const char* part : {"0", "1", "C"}) commands.push_back(std::string("G") + letter + part);
    }
    return Join({commands, {"GS0", "GL0"}});
  }

  // Settings in which every byte is different, as the reader holds them.
  static sim::MagSettings Marked() {
    sim::MagSettings settings;
    for (std::size_t n = 0; n < sim::kUserFields; ++n) {
      sim::UserField& field = settings.fields[n];
      const auto mark = static_cast<std::uint8_t>(n * 16);
      field.first[0] = static_cast<std::uint8_t>((n % 2 != 0 ? 0x80U : 0U) | (n % 3 == 1 ? 0x40U : 0U) | n);
      for (std::size_t i = 0; i < 8; ++i) {
        field.first[1 + i] = static_cast<std::uint8_t>(mark + i);
        field.second[i] = static_cast<std::uint8_t>(mark + 8 + i);
      }
      const std::array<unsigned, 4> flags{0x20, 0x40, 0x80, 0xE0};
      field.control = {static_cast<std::uint8_t>(flags.at(n % 4) | (n % 3 + 1)),
                       static_cast<std::uint8_t>(n + 1), static_cast<std::uint8_t>(n + 20),
                       static_cast<std::uint8_t>(n + 40), static_cast<std::uint8_t>(n + 60)};
    }
    settings.system = {0xC5, 30, 255, 0x34, 0x12, 0xB2};
    settings.leds = {0x1B, 0x02};
    return settings;
  }

  std::shared_ptr<sim::Magstripe> magstripe = std::make_shared<sim::Magstripe>();

 private:
  // In entry 0.
  std::shared_ptr<sim::Magstripe> other_ = std::make_shared<sim::Magstripe>();
  std::optional<Entry0> entry0_;
};

}  // namespace tavlyn::test
