// The link that a magstripe reader's configuration file names.
#include <fstream>

#include "api.h"
#include "core/state.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

constexpr std::uint32_t kUnknown = 65535;

class LinkInFile : public Bench {
 protected:
  void Be(std::uint32_t kind) {
    shared.DevCnt = 1;
    DevTable[0].ProductKind = kind;
  }
  std::uint32_t Named(const std::string& text) {
    const auto path = Folder() / "config.txt";
    std::ofstream(path) << text;
    return ReadDevTypeFromFile(path.string().c_str());
  }
};

TEST_F(LinkInFile, OnlyMagstripeFilesAreLookedAt) {
  SetUnsupportedProductErrorCode(0x8001);
  EXPECT_EQ(Named("Interface: USB"), 0x8001U);
  Be(kReader);
  EXPECT_EQ(Named("Interface: USB"), 0x8001U);
  Be(kSonar);
  EXPECT_EQ(Named("Interface: SERIAL"), 0U);
}

TEST_F(LinkInFile, TheFirstWordBehindTheKeyCounts) {
  Be(kMagstripe);
  EXPECT_EQ(Named("Interface: USB\n"), 0U);
  EXPECT_EQ(Named("Interface: SERIAL\n"), 1U);
  EXPECT_EQ(Named("Interface: SERIAL, not USB\n"), 0U) << "USB wins";
  EXPECT_EQ(Named("USB Interface: SERIAL\n"), 1U) << "what stands in front does not count";
  EXPECT_EQ(Named("Interface: usb\n"), kUnknown);
  EXPECT_EQ(Named("USB\n"), kUnknown);
  EXPECT_EQ(Named(""), kUnknown);
}

TEST_F(LinkInFile, OnlyTheFirst257BytesAreRead) {
  Be(kMagstripe);
  const std::string key = "Interface: USB";
  EXPECT_EQ(Named(std::string(257 - key.size(), ' ') + key), 0U);
  EXPECT_EQ(Named(std::string(258 - key.size(), ' ') + key), kUnknown);
}

TEST_F(LinkInFile, NothingOfAnEarlierFileIsSeen) {
  Be(kMagstripe);
  EXPECT_EQ(Named("Interface: USB"), 0U);
  EXPECT_EQ(Named("Interface:"), kUnknown);
}

TEST_F(LinkInFile, WhatCannotBeOpened) {
  Be(kMagstripe);
  EXPECT_EQ(ReadDevTypeFromFile(nullptr), kUnknown);
  EXPECT_EQ(ReadDevTypeFromFile(""), kUnknown);
  EXPECT_EQ(ReadDevTypeFromFile((Folder() / "missing").string().c_str()), kUnknown);
}

}  // namespace
}  // namespace tavlyn::test
