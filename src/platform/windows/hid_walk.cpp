#include "platform/windows/hid_walk.h"

#include "platform/contained.h"

namespace tavlyn::platform {
namespace {

constexpr GUID kHidInterface = {0x4D1E55B2, 0xF16F, 0x11CF, {0x88, 0xCB, 0x00, 0x11, 0x11, 0x00, 0x00, 0x30}};
constexpr GUID kKeyboardInterface = {
    0x884B96C3, 0x56EF, 0x11D1, {0xBC, 0x8C, 0x00, 0xA0, 0xC9, 0x14, 0x05, 0xDD}};

// SetupAPI recognises x64 and x86 callers by these sizes.
constexpr bool kIsX64 = sizeof(void*) == 8;
static_assert(sizeof(SP_DEVICE_INTERFACE_DATA) == (kIsX64 ? 32 : 28));
static_assert(sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_A) == (kIsX64 ? 8 : 5));

// Third-party class installers run inside these calls. An exception there counts as the call failing, and
// each call is contained separately because each failure has its own consequence.
template <typename Call>
bool Succeeds(Call call) {
  bool done = false;
  return Contained([&] { done = call(); }) && done;
}

}  // namespace

bool HidWalk::Begin(const HidLibraries& libraries, HidClass cls) {
  if (libraries.setup == nullptr) return false;
  class_ = cls == HidClass::kKeyboard ? &kKeyboardInterface : &kHidInterface;
  set_ = nullptr;
  return Succeeds([&] {
    HDEVINFO set = libraries.getClassDevs(class_, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE);
    if (set != INVALID_HANDLE_VALUE) set_ = set;
    return set_ != nullptr;
  });
}

WalkStep HidWalk::Member(const HidLibraries& libraries, int index, const char*& path) {
  SP_DEVICE_INTERFACE_DATA data{};
  data.cbSize = sizeof data;
  if (!Succeeds([&] {
        return libraries.enumDeviceInterfaces(set_, nullptr, class_, static_cast<DWORD>(index), &data) != 0;
      })) {
    return WalkStep::kEnd;
  }

  DWORD required = 0;
  Succeeds(
      [&] { return libraries.getDeviceInterfaceDetail(set_, &data, nullptr, 0, &required, nullptr) != 0; });
  if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) return WalkStep::kEnd;

  LocalFree(detail_);
  detail_ =
      static_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_A*>(LocalAlloc(LMEM_ZEROINIT, std::size_t{required} + 16));
  if (detail_ == nullptr) return WalkStep::kEnd;
  detail_->cbSize = sizeof *detail_;
  const bool told = Succeeds([&] {
    return libraries.getDeviceInterfaceDetail(set_, &data, detail_, required, nullptr, nullptr) != 0;
  });
  if (told) path = detail_->DevicePath;
  return told ? WalkStep::kPath : WalkStep::kSkip;
}

void HidWalk::End(const HidLibraries& libraries) {
  if (set_ != nullptr) Succeeds([&] { return libraries.destroyDeviceInfoList(set_) != 0; });
  set_ = nullptr;
  LocalFree(detail_);
  detail_ = nullptr;
}

}  // namespace tavlyn::platform
