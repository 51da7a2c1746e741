#include "tools/tavlynctl/trouble/wire_names.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <span>

#include "magstripe/commands.h"
#include "reader/commands.h"
#include "sonar/commands.h"

namespace tavlyn::ctl {
namespace {

constexpr int kFrameClass = 0xFA;
constexpr int kCovered = -1;

using CommandNames = std::vector<std::string>;

struct ReaderRow {
  const char* name;
  reader::CommandBytes report;
  reader::CommandBytes fa;
  bool stores;
};

constexpr ReaderRow Row(const char* name, const reader::Command& command) {
  return {name + 1, command.report, command.fa, command.routine == reader::Fa::kSendData};
}

constexpr ReaderRow kReaderRows[] = {
#define COMMAND(name, ...) Row(#name, reader::command::name),
#include "reader/commands.inc"
};

struct MagstripeRow {
  const char* name;
  std::string_view text;
};

constexpr MagstripeRow kMagstripeRows[] = {
#define COMMAND(id, does, text, ...) {&#id[1], text},
#include "magstripe/commands.inc"
};

struct SonarRow {
  const char* name;
  int opcode;
};

constexpr SonarRow kSonarRows[] = {
#define COMMAND(id, opcode, does) {&#id[1], opcode},
#include "sonar/commands.inc"
};

bool FitsByte(std::int16_t listed, int byte) {
  if (listed == reader::command::xBlock) return byte >= 0x80 && byte <= 0x83;
  return listed < 0 || byte == listed || byte == kCovered;
}

// How many bytes a row fixes; -1 if these are not its bytes.
int Fit(const reader::CommandBytes& row, std::span<const int> bytes) {
  if (row.count == 0 || bytes.size() < std::min<std::size_t>(row.count, 4)) return -1;
  int fixed = 0;
  for (std::size_t at = 0; at < std::min<std::size_t>(row.count, bytes.size()); ++at) {
    if (!FitsByte(row.listed[at], bytes[at])) return -1;
    if (row.listed[at] >= 0) ++fixed;
  }
  return fixed;
}

// The rows that say most about these bytes; several commands can have the same.
std::vector<const ReaderRow*> ReaderRowsOf(std::span<const int> bytes,
                                           reader::CommandBytes ReaderRow::*wire) {
  std::vector<const ReaderRow*> best;
  int most = 0;
  for (const ReaderRow& row : kReaderRows) {
    const int fit = Fit(row.*wire, bytes);
    if (fit < most) continue;
    if (fit > most) best.clear();
    most = fit;
    best.push_back(&row);
  }
  return best;
}

std::string OrText(const CommandNames& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : " or ") + name;
  return text;
}

bool IsTextByte(int byte) { return (byte >= ' ' && byte <= '~') || byte == '\r' || byte == '\n'; }

// In quotes; empty if it is none.
std::string TextOf(const std::vector<int>& bytes) {
  if (!std::ranges::all_of(bytes, IsTextByte)) return {};
  std::string text;
  for (const int byte : bytes) {
    text += byte == '\r' ? "\\r" : byte == '\n' ? "\\n" : std::string(1, static_cast<char>(byte));
  }
  return '"' + text + '"';
}

bool FitsText(std::string_view text, std::span<const int> bytes) {
  if (bytes.size() < text.size()) return false;
  return std::equal(text.begin(), text.end(), bytes.begin(),
                    [](char wanted, int byte) { return wanted == '?' || byte == wanted; });
}

const char* MagstripeName(std::span<const int> bytes) {
  const auto* row = std::ranges::find_if(kMagstripeRows,
                                         [&](const MagstripeRow& one) { return FitsText(one.text, bytes); });
  return row != std::end(kMagstripeRows) ? row->name : nullptr;
}

const char* SonarName(std::span<const int> bytes) {
  const auto* row = std::ranges::find(kSonarRows, bytes.front(), &SonarRow::opcode);
  return row != std::end(kSonarRows) ? row->name : nullptr;
}

}  // namespace

bool ParseWireLine(std::string_view line, WireLine& wire) {
  constexpr std::string_view kTag = " wire ";
  const std::size_t tag = line.find(kTag);
  const std::size_t sign = line.find_first_of("<>", tag);
  if (tag == std::string_view::npos || sign == std::string_view::npos) return false;
  wire = {};
  wire.product = line.substr(tag + kTag.size(), sign - 1 - tag - kTag.size());
  wire.sent = line[sign] == '>';
  for (std::size_t at = sign + 1; at + 2 < line.size() && line[at] == ' '; at += 3) {
    unsigned byte = 0;
    const std::string digits(line.substr(at + 1, 2));
    if (digits == "**") {
      wire.bytes.push_back(kCovered);
    } else if (std::sscanf(digits.c_str(), "%2X", &byte) == 1) {
      wire.bytes.push_back(static_cast<int>(byte));
    }
  }
  return true;
}

std::string WireNames::DataName() {
  const std::string name = OrText(stores_);
  stores_.clear();
  return "data of " + name;
}

// A command, and after one that stores its data; what is stored has no reply.
std::string WireNames::OfReport(const WireLine& wire) {
  const auto payload = std::span(wire.bytes).subspan(1);  // after the report ID
  asks_.clear();
  if (!stores_.empty()) return DataName();
  CommandNames all;
  if (wire.product == "reader") {
    for (const ReaderRow* row : ReaderRowsOf(payload, &ReaderRow::report)) {
      all.emplace_back(row->name);
      (row->stores ? stores_ : asks_).emplace_back(row->name);
    }
  } else if (const char* name = wire.product == "sonar" ? SonarName(payload) : MagstripeName(payload)) {
    asks_ = all = {name};
    if (wire.product == "sonar" && all.front().starts_with("Page")) stores_ = all;
  }
  return OrText(all);
}

// FA, the header and, after its echo, what it stores; or text.
std::string WireNames::OfFrame(const WireLine& wire) {
  if (wire.bytes.size() == 1 && wire.bytes.front() == kFrameClass) {
    begun_ = true;
    return {};
  }
  if (begun_) {
    begun_ = false;
    asks_.clear();
    stores_.clear();
    for (const ReaderRow* row : ReaderRowsOf(wire.bytes, &ReaderRow::fa)) {
      asks_.emplace_back(row->name);
      if (row->stores) stores_.emplace_back(row->name);
    }
    return OrText(asks_);
  }
  if (!stores_.empty()) return DataName();
  asks_.clear();
  return TextOf(wire.bytes);
}

std::string WireNames::Of(const WireLine& wire) {
  if (wire.bytes.empty()) return {};
  // A report begins with its ID, 0 or 1, and has eight bytes or more after it.
  const bool isReport = wire.bytes.size() > 8 && (wire.bytes.front() <= 1);
  if (wire.sent) return isReport ? OfReport(wire) : OfFrame(wire);
  if (isReport) stores_.clear();
  if (!asks_.empty()) return "reply to " + OrText(asks_);
  return isReport ? "" : TextOf(wire.bytes);
}

}  // namespace tavlyn::ctl
