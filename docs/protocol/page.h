// The tables of docs/protocol.md, each made from the library's own. They stand in the page between two lines:
//
//   <!-- table NAME -->
//   <!-- end -->
#pragma once

#include <string>
#include <vector>

namespace tavlyn::page {

using Row = std::vector<std::string>;

// Lines of Markdown; a code of none is an empty cell.
std::string Table(const Row& heads, const std::vector<Row>& rows);
std::string Code(const std::string& text);
std::string Hex(unsigned byte);

std::string ReaderCommands();
std::string FormatBlock();
std::string TimeBlock();
std::string DisplayBlock();

}  // namespace tavlyn::page
