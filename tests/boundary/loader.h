// What the loader of each system has to give.
#pragma once

namespace tavlyn::boundary {

// Null when it cannot be loaded.
void* LoadByName(const char* name);
void Unload(void* library);
// Null when there is no such symbol.
void* FindSymbol(void* library, const char* name);

// The stand-in, loaded before the library so that the library's own search by name ends at it.
void* LoadStandin();

}  // namespace tavlyn::boundary
