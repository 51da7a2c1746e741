#include "tests/boundary/library.h"

#include <stdexcept>
#include <vector>

#include "sim/carriers/standin_control.h"
#include "tests/boundary/loader.h"

namespace tavlyn::boundary {

Library::Library() : standin_(LoadStandin()) {
  if (standin_ == nullptr) throw std::runtime_error("no stand-in for the HID library");
  if (FindSymbol(standin_, TAVLYN_STANDIN_MARKER) == nullptr) {
    throw std::runtime_error("the system's own HID library was loaded, not the stand-in");
  }
  library_ = LoadByName(TAVLYN_LIBRARY);
  if (library_ == nullptr) throw std::runtime_error(TAVLYN_LIBRARY " cannot be loaded");
}

Library::~Library() { Unload(library_); }

void* Library::Symbol(const char* name) const {
  void* symbol = FindSymbol(library_, name);
  if (symbol == nullptr) throw std::runtime_error(std::string(name) + " is not exported");
  return symbol;
}

std::string Library::Standin(const std::string& command) const {
  const auto run = reinterpret_cast<TavlynStandin>(FindSymbol(standin_, TAVLYN_STANDIN));
  if (run == nullptr) throw std::runtime_error("the stand-in takes no commands");
  std::vector<char> reply(256);
  int length = run(command.c_str(), reply.data(), reply.size());
  if (length < 0) throw std::runtime_error(command + ": " + reply.data());
  if (static_cast<std::size_t>(length) >= reply.size()) {
    reply.resize(static_cast<std::size_t>(length) + 1);
    length = run(command.c_str(), reply.data(), reply.size());
  }
  return {reply.data(), static_cast<std::size_t>(length)};
}

}  // namespace tavlyn::boundary
