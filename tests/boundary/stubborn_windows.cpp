// A program that ignores Ctrl-C. It says so, and never ends.
#include <windows.h>

#include <cstdio>

int main() {
  SetConsoleCtrlHandler([](DWORD) -> BOOL { return TRUE; }, TRUE);
  std::fputs("here\n", stderr);
  std::fflush(stderr);
  Sleep(INFINITE);
}
