// The tables of the manual pages and of docs/tavlynctl.md and docs/tavlynsim.md.
#pragma once

#include <optional>
#include <string>

namespace tavlyn::manual {

// Of a manual page; none if there is no such table. What follows the name chooses a part: "commands config".
std::optional<std::string> ManualTable(const std::string& name);
std::optional<std::string> MarkdownTable(const std::string& name);

// The same for tavlynd, and the example of its settings.
std::optional<std::string> AgentTable(const std::string& name);

// All calls of the library, by header, and its error words; the rules of udev.
std::string LibraryCalls();
std::string LibraryErrors();
std::string UdevRules();

}  // namespace tavlyn::manual
