// The commands of the card reader on both wires.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "docs/protocol/page.h"
#include "reader/commands.h"

namespace tavlyn::page {
namespace {

using reader::Command;
using reader::CommandBytes;
using reader::Fa;

struct Described {
  const char* name;
  std::string does;
  std::string carries;
  const Command& command;
};

std::vector<Described> Commands() {
  return {
#define COMMAND(name, does, carries, ...) {&#name[1], does, carries, reader::command::name},
#include "reader/commands.inc"
  };
}

std::string ByteText(std::int16_t listed) {
  switch (listed) {
    case reader::command::x: return "x";
    case reader::command::xBlock: return "80+x";
    case reader::command::y: return "y";
    default: return HexByte(static_cast<unsigned>(listed));
  }
}

std::string BytesText(const CommandBytes& bytes) {
  std::string text;
  for (std::size_t at = 0; at < bytes.count; ++at) text += (at > 0 ? " " : "") + ByteText(bytes.listed[at]);
  return Code(text);
}

bool Stores(const Command& command) { return command.routine == Fa::kSendData; }

std::string RepeatText(const std::string& what, unsigned count) {
  if (count == 0) return "";
  const std::string first = ", repeats " + what + "1";
  return count == 1 ? first : first + " to " + what + std::to_string(count);
}

std::string ReportReply(const Described& row) {
  const Command& command = row.command;
  if (command.report.count == 0) return "";
  if (row.carries.empty()) return "none";
  std::string text = Stores(command) ? "goes out" : "comes";
  if (command.form.replyAt > 1) text += "; [0] is b" + std::to_string(command.form.replyAt);
  return text + RepeatText("b", command.form.echoed);
}

// How many bytes of data a frame has.
std::string DataCount(const Command& command) {
  constexpr int kEchoAndStatus = 3;
  const std::int16_t p3 = command.fa.listed[3];
  if (command.form.faData == reader::kFromP3) return p3 < 0 ? ByteText(p3) : std::to_string(p3);
  return std::to_string(command.form.faData - (command.routine == Fa::kRecvWhole ? kEchoAndStatus : 0));
}

std::string Answer(const Command& command) {
  const std::string count = DataCount(command);
  const std::string data = count == "0" ? "" : ", " + count + (count == "1" ? " byte" : " bytes");
  switch (command.routine) {
    case Fa::kNone: return "";
    case Fa::kSendStatus: return "status";
    case Fa::kRecvBare: return "echo" + data;
    case Fa::kSendData: return "echo" + data + " go out, status";
    case Fa::kRecvData:
    case Fa::kRecvWhole: return "echo" + data + ", status";
  }
  return "";
}

std::string AnswerText(const Command& command) {
  const bool echoCounts = command.routine == Fa::kRecvWhole;
  std::string text = Answer(command);
  if (command.form.faAt > 0) text += "; [0] is d" + std::to_string(command.form.faAt + (echoCounts ? 0 : 1));
  text += RepeatText("P", command.form.faEchoed);
  if (command.form.faTries > 1) text += "; " + std::to_string(command.form.faTries) + " tries";
  return text;
}

}  // namespace

std::string ReaderCommands() {
  std::vector<Row> rows;
  for (const Described& row : Commands()) {
    rows.push_back({BytesText(row.command.report), BytesText(row.command.fa), row.name, row.does, row.carries,
                    ReportReply(row), AnswerText(row.command)});
  }
  return Table({"Report", "Frame", "Command", "What it does", "What it carries", "Second report", "Answer"},
               rows);
}

}  // namespace tavlyn::page
