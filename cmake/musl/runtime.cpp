// The names of glibc that Debian's C++ runtime calls and musl 1.2 does not have.
#include <link.h>
#include <sys/random.h>

#include <cstddef>

namespace {

struct Object {
  unsigned long long flags;
  void* begin;
  void* end;
  link_map* map;
  void* frames;
};

struct Search {
  ElfW(Addr) address;
  Object* found;
};

int Look(dl_phdr_info* info, std::size_t /*size*/, void* data) {
  const Search& search = *static_cast<Search*>(data);
  Object object{};
  for (int row = 0; row < info->dlpi_phnum; ++row) {
    const ElfW(Phdr)& part = info->dlpi_phdr[row];
    const ElfW(Addr) begin = info->dlpi_addr + part.p_vaddr;
    if (part.p_type == PT_GNU_EH_FRAME) object.frames = reinterpret_cast<void*>(begin);
    if (part.p_type != PT_LOAD || search.address < begin || search.address - begin >= part.p_memsz) continue;
    object.begin = reinterpret_cast<void*>(begin);
    object.end = reinterpret_cast<void*>(begin + part.p_memsz);
  }
  if (object.begin == nullptr || object.frames == nullptr) return 0;
  *search.found = object;
  return 1;
}

}  // namespace

extern "C" {

// "Perhaps several threads": the runtime then takes the careful way.
extern char __libc_single_threaded;
char __libc_single_threaded = 0;

unsigned arc4random() {
  unsigned number = 0;
  return getrandom(&number, sizeof number, 0) == sizeof number ? number : 0;
}

// Where an exception's handlers are looked up.
int _dl_find_object(void* address, Object* found) {
  Search search{reinterpret_cast<ElfW(Addr)>(address), found};
  return dl_iterate_phdr(Look, &search) == 1 ? 0 : -1;
}
}
