// A stand-in for libhidapi-hidraw.so.0 that serves simulated devices: those of the tavlynsim process that
// TAVLYNSIM_SOCKET names, else those of a rack of its own (sim/carriers/standin_control.h).
#include <hidapi/hidapi.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <thread>

#include "sim/carriers/standin_control.h"
#include "sim/carriers/standin_source.h"

using tavlyn::sim::HidIdentity;
using tavlyn::sim::Key;
using tavlyn::sim::Listed;
using tavlyn::sim::Outcome;
using tavlyn::sim::StandinSource;
using tavlyn::sim::Usage;

struct hid_device_ {
  Listed listed;
  bool blocking = true;
  hid_device_info* info = nullptr;
};

namespace {

constexpr const char* kPathStart = "/dev/hidraw-sim";
constexpr const char* kManufacturer = "tavlynsim";
constexpr std::chrono::milliseconds kPollPause(2);

thread_local const wchar_t* lastError = L"Success";

template <typename Result>
Result Fail(Result result, const wchar_t* reason) {
  lastError = reason;
  return result;
}

int Count(Outcome outcome, std::size_t done) {
  if (outcome == Outcome::kGone) return Fail(-1, L"The device is gone");
  if (outcome != Outcome::kDone) return Fail(-1, L"The device refused the report");
  return static_cast<int>(done);
}

std::string PathOf(Key key) { return kPathStart + std::to_string(tavlyn::sim::NumberIn(key)); }

std::wstring Wide(const std::string& text) { return {text.begin(), text.end()}; }

hid_device_info* NewInfo(const Listed& listed, const Usage& usage) {
  const HidIdentity& identity = listed.identity;
  auto* info = new hid_device_info{};
  info->path = strdup(PathOf(listed.key).c_str());
  info->vendor_id = identity.vid;
  info->product_id = identity.pid;
  info->serial_number = wcsdup(Wide(identity.serial).c_str());
  info->release_number = 0x0100;
  info->manufacturer_string = wcsdup(Wide(kManufacturer).c_str());
  info->product_string = wcsdup(Wide(identity.product).c_str());
  info->usage_page = usage.page;
  info->usage = usage.usage;
  info->bus_type = HID_API_BUS_USB;
  return info;
}

// One entry for each top-level usage, all with the same path.
hid_device_info** Append(hid_device_info** end, const Listed& listed) {
  for (const Usage& usage : listed.identity.usages) {
    *end = NewInfo(listed, usage);
    end = &(*end)->next;
  }
  return end;
}

bool Fits(std::uint16_t wanted, std::uint16_t value) { return wanted == 0 || wanted == value; }

template <typename Test>
hid_device* OpenFirst(Test test) {
  for (Listed& listed : StandinSource().List()) {
    if (test(listed)) return new hid_device_{std::move(listed)};
  }
  return Fail<hid_device*>(nullptr, L"There is no such device");
}

int CopyText(const std::string& text, wchar_t* string, std::size_t size) {
  if (string == nullptr || size == 0) return Fail(-1, L"No room for the text");
  const std::wstring wide = Wide(text).substr(0, size - 1);
  std::wmemcpy(string, wide.c_str(), wide.size() + 1);
  return 0;
}

}  // namespace

