#include "sim/carriers/windows/node.h"

// windows.h comes first by way of node.h.
#include <winternl.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <iterator>
#include <string_view>

namespace tavlyn::sim {
namespace {

constexpr const char* kHidClass = "{4d1e55b2-f16f-11cf-88cb-001111000030}";
constexpr const char* kKeyboardClass = "{884b96c3-56ef-11d1-bc8c-00a0c91405dd}";
constexpr Usage kKeyboard = {1, 6};

// A program may open a path several times before it calls anything of ours.
constexpr std::ptrdiff_t kReadyEnds = 4;
constexpr DWORD kPipeBytes = 4096;

bool HasUsage(const HidIdentity& identity, Usage wanted) {
  return std::any_of(identity.usages.begin(), identity.usages.end(), [&](const Usage& usage) {
    return usage.page == wanted.page && usage.usage == wanted.usage;
  });
}

std::string PathOf(const HidIdentity& identity, int serial, const char* cls) {
  char path[128];
  std::snprintf(path, sizeof path, "\\\\?\\HID#Vid_%04x&Pid_%04x#7&%lx&0&%04d#%s", identity.vid, identity.pid,
                GetCurrentProcessId(), serial, cls);
  return path;
}

std::wstring PipeOf(int serial, const wchar_t* purpose) {
  wchar_t name[64];
  std::swprintf(name, std::size(name), L"\\tavlyn-hid-%lx-%d-%ls", GetCurrentProcessId(), serial, purpose);
  return name;
}

// The serial number in the names is never reused, so that a handle on a device that is gone does not lead to
// the one plugged in after it.
int NextSerial() {
  static int serial = 0;
  return ++serial;
}

// Peeking into a pipe needs the right to read it.
bool HasAccess(HANDLE handle) {
  return PeekNamedPipe(handle, nullptr, 0, nullptr, nullptr, nullptr) != FALSE;
}

enum class End { kReady, kOpen, kLeft };

End StateOf(HANDLE end) {
  if (PeekNamedPipe(end, nullptr, 0, nullptr, nullptr, nullptr)) return End::kOpen;
  return GetLastError() == ERROR_BROKEN_PIPE ? End::kLeft : End::kReady;
}

using CreateLink = NTSTATUS(NTAPI*)(HANDLE*, ACCESS_MASK, OBJECT_ATTRIBUTES*, UNICODE_STRING*);

UNICODE_STRING Unicode(std::wstring& text) {
  const auto bytes = static_cast<USHORT>(text.size() * sizeof(wchar_t));
  return {bytes, bytes, text.data()};
}

}  // namespace

Pipe::~Pipe() {
  for (HANDLE end : ends_) CloseHandle(end);
}

bool Pipe::Owns(HANDLE handle) const {
  alignas(FILE_NAME_INFO) char buffer[sizeof(FILE_NAME_INFO) + 512];
  if (!GetFileInformationByHandleEx(handle, FileNameInfo, buffer, sizeof buffer)) return false;
  const auto* info = reinterpret_cast<const FILE_NAME_INFO*>(buffer);
  return name_ == std::wstring_view(info->FileName, info->FileNameLength / sizeof(wchar_t));
}

void Pipe::Tend() {
  std::erase_if(ends_, [](HANDLE end) { return StateOf(end) == End::kLeft && CloseHandle(end); });
  auto ready =
      std::count_if(ends_.begin(), ends_.end(), [](HANDLE end) { return StateOf(end) == End::kReady; });
  for (; ready < kReadyEnds; ++ready) {
    const std::wstring path = L"\\\\.\\pipe" + name_;
    HANDLE end =
        CreateNamedPipeW(path.c_str(), directions_, PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_NOWAIT,
                         PIPE_UNLIMITED_INSTANCES, kPipeBytes, kPipeBytes, 0, nullptr);
    if (end == INVALID_HANDLE_VALUE) return;
    ends_.push_back(end);
  }
}

std::vector<HANDLE> Pipe::Open() const {
  std::vector<HANDLE> open;
  std::copy_if(ends_.begin(), ends_.end(), std::back_inserter(open),
               [](HANDLE end) { return StateOf(end) == End::kOpen; });
  return open;
}

// Only the duplex pipe gives programs anything to read; into an inbound one they can only write.
Node::Node(const HidIdentity& identity)
    : serial_(NextSerial()),
      pipe_(PipeOf(serial_, L"all"), PIPE_ACCESS_DUPLEX),
      withoutAccess_(PipeOf(serial_, L"none"), PIPE_ACCESS_INBOUND),
      hidPath_(PathOf(identity, serial_, kHidClass)) {
  if (HasUsage(identity, kKeyboard)) keyboardPath_ = PathOf(identity, serial_, kKeyboardClass);
  LinkAll();
}

Node::~Node() { Unlink(); }

void Node::Unlink() {
  for (HANDLE link : links_) CloseHandle(link);
  links_.clear();
}

void Node::LinkAll() {
  Pipe& pipe = holders_.empty() ? pipe_ : withoutAccess_;
  pipe.Tend();
  Unlink();
  Link(hidPath_, pipe);
  if (!keyboardPath_.empty()) Link(keyboardPath_, pipe);
}

// DefineDosDevice would leave the link behind permanently.
void Node::Link(const std::string& path, const Pipe& pipe) {
  const auto create = reinterpret_cast<CreateLink>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "NtCreateSymbolicLinkObject")));
  std::wstring name = L"\\??\\" + std::wstring(path.begin() + 4, path.end());
  std::wstring target = L"\\Device\\NamedPipe" + pipe.Name();
  UNICODE_STRING nameText = Unicode(name);
  UNICODE_STRING targetText = Unicode(target);
  OBJECT_ATTRIBUTES attributes;
  InitializeObjectAttributes(&attributes, &nameText, OBJ_CASE_INSENSITIVE, nullptr, nullptr);
  constexpr ACCESS_MASK kAllAccess = STANDARD_RIGHTS_REQUIRED | 1;
  HANDLE link = nullptr;
  if (create(&link, kAllAccess, &attributes, &targetText) >= 0) links_.push_back(link);
}

bool Node::Owns(HANDLE handle) const { return pipe_.Owns(handle) || withoutAccess_.Owns(handle); }

void Node::Note(HANDLE handle) {
  const bool known = std::find(holders_.begin(), holders_.end(), handle) != holders_.end();
  if (known || !HasAccess(handle)) return;
  holders_.push_back(handle);
  if (holders_.size() == 1) LinkAll();
}

// By now the handle's number may belong to another handle.
void Node::Tend() {
  pipe_.Tend();
  if (!holders_.empty()) withoutAccess_.Tend();
  const auto left = [this](HANDLE holder) { return !pipe_.Owns(holder) || !HasAccess(holder); };
  if (std::erase_if(holders_, left) != 0 && holders_.empty()) LinkAll();
}

// A program that never reads will have a full pipe and miss reports, as with a real device.
void Node::Deliver(std::span<const std::uint8_t> inputReport) {
  for (HANDLE end : pipe_.Open()) {
    DWORD written = 0;
    WriteFile(end, inputReport.data(), static_cast<DWORD>(inputReport.size()), &written, nullptr);
  }
}

}  // namespace tavlyn::sim
