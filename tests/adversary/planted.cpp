// A library that leaves a file behind when it is loaded.
#include <cstdio>

namespace {

__attribute__((constructor)) void Tell() {
  if (std::FILE* file = std::fopen("loaded", "w")) std::fclose(file);
}

}  // namespace
