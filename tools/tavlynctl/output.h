// What a command has found, and how it is shown: as JSON, or as text for people.
#pragma once

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
};

// Ends a command.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode exitCode, const std::string& text, Json found = {})
      : std::runtime_error(text), code(exitCode), document(std::move(found)) {}
  ExitCode code;
  Json document;  // as far as it goes; null for none
};

// A document of this command, to be filled.
Json NewDocument(const std::string& command);

// Null shows nothing. A standard output that takes nothing any more is a Failure, here and below.
void Show(const Json& document, bool asJson);
// A card that came or went: one line, out at once.
void ShowEvent(const Json& event, bool asJson);
// Any other event, with its line for people.
void ShowEvent(const Json& event, const std::string& line, bool asJson);
void FlushOutput();
// What was found, and why it ended; in JSON both in one document. Gives the exit code.
ExitCode ShowFailure(const Failure& failure, const std::string& command, bool asJson);

}  // namespace tavlyn::ctl
