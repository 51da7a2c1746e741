#include <dlfcn.h>
#include <link.h>
#include <unwind.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include "tests/boundary/scarce_memory.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define TAVLYN_DENIES_MEMORY 0
#else
#define TAVLYN_DENIES_MEMORY 1
#endif

namespace {

using tavlyn::boundary::Denial;

bool denying = false;
bool denied = false;
int toDenial = 0;  // allocations until the first that is denied
Denial denial{};
long blocks = 0;

enum class Place { kLibrary, kSystem, kElsewhere };

Place PlaceOf(const void* code) {
  constexpr std::array kSystem = {"/libc.so", "/ld-linux"};
  dl_find_object found{};
  if (_dl_find_object(const_cast<void*>(code), &found) != 0) return Place::kElsewhere;
  const char* name = found.dlfo_link_map->l_name;
  const auto isIn = [name](const char* part) { return std::strstr(name, part) != nullptr; };
  if (isIn("/libtavlynapi.so")) return Place::kLibrary;
  return std::ranges::any_of(kSystem, isIn) ? Place::kSystem : Place::kElsewhere;
}

struct Walk {
  bool inSystem = false;
  Place caller = Place::kElsewhere;
};

// The first frames are this file's own.
_Unwind_Reason_Code Visit(_Unwind_Context* frame, void* walk) {
  auto& [inSystem, caller] = *static_cast<Walk*>(walk);
  caller = PlaceOf(reinterpret_cast<const void*>(_Unwind_GetIP(frame)));
  if (caller == Place::kSystem) inSystem = true;
  return inSystem && caller != Place::kSystem ? _URC_NORMAL_STOP : _URC_NO_REASON;
}

// The caller of the system function that allocates.
Place CallerOfSystem() {
  Walk walk;
  _Unwind_Backtrace(Visit, &walk);
  return walk.caller;
}

// Whether the library's memory has run out, with the address that an allocation returns to.
[[maybe_unused]] bool RanOut(const void* returnsTo) {
  if (!denying) return false;
  Place caller = PlaceOf(returnsTo);
  if (caller == Place::kSystem) caller = CallerOfSystem();
  if (caller != Place::kLibrary) return false;
  const bool hit = --toDenial == 0 || (toDenial < 0 && denial == Denial::kFromThereOn);
  denied = denied || hit;
  if (hit) errno = ENOMEM;
  return hit;
}

[[maybe_unused]] void* Counted(void* block) {
  if (block != nullptr) ++blocks;
  return block;
}

}  // namespace

#if TAVLYN_DENIES_MEMORY
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) {
  return RanOut(__builtin_return_address(0)) ? nullptr : Counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) {
  return RanOut(__builtin_return_address(0)) ? nullptr : Counted(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size) {
  if (RanOut(__builtin_return_address(0))) return nullptr;
  if (block == nullptr) ++blocks;
  if (block != nullptr && size == 0) --blocks;
  return __libc_realloc(block, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return Counted(__libc_memalign(alignment, size));
}

void* memalign(std::size_t alignment, std::size_t size) { return Counted(__libc_memalign(alignment, size)); }

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  *block = Counted(__libc_memalign(alignment, size));
  return *block != nullptr ? 0 : ENOMEM;
}

void free(void* block) {
  if (block != nullptr) --blocks;
  __libc_free(block);
}
}
#endif

namespace tavlyn::boundary {

bool MemoryCanBeScarce() { return TAVLYN_DENIES_MEMORY != 0; }

void Deny(int number, Denial kind) {
  toDenial = number;
  denial = kind;
  denied = false;
  denying = true;
}

bool Grant() {
  denying = false;
  return denied;
}

long LiveBlocks() { return blocks; }

}  // namespace tavlyn::boundary
