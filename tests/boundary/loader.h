// What each system's loader provides.
#pragma once

namespace tavlyn::boundary {

// Null if it cannot be loaded.
void* LoadByName(const char* name);
void Unload(void* library);
// Null if there is no such symbol.
void* FindSymbol(void* library, const char* name);

// The stand-in, loaded before the library so that the library's own search by name ends at it.
void* LoadStandin();

}  // namespace tavlyn::boundary
