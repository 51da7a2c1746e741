#include "tests/support/bench.h"

#include <numeric>
#include <random>
#include <system_error>

#include "api.h"
#include "core/front/load.h"

namespace tavlyn::test {

sim::Bytes LongCard() {
  sim::Bytes id(32);
  std::iota(id.begin(), id.end(), std::uint8_t{0x11});
  return id;
}

namespace {

constexpr const char* kTraceVariable = "TAVLYNAPI_LOGGING";
constexpr std::size_t kTimeStampLength = sizeof("20240305 06:07:08 ") - 1;

Lines& CapturedTrace() {
  static Lines lines;
  return lines;
}

void CaptureLine(const char* line, std::uint64_t length) { CapturedTrace().emplace_back(line, length); }

void ReportDifference(const char* what, const std::string& difference, const char* file, int line) {
  if (difference.empty()) return;
  ADD_FAILURE_AT(file, line) << what << " differs (- expected, + came):\n" << difference;
}

}  // namespace

void Bench::SetUp() {
  host.Reset();
  CapturedTrace().clear();
  Load();
}

void Bench::TearDown() {
  EXPECT_EQ(host.mutex.Depth(), 0) << "a lock was not given back";
  Unload();
  EXPECT_EQ(host.Misuses(), Lines{});
  if (!cameFrom_.empty()) std::filesystem::current_path(cameFrom_);
  std::error_code ignored;
  if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
}

void Bench::Reload() {
  Unload();
  Load();
}

sim::Interface& Bench::Plug(std::shared_ptr<sim::HidDevice> device, std::string path) {
  ++plugged_;
  if (path.empty()) path = "device-" + std::to_string(plugged_);
  return host.hid.Plug(std::move(path), std::move(device));
}

std::shared_ptr<sim::Reader> Bench::Connected(std::shared_ptr<sim::Reader> reader) {
  Plug(reader);
  SetDevTypeSrch(0);
  SetConnectProduct(1);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  LetTimePass();
  ForgetTraffic();
  CapturedTrace().clear();
  return reader;
}

void Bench::ExpectTraffic(const Lines& expected, const char* file, int line) {
  ReportDifference("traffic", Difference(expected, TrafficOf(host.transcript.Events())), file, line);
  ForgetTraffic();
}

void Bench::ExpectNoLock(const char* file, int line) {
  const Lines happened = host.transcript.Lines();
  if (happened.empty()) ADD_FAILURE_AT(file, line) << "nothing happened";
  for (const std::string& each : happened) {
    if (each.starts_with("mutex")) ADD_FAILURE_AT(file, line) << each;
  }
}

void Bench::StartTrace() {
  host.places.environment.insert(kTraceVariable);
  EXPECT_NE(SetMarkerFunction(CaptureLine), 0U);
}

Lines Bench::Trace() {
  Lines lines;
  for (const std::string& captured : CapturedTrace()) {
    std::string text = captured.size() < kTimeStampLength ? captured : captured.substr(kTimeStampLength);
    if (text.ends_with('\n')) text.pop_back();
    lines.push_back(std::move(text));
  }
  return lines;
}

void Bench::ExpectTrace(const Lines& expected, const char* file, int line) {
  ReportDifference("trace", Difference(expected, Trace()), file, line);
  CapturedTrace().clear();
}

std::filesystem::path Bench::Folder() {
  if (folder_.empty()) {
    // Another run of the tests may be using the same name.
    std::random_device any;
    do {
      folder_ = std::filesystem::path(::testing::TempDir()) / ("tavlyn-" + std::to_string(any()));
    } while (!std::filesystem::create_directory(folder_));
  }
  return folder_;
}

void Bench::EnterFolder() {
  if (cameFrom_.empty()) cameFrom_ = std::filesystem::current_path();
  std::filesystem::current_path(Folder());
}

}  // namespace tavlyn::test
