// The tables of docs/protocol.md, each made from the library's own.
#pragma once

#include <string>

#include "core/fields.h"
#include "docs/renewal/renewal.h"

namespace tavlyn::page {

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
