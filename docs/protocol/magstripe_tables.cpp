// The commands of the magnetic-stripe reader and the bits of its settings.
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "docs/protocol/page.h"
#include "magstripe/layout.h"

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

// The keys of the text file by the places of their values.
struct Keys {
  struct {
    std::uint16_t LUID;
  } entry{};
  tsSorbaneCfg cfg{};

  std::string Of(const void* wanted) {
    const struct { std::size_t outer, inner; } at{};
    tsSorbaneField& field = cfg.UserField.front();
    const struct {
      const void* place;
      const char* key;
    } keys[] = {
#define SETTING(key, count, inners, place, form, comment) {&(place), key},
#include "magstripe/text_file.inc"
    };
    for (const auto& each : keys) {
      if (each.place == wanted) return Code(each.key);
    }
    return "";
  }
};

std::string BitsText(unsigned shift, unsigned mask) {
  const unsigned last = shift + static_cast<unsigned>(std::popcount(mask)) - 1;
  if (mask == 0xFF) return "all";
  return last == shift ? std::to_string(shift) : std::to_string(shift) + " to " + std::to_string(last);
}

std::string Indexed(std::string key, std::size_t index) {
  const std::size_t last = key.rfind('#');
  return last == std::string::npos ? key : key.replace(last, 1, std::to_string(index));
}

template <typename Table, typename Owner>
void AddBits(std::vector<Row>& rows, const std::string& commands, const Table& table, Keys& keys,
             const Owner& owner) {
  for (const auto& bits : table) {
    rows.push_back({commands, std::to_string(bits.byte), BitsText(bits.shift, bits.mask),
                    keys.Of(&(owner.*bits.member))});
  }
}

void AddFields(std::vector<Row>& rows, Keys& keys) {
  const tsSorbaneField& field = keys.cfg.UserField.front();
  for (const magstripe::FieldPart& part : magstripe::kFieldParts) {
    const std::string commands = Code(part.read.name) + " " + Code(part.write.name);
    AddBits(rows, commands, part.bits, keys, field);
    if (part.keys == 0) continue;
    rows.push_back({commands,
                    std::to_string(part.keysAt) + " to " + std::to_string(part.keysAt + part.keys - 1), "all",
                    Indexed(keys.Of(field.Keybyte.data()), part.firstKey) + " onward"});
  }
}

void AddSystem(std::vector<Row>& rows, Keys& keys) {
  const std::string commands = Code(magstripe::kReadSystem.name) + " " + Code(magstripe::kWriteSystem.name);
  AddBits(rows, commands, magstripe::kSystemBits, keys, keys.cfg);
  const auto add = [&](std::size_t byte, const std::string& bits, const void* place) {
    rows.push_back({commands, std::to_string(byte), bits, keys.Of(place)});
  };
  add(magstripe::kKeyPressAt, "all, in steps of 4", &keys.cfg.KeyPressTime);
  add(magstripe::kKeyReleaseAt, "all, in steps of 4", &keys.cfg.KeyReleaseTime);
  add(magstripe::kLuidAt, "low byte", &keys.entry.LUID);
  add(magstripe::kLuidAt + 1, "high byte", &keys.entry.LUID);
}

void AddLeds(std::vector<Row>& rows, Keys& keys) {
  const std::string commands = Code(magstripe::kReadLeds.name) + " " + Code(magstripe::kWriteLeds.name);
  for (std::size_t led = 0; led < magstripe::kLedPlaces.size(); ++led) {
    const magstripe::LedPlace place = magstripe::kLedPlaces[led];
    rows.push_back({commands, std::to_string(place.byte), BitsText(place.shift, 3),
                    Indexed(keys.Of(keys.cfg.LedColor.data()), led)});
  }
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
  Keys keys;
  AddFields(rows, keys);
  AddSystem(rows, keys);
  AddLeds(rows, keys);
  return Table({"Commands", "Byte", "Bits", "Setting"}, rows);
}

}  // namespace tavlyn::page
