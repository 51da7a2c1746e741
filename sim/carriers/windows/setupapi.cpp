// A stand-in for SETUPAPI.DLL that lists what the stand-in HID.DLL of the same process serves. setupapi.def
// gives the functions their public names.
#include <windows.h>

// windows.h has to come first.
#include <setupapi.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr GUID kKeyboardClass = {
    0x884B96C3, 0x56EF, 0x11D1, {0xBC, 0x8C, 0x00, 0xA0, 0xC9, 0x14, 0x05, 0xDD}};

// What a program holds as a device information set.
struct DeviceSet {
  GUID cls;
  std::vector<std::string> paths;
};

using PathOf = int (*)(int keyboards, int index, char* path, std::size_t size);

// HID.DLL's stand-in is loaded before any device can exist; without it nothing is listed.
std::vector<std::string> PathsOf(const GUID& cls) {
  std::vector<std::string> paths;
  HMODULE hid = GetModuleHandleA("hid.dll");
  const auto pathOf =
      reinterpret_cast<PathOf>(reinterpret_cast<void*>(GetProcAddress(hid, "tavlyn_standin_path")));
  if (hid == nullptr || pathOf == nullptr) return paths;
  char path[MAX_PATH];
  const int keyboards = IsEqualGUID(cls, kKeyboardClass) ? 1 : 0;
  while (pathOf(keyboards, static_cast<int>(paths.size()), path, sizeof path) >= 0) paths.emplace_back(path);
  return paths;
}

// The call, by its name, that ends with a simulated exception, and which one.
std::string troubled;
DWORD trouble = 0;

void Installer(const char* call) {
  if (troubled != call) return;
  // cppcheck-suppress nullPointer ; this is the exception
  if (trouble == EXCEPTION_ACCESS_VIOLATION) *static_cast<volatile int*>(nullptr) = 0;
  RaiseException(trouble, EXCEPTION_NONCONTINUABLE, 0, nullptr);
}

BOOL Fail(DWORD error) {
  SetLastError(error);
  return FALSE;
}

}  // namespace

extern "C" {

HDEVINFO WINAPI StandinGetClassDevs(const GUID* cls, const char*, HWND, DWORD flags) {
  Installer("class");
  if (flags != (DIGCF_PRESENT | DIGCF_DEVICEINTERFACE)) {
    SetLastError(ERROR_INVALID_FLAGS);
    return INVALID_HANDLE_VALUE;
  }
  return new DeviceSet{*cls, PathsOf(*cls)};
}

BOOL WINAPI StandinEnumDeviceInterfaces(HDEVINFO set, SP_DEVINFO_DATA*, const GUID* cls, DWORD index,
                                        SP_DEVICE_INTERFACE_DATA* data) {
  Installer("interface");
  const auto* devices = static_cast<const DeviceSet*>(set);
  if (data->cbSize != sizeof *data) return Fail(ERROR_INVALID_USER_BUFFER);
  if (!IsEqualGUID(*cls, devices->cls) || index >= devices->paths.size()) return Fail(ERROR_NO_MORE_ITEMS);
  data->InterfaceClassGuid = *cls;
  data->Flags = SPINT_ACTIVE;
  data->Reserved = index;
  return TRUE;
}

BOOL WINAPI StandinGetDeviceInterfaceDetail(HDEVINFO set, SP_DEVICE_INTERFACE_DATA* data,
                                            SP_DEVICE_INTERFACE_DETAIL_DATA_A* detail, DWORD size,
                                            DWORD* required, SP_DEVINFO_DATA*) {
  Installer(detail == nullptr ? "length" : "detail");
  const auto* devices = static_cast<const DeviceSet*>(set);
  if (data->Reserved >= devices->paths.size()) return Fail(ERROR_INVALID_PARAMETER);
  const std::string& path = devices->paths[data->Reserved];
  const std::size_t needed = offsetof(SP_DEVICE_INTERFACE_DETAIL_DATA_A, DevicePath) + path.size() + 1;
  if (required != nullptr) *required = static_cast<DWORD>(needed);
  if (detail == nullptr || size < needed) return Fail(ERROR_INSUFFICIENT_BUFFER);
  if (detail->cbSize != sizeof *detail) return Fail(ERROR_INVALID_USER_BUFFER);
  std::memcpy(detail->DevicePath, path.c_str(), path.size() + 1);
  return TRUE;
}

BOOL WINAPI StandinDestroyDeviceInfoList(HDEVINFO set) {
  Installer("destroy");
  delete static_cast<DeviceSet*>(set);
  return TRUE;
}

// From now on a call (class, interface, length, detail, destroy) ends with a system exception; "" for none.
void StandinRaise(const char* call, unsigned code) {
  troubled = call;
  trouble = code;
}

const char* StandinSetupMarker() { return "SETUPAPI.DLL"; }

}  // extern "C"
