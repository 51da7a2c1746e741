// What the library reads, writes and leaves on disk, where it concerns anyone other than its caller.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "tests/boundary/reader_usb.h"
#include "tests/boundary/scratch_folder.h"

namespace {

// Whether this process counts as having rights that its caller does not have.
bool hasOthersRights = false;

template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// Replaces libc's: what a set-user-ID program gets.
extern "C" unsigned long getauxval(unsigned long type) noexcept {
  static const auto next = Next<unsigned long(unsigned long)>("getauxval");
  return type == AT_SECURE && hasOthersRights ? 1 : next(type);
}

extern "C" char* secure_getenv(const char* name) noexcept { return hasOthersRights ? nullptr : getenv(name); }

namespace tavlyn::boundary {
namespace {

namespace fs = std::filesystem;

constexpr const char* kRow = "VID=\"1234\" PID=\"5678\" VENDORNAME=\"X\" DEFAULT1MASK=\"4321\"\n";
constexpr std::uint32_t kBuiltInMask = 0x8000;

void WriteText(const fs::path& file, const char* text) { std::ofstream(file) << text; }

std::string TextOf(const fs::path& file) {
  std::fflush(nullptr);
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

unsigned ModeOf(const fs::path& file) { return static_cast<unsigned>(fs::status(file).permissions()); }

// In its own folder, which is the current one.
class Files : public ReaderUsb {
 protected:
  void SetUp() override {
    umask_ = umask(0);
    ReaderUsb::SetUp();
  }
  void TearDown() override {
    hasOthersRights = false;
    ReaderUsb::TearDown();
    library_.reset();
    umask(umask_);
  }

  void PlugAndConnect() {
    Do("plug reader");
    ASSERT_EQ(Connect(), 1u);
  }

  std::uint32_t DefaultMaskOfAConnect() {
    Connect();
    return CALL(*library_, GetVidPidFilterMask)(1);
  }

  const CurrentScratchFolder own_;
  const fs::path& folder_ = own_.Path();
  mode_t umask_ = 0;
};

TEST_F(Files, WhatMayHoldKeysIsItsOwnersAlone) {
  PlugAndConnect();
  const auto save = [&](auto* call, const char* name) {
    const std::string old = std::string("old-") + name;
    EXPECT_EQ(call(name), 1u) << name;
    EXPECT_EQ(ModeOf(name), 0600u) << name;
    WriteText(old, "before");
    fs::permissions(old, fs::perms(0640));
    EXPECT_EQ(call(old.c_str()), 1u) << name;
    EXPECT_EQ(ModeOf(old), 0640u) << "a file that is there keeps who may read it";
    EXPECT_EQ(fs::file_size(old), fs::file_size(name));
  };
  save(CALL(*library_, WriteDevCfgToFile), "plain.hwg");
  save(CALL(*library_, WriteDevCfgToSecureFile), "secure.hwg");
  save(CALL(*library_, WriteBLEDataToFile), "data.ble");
  save(CALL(*library_, WriteBLEKeyToFile), "key.ble");
}

TEST_F(Files, VidPidTableOfTheCurrentFolderIsRead) {
  WriteText("TavlynVIDPID.txt", kRow);
  EXPECT_EQ(DefaultMaskOfAConnect(), 0x4321u);
}

TEST_F(Files, VidPidTableIsARegularFile) {
  fs::create_directory("TavlynVIDPID.txt");
  EXPECT_EQ(DefaultMaskOfAConnect(), kBuiltInMask);
  fs::remove("TavlynVIDPID.txt");
  fs::create_symlink("/dev/null", "TavlynVIDPID.txt");
  Load();
  EXPECT_EQ(DefaultMaskOfAConnect(), kBuiltInMask);
  fs::remove("TavlynVIDPID.txt");
  WriteText("elsewhere", kRow);
  fs::create_symlink("elsewhere", "TavlynVIDPID.txt");
  EXPECT_EQ(DefaultMaskOfAConnect(), 0x4321u);
}

// Its other end would wait for somebody to open it, and then write a row.
TEST_F(Files, VidPidTableIsNoPipe) {
  ASSERT_EQ(mkfifo("TavlynVIDPID.txt", 0600), 0);
  const pid_t writer = fork();
  if (writer == 0) {
    const int pipe = open("TavlynVIDPID.txt", O_WRONLY);
    const bool written = write(pipe, kRow, std::char_traits<char>::length(kRow)) > 0;
    _exit(written ? 0 : 1);
  }
  ASSERT_LT(0, writer);
  EXPECT_EQ(DefaultMaskOfAConnect(), kBuiltInMask);
  kill(writer, SIGKILL);
  int status = 0;
  EXPECT_EQ(waitpid(writer, &status, 0), writer);
  EXPECT_TRUE(WIFSIGNALED(status)) << "nobody opened the pipe";
}

TEST_F(Files, WithRightsOfOthersNoVidPidTableIsRead) {
  WriteText("TavlynVIDPID.txt", kRow);
  hasOthersRights = true;
  EXPECT_EQ(DefaultMaskOfAConnect(), kBuiltInMask);
}

// Searches the memory of this process; not with a sanitizer, which keeps freed memory.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kMayBeSearched = false;
#else
constexpr bool kMayBeSearched = true;
#endif

// Some bytes of a file, read one by one and stored in another form, so that the search does not find itself.
class Needle {
 public:
  Needle(const char* path, const char* behind, std::size_t length) {
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    const std::size_t head = std::strlen(behind);
    std::size_t matched = 0;
    char byte = 0;
    while (read(file, &byte, 1) == 1 && masked_.size() < length) {
      if (matched == head)
        masked_.push_back(static_cast<char>(byte ^ kMask));
      else
        matched = byte == behind[matched] ? matched + 1 : 0;
    }
    close(file);
    EXPECT_EQ(masked_.size(), length) << path;
  }

  [[nodiscard]] bool InMemory() const {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
      unsigned long begin = 0;
      unsigned long end = 0;
      if (line.find(" rw-p ") == std::string::npos) continue;
      EXPECT_EQ(std::sscanf(line.c_str(), "%lx-%lx", &begin, &end), 2);
      if (StandsIn(reinterpret_cast<const char*>(begin), reinterpret_cast<const char*>(end))) return true;
    }
    return false;
  }

 private:
  static constexpr char kMask = 0x15;

  [[nodiscard]] bool StandsIn(const char* at, const char* end) const {
    const auto same = [](char memory, char masked) { return (memory ^ kMask) == masked; };
    return std::search(at, end, masked_.begin(), masked_.end(), same) != end;
  }

  std::vector<char> masked_;
};

std::uint32_t SumOf(const std::string& text) {
  std::uint32_t sum = ~0U;
  for (const char c : text) {
    sum ^= static_cast<std::uint8_t>(c);
    for (int bit = 0; bit < 8; ++bit) sum = (sum & 1) != 0 ? sum >> 1 ^ 0xEDB88320 : sum >> 1;
  }
  return ~sum;
}

// Another process writes the file, so that this one never knew the key. (No test of this program reads a
// saved one either.)
void WriteKeyFile(const char* path) {
  const pid_t writer = fork();
  if (writer == 0) {
    std::string text = "[Blob1]\r\nhdr=02 01 10 00\r\ndata=";
    char byte[16];
    for (unsigned at = 0; at < 16; ++at) {
      std::snprintf(byte, sizeof byte, at == 0 ? "%02X" : " %02X", (0xC1 + at * 37) & 0xFF);
      text += byte;
    }
    text += "\r\n";
    std::snprintf(byte, sizeof byte, "%08X\r\n", SumOf(text));
    std::ofstream(path, std::ios::binary) << text << "[EOF]\r\niEndOfIniFile=" << byte;
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(writer, &status, 0), writer);
}

TEST_F(Files, KeysOfFilesDoNotStayInMemory) {
  if (!kMayBeSearched) GTEST_SKIP() << "a sanitizer keeps memory that was given back";
  PlugAndConnect();
  WriteKeyFile("keys.ini");
  EXPECT_EQ(CALL(*library_, LoadIniFile)("keys.ini"), 1u);
  EXPECT_EQ(CALL(*library_, WriteBLEKeyToFile)("key.ble"), 1u);
  EXPECT_EQ(CALL(*library_, CheckTamperedFile)("key.ble", 0), 1u);
  EXPECT_EQ(CALL(*library_, WriteBLEKeyToReader)("key.ble"), 1u);
  library_.reset();
  EXPECT_FALSE(Needle("keys.ini", "data=", 30).InMemory());
  EXPECT_FALSE(Needle("key.ble", "[] =\n", 40).InMemory());
}

class TraceFiles : public Files {
 protected:
  void SetUp() override {
    Files::SetUp();
    library_.reset();
    file_ = ChooseTraceFile();
    fs::remove_all(file_.parent_path());
    SetVariable("TAVLYNAPI_LOGGING", "");
  }
  void TearDown() override {
    SetVariable("TAVLYNAPI_LOGGING", nullptr);
    Files::TearDown();
    fs::remove_all(file_.parent_path());
  }

