/* Prints the nanoseconds that one dlopen of the library named takes. */
#include <dlfcn.h>
#include <stdio.h>
#include <time.h>

int main(int argc, char** argv) {
  struct timespec before;
  struct timespec after;
  if (argc != 2) return 2;
  clock_gettime(CLOCK_MONOTONIC, &before);
  void* library = dlopen(argv[1], RTLD_NOW);
  clock_gettime(CLOCK_MONOTONIC, &after);
  if (library == NULL) return 1;
  printf("%ld\n", (after.tv_sec - before.tv_sec) * 1000000000L + (after.tv_nsec - before.tv_nsec));
  return 0;
}
