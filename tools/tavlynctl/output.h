// What a command has found, and how it is shown: as JSON, or as text for people.
#pragma once

#include <cstdio>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <utility>

namespace tavlyn::ctl {

using Json = nlohmann::ordered_json;

inline constexpr const char* kProgram = "tavlynctl";

enum ExitCode : int {
  kOk = 0,
  kUsage = 1,
  kNoDevice = 2,
  kNoPermission = 3,
  kDeviceError = 4,
  kNoCard = 5,
  kBadFile = 6,
  kDiffers = 7,
};

// Ends a command.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode exitCode, const std::string& text, Json found = {})
      : std::runtime_error(text), code(exitCode), document(std::move(found)) {}
  ExitCode code;
  Json document;  // what there is of it; null for none
};

// A document of this command, to be filled.
Json NewDocument(const std::string& command);

// Null shows nothing. Here and below, throws Failure if standard output cannot be written.
void Show(const Json& document, bool asJson);
// A table for people; there is at least one row.
void ShowRows(std::FILE* stream, const Json& rows);
// A value in one line of text, "-" for null.
std::string Cell(const Json& value);
// "card 26 bits 03030201".
std::string CardLine(const std::string& event, const Json& card);
// One line, flushed at once: the event, or its line for people.
void ShowEvent(const Json& event, const std::string& line, bool asJson);
void FlushOutput();
// What was found, and why it failed; in JSON both in one document. Returns the exit code.
ExitCode ShowFailure(const Failure& failure, const std::string& command, bool asJson);

}  // namespace tavlyn::ctl