  // Loads a library now and makes it do something that it would trace.
  void LoadAndTrace() {
    Load();
    PlugAndConnect();
    std::fflush(nullptr);
  }

  fs::path file_;
};

TEST_F(TraceFiles, IsItsOwnersAlone) {
  LoadAndTrace();
  EXPECT_EQ(ModeOf(file_), 0600u);
  EXPECT_NE(TextOf(file_), "");
}

TEST_F(TraceFiles, IsNotHandedToOtherPrograms) {
  LoadAndTrace();
  int found = 0;
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    if (fs::read_symlink(entry.path(), gone) != file_) continue;
    ++found;
    EXPECT_NE(fcntl(std::stoi(entry.path().filename().string()), F_GETFD) & FD_CLOEXEC, 0);
  }
  EXPECT_EQ(found, 1);
}

TEST_F(TraceFiles, NoLinkIsFollowed) {
  WriteText("precious", "untouched");
  fs::create_directories(file_.parent_path());
  fs::create_symlink(folder_ / "precious", file_);
  LoadAndTrace();
  EXPECT_EQ(TextOf("precious"), "untouched");
  fs::remove_all(file_.parent_path());
  fs::create_directory("inner");
  fs::create_symlink(folder_ / "inner", file_.parent_path());
  LoadAndTrace();
  EXPECT_TRUE(fs::is_empty("inner"));
}

TEST_F(TraceFiles, AFileWithAnotherNameIsNoTraceFile) {
  WriteText("precious", "untouched");
  fs::create_directories(file_.parent_path());
  fs::create_hard_link("precious", file_);
  LoadAndTrace();
  EXPECT_EQ(TextOf("precious"), "untouched");
}

TEST_F(TraceFiles, AFileOfSomebodyElseIsNoTraceFile) {
  if (geteuid() != 0) GTEST_SKIP() << "NOT TESTED: only root can give files away";
  fs::create_directories(file_.parent_path());
  WriteText(file_, "theirs");
  ASSERT_EQ(chown(file_.c_str(), 65534, 65534), 0);
  LoadAndTrace();
  EXPECT_EQ(TextOf(file_), "theirs");
}

// A pipe would block the program as soon as it is full.
TEST_F(TraceFiles, APipeIsNoTraceFile) {
  fs::create_directories(file_.parent_path());
  ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0);
  const int reader = open(file_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_LE(0, reader);
  LoadAndTrace();
  char byte = 0;
  EXPECT_GE(0, read(reader, &byte, 1));
  close(reader);
}

void Ignore(const char* /*line*/, std::uint64_t /*length*/) {}

TEST_F(TraceFiles, WithRightsOfOthersThereIsNoTrace) {
  hasOthersRights = true;
  LoadAndTrace();
  EXPECT_FALSE(fs::exists(file_));
  EXPECT_EQ(CALL(*library_, SetMarkerFunction)(Ignore), 0u);
}

}  // namespace
}  // namespace tavlyn::boundary
