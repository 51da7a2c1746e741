#include "platform/handle_table.h"
#include "platform/parts.h"
#include "platform/windows/hid_libraries.h"
#include "platform/windows/hid_walk.h"

namespace tavlyn::platform {
namespace {

static_assert(sizeof(HIDD_ATTRIBUTES) == 12);

class SystemHid final : public HidSystem {
 public:
  bool Load() override { return BindHidLibraries(libraries_); }
  // Connects without a disconnect in between leave handles that no entry has.
  void Unload() override {
    while (const auto lost = devices_.RemoveNewest()) CloseHandle(*lost);
    FreeHidLibraries(libraries_);
  }

  bool BeginWalk(HidClass cls) override { return walk_.Begin(libraries_, cls); }
  WalkStep Member(int index, const char*& path) override { return walk_.Member(libraries_, index, path); }
  void EndWalk() override { walk_.End(libraries_); }

  // Windows lists paths only; the IDs have to be read from the opened device.
  bool ListedIds(const char*, HidIds&) override { return false; }

  Handle Open(const char* path, OpenMode mode) override {
    HANDLE native = mode == OpenMode::kOverlapped ? OpenOverlapped(path) : OpenShared(path);
    return native == INVALID_HANDLE_VALUE ? kNoHandle : devices_.Add(native, CloseHandle);
  }

  void Close(Handle device) override {
    if (const auto native = devices_.Remove(device)) CloseHandle(*native);
  }

  HidIds Attributes(Handle device) override {
    HIDD_ATTRIBUTES attributes{};
    attributes.Size = sizeof attributes;
    if (libraries_.hid != nullptr) libraries_.getAttributes(Native(device), &attributes);
    return {attributes.VendorID, attributes.ProductID};
  }

  UsageMatch TopUsage(Handle device, HidUsage wanted) override;

  bool GetFeature(Handle device, std::span<std::uint8_t> report) override {
    return libraries_.hid != nullptr &&
           libraries_.getFeature(Native(device), report.data(), static_cast<ULONG>(report.size())) != FALSE;
  }

  bool SetFeature(Handle device, std::span<const std::uint8_t> report) override {
    // The call only reads the report; its declaration does not say so.
    auto* bytes = const_cast<std::uint8_t*>(report.data());
    return libraries_.hid != nullptr &&
           libraries_.setFeature(Native(device), bytes, static_cast<ULONG>(report.size())) != FALSE;
  }

  Drain DrainInput(Handle device, std::span<std::uint8_t> report) override;

 private:
  HANDLE Native(Handle device) { return devices_.Find(device).value_or(INVALID_HANDLE_VALUE); }

  // Access 0 is enough for feature reports, and succeeds even while another program reads the device's input.
  static HANDLE OpenShared(const char* path) {
    return CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
  }

  HANDLE OpenOverlapped(const char* path) const {
    HANDLE native = CreateFileA(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                FILE_FLAG_OVERLAPPED, nullptr);
    if (libraries_.hid != nullptr) libraries_.setNumInputBuffers(native, 2);
    FlushQueue(native);
    return native;
  }

  void FlushQueue(HANDLE native) const {
    if (libraries_.flushQueue != nullptr) libraries_.flushQueue(native);
  }

  HidLibraries libraries_;
  HidWalk walk_;
  HandleTable<HANDLE> devices_;
};

// The parsed description is deliberately never freed.
UsageMatch SystemHid::TopUsage(Handle device, HidUsage wanted) {
  PHIDP_PREPARSED_DATA parsed = nullptr;
  if (libraries_.hid == nullptr || !libraries_.getPreparsedData(Native(device), &parsed)) {
    return UsageMatch::kUnreadable;
  }
  HIDP_CAPS caps{};
  libraries_.getCaps(parsed, &caps);
  return caps.UsagePage == wanted.page && caps.Usage == wanted.usage ? UsageMatch::kYes : UsageMatch::kNo;
}

Drain SystemHid::DrainInput(Handle device, std::span<std::uint8_t> report) {
  HANDLE native = Native(device);
  OVERLAPPED overlapped{};
  const bool done = ReadFile(native, report.data(), static_cast<DWORD>(report.size()), nullptr, &overlapped);
  const DWORD error = done ? ERROR_SUCCESS : GetLastError();
  if (error == ERROR_DEVICE_NOT_CONNECTED) return Drain::kGone;
  // Nothing waits for a report: a read that is still pending is cancelled.
  if (!CancelIo(native) && GetLastError() == ERROR_NOT_FOUND) return Drain::kNothing;
  // A read that never began does not end either: waiting for it would not return.
  if (!done && error != ERROR_IO_PENDING) return Drain::kNothing;
  DWORD count = 0;
  if (!GetOverlappedResult(native, &overlapped, &count, TRUE)) return Drain::kNothing;
  FlushQueue(native);
  return Drain::kDrained;
}

constinit NeverDestroyed<SystemHid> hidPart;

}  // namespace

HidSystem& TheHid() { return hidPart; }

}  // namespace tavlyn::platform
