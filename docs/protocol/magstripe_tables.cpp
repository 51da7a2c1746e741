// The commands of the magnetic-stripe reader and the bits of its settings.
#include <cstddef>
#include <string>
#include <vector>

#include "docs/protocol/page.h"
#include "magstripe/commands.h"
#include "tools/wire/places.h"

namespace tavlyn::page {
namespace {

struct TextCommand {
  std::string does;
  const magstripe::Command& command;
};

std::vector<TextCommand> MagstripeRows() {
  return {
#define COMMAND(id, does, ...) {does, magstripe::id},
#include "magstripe/commands.inc"
  };
}

std::string ReplyText(const magstripe::Command& command) {
  const std::string from = " from character " + std::to_string(command.at);
  std::string text = Code(command.begins);
  if (command.received > 0) text += ", " + std::to_string(command.received) + " bytes" + from;
  if (command.received == 0 && command.at != magstripe::Command{}.at) text += ", text" + from;
  return text;
}

}  // namespace

std::string MagstripeCommands() {
  std::vector<Row> rows;
  for (const TextCommand& row : MagstripeRows()) {
    rows.push_back({Code(row.command.name), row.command.sent == 0 ? "" : std::to_string(row.command.sent),
                    ReplyText(row.command), row.does});
  }
  return Table({"Text", "Bytes after it", "Good reply", "What it does"}, rows);
}

std::string MagstripeSettings() {
  std::vector<Row> rows;
  for (const wire::Place& place : wire::MagstripePlaces()) {
    const std::string name = place.part.empty() ? place.key : place.part;
    const std::size_t end = name.find(' ');
    rows.push_back({Code(place.commands[0]) + " " + Code(place.commands[1]), place.byte, place.bits,
                    Code(name.substr(0, end)) + (end == std::string::npos ? "" : name.substr(end))});
  }
  return Table({"Commands", "Byte", "Bits", "Setting"}, rows);
}

}  // namespace tavlyn::page
