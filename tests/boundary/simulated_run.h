// tavlynctl on simulated readers, in the test's own folder.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tests/boundary/program.h"
#include "tests/boundary/scratch_folder.h"

namespace tavlyn::boundary {

using Json = nlohmann::json;
namespace fs = std::filesystem;

inline bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

inline const std::string kCtl = TAVLYNCTL;
inline const std::string kSim = TAVLYNSIM;

// Exit codes of tavlynctl.
inline constexpr int kUsage = 1;
inline constexpr int kDeviceError = 4;
inline constexpr int kNoCard = 5;

inline std::string TextOf(const fs::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

inline Json ParsedText(const Ended& ended) {
  EXPECT_EQ(ended.status, 0) << ended.err;
  return Json::parse(ended.out, nullptr, false);
}

inline std::vector<Json> JsonLines(const std::string& text) {
  std::istringstream stream(text);
  std::vector<Json> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(Json::parse(line, nullptr, false));
  return lines;
}

// An event without what says when it was and which device's it is.
inline Json Unstamped(Json event) {
  for (const char* key : {"sequence", "time", "device", "path", "serial_number"}) {
    EXPECT_EQ(event.erase(key), 1u) << key << event;
  }
  return event;
}

// The CRC of a trailer, bit by bit, so that it shares nothing with the library.
inline std::string Sum(const std::string& text) {
  std::uint32_t sum = 0xFFFFFFFF;
  for (const char c : text) {
    sum ^= static_cast<std::uint8_t>(c);
    for (int bit = 0; bit < 8; ++bit) sum = (sum & 1) != 0 ? (sum >> 1) ^ 0xEDB88320U : sum >> 1;
  }
  std::array<char, 9> hex{};
  std::snprintf(hex.data(), hex.size(), "%08X", static_cast<unsigned>(~sum));
  return hex.data();
}

// One command, or two that see the same devices.
inline Ended Simulated(const std::string& devices, const std::string& first, const std::string& second = "") {
  const std::string lines = kCtl + " " + first + (second.empty() ? "" : " && " + kCtl + " " + second);
  return RunLine(kSim + " run " + devices + " -- sh -c '" + lines + "'");
}

// How many exchanges a command takes with a simulator of its own.
inline int ExchangesOf(const std::string& devices, const std::string& words) {
  const Ended ended = RunLine("typed=$(mktemp -u) && mkfifo $typed && " + kSim + " run " + devices +
                              " --interactive -- sh -c \"" + TAVLYNCTL + " " + words +
                              "; echo exchanges >$typed\" <>$typed; rm $typed");
  const std::string prefix = "tavlynsim: ";
  EXPECT_TRUE(ended.err.starts_with(prefix)) << ended.err;
  return ended.err.starts_with(prefix) ? std::stoi(ended.err.substr(prefix.size())) : 0;
}

class SimulatedRun : public testing::Test {
 protected:
  // Lines for a shell in the folder, all with the same simulated devices, where ctl is the program and typed
  // passes a line to the simulator. upon (program.h) is available too.
  std::vector<Ended> Run(const std::string& devices, const std::vector<std::string>& steps) {
    std::ofstream script(folder_ / "script");
    script << kUpon << "ctl() { " << TAVLYNCTL << " \"$@\"; }\ntyped() { echo \"$1\" >typed; }\n";
    for (std::size_t i = 0; i < steps.size(); ++i) {
      script << "(" << steps[i] << ") >" << i << ".out 2>" << i << ".err\necho $? >" << i << ".status\n";
    }
    script.close();
    const Ended whole = RunLine("cd " + folder_.string() + " && mkfifo typed && " + TAVLYNSIM + " run " +
                                devices + " --do 'record on' --interactive -- sh script <>typed; rm typed");
    simulatorTold_ = whole.err;
    std::vector<Ended> ended;
    for (std::size_t i = 0; i < steps.size(); ++i) {
      const std::string step = (folder_ / std::to_string(i)).string();
      const std::string status = TextOf(step + ".status");
      ended.push_back(
          {status.empty() ? -1 : std::stoi(status), TextOf(step + ".out"), TextOf(step + ".err")});
    }
    return ended;
  }

  // Steps that leave the reader's own file with one line changed as file.hwg.
  static std::string Edited(const std::string& change) {
    return "ctl config save own.hwg; sed '" + change + "' own.hwg >file.hwg";
  }

  // The traffic with the reader while one command ran.
  std::string Traffic(const std::string& devices, const std::string& command) {
    Run(devices, {"typed clear; ctl " + command + "; typed traffic"});
    return simulatorTold_;
  }

  const ScratchFolder own_;
  const fs::path& folder_ = own_.Path();
  std::string simulatorTold_;
};

}  // namespace tavlyn::boundary
