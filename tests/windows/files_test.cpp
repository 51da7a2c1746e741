// Which files open.
#include "platform/files.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace tavlyn::platform {
namespace {

constexpr char kFile[] = "C:\\tavlyn-files-test.txt";

TEST(FilesTest, AFoundFileIsOneOnDisk) {
  std::FILE* file = OpenPrivateFile(kFile);
  ASSERT_NE(file, nullptr);
  EXPECT_TRUE(IsRegularFile(file));
  std::fclose(file);
  file = OpenFoundFile(kFile);
  EXPECT_NE(file, nullptr);
  if (file != nullptr) std::fclose(file);
  std::remove(kFile);
  EXPECT_EQ(OpenFoundFile(kFile), nullptr);
}

TEST(FilesTest, ADeviceHasNoEnd) {
  std::FILE* device = OpenFile("NUL", "r");
  ASSERT_NE(device, nullptr);
  EXPECT_FALSE(IsRegularFile(device));
  std::fclose(device);
  EXPECT_EQ(OpenFoundFile("NUL"), nullptr);
}

TEST(FilesTest, NoPathIsNoFile) {
  EXPECT_EQ(OpenFile(nullptr, "r"), nullptr);
  EXPECT_EQ(OpenFoundFile(nullptr), nullptr);
  EXPECT_FALSE(IsRegularFile(nullptr));
}

}  // namespace
}  // namespace tavlyn::platform
