// Pages whose tables a program makes: it compares them, or renews them in the page:
//
//   PROGRAM PAGE...
//   PROGRAM --renew PAGE...
//
// A table stands between two lines, in Markdown with an empty line after the first and before the second:
//
//   <!-- table NAME -->     in a manual page   .\" table NAME     in a header   /* table NAME */
//   <!-- end -->                               .\" end                          /* end */
//
// In a .toml file the lines are "# table NAME" and "# end".
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tavlyn::page {

// None if no table has this name.
using TableOf = std::function<std::optional<std::string>(const std::string& name)>;

struct NamedTable {
  std::string_view name;
  std::string (*write)();
};
TableOf Among(std::span<const NamedTable> tables);

// Returns the exit status. The command is shown to whoever has to renew a page.
int Renewal(const std::vector<std::string>& arguments, const TableOf& tableOf, const char* command);

using Row = std::vector<std::string>;
// Lines of Markdown; an empty code makes an empty cell.
std::string Table(const Row& heads, const std::vector<Row>& rows);
std::string Code(const std::string& text);

}  // namespace tavlyn::page
