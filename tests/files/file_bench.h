// Files on the bench: the test's own folder, readers with distinct contents, and an independent CRC.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "api.h"
#include "core/state.h"
#include "tests/files/saved_text.h"
#include "tests/support/bench.h"
#include "tests/support/on_disk.h"

namespace tavlyn::test {

inline void Store(const std::filesystem::path& path, std::string_view text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(text.data(), static_cast<std::streamsize>(text.size()));
  ASSERT_TRUE(file.good()) << path;
}

inline std::string Fetch(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

// Bit by bit, so that it shares nothing with the library's table.
inline std::uint32_t SumBitwise(std::string_view text) {
  std::uint32_t sum = 0xFFFFFFFF;
  for (const char c : text) {
    sum ^= static_cast<std::uint8_t>(c);
    for (int bit = 0; bit < 8; ++bit) sum = (sum & 1) != 0 ? (sum >> 1) ^ 0xEDB88320U : sum >> 1;
  }
  return ~sum;
}

inline std::string SumText(std::string_view text) {
  std::array<char, 9> hex{};
  std::snprintf(hex.data(), hex.size(), "%08X", static_cast<unsigned>(SumBitwise(text)));
  return hex.data();
}

inline const std::string kBlankMarker = "/--- iEndOfHwgFile \n";
inline const std::string kPlainMarker = "/--- iEndOfHwgFile\n";
inline const std::string kIniMarker = "[EOF]\r\n";

inline std::string SecureOf(const std::string& body) {
  return body + kBlankMarker + "iEndOfHwgFile = " + SumText(body);
}
// What a secure save leaves on disk: the CRC is that of the bytes there.
inline std::string SavedSecureOf(const std::string& text) {
  const std::string body = OnDisk(text);
  return body + OnDisk(kBlankMarker) + "iEndOfHwgFile = " + SumText(body);
}
inline std::string BleOf(const std::string& body) {
  return body + kPlainMarker + "iEndOfHwgFile=" + SumText(body + kPlainMarker);
}
inline std::string IniOf(const std::string& body) {
  return body + kIniMarker + "iEndOfIniFile=" + (SumBitwise(body) == 0 ? "0" : SumText(body)) + "\r\n";
}

inline std::string CrLf(std::string_view text) {
  std::string result;
  for (const char c : text) result += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return result;
}

// A different value in nearly every field; kDistinctFields and kDistinctSep show it.
inline void MakeDistinct(sim::Settings& settings) {
  settings.blocks[0] = {7, 9, 0x2F, 33, 200, ':', '(', 0xA5};
  settings.blocks[1] = {0, 25, 20, 40, 3, 5, 0xA6, 0xE0};
  settings.blocks[2] = {0x15, 0x56, 'x', 'y', 0x21, 'A', 'B', 'C'};
  settings.blocks[3] = {5, 0, 0, 0, 0, 2, 2, 1};
  settings.separated = {0x24, 0x42, 0x21, 0x10};
  for (std::size_t at = 4; at < settings.separated.size(); ++at)
    settings.separated[at] = static_cast<std::uint8_t>(at);
}

class FileBench : public Bench {
 protected:
  std::shared_ptr<sim::Reader> Use(std::shared_ptr<sim::Reader> model) {
    reader = Connected(std::move(model));
    return reader;
  }
  static tsDevEntry& Entry() { return DevTable[0]; }
  static tsCfgSlot& Slot(std::size_t number = 0) { return Entry().CfgSlot[number]; }

  std::filesystem::path At(const std::string& name) { return Folder() / name; }
  std::string File(const std::string& name = "file.txt") { return At(name).string(); }

  std::uint32_t Load(const std::string& text) {
    Store(At("load.txt"), text);
    return ReadDevCfgFmFile(File("load.txt").c_str());
  }
  // After a title line.
  std::uint32_t LoadLines(const std::string& lines) { return Load(kTitleLine + lines); }

  std::string Save() {
    EXPECT_EQ(WriteDevCfgToFile(File("save.txt").c_str()), 1U);
    return Fetch(At("save.txt"));
  }

  bool Intact(std::string_view text, std::uint32_t kind = 0) {
    Store(At("check.txt"), text);
    return CheckTamperedFile(File("check.txt").c_str(), kind) != 0;
  }

  std::shared_ptr<sim::Reader> reader;
};

// A committed write of a plain reader: the blocks given, the commit with its mask, the query of the store.
inline Lines Committed(const Lines& blocks, const std::string& mask) {
  const std::string commit = mask == "00" ? "set 90" : "set 90 " + mask;
  return Join({blocks, {commit, "set 8C 06", "get", "sleep 20"}});
}

}  // namespace tavlyn::test
