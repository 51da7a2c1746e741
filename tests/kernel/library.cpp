#include "tests/kernel/library.h"

#include <chrono>
#include <thread>

#include "tests/kernel/bind.h"
#include "tests/kernel/checks.h"

namespace tavlyn::kernel {

bool LoadLibrary(const char* path, Library& library) {
  void* file = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (file == nullptr) {
    Check(false, std::string("the library loads: ") + dlerror());
    return false;
  }
  bool bound = true;
#define CALL(member, name) bound = Bind(file, #name, library.member) && bound;
#include "tests/kernel/calls.inc"
#undef CALL
  Check(bound, "the library has every function that is called here");
  if (bound) library.searchLink(0);
  return bound;
}

CardRead ReadCard(const Library& library) {
  std::this_thread::sleep_for(std::chrono::milliseconds(250));
  CardRead read{0, std::vector<std::uint8_t>(8, 0xEE)};
  read.bits = library.activeId(read.id.data(), 8);
  return read;
}

}  // namespace tavlyn::kernel
