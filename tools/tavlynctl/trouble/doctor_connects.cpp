#include <chrono>
#include <string>
#include <thread>
#include <utility>

#include "api.h"
#include "tools/tavlynctl/cards/cards.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/session.h"
#include "tools/tavlynctl/trouble/doctor.h"
#include "tools/tavlynctl/trouble/verbose.h"

namespace tavlyn::ctl {
namespace {

constexpr const char* kConnectStep = "connect";

Json TextOrNone(const char* text) { return text != nullptr && *text != '\0' ? Json(text) : Json(); }

Json DeviceRow(const std::string& problem) {
  Json row{{"device", ActiveDeviceName()},
           {"did", Hex(GetDID(), 4)},
           {"luid", GetLUID()},
           {"configurations", GetMaxConfig() + 1},
           {"problem", problem.empty() ? Json() : Json(problem)}};
  if (!DeviceIsReader()) return row;
  row["part_number"] = TextOrNone(getPartNumberString());
  row["serial_number"] = TextOrNone(GetSerialNumber());
  row["firmware"] = TextOrNone(GetFullFWVersion());
  return row;
}

void AddCard(const Link& link, Json& cards) {
  std::this_thread::sleep_for(kCardPause);
  const auto card = AskForCard(link);
  if (!card) return;
  Json row{{"device", ActiveDeviceName()}};
  Describe(*card, row);
  cards.push_back(std::move(row));
}

// What one connect has found.
struct Attempt {
  Findings findings;
  Json devices = Json::array();
  Json cards = Json::array();
  bool failed = false;
};

Attempt ConnectOnce(const Link& link, std::uint32_t product, bool withCards) {
  using Clock = std::chrono::steady_clock;
  Attempt attempt;
  const auto begun = Clock::now();
  const Session session(link, product);
  const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begun);
  for (int index = 0; index < GetDevCnt(); ++index) {
    SetActDev(static_cast<std::int16_t>(index));
    const std::string problem = session.ReadProblem();
    attempt.devices.push_back(DeviceRow(problem));
    if (problem.empty()) {
      attempt.findings.push_back(Fine(kConnectStep, ActiveDeviceName() + " was found and read in " +
                                                        std::to_string(took.count()) + " ms"));
      if (withCards && DeviceIsReader()) AddCard(link, attempt.cards);
    } else {
      attempt.failed = true;
      attempt.findings.push_back(
          Problem(kConnectStep, kDeviceError, problem, "tavlynctl error 0x" + Hex(GetLastLibErr(), 1)));
    }
  }
  return attempt;
}

// A device that fails is given a second chance, which is told.
Attempt ConnectTo(const Link& link, std::uint32_t product, bool withCards) {
  Attempt first = ConnectOnce(link, product, withCards);
  if (!first.failed) return first;
  Attempt second = ConnectOnce(link, product, withCards);
  const bool isGone = second.devices.empty();
  Attempt& told = isGone ? first : second;
  for (Finding& one : told.findings) {
    one.text += isGone          ? "; at the second attempt it was gone"
                : second.failed ? "; this was the second attempt"
                                : ", at the second attempt only";
    if (!told.failed) one.verdict = Verdict::kWarning;
  }
  return told;
}

// Sensors are on USB alone, and adapters only have readers.
std::uint32_t ProductsOn(const Link& link) { return link.kind == LinkKind::kUsb ? kAllProducts : kReaders; }

}  // namespace

void TryConnects(const Link& link, bool withCards, Findings& findings, Patients& patients) try {
  const CollectedTrace trace(withCards ? 2 : 1);
  try {
    for (const std::uint32_t product : {kReaders, kMagstripes, kSensors}) {
      if ((ProductsOn(link) & product) == 0) continue;
      const Attempt attempt = ConnectTo(link, product, withCards);
      findings.insert(findings.end(), attempt.findings.begin(), attempt.findings.end());
      patients.devices.insert(patients.devices.end(), attempt.devices.begin(), attempt.devices.end());
      patients.cards.insert(patients.cards.end(), attempt.cards.begin(), attempt.cards.end());
    }
    patients.trace = trace.Text();
  } catch (const Failure&) {
    patients.trace = trace.Text();
    throw;
  }
  if (patients.devices.empty()) throw NotFound(link, ProductsOn(link));
} catch (const Failure& failure) {
  const bool isMissing = failure.code == kNoDevice && link.kind == LinkKind::kUsb;
  const std::string elsewhere = isMissing ? "; --com and --ip look elsewhere than on USB" : "";
  findings.push_back(
      Problem(kConnectStep, failure.code, failure.what() + elsewhere, isMissing ? "lsusb" : ""));
}

}  // namespace tavlyn::ctl
