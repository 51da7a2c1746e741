#include "tools/tavlynctl/output.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "tools/colour.h"
#include "tools/printable.h"

namespace tavlyn::ctl {
namespace {

constexpr int kSchema = 1;
constexpr int kIndent = 2;

bool IsScalar(const Json& value) { return !value.is_structured(); }

// Sentences, each a line of its own.
bool IsText(const Json& value) {
  return value.is_array() && std::ranges::any_of(value, [](const Json& one) {
           return one.is_string() && one.get_ref<const std::string&>().find(' ') != std::string::npos;
         });
}

bool IsList(const Json& value) {
  return value.is_array() && std::ranges::all_of(value, IsScalar) && !IsText(value);
}

bool IsCell(const Json& value) { return IsScalar(value) || IsList(value); }

bool IsTable(const Json& value) {
  return value.is_array() && !value.empty() && std::ranges::all_of(value, [](const Json& row) {
           return row.is_object() && std::ranges::all_of(row, IsCell);
         });
}

std::string Label(std::string key) {
  std::ranges::replace(key, '_', ' ');
  return key;
}

void Line(std::size_t indent, std::string text, std::FILE* stream = stdout) {
  while (!text.empty() && text.back() == ' ') text.pop_back();
  PrintLine(stream, text.insert(0, indent, ' '));
}

// Without the blanks at its end.
void PiecesLine(std::vector<Coloured> pieces, std::FILE* stream = stdout) {
  while (!pieces.empty()) {
    std::string& last = pieces.back().text;
    while (!last.empty() && last.back() == ' ') last.pop_back();
    if (!last.empty()) break;
    pieces.pop_back();
  }
  PrintPieces(stream, pieces);
}

// Of the words that tell how something went.
Colour ColourOf(const std::string& key, const Json& value) {
  if (key != "result" && key != "verified" && key != "intact") return Colour::kNone;
  if (value == "ok" || value == "stored" || value == true) return Colour::kGood;
  return value == "failed" || value == "different" || value == false ? Colour::kBad : Colour::kNone;
}

std::string Padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text + "  ";
}

// Texts come from a device: bytes that are not UTF-8 must not end the program. Characters that are not ASCII
// are escaped, so that a terminal shows JSON unchanged.
void PrintJson(const Json& value, int indent = -1) {
  std::printf("%s\n", value.dump(indent, ' ', true, Json::error_handler_t::replace).c_str());
}

void ShowTable(const Json& rows, std::size_t indent, std::FILE* stream = stdout) {
  // Not every row has them all.
  std::vector<std::pair<std::string, std::size_t>> columns;
  for (const Json& row : rows) {
    for (const auto& [key, value] : row.items()) {
      auto column = std::ranges::find(columns, key, &std::pair<std::string, std::size_t>::first);
      if (column == columns.end()) column = columns.insert(column, {key, Label(key).size()});
      column->second = std::max(column->second, Cell(value).size());
    }
  }
  std::string head;
  for (const auto& [key, width] : columns) head += Padded(Label(key), width);
  PiecesLine({{Colour::kNone, std::string(indent, ' ')}, {Colour::kHeading, head}}, stream);
  for (const Json& row : rows) {
    std::vector<Coloured> pieces{{Colour::kNone, std::string(indent, ' ')}};
    for (const auto& [key, width] : columns) {
      const bool has = row.contains(key);
      pieces.push_back(
          {has ? ColourOf(key, row[key]) : Colour::kNone, Padded(has ? Cell(row[key]) : "", width)});
    }
    PiecesLine(std::move(pieces), stream);
  }
}

void ShowObject(const Json& object, std::size_t indent) {
  std::size_t width = 0;
  for (const auto& [key, value] : object.items()) {
    if (IsCell(value)) width = std::max(width, Label(key).size());
  }
  for (const auto& [key, value] : object.items()) {
    if (IsCell(value)) {
      PiecesLine({{Colour::kNone, std::string(indent, ' ') + Padded(Label(key), width)},
                  {ColourOf(key, value), Cell(value)}});
      continue;
    }
    Line(indent, Label(key));
    if (value.is_object()) {
      ShowObject(value, indent + kIndent);
    } else if (IsText(value)) {
      for (const Json& line : value) Line(indent + kIndent, Cell(line));
    } else if (IsTable(value)) {
      ShowTable(value, indent + kIndent);
    } else {
      for (const Json& one : value) ShowObject(one, indent + kIndent);
    }
  }
}

}  // namespace

std::string Cell(const Json& value) {
  if (value.is_null()) return "-";
  if (value.is_string()) return Printable(value.get_ref<const std::string&>());
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  if (!value.is_array()) return value.dump();
  if (value.empty()) return "none";
  std::string text;
  for (const Json& one : value) {
    if (!text.empty()) text += ' ';
    text += Cell(one);
  }
  return text;
}

Json NewDocument(const std::string& command) { return Json{{"schema", kSchema}, {"command", command}}; }

void Show(const Json& document, bool asJson) {
  if (document.is_null()) return;
  if (asJson) {
    PrintJson(document, kIndent);
  } else if (document.contains("bits")) {
    Line(0, CardLine("card", document));
  } else {
    Json shown = document;
    shown.erase("schema");
    shown.erase("command");
    ShowObject(shown, 0);
  }
  FlushOutput();
}

void ShowRows(std::FILE* stream, const Json& rows) { ShowTable(rows, 0, stream); }

std::string CardLine(const std::string& event, const Json& card) {
  return event + " " + Cell(card["bits"]) + " bits " + Cell(card["id"]);
}

void ShowEvent(const Json& event, const std::string& line, bool asJson) {
  if (asJson) {
    PrintJson(event);
  } else {
    Line(0, line);
  }
  FlushOutput();
}

void FlushOutput() {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return;
  throw Failure(kBadFile, "the standard output cannot be written");
}

ExitCode ShowFailure(const Failure& failure, const std::string& command, bool asJson) {
  ExitCode code = failure.code;
  const Json error{{"code", static_cast<int>(code)}, {"text", failure.what()}};
  Json document = failure.document;
  try {
    if (std::ferror(stdout) != 0) {
      document = {};  // it is what cannot be written to
    } else if (asJson && document.is_null()) {
      document = NewDocument(command);
      document["error"] = error;
      ShowEvent(document, "", true);
    } else {
      if (asJson) document["error"] = error;
      Show(document, asJson);
    }
  } catch (const Failure& unwritten) {
    code = unwritten.code;
    TellFailure(kProgram, unwritten.what());
  }
  TellFailure(kProgram, failure.what());
  return code;
}

}  // namespace tavlyn::ctl
