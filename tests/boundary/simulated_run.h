// tavlynctl on simulated readers, in a folder of the test's own.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

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

namespace tavlyn::boundary {

using Json = nlohmann::json;
namespace fs = std::filesystem;

inline bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

inline const std::string kCtl = TAVLYNCTL;
inline const std::string kSim = TAVLYNSIM;

inline std::string TextOf(const fs::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

inline Json ParsedText(const Ended& ended) {
  EXPECT_EQ(0, ended.status) << ended.err;
  return Json::parse(ended.out, nullptr, false);
}

inline std::vector<Json> JsonLines(const std::string& text) {
  std::istringstream stream(text);
  std::vector<Json> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(Json::parse(line, nullptr, false));
  return lines;
}

// The sum of a trailer, bit by bit, so that it shares nothing with the library.
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

class SimulatedRun : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = "/tmp/tavlyn-ctl-XXXXXX";
    ASSERT_NE(nullptr, mkdtemp(name.data()));
    folder_ = name;
  }

  void TearDown() override { fs::remove_all(folder_); }

  // Lines for a shell in the folder, all with the same simulated devices, where ctl is the program and typed
  // gives a line to the simulator. They have upon, too.
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

  // What went over to the reader while one command ran.
  std::string Traffic(const std::string& devices, const std::string& command) {
    Run(devices, {"typed clear; ctl " + command + "; typed traffic"});
    return simulatorTold_;
  }

  fs::path folder_;
  std::string simulatorTold_;
};

}  // namespace tavlyn::boundary
