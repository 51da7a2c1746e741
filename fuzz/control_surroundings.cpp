// What tavlynctl asks of its process and of the machine, for a fuzzer: nobody presses Ctrl-C, no time passes,
// and nothing outside the process is looked at.
#include <ctime>

#include "tools/tavlynctl/awaited.h"
#include "tools/tavlynctl/device_lock.h"
#include "tools/tavlynctl/process.h"
#include "tools/tavlynctl/reach/reach.h"
#include "tools/tavlynctl/session.h"
#include "tools/tavlynctl/trouble/doctor.h"
#include "tools/tavlynctl/watch/attached.h"
#include "tools/tavlynctl/watch/shell_command.h"
#include "tools/tavlynctl/watch/watching.h"

extern "C" int nanosleep(const timespec*, timespec*) { return 0; }
extern "C" int clock_nanosleep(clockid_t, int, const timespec*, timespec*) { return 0; }

namespace tavlyn::ctl {
namespace {

int looks = 0;  // of the watch that goes on

}  // namespace

bool OutputIsMissing() { return false; }
void LetWritesFail() {}
void LetPipesBreak() {}
void NoteStop() {}
bool IsStopped() { return false; }
void EndStopped() {}
void ForbidCoreImage() {}
SetVariable::SetVariable(const char*) : name_(nullptr) {}
SetVariable::~SetVariable() = default;
HiddenInput::HiddenInput() : typed_(false) {}
HiddenInput::~HiddenInput() = default;

bool RunEditor(const std::string&, const std::string&) { return true; }
std::string BecomeOneOfOurs(std::vector<std::string>) { return "nothing is run"; }
const char* UsualEditor() { return ""; }

Awaited::Awaited(const std::string& where, Seconds, Seconds most)
    : where_(where), most_(most), seen_(false) {}
Awaited::~Awaited() = default;
void Awaited::Do(const std::string&) {}
void NowDoing(const std::string&) {}
void NowResting() {}

// Every time is over at once, and every watch after two looks.
Clock::time_point After(double) { return Clock::now(); }
Failure NoCard() { return {kNoCard, "no card came in time"}; }
Watching::Watching(std::optional<double>, int most, Failure nothing)
    : most_(most), nothing_(std::move(nothing)) {
  looks = 0;
}
bool Watching::GoesOn() const { return looks++ < 2 && (most_ == 0 || events_ < most_); }
void TellWatched(bool) {}

bool DeviceLock::Try(const std::string&) { return true; }
DeviceLock::~DeviceLock() = default;

std::vector<std::string> AttachedHidPaths(std::uint32_t) { return {}; }
std::optional<std::int64_t> StampOfNodes() { return std::nullopt; }
std::string ShellCommand::Start(const std::string&, const Variables&) { return {}; }
std::optional<std::string> ShellCommand::Ended() { return std::nullopt; }
std::string ShellCommand::Wait() { return {}; }

std::string PermissionProblem() { return {}; }
Port LookAtPort(unsigned) { return {PortState::kFree, ""}; }
Peer TryPeer(const Ip&, std::uint16_t) { return Peer::kSilent; }
std::string HoldersOfPeer(const Ip&, std::uint16_t) { return {}; }

std::string SystemName() { return "none"; }
void LookAtLibraries(Findings&) {}
void LookAtNodes(Findings&) {}
void LookAtPorts(const Link&, Findings&) {}

}  // namespace tavlyn::ctl
