// The HID part of Linux on a hidapi whose lists and answers each test chooses.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <hidapi/hidapi.h>

#include <array>
#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/platform.h"
#include "tests/boundary/loader.h"
#include "tests/boundary/missing_name.h"

namespace {

// One line of hidapi's list.
struct Listed {
  const char* path;
  std::uint16_t page = 1, usage = 0;
  std::uint16_t vendor = 0x7A31, product = 0x3BFA;
};

struct Hidapi {
  int init = 0;
  std::vector<Listed> list;
  bool opens = true;
  std::map<hid_device*, std::string> open;
  int feature = 0;        // what a feature report returns
  std::deque<int> queue;  // what a read returns; 0 after the last
  int reads = 0;
  int lists = 0;  // that are not freed
};
Hidapi hidapi;

// Which file is loaded in place of hidapi; this program without any.
std::string hidapiFile;
bool thereIsNoHidapi = false;

}  // namespace

extern "C" {

void* dlopen(const char* file, int mode) noexcept {
  static const auto real = reinterpret_cast<void* (*)(const char*, int)>(dlsym(RTLD_NEXT, "dlopen"));
  if (file == nullptr || std::string(file) != "libhidapi-hidraw.so.0") return real(file, mode);
  if (thereIsNoHidapi) return nullptr;
  return real(hidapiFile.empty() ? nullptr : hidapiFile.c_str(), mode);
}

int hid_init() { return hidapi.init; }

hid_device_info* hid_enumerate(unsigned short /*vendor*/, unsigned short /*product*/) {
  hid_device_info* first = nullptr;
  for (auto one = hidapi.list.rbegin(); one != hidapi.list.rend(); ++one) {
    auto* info = new hid_device_info{};
    info->path = const_cast<char*>(one->path);
    info->vendor_id = one->vendor;
    info->product_id = one->product;
    info->usage_page = one->page;
    info->usage = one->usage;
    first = (info->next = first, info);
  }
  if (first != nullptr) ++hidapi.lists;
  return first;
}

void hid_free_enumeration(hid_device_info* first) {
  if (first != nullptr) --hidapi.lists;
  while (first != nullptr) delete std::exchange(first, first->next);
}

hid_device* hid_open_path(const char* path) {
  if (!hidapi.opens) return nullptr;
  auto* device = reinterpret_cast<hid_device*>(new char);
  hidapi.open[device] = path;
  return device;
}

void hid_close(hid_device* device) {
  if (hidapi.open.erase(device) > 0) delete reinterpret_cast<char*>(device);
}

int hid_send_feature_report(hid_device* /*device*/, const unsigned char* /*data*/, size_t /*length*/) {
  return hidapi.feature;
}

int hid_get_feature_report(hid_device* /*device*/, unsigned char* /*data*/, size_t /*length*/) {
  return hidapi.feature;
}

int hid_read_timeout(hid_device* /*device*/, unsigned char* data, size_t length, int /*milliseconds*/) {
  ++hidapi.reads;
  if (hidapi.queue.empty()) return 0;
  const int result = hidapi.queue.front();
  hidapi.queue.pop_front();
  if (result > 0 && length > 0) data[0] = static_cast<unsigned char>(result);
  return result;
}
}

namespace tavlyn::boundary {
namespace {

using platform::Drain;
using platform::Handle;
using platform::HidClass;
using platform::kNoHandle;
using platform::OpenMode;
using platform::UsageMatch;
using platform::WalkStep;

using Paths = std::vector<std::string>;

constexpr platform::HidUsage kKeyboard{1, 6};
constexpr Handle kUnknown = 0x7FFFFFFF;

class HostHid : public testing::Test {
 protected:
  void SetUp() override {
    hidapi = {};
    ASSERT_TRUE(hid_.Load());
  }
  void TearDown() override {
    hidapiFile.clear();
    thereIsNoHidapi = false;
    hid_.Unload();
    EXPECT_TRUE(hidapi.open.empty());
    EXPECT_EQ(hidapi.lists, 0);
  }

  Paths Walk(HidClass cls) {
    Paths paths;
    const char* path = nullptr;
    if (!hid_.BeginWalk(cls)) return {"nothing can be listed"};
    while (hid_.Member(static_cast<int>(paths.size()), path) == WalkStep::kPath) paths.emplace_back(path);
    hid_.EndWalk();
    return paths;
  }
  platform::HidIds IdsOf(const char* path) {
    platform::HidIds ids{1, 1};
    EXPECT_TRUE(hid_.ListedIds(path, ids));
    return ids;
  }
  Handle OpenOne(const char* path = "one") {
    hidapi.list.push_back({path});
    return hid_.Open(path, OpenMode::kShared);
  }

