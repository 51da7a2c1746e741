// Compares the tables of docs/protocol.md with the library's own, or renews them (docs/renewal).
#include <string>

#include "docs/protocol/page.h"

namespace tavlyn::page {
namespace {

constexpr NamedTable kTables[] = {
    {"reader commands", ReaderCommands},
    {"format block", FormatBlock},
    {"time block", TimeBlock},
    {"display block", DisplayBlock},
    {"extension block", ExtensionBlock},
    {"text requests", TextRequests},
    {"text keys", TextKeys},
    {"magstripe commands", MagstripeCommands},
    {"magstripe settings", MagstripeSettings},
    {"sonar commands", SonarCommands},
    {"sonar pages", SonarPages},
};

}  // namespace

std::string FieldName(FieldId id) {
  return Code(std::string(kRecordNames[id.record]) + "." + FieldOf(id).name);
}

}  // namespace tavlyn::page

int main(int count, char** words) {
  return tavlyn::page::Renewal(
      {words + 1, words + count}, tavlyn::page::Among(tavlyn::page::kTables),
      "scripts/build release protocol_page && build/release/bin/protocol_page --renew "
      "docs/protocol.md");
}
