// A list of HID devices as a system could tell it, with any paths, identities and usages: the Linux backend
// searches it through a stand-in for hidapi. The first byte says how many lists there are; each search gets
// the next. An entry is a byte of flags, the IDs, the usage, and its path up to a NUL.
#include <hidapi/hidapi.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "api.h"
#include "core/front/load.h"
#include "core/state.h"
#include "fuzz/input.h"
#include "platform/system_library.h"

namespace tavlyn::fuzz {
namespace {

enum Flag : std::uint8_t {
  kLast = 1,
  kNoPath = 2,
  kReaderIds = 4,
  kKnownUsage = 8,
  kRefuses = 16,
  kSamePath = 32
};

// What the stand-in has handed out and not got back.
int lists = 0;
int open = 0;
Input* input = nullptr;

struct Ids {
  std::uint16_t vid, pid;
};
constexpr Ids kKnown[] = {{0x7A31, 0x3BFA}, {0x7A31, 0x3BFB}, {0x7A31, 0x1000}, {0x18C8, 0x2BFA}, {1, 0x104}};
constexpr std::uint16_t kUsages[][2] = {{1, 6}, {0xFFA0, 0xA000}, {1, 2}};

char* Copied(std::string_view text) {
  auto* copy = static_cast<char*>(std::malloc(text.size() + 1));
  copy[text.copy(copy, text.size())] = '\0';
  return copy;
}

hid_device_info* NextEntry(const hid_device_info* before, std::uint8_t flags) {
  auto* entry = static_cast<hid_device_info*>(std::calloc(1, sizeof(hid_device_info)));
  entry->vendor_id = input->Word();
  entry->product_id = input->Word();
  entry->usage_page = input->Word();
  entry->usage = input->Word();
  if ((flags & kReaderIds) != 0) {
    const Ids& ids = kKnown[entry->product_id % std::size(kKnown)];
    entry->vendor_id = ids.vid;
    entry->product_id = ids.pid;
  }
  if ((flags & kKnownUsage) != 0) {
    const auto& usage = kUsages[entry->usage % std::size(kUsages)];
    entry->usage_page = usage[0];
    entry->usage = usage[1];
  }
  if ((flags & kSamePath) != 0 && before != nullptr && before->path != nullptr) {
    entry->path = Copied(before->path);
  } else if ((flags & kNoPath) == 0) {
    entry->path = Copied(input->Text('\0'));
  }
  return entry;
}

hid_device_info* Enumerate(unsigned short, unsigned short) {
  hid_device_info* first = nullptr;
  hid_device_info** end = &first;
  const hid_device_info* before = nullptr;
  for (bool last = input->IsEmpty(); !last; last = last || input->IsEmpty()) {
    const std::uint8_t flags = input->Byte();
    last = (flags & kLast) != 0;
    *end = NextEntry(before, flags);
    before = *end;
    end = &(*end)->next;
  }
  lists += first != nullptr ? 1 : 0;
  return first;
}

void FreeList(hid_device_info* list) {
  lists -= list != nullptr ? 1 : 0;
  while (list != nullptr) {
    hid_device_info* next = list->next;
    std::free(list->path);
    std::free(list);
    list = next;
  }
}

// The device is a copy of its path, so that the sanitizers see whoever uses a closed one.
hid_device* OpenPath(const char* path) {
  if ((input->Byte() & kRefuses) != 0) return nullptr;
  ++open;
  return reinterpret_cast<hid_device*>(Copied(path));
}
void CloseDevice(hid_device* device) {
  --open;
  std::free(device);
}
int SendFeature(hid_device* device, const unsigned char* data, std::size_t size) {
  Require(std::strlen(reinterpret_cast<const char*>(device)) < 4096);
  Require(size > 0 && data[0] <= 1);
  return (input->Byte() & kRefuses) != 0 ? -1 : static_cast<int>(size);
}
int GetFeature(hid_device*, unsigned char* data, std::size_t size) {
  std::memset(data + 1, 0, size - 1);
  const auto reply = input->Take(size - 1);
  std::copy(reply.begin(), reply.end(), data + 1);
  return static_cast<int>(reply.size()) - 1;
}
int ReadTimeout(hid_device*, unsigned char* data, std::size_t size, int) {
  const auto report = input->Take(std::min<std::size_t>(size, input->Byte()));
  std::copy(report.begin(), report.end(), data);
  return static_cast<int>(report.size());
}
int Init() { return 0; }

struct Function {
  const char* name;
  void* address;
};
const Function kFunctions[] = {
    {"hid_init", reinterpret_cast<void*>(Init)},
    {"hid_enumerate", reinterpret_cast<void*>(Enumerate)},
    {"hid_free_enumeration", reinterpret_cast<void*>(FreeList)},
    {"hid_open_path", reinterpret_cast<void*>(OpenPath)},
    {"hid_close", reinterpret_cast<void*>(CloseDevice)},
    {"hid_send_feature_report", reinterpret_cast<void*>(SendFeature)},
    {"hid_get_feature_report", reinterpret_cast<void*>(GetFeature)},
    {"hid_read_timeout", reinterpret_cast<void*>(ReadTimeout)},
};

void CheckTable() {
  Require(shared.DevCnt >= 0 && shared.DevCnt <= kTableEntries);
  Require(shared.ActDev >= 0 && shared.ActDev < kTableEntries);
  for (const tsDevEntry& entry : LiveEntries())
    Require(std::memchr(entry.DevName, '\0', sizeof entry.DevName) != nullptr);
}

void Search(Input all) {
  input = &all;
  Load();
  SetDevTypeSrch(0);
  const std::uint8_t products = all.Byte();
  while (!all.IsEmpty()) {
    SetConnectProduct(products & 7U);
    USBConnect(nullptr);
    CheckTable();
    const auto path = std::unique_ptr<char, decltype(&std::free)>(Copied(all.Text('\0')), &std::free);
    ChkAddArrival(path.get());
    ChkDelRemoval(path.get());
    CheckTable();
  }
  USBDisconnect();
  Unload();
  Require(lists == 0 && open == 0);
}

}  // namespace
}  // namespace tavlyn::fuzz

namespace tavlyn::platform {

void* LoadSystemLibrary(const char* file) {
  return std::string_view(file).find("hidapi") != std::string_view::npos ? &fuzz::open : nullptr;
}
void FreeSystemLibrary(void*) {}
void* AddressIn(void*, const char* name) {
  for (const fuzz::Function& function : fuzz::kFunctions) {
    if (std::strcmp(function.name, name) == 0) return function.address;
  }
  return nullptr;
}

}  // namespace tavlyn::platform

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Search({data, size});
  return 0;
}
