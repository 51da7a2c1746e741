// What a connect needs, and what is so: the findings of doctor.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/tavlynctl/link.h"
#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

enum class Verdict : std::uint8_t { kOk, kWarning, kProblem };

struct Finding {
  const char* step;
  Verdict verdict;
  std::string text;     // what is so
  std::string advice;   // what to type; may be empty
  ExitCode code = kOk;  // of a problem
};
using Findings = std::vector<Finding>;

inline Finding Fine(const char* step, const std::string& text) { return {step, Verdict::kOk, text, "", kOk}; }
inline Finding Warning(const char* step, const std::string& text, const std::string& advice = "") {
  return {step, Verdict::kWarning, text, advice, kOk};
}
inline Finding Problem(const char* step, ExitCode code, const std::string& text, const std::string& advice) {
  return {step, Verdict::kProblem, text, advice, code};
}

// What there is to tell about the devices that a connect has found.
struct Patients {
  Json devices = Json::array();
  Json cards = Json::array();
  std::string trace;
};

// A connect for each product that can be there.
void TryConnects(const Link& link, bool withCards, Findings& findings, Patients& patients);

// One for each system.

// "Linux 6.1.0 x86_64, Debian GNU/Linux 12 (bookworm)".
std::string SystemName();
// The system's libraries that the library loads.
void LookAtLibraries(Findings& findings);
// The USB devices that the library knows, and who may open them.
void LookAtNodes(Findings& findings);
// The ports of the link; those that exist for any other link, which are not opened.
void LookAtPorts(const Link& link, Findings& findings);

// The files of a bundle, by their names.
struct BundledFile {
  std::string name;
  std::string text;
};
// As a compressed archive, FILE.tar.gz.
std::string Archive(const std::vector<BundledFile>& files);

}  // namespace tavlyn::ctl
