// Folders in a code page whose characters take one or two bytes.
#include <gtest/gtest.h>

#include <string>

#include "platform/parts.h"
#include "platform/windows/system.h"

namespace tavlyn::platform {
namespace {

class PlacesTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(GetACP(), 932u) << "this program's manifest asks for a Japanese code page";
  }

  static std::string FolderIn(const std::wstring& folder) {
    CreateDirectoryW(folder.c_str(), nullptr);
    EXPECT_TRUE(SetCurrentDirectoryW(folder.c_str()));
    const std::string found(ThePlaces().CurrentFolder().View());
    SetCurrentDirectoryW(L"C:\\");
    return found;
  }
};

TEST_F(PlacesTest, ACharacterMayEndInABackslashsByte) {
  EXPECT_EQ(FolderIn(L"C:\\\x8868"), "C:\\\x95\x5C\\");
  EXPECT_EQ(FolderIn(L"C:\\\x8868\x8868"), "C:\\\x95\x5C\x95\x5C\\");
  EXPECT_EQ(FolderIn(L"C:\\\x8868X"), "C:\\\x95\x5CX\\");
}

TEST_F(PlacesTest, ARootHasItsSeparator) { EXPECT_EQ(FolderIn(L"C:\\"), "C:\\"); }

}  // namespace
}  // namespace tavlyn::platform
