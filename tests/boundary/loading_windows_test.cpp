// Files with the names of system libraries in places where Windows would look: beside the program, and in the
// current folder. A process of its own, because what is loaded once is not searched for again.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "tests/boundary/library.h"
#include "tests/boundary/loader.h"

namespace tavlyn::boundary {
namespace {

constexpr const char* kMarker = "tavlyn_standin_marker";
constexpr const char* kPlanted[] = {"hid.dll", "setupapi.dll"};

std::string OwnFolder() {
  char file[MAX_PATH];
  const std::string path(file, GetModuleFileNameA(nullptr, file, sizeof file));
  return path.substr(0, path.find_last_of('\\'));
}

TEST(Loading, PlantedSystemLibrariesAreNotLoaded) {
  ASSERT_TRUE(SetCurrentDirectoryA(OwnFolder().c_str()));
  for (const char* name : kPlanted) {
    ASSERT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesA(name)) << name << " lies in both places";
    ASSERT_EQ(GetModuleHandleA(name), nullptr);
  }
  void* library = LoadByName(TAVLYN_LIBRARY);
  ASSERT_NE(library, nullptr);
  for (const char* name : kPlanted) {
    void* loaded = GetModuleHandleA(name);
    ASSERT_NE(loaded, nullptr) << name;
    EXPECT_EQ(FindSymbol(loaded, kMarker), nullptr) << name;
  }
  Unload(library);
  // A search by the bare name would have found the planted file.
  void* planted = LoadByName("hid.dll");
  ASSERT_NE(planted, nullptr);
  EXPECT_NE(FindSymbol(planted, kMarker), nullptr);
  Unload(planted);
}

}  // namespace
}  // namespace tavlyn::boundary
