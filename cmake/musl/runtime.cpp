// The names of glibc that Debian's C++ runtime calls and musl 1.2 does not have, or has with other contents.
#include <ctype.h>
#include <link.h>
#include <locale.h>
#include <sys/random.h>

#include <cstddef>
#include <ctime>

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

// Streams look into a locale for glibc's tables of characters. For musl it is one whose parts are all "C".
struct Locale {
  void* parts[13];
  const unsigned short* classes;
  const int* lower;
  const int* upper;
  const char* names[13];
};
Locale plain{};

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

const unsigned short** __ctype_b_loc();
const int** __ctype_tolower_loc();
const int** __ctype_toupper_loc();

locale_t __newlocale(int /*parts*/, const char* /*name*/, locale_t /*base*/) {
  plain.classes = *__ctype_b_loc();
  plain.lower = *__ctype_tolower_loc();
  plain.upper = *__ctype_toupper_loc();
  for (const char*& name : plain.names) name = "C";
  return reinterpret_cast<locale_t>(&plain);
}
locale_t __duplocale(locale_t place) { return place; }
void __freelocale(locale_t /*place*/) {}

std::size_t __strftime_l(char* text, std::size_t size, const char* format, const tm* time, locale_t place) {
  return strftime_l(text, size, format, time, place);
}

// A thread's objects stay when it ends: these are tests.
int __cxa_thread_atexit_impl(void (* /*destroy*/)(void*), void* /*object*/, void* /*library*/) { return 0; }

// Where an exception's handlers are looked up.
int _dl_find_object(void* address, Object* found) {
  Search search{reinterpret_cast<ElfW(Addr)>(address), found};
  return dl_iterate_phdr(Look, &search) == 1 ? 0 : -1;
}
}
