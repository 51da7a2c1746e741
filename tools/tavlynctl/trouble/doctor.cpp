// doctor.
#include "tools/tavlynctl/trouble/doctor.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <memory>

#include "api.h"
#include "tools/path_names.h"
#include "tools/printable.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/reach/reach.h"
#include "tools/variables.h"

namespace tavlyn::ctl {
namespace {

constexpr const char* kVerdicts[] = {"ok", "warning", "problem"};

std::string VersionsText() {
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  std::uint16_t build = 0;
  GetLibVersion(&major, &minor, &build);
  return std::to_string(major) + "." + std::to_string(minor) + "." + std::to_string(build);
}

void LookAtVersions(Findings& findings) {
  const std::string library = VersionsText();
  const std::string text = "tavlynctl " TAVLYN_VERSION ", library " + library;
  findings.push_back(library == TAVLYN_VERSION ? Fine("versions", text)
                                               : Warning("versions", text + ": they should be the same"));
  findings.push_back(Fine("system", SystemName()));
}

void LookAtNetwork(const Link& link, Findings& findings) {
  constexpr const char* kStep = "network";
  if (link.kind == LinkKind::kEthernet) {
    try {
      RequirePeer(link);
      findings.push_back(
          Fine(kStep, Dotted(link.ip) + ":" + std::to_string(link.tcpPort) + " takes connections"));
    } catch (const Failure& failure) {
      findings.push_back(Problem(kStep, failure.code, failure.what(), "tavlynctl find " + Dotted(link.ip)));
    }
    return;
  }
  constexpr std::uint32_t kOctet = 0xFF;
  constexpr std::uint32_t kItself = 127;
  const std::uint32_t own = GetMyIpAddress();
  if (own == 0 || (own & kOctet) == kItself) {
    findings.push_back(
        Warning(kStep, "this machine has no address in a network; no Ethernet adapter can be reached"));
    return;
  }
  Ip ip;
  for (std::size_t at = 0; at < ip.size(); ++at) ip[at] = static_cast<std::uint8_t>(own >> 8 * at);
  findings.push_back(
      Fine(kStep, "this machine is " + Dotted(ip) + "; tavlynctl find looks for adapters beside it"));
}

// Those that everybody has are not worth a line.
void LookAtVariables(Findings& findings) {
  constexpr std::string_view kAlwaysSet = "HOME";
  std::string set;
  for (const Variable& one : Variables()) {
    const char* value = std::getenv(one.name);
    if ((one.readers & kTavlynctl) == 0 || value == nullptr || one.name == kAlwaysSet) continue;
    set += (set.empty() ? "" : ", ") + std::string(one.name) + "=" + value;
  }
  findings.push_back(Fine("variables", set.empty() ? "none is set" : set));
}

Json DocumentOf(const Findings& findings) {
  Json rows = Json::array();
  for (const Finding& one : findings) {
    rows.push_back({{"step", one.step},
                    {"verdict", kVerdicts[static_cast<std::size_t>(one.verdict)]},
                    {"text", one.text},
                    {"advice", one.advice.empty() ? Json() : Json(one.advice)}});
  }
  return rows;
}

std::vector<std::string> LinesOf(const Findings& findings) {
  constexpr std::size_t kVerdictWidth = 9;
  constexpr std::size_t kStepWidth = 12;
  const auto padded = [](std::string text, std::size_t width) {
    text.resize(std::max(text.size(), width), ' ');
    return text;
  };
  std::vector<std::string> lines;
  for (const Finding& one : findings) {
    const std::string verdict = kVerdicts[static_cast<std::size_t>(one.verdict)];
    lines.push_back(padded(verdict, kVerdictWidth) + padded(one.step, kStepWidth) + one.text);
    if (!one.advice.empty()) lines.push_back(padded("", kVerdictWidth + kStepWidth) + "$ " + one.advice);
  }
  return lines;
}

// What may not be opened explains what is not found, and what fails says more than that.
ExitCode WorstOf(const Findings& findings) {
  constexpr ExitCode kWorstFirst[] = {kNoPermission, kDeviceError, kNoDevice};
  for (const ExitCode code : kWorstFirst) {
    if (std::ranges::any_of(findings, [&](const Finding& one) { return one.code == code; })) return code;
  }
  return kOk;
}

std::vector<BundledFile> FilesOf(const Json& document, const Findings& findings, const Patients& patients,
                                 bool withCards) {
  constexpr int kJsonIndent = 2;
  const auto dumped = [](const Json& json) {
    return json.dump(kJsonIndent, ' ', true, Json::error_handler_t::replace) + "\n";
  };
  std::string lines;
  for (const std::string& line : LinesOf(findings)) lines += Printable(line) + "\n";
  std::vector<BundledFile> files = {{"doctor.txt", lines},
                                    {"doctor.json", dumped(document)},
                                    {"devices.json", dumped(patients.devices)},
                                    {"trace.txt", patients.trace}};
  if (withCards) files.push_back({"cards.json", dumped(patients.cards)});
  return files;
}

void WriteWhole(const NewFile& file, const std::string& bytes) {
  std::ofstream stream(PathOf(file.Path()), std::ios::binary);
  stream << bytes;
  stream.close();
  if (!stream) throw file.NotWhole();
  file.Keep();
}

struct Doctor {
  std::string bundle;
  bool withCards = false;

