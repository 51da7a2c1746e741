// The calling convention of every export and of the marker function, whatever the default of a program's
// compiler. Only compiled, never run.
#include "api.h"

template <typename Result, typename... Arguments>
void CallsAsC(Result(__cdecl*)(Arguments...));

void Every(tavlyn_marker_function marker) {
  CallsAsC(marker);
#define EXPORT(name) CallsAsC(name);
#include "exports.inc"
}
