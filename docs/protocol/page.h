// The tables of docs/protocol.md, each made from the library's own. In the page they are between two lines:
//
//   <!-- table NAME -->
//   <!-- end -->
#pragma once

#include <string>
#include <vector>

#include "core/fields.h"

namespace tavlyn::page {

using Row = std::vector<std::string>;

// Lines of Markdown; an empty code makes an empty cell.
std::string Table(const Row& heads, const std::vector<Row>& rows);
std::string Code(const std::string& text);
std::string Hex(unsigned byte);
// A word of a reader's record.
std::string FieldName(FieldId id);

std::string ReaderCommands();
std::string FormatBlock();
std::string TimeBlock();
std::string DisplayBlock();
std::string TextRequests();
std::string TextKeys();
std::string MagstripeCommands();
std::string MagstripeSettings();
std::string SonarCommands();
std::string SonarPages();

}  // namespace tavlyn::page