  void Take(Words& words) {
    CLI::Option* file =
        words.Text("--bundle", bundle, "Write what a ticket needs into this file, FILE.tar.gz");
    file->required(false)->option_text("FILE");
    words.Flag("--with-cards", withCards, "The bundle also has the IDs of cards, and the bytes on the wire")
        ->needs(file);
  }

  [[nodiscard]] Json Run(const Request& request) const {
    if (!bundle.empty()) RequireFile(bundle);
    // Before the connects, which take their time.
    const auto file = bundle.empty() ? nullptr : std::make_unique<NewFile>(bundle);
    Findings findings;
    Patients patients;
    LookAtVersions(findings);
    LookAtLibraries(findings);
    LookAtNodes(findings);
    LookAtPorts(request.link, findings);
    LookAtNetwork(request.link, findings);
    LookAtVariables(findings);
    TryConnects(request.link, withCards, findings, patients);

    Json document = request.Document();
    document["findings"] = DocumentOf(findings);
    if (file != nullptr) {
      document["bundle"] = Bundle(*file, FilesOf(document, findings, patients, withCards));
    }
    if (!request.json) ShowText(findings, document);
    const ExitCode worst = WorstOf(findings);
    if (worst == kOk) return request.json ? document : Json();
    const auto count = std::ranges::count(findings, Verdict::kProblem, &Finding::verdict);
    throw Failure(worst,
                  count == 1 ? "there is a problem" : "there are " + std::to_string(count) + " problems",
                  request.json ? document : Json());
  }

 private:
  [[nodiscard]] Json Bundle(const NewFile& file, const std::vector<BundledFile>& files) const {
    WriteWhole(file, Archive(files));
    Json contents = Json::array();
    for (const BundledFile& one : files) contents.push_back({{"name", one.name}, {"bytes", one.text.size()}});
    return {{"file", bundle}, {"contents", std::move(contents)}};
  }

  static void ShowText(const Findings& findings, const Json& document) {
    for (const std::string& line : LinesOf(findings)) PrintLine(stdout, line);
    if (document.contains("bundle")) {
      const Json& bundle = document["bundle"];
      PrintLine(stdout, bundle["file"].get<std::string>() + " has");
      for (const Json& one : bundle["contents"]) {
        PrintLine(stdout, "  " + one["name"].get<std::string>() + ", " + one["bytes"].dump() + " bytes");
      }
    }
    FlushOutput();
  }
};

}  // namespace

void AddDoctor(Program& program) {
  program.Add<Doctor>("doctor", "Looks at all that a connect needs, connects, and says what to type");
}

}  // namespace tavlyn::ctl
