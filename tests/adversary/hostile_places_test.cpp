// What a hostile current folder and a hostile environment cannot do to the library and its tools.
#include <algorithm>
#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::adversary {
namespace {

namespace fs = std::filesystem;

class HostilePlaces : public boundary::SimulatedRun {
 protected:
  boundary::Ended InFolder(const std::string& line) {
    return boundary::RunLine("cd " + folder_.string() + " && " + line);
  }
  [[nodiscard]] std::size_t FilesIn() const {
    return static_cast<std::size_t>(std::distance(fs::recursive_directory_iterator(folder_), {}));
  }
};

TEST_F(HostilePlaces, NoLibraryOfTheCurrentFolderIsLoaded) {
  for (const char* name : {"libhidapi-hidraw.so.0", "libusb-0.1.so.4", "libtavlynapi.so.7", "libstdc++.so.6",
                           "libgcc_s.so.1", "libc.so.6"})
    fs::copy(PLANTED, folder_ / name);
  const std::string tools[] = {boundary::kCtl + " list", boundary::kSim + " devices",
                               boundary::kSim + " run -- " + boundary::kCtl + " list"};
  for (const std::string& line : tools) {
    InFolder(line);
    EXPECT_FALSE(fs::exists(folder_ / "loaded")) << line;
  }
  InFolder("LD_PRELOAD=./libusb-0.1.so.4 /bin/true");
  EXPECT_TRUE(fs::exists(folder_ / "loaded")) << "what is planted tells when it is loaded";
}

TEST_F(HostilePlaces, APipeInPlaceOfTheVidPidTableIsNotWaitedFor) {
  const auto ended =
      InFolder("mkfifo TavlynVIDPID.txt; " + boundary::kSim + " run -- " + boundary::kCtl + " list");
  EXPECT_EQ(ended.status, 0) << ended.err;
}

// Each text is the value of every variable at once.
TEST_F(HostilePlaces, NoVariableDoesHarm) {
  const std::string big(100000, 'A');
  const std::string texts[] = {"",        big,    "/" + big,          "%n%n%s%s",
                               "../../x", "here", "\033]0;x\007\377", "/dev/zero"};
  for (const std::string& text : texts) {
    std::ofstream(folder_ / "value") << text;
    std::string assigned;
    for (const char* name : {"TAVLYNAPI_LOGGING", "TAVLYNAPI_PORT_DIR", "TAVLYNAPI_LIBUSB", "XDG_STATE_HOME",
                             "HOME", "TAVLYNSIM_SOCKET"})
      assigned += std::string(name) + "=\"$(cat value)\" ";
    for (const char* words : {" list", " --com 3 list", " --version"}) {
      const auto ended = InFolder(assigned + boundary::kCtl + words);
      EXPECT_LT(ended.status, 7) << text.substr(0, 20) << words << ": " << ended.err;
      EXPECT_EQ((ended.out + ended.err).find('\033'), std::string::npos) << words;
    }
    EXPECT_EQ(FilesIn(), 1U) << "nothing is put into the current folder: " << text.substr(0, 20);
  }
}

}  // namespace
}  // namespace tavlyn::adversary
