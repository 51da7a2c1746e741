/* Prints the nanoseconds of processor time that one dlopen of the library named takes, and the kB that the
   process then has for itself alone. */
#include <dlfcn.h>
#include <stdio.h>
#include <time.h>

static long OwnMemory(void) {
  long size = -1;
  char line[256];
  FILE* rollup = fopen("/proc/self/smaps_rollup", "r");
  if (rollup == NULL) return -1;
  while (size < 0 && fgets(line, sizeof line, rollup) != NULL) sscanf(line, "Anonymous: %ld", &size);
  fclose(rollup);
  return size;
}

int main(int argc, char** argv) {
  struct timespec before;
  struct timespec after;
  if (argc != 2) return 2;
  OwnMemory();
  const long memory = OwnMemory();
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &before);
  void* library = dlopen(argv[1], RTLD_NOW);
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &after);
  if (library == NULL) return 1;
  printf("%ld %ld\n", (after.tv_sec - before.tv_sec) * 1000000000L + (after.tv_nsec - before.tv_nsec),
         OwnMemory() - memory);
  return 0;
}
