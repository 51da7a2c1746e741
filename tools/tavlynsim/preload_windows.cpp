#include "tools/tavlynsim/preload_windows.h"

// preload_windows.h includes windows.h first.
#include <winternl.h>

#include <cstdint>
#include <cstring>
#include <optional>

namespace tavlyn::sim {
namespace {

// The structures fit programs of the same width as this one, x64 or x86; only those are served.
constexpr WORD kMachine = sizeof(void*) == 8 ? IMAGE_FILE_MACHINE_AMD64 : IMAGE_FILE_MACHINE_I386;
constexpr std::uintptr_t kPebImageBase = 2 * sizeof(void*);
constexpr std::uintptr_t kAllocationStep = 0x10000;
constexpr std::uintptr_t kReach = 0x7FFF0000;  // of an address relative to the image

template <typename Value>
bool Read(HANDLE process, std::uintptr_t at, Value* values, std::size_t count = 1) {
  SIZE_T got = 0;
  const std::size_t size = count * sizeof(Value);
  return ReadProcessMemory(process, reinterpret_cast<const void*>(at), values, size, &got) && got == size;
}

bool Write(HANDLE process, std::uintptr_t at, const void* bytes, std::size_t size) {
  SIZE_T put = 0;
  return WriteProcessMemory(process, reinterpret_cast<void*>(at), bytes, size, &put) && put == size;
}

struct Image {
  std::uintptr_t base = 0;
  std::uintptr_t headers = 0;
  IMAGE_NT_HEADERS nt{};
};

std::optional<Image> ImageOf(HANDLE process) {
  PROCESS_BASIC_INFORMATION basic{};
  const auto query = reinterpret_cast<decltype(&NtQueryInformationProcess)>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "NtQueryInformationProcess")));
  if (query(process, ProcessBasicInformation, &basic, sizeof basic, nullptr) < 0) return std::nullopt;
  Image image;
  IMAGE_DOS_HEADER dos{};
  const auto peb = reinterpret_cast<std::uintptr_t>(basic.PebBaseAddress);
  if (!Read(process, peb + kPebImageBase, &image.base) || !Read(process, image.base, &dos))
    return std::nullopt;
  image.headers = image.base + static_cast<std::uintptr_t>(dos.e_lfanew);
  if (!Read(process, image.headers, &image.nt)) return std::nullopt;
  const bool native = image.nt.Signature == IMAGE_NT_SIGNATURE && image.nt.FileHeader.Machine == kMachine;
  return native ? std::optional(image) : std::nullopt;
}

std::vector<IMAGE_IMPORT_DESCRIPTOR> ImportsOf(HANDLE process, const Image& image) {
  const IMAGE_DATA_DIRECTORY& place = image.nt.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  std::vector<IMAGE_IMPORT_DESCRIPTOR> imports(place.Size / sizeof(IMAGE_IMPORT_DESCRIPTOR));
  if (!Read(process, image.base + place.VirtualAddress, imports.data(), imports.size())) return {};
  while (!imports.empty() && imports.back().Name == 0) imports.pop_back();
  return imports;
}

// Memory after the image, within reach of its relative addresses. 0 if none is free.
std::uintptr_t Allocate(HANDLE process, const Image& image, std::size_t size) {
  const std::uintptr_t end = image.base + image.nt.OptionalHeader.SizeOfImage + kAllocationStep;
  for (std::uintptr_t at = end & ~(kAllocationStep - 1); at < image.base + kReach; at += kAllocationStep) {
    void* got =
        VirtualAllocEx(process, reinterpret_cast<void*>(at), size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    if (got != nullptr) return reinterpret_cast<std::uintptr_t>(got);
  }
  return 0;
}

// The new import table with everything that its first entries refer to.
class ImportBlock {
 public:
  ImportBlock(const std::vector<Preloaded>& libraries, std::vector<IMAGE_IMPORT_DESCRIPTOR> imports)
      : libraries_(libraries), table_(std::move(imports)) {
    table_.insert(table_.begin(), libraries.size(), {});
    table_.emplace_back();
  }

  [[nodiscard]] DWORD TableBytes() const {
    return static_cast<DWORD>(table_.size() * sizeof(IMAGE_IMPORT_DESCRIPTOR));
  }

  // The data as it will be at that distance from the image's beginning.
  std::vector<std::uint8_t> At(DWORD offset) {
    bytes_.assign(Aligned(TableBytes()), 0);
    for (std::size_t i = 0; i < libraries_.size(); ++i) {
      const DWORD symbol = offset + Put(std::string(sizeof(WORD), '\0') + libraries_[i].symbol);
      table_[i].Name = offset + Put(libraries_[i].file);
      table_[i].OriginalFirstThunk = offset + PutThunks(symbol);
      table_[i].FirstThunk = offset + PutThunks(symbol);
    }
    std::memcpy(bytes_.data(), table_.data(), TableBytes());
    return bytes_;
  }

 private:
  static std::size_t Aligned(std::size_t size) { return (size + 7) & ~std::size_t{7}; }

  DWORD Put(const std::string& text) {
    const std::size_t at = bytes_.size();
    bytes_.resize(Aligned(at + text.size() + 1));
    std::memcpy(bytes_.data() + at, text.data(), text.size());
    return static_cast<DWORD>(at);
  }

  DWORD PutThunks(DWORD symbol) {
    const std::uintptr_t thunks[2] = {symbol, 0};
    const std::size_t at = bytes_.size();
    bytes_.resize(at + sizeof thunks);
    std::memcpy(bytes_.data() + at, thunks, sizeof thunks);
    return static_cast<DWORD>(at);
  }

  const std::vector<Preloaded>& libraries_;
  std::vector<IMAGE_IMPORT_DESCRIPTOR> table_;
  std::vector<std::uint8_t> bytes_;
};

bool WriteHeaders(HANDLE process, const Image& image) {
  DWORD before = 0;
  auto* const at = reinterpret_cast<void*>(image.headers);
  if (!VirtualProtectEx(process, at, sizeof image.nt, PAGE_READWRITE, &before)) return false;
  const bool written = Write(process, image.headers, &image.nt, sizeof image.nt);
  VirtualProtectEx(process, at, sizeof image.nt, before, &before);
  return written;
}

}  // namespace

bool Preload(HANDLE process, const std::vector<Preloaded>& libraries) {
  std::optional<Image> image = ImageOf(process);
  if (!image) return false;
  std::vector<IMAGE_IMPORT_DESCRIPTOR> imports = ImportsOf(process, *image);
  if (imports.empty()) return false;
  ImportBlock block(libraries, std::move(imports));
  const std::uintptr_t at = Allocate(process, *image, block.At(0).size());
  if (at == 0) return false;
  const auto offset = static_cast<DWORD>(at - image->base);
  const std::vector<std::uint8_t> bytes = block.At(offset);
  if (!Write(process, at, bytes.data(), bytes.size())) return false;
  IMAGE_DATA_DIRECTORY* places = image->nt.OptionalHeader.DataDirectory;
  places[IMAGE_DIRECTORY_ENTRY_IMPORT] = {offset, block.TableBytes()};
  // Bound addresses would be valid only for the old table.
  places[IMAGE_DIRECTORY_ENTRY_BOUND_IMPORT] = {0, 0};
  return WriteHeaders(process, *image);
}

}  // namespace tavlyn::sim
