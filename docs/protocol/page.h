// The tables of docs/protocol.md, each made from the library's own.
#pragma once

#include <string>

#include "core/fields.h"
#include "docs/renewal/renewal.h"
#include "tools/wire/places.h"

namespace tavlyn::page {

using wire::HexByte;
// A word of a reader's record.
std::string FieldName(FieldId id);

std::string ReaderCommands();
std::string FormatBlock();
std::string TimeBlock();
std::string DisplayBlock();
std::string ExtensionBlock();
std::string TextRequests();
std::string TextKeys();
std::string MagstripeCommands();
std::string MagstripeSettings();
std::string SonarCommands();
std::string SonarPages();

}  // namespace tavlyn::page