  void ExpectNothingWorks() {
    hidapi.list = {{"one"}};
    EXPECT_EQ(Walk(HidClass::kHid), Paths{"nothing can be listed"});
    const char* path = nullptr;
    EXPECT_EQ(hid_.Member(0, path), WalkStep::kEnd);
    EXPECT_EQ(IdsOf("one").vid, 0);
    EXPECT_EQ(hid_.Open("one", OpenMode::kShared), kNoHandle);
    hid_.Unload();
  }

  platform::HidSystem& hid_ = platform::TheHost().hid;
};

TEST_F(HostHid, WithoutTheLibraryNothingWorks) {
  hid_.Unload();
  thereIsNoHidapi = true;
  EXPECT_FALSE(hid_.Load());
  ExpectNothingWorks();
}

TEST_F(HostHid, ALibraryThatCannotBeginIsNotUsed) {
  hid_.Unload();
  hidapi.init = -1;
  EXPECT_FALSE(hid_.Load());
  ExpectNothingWorks();
}

TEST_F(HostHid, ALibraryThatLacksAFunctionIsNotUsed) {
  hid_.Unload();
  for (const char* name : {"hid_init", "hid_enumerate", "hid_free_enumeration", "hid_open_path", "hid_close",
                           "hid_send_feature_report", "hid_get_feature_report", "hid_read_timeout"}) {
    const WithoutName file(TAVLYN_STANDIN_NAMES, name);
    hidapiFile = file.Path();
    EXPECT_FALSE(hid_.Load()) << name;
    ExpectNothingWorks();
  }
}

// hidapi lists a path once for each of its usages, one after the other.
TEST_F(HostHid, APathIsOneInterfaceHoweverOftenItIsListed) {
  hidapi.list = {{nullptr, 1, 6}, {"one", 1, 2}, {nullptr, 1, 6}, {"one", 12, 1}, {"two", 0xFF00, 1}};
  EXPECT_EQ(Walk(HidClass::kHid), (Paths{"one", "two"}));
  EXPECT_EQ(Walk(HidClass::kKeyboard), Paths{});
}

// A usage counts with its page.
TEST_F(HostHid, OnlyAKeyboardIsAKeyboard) {
  hidapi.list = {{"mouse", 1, 2}, {"leds", 8, 6},  {"both", 12, 1},
                 {"both", 1, 6},  {"other", 1, 0}, {"keys", 1, 6}};
  EXPECT_EQ(Walk(HidClass::kKeyboard), (Paths{"both", "keys"}));
  EXPECT_EQ(Walk(HidClass::kHid), (Paths{"mouse", "leds", "both", "other", "keys"}));
}

TEST_F(HostHid, AWalkMayGoBack) {
  hidapi.list = {{"one"}, {"two"}, {"three"}};
  ASSERT_TRUE(hid_.BeginWalk(HidClass::kHid));
  for (const auto& [index, path] :
       {std::pair(1, "two"), {0, "one"}, {2, "three"}, {2, "three"}, {1, "two"}}) {
    const char* found = nullptr;
    ASSERT_EQ(hid_.Member(index, found), WalkStep::kPath);
    EXPECT_STREQ(found, path);
    EXPECT_EQ(IdsOf("one").vid, 0x7A31);
    EXPECT_EQ(IdsOf(path).vid, 0x7A31);
  }
  hid_.EndWalk();
}

TEST_F(HostHid, ThereIsNoMemberOutsideAWalk) {
  hidapi.list = {{"one"}};
  const char* path = nullptr;
  EXPECT_EQ(hid_.Member(0, path), WalkStep::kEnd);
  ASSERT_TRUE(hid_.BeginWalk(HidClass::kHid));
  EXPECT_EQ(hid_.Member(0, path), WalkStep::kPath);
  EXPECT_EQ(hid_.Member(1, path), WalkStep::kEnd);
  hid_.EndWalk();
  EXPECT_EQ(hid_.Member(0, path), WalkStep::kEnd);
}

TEST_F(HostHid, OutsideAWalkTheSystemIsAskedAgain) {
  hidapi.list = {{"one", 1, 0, 0x1234, 0x5678}};
  EXPECT_EQ(IdsOf("one").vid, 0x1234);
  EXPECT_EQ(IdsOf("one").pid, 0x5678);
  EXPECT_EQ(IdsOf("two").vid, 0);
  EXPECT_EQ(IdsOf("two").pid, 0);
  hidapi.list = {{"two"}};
  EXPECT_EQ(IdsOf("one").vid, 0);
  ASSERT_TRUE(hid_.BeginWalk(HidClass::kHid));
  hidapi.list.clear();
  EXPECT_EQ(IdsOf("two").vid, 0x7A31) << "as it was when the walk began";
  hid_.EndWalk();
  EXPECT_EQ(IdsOf("two").vid, 0);
}

TEST_F(HostHid, OnlyWhatIsListedIsOpened) {
  EXPECT_NE(OpenOne(), kNoHandle);
  EXPECT_EQ(hid_.Open(nullptr, OpenMode::kShared), kNoHandle);
  EXPECT_EQ(hid_.Open("two", OpenMode::kShared), kNoHandle);
  hidapi.opens = false;
  EXPECT_EQ(hid_.Open("one", OpenMode::kShared), kNoHandle);
}

TEST_F(HostHid, AnInterfaceHasTheUsagesOfItsLines) {
  hidapi.list = {{"one", 12, 1}, {nullptr, 1, 6}, {"one", 1, 2}, {"two", 1, 6}};
  const Handle device = hid_.Open("one", OpenMode::kShared);
  EXPECT_EQ(hid_.TopUsage(device, {12, 1}), UsageMatch::kYes);
  EXPECT_EQ(hid_.TopUsage(device, {1, 2}), UsageMatch::kYes);
  EXPECT_EQ(hid_.TopUsage(device, {1, 1}), UsageMatch::kNo);
  EXPECT_EQ(hid_.TopUsage(device, {12, 2}), UsageMatch::kNo);
  EXPECT_EQ(hid_.TopUsage(device, kKeyboard), UsageMatch::kNo);
  EXPECT_EQ(hid_.TopUsage(kUnknown, kKeyboard), UsageMatch::kUnreadable);
}

// Far more than a device has.
TEST_F(HostHid, TheFirst32UsagesCount) {
  for (std::uint16_t usage = 1; usage <= 300; ++usage) hidapi.list.push_back({"one", 0xFF00, usage});
  const Handle device = hid_.Open("one", OpenMode::kShared);
  EXPECT_EQ(hid_.TopUsage(device, {0xFF00, 1}), UsageMatch::kYes);
  EXPECT_EQ(hid_.TopUsage(device, {0xFF00, 32}), UsageMatch::kYes);
  EXPECT_EQ(hid_.TopUsage(device, {0xFF00, 33}), UsageMatch::kNo);
  EXPECT_EQ(hid_.Attributes(device).vid, 0x7A31);
  EXPECT_EQ(hidapi.open.size(), 1U);
}

TEST_F(HostHid, AFeatureReportHasBytesToBeRead) {
  const Handle device = OpenOne();
  std::array<std::uint8_t, 9> report{};
  for (const auto& [result, read, written] :
       {std::tuple(9, true, true), {1, true, true}, {0, false, true}, {-1, false, false}}) {
    hidapi.feature = result;
    EXPECT_EQ(hid_.GetFeature(device, report), read) << result;
    EXPECT_EQ(hid_.SetFeature(device, report), written) << result;
  }
  hidapi.feature = 9;
  EXPECT_FALSE(hid_.GetFeature(kUnknown, report));
  EXPECT_FALSE(hid_.SetFeature(kUnknown, report));
}

TEST_F(HostHid, DrainingTakesTheFirstInputReport) {
  const Handle device = OpenOne();
  std::array<std::uint8_t, 8> report{};
  EXPECT_EQ(hid_.DrainInput(device, report), Drain::kNothing);
  hidapi.queue = {5, 6, 7};
  EXPECT_EQ(hid_.DrainInput(device, report), Drain::kDrained);
  EXPECT_EQ(report[0], 5);
  EXPECT_TRUE(hidapi.queue.empty());
  hidapi.queue = {-1};
  EXPECT_EQ(hid_.DrainInput(device, report), Drain::kGone);
  hidapi.queue = {5};
  EXPECT_EQ(hid_.DrainInput(kUnknown, report), Drain::kNothing);
  EXPECT_EQ(hidapi.queue.size(), 1U);
}

TEST_F(HostHid, DrainingEndsWithADeviceThatNeverStops) {
  const Handle device = OpenOne();
  std::array<std::uint8_t, 8> report{};
  hidapi.queue.assign(1000, 8);
  EXPECT_EQ(hid_.DrainInput(device, report), Drain::kDrained);
  EXPECT_EQ(hidapi.reads, 1 + 64);
}

TEST_F(HostHid, HandlesThatAreUnknownAreNoDevice) {
  const Handle device = OpenOne();
  EXPECT_EQ(hid_.Attributes(device).pid, 0x3BFA);
  hid_.Close(device);
  hid_.Close(device);
  EXPECT_TRUE(hidapi.open.empty());
  EXPECT_EQ(hid_.Attributes(device).pid, 0);
  EXPECT_EQ(hid_.Attributes(device).vid, 0);
}

TEST_F(HostHid, UnloadingClosesWhatIsOpen) {
  EXPECT_NE(OpenOne("one"), kNoHandle);
  EXPECT_NE(OpenOne("two"), kNoHandle);
  ASSERT_TRUE(hid_.BeginWalk(HidClass::kHid));
  hid_.Unload();
  EXPECT_TRUE(hidapi.open.empty());
  EXPECT_EQ(hidapi.lists, 0);
  const char* path = nullptr;
  EXPECT_EQ(hid_.Member(0, path), WalkStep::kEnd);
}

}  // namespace
}  // namespace tavlyn::boundary
