// Folders in a code page whose characters take one or two bytes.
#include <gtest/gtest.h>

#include <string>

#include "platform/parts.h"
#include "platform/windows/system.h"
#include "tests/boundary/imports_windows.h"

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

TEST_F(PlacesTest, AFolderThatIsNotToldOrTooLongIsEmpty) {
  for (void* answer : {boundary::ConstantAnswer<0>(GetCurrentDirectoryA),
                       boundary::ConstantAnswer<4096>(GetCurrentDirectoryA)}) {
    const boundary::Redirected answering("kernel32", "GetCurrentDirectoryA", answer);
    EXPECT_TRUE(answering.Done());
    EXPECT_EQ(ThePlaces().CurrentFolder().View(), "");
  }
}

TEST_F(PlacesTest, AnEmptyVariableIsSet) {
  constexpr char kName[] = "TAVLYN_PLACES_TEST";
  EXPECT_FALSE(ThePlaces().EnvironmentIsSet(kName));
  for (const char* value : {"", "1"}) {
    SetEnvironmentVariableA(kName, value);
    EXPECT_TRUE(ThePlaces().EnvironmentIsSet(kName)) << value;
  }
  SetEnvironmentVariableA(kName, nullptr);
}

TEST_F(PlacesTest, ARootHasItsSeparator) { EXPECT_EQ(FolderIn(L"C:\\"), "C:\\"); }

}  // namespace
}  // namespace tavlyn::platform
