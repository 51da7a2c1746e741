// What every export and the marker function is called like, whatever a program's compiler takes for the usual
// way. Compiled alone; nothing runs.
#include "api.h"

template <typename Result, typename... Arguments>
void CallsAsC(Result(__cdecl*)(Arguments...));

void Every(tavlyn_marker_function marker) {
  CallsAsC(marker);
#define EXPORT(name) CallsAsC(name);
#include "exports.inc"
}