extern "C" {

int hid_init() { return 0; }
int hid_exit() { return 0; }

hid_device_info* hid_enumerate(unsigned short vendor_id, unsigned short product_id) {
  hid_device_info* first = nullptr;
  hid_device_info** end = &first;
  for (const Listed& listed : StandinSource().List()) {
    if (Fits(vendor_id, listed.identity.vid) && Fits(product_id, listed.identity.pid))
      end = Append(end, listed);
  }
  return first == nullptr ? Fail(first, L"There is no such device") : first;
}

void hid_free_enumeration(hid_device_info* devs) {
  while (devs != nullptr) {
    hid_device_info* next = devs->next;
    std::free(devs->path);
    std::free(devs->serial_number);
    std::free(devs->manufacturer_string);
    std::free(devs->product_string);
    delete devs;
    devs = next;
  }
}

hid_device* hid_open(unsigned short vendor_id, unsigned short product_id, const wchar_t* serial_number) {
  return OpenFirst([&](const Listed& listed) {
    return Fits(vendor_id, listed.identity.vid) && Fits(product_id, listed.identity.pid) &&
           (serial_number == nullptr || Wide(listed.identity.serial) == serial_number);
  });
}

hid_device* hid_open_path(const char* path) {
  return OpenFirst([&](const Listed& listed) { return PathOf(listed.key) == path; });
}

void hid_close(hid_device* device) {
  if (device == nullptr) return;
  hid_free_enumeration(device->info);
  delete device;
}

int hid_send_feature_report(hid_device* device, const unsigned char* data, size_t length) {
  if (data == nullptr || length == 0) return Fail(-1, L"An empty report");
  return Count(StandinSource().SetFeature(device->listed.key, {data, length}), length);
}

// A buffer longer than the report gets the report; so does the kernel's hidraw. A device of which no length
// is known decides by itself.
int hid_get_feature_report(hid_device* device, unsigned char* data, size_t length) {
  if (data == nullptr || length == 0) return Fail(-1, L"No room for the report");
  const HidIdentity& identity = device->listed.identity;
  const bool isKnown = identity.featureBytes != 0;
  if (isKnown && data[0] != identity.reportId) return Fail(-1, L"The device has no report of that number");
  const std::size_t size = isKnown ? std::min(length, identity.featureBytes + 1) : length;
  return Count(StandinSource().GetFeature(device->listed.key, {data, size}), size);
}

int hid_read_timeout(hid_device* device, unsigned char* data, size_t length, int milliseconds) {
  const auto start = std::chrono::steady_clock::now();
  std::vector<std::uint8_t> report;
  Outcome outcome = StandinSource().TakeInput(device->listed.key, report);
  while (outcome == Outcome::kNothing) {
    const bool forever = milliseconds < 0;
    if (!forever && std::chrono::steady_clock::now() - start >= std::chrono::milliseconds(milliseconds)) {
      return 0;
    }
    std::this_thread::sleep_for(kPollPause);
    outcome = StandinSource().TakeInput(device->listed.key, report);
  }
  const std::size_t count = std::min(length, report.size());
  if (outcome == Outcome::kDone) std::copy_n(report.begin(), count, data);
  return Count(outcome, count);
}

int hid_read(hid_device* device, unsigned char* data, size_t length) {
  return hid_read_timeout(device, data, length, device->blocking ? -1 : 0);
}

int hid_set_nonblocking(hid_device* device, int nonblock) {
  device->blocking = nonblock == 0;
  return 0;
}

int hid_write(hid_device*, const unsigned char*, size_t) {
  return Fail(-1, L"No device takes output reports");
}

int hid_get_input_report(hid_device*, unsigned char*, size_t) {
  return Fail(-1, L"No device hands out input reports on request");
}

int hid_get_manufacturer_string(hid_device*, wchar_t* string, size_t maxlen) {
  return CopyText(kManufacturer, string, maxlen);
}

int hid_get_product_string(hid_device* device, wchar_t* string, size_t maxlen) {
  return CopyText(device->listed.identity.product, string, maxlen);
}

int hid_get_serial_number_string(hid_device* device, wchar_t* string, size_t maxlen) {
  return CopyText(device->listed.identity.serial, string, maxlen);
}

int hid_get_indexed_string(hid_device*, int, wchar_t*, size_t) {
  return Fail(-1, L"Texts by number are not simulated");
}

hid_device_info* hid_get_device_info(hid_device* device) {
  if (device->info == nullptr) Append(&device->info, device->listed);
  return device->info;
}

const wchar_t* hid_error(hid_device*) { return lastError; }

const hid_api_version* hid_version() {
  static constexpr hid_api_version kVersion{HID_API_VERSION_MAJOR, HID_API_VERSION_MINOR,
                                            HID_API_VERSION_PATCH};
  return &kVersion;
}

const char* hid_version_str() { return HID_API_VERSION_STR; }

int tavlyn_standin(const char* command, char* reply, std::size_t size) {
  return tavlyn::sim::RunStandin(command, reply, size);
}

const char* tavlyn_standin_marker() { return "libhidapi-hidraw.so.0"; }

}  // extern "C"
