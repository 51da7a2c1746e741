// tavlynctl and tavlynsim in folders, and with files, whose names are not English.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/boundary/begun_windows.h"
#include "tools/path_names.h"

namespace tavlyn::boundary {
namespace {

namespace fs = std::filesystem;

class ToolsInFolders : public testing::Test {
 protected:
  // These characters share no code page but UTF-8.
  void SetUp() override {
    ASSERT_EQ(GetACP(), UINT{CP_UTF8});
    fs::create_directories(folder_);
    const fs::path built = fs::path(TAVLYNSIM).parent_path();
    for (const char* name : {"tavlynsim.exe", "tavlynctl.exe", "tavlynapi.dll", "hid.dll", "setupapi.dll"}) {
      fs::copy_file(built / name, folder_ / name);
    }
  }
  void TearDown() override { fs::remove_all(folder_); }

  Ended Simulated(const std::string& words) const {
    return RunLine(At("tavlynsim.exe") + " run --device plus:2 -- " + At("tavlynctl.exe") + " " + words);
  }

  [[nodiscard]] std::string At(const std::string& name) const { return NameOfPath(folder_ / PathOf(name)); }

 private:
  fs::path folder_ = fs::temp_directory_path() / L"J\u00FCrgen-\u8868";
};

TEST_F(ToolsInFolders, AreSimulatedAnywhere) {
  const Ended listed = Simulated("list");
  EXPECT_EQ(listed.status, 0) << listed.err;
}

TEST_F(ToolsInFolders, FilesKeepTheirNames) {
  const std::string file = At("l\u00F6sung-\u8868.hwg");
  EXPECT_EQ(Simulated("config save " + file + " --secure").status, 0);
  EXPECT_TRUE(fs::exists(PathOf(file)));
  const Ended checked = RunLine(At("tavlynctl.exe") + " check " + file);
  EXPECT_EQ(checked.status, 0) << checked.err;
  EXPECT_NE(std::string::npos, checked.out.find(file)) << checked.out;
}

TEST_F(ToolsInFolders, MessagesShowNamesAsTheyAre) {
  const std::string file = At("fehlt-\u00FC\u8868.hwg");
  const Ended missing = RunLine(At("tavlynctl.exe") + " check " + file);
  EXPECT_EQ(missing.status, 6);
  EXPECT_NE(std::string::npos, missing.err.find("there is no file " + file)) << missing.err;
}

}  // namespace
}  // namespace tavlyn::boundary
