// The variables by which programs see the simulated devices, and their forms.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace tavlyn::sim {

using Variables = std::vector<std::pair<std::string, std::string>>;

// Replaces a variable of that name.
void Put(Variables& variables, const std::string& name, const std::string& value);
void PutAll(Variables& variables, const Variables& more);

// As a message carries them. Whatever is no variable is left out.
std::vector<std::uint8_t> Packed(const Variables& variables);
Variables Unpacked(std::span<const std::uint8_t> packed);

// Lines for any POSIX shell to evaluate: export NAME='VALUE'
std::string ShellLines(const Variables& variables);
// One line.
std::string JsonLine(const Variables& variables);

}  // namespace tavlyn::sim
