#include "tools/tavlynctl/watch/watched.h"

#include <algorithm>
#include <memory>
#include <thread>
#include <utility>

#include "api.h"

namespace tavlyn::ctl {
namespace {

using std::chrono::seconds;

constexpr seconds kLookPause(1);
// A device that was just plugged in may not be opened yet.
constexpr int kTriesOfNew = 2;
constexpr int kAnyNumber = -1;
// Between two tries, each twice the one before. While others are watched a try interrupts them.
constexpr seconds kFirstPause(2);
constexpr seconds kLongestPause(8);
constexpr seconds kLongestPauseBesides(64);
// A signal does not end a sleep.
constexpr std::chrono::milliseconds kLongestSleep(250);

DevicePlace ActivePlace() { return {GetActDev(), ActiveIndex(), ActiveDevicePath(), ActiveSerialNumber()}; }

bool IsSame(const DevicePlace& one, const DevicePlace& other) {
  return one.path == other.path && one.serialNumber == other.serialNumber;
}

bool Has(const std::vector<std::string>& paths, const std::string& path) {
  return std::ranges::find(paths, path) != paths.end();
}

// A connect asks every device and lets none be read: with many of them it may take a minute.
constexpr int kTimesOfConnect = 4;
constexpr seconds kLongestSettling(5);

// What is plugged in together does not come at one moment.
Clock::duration Settling(Clock::duration connect) {
  return connect < kLookPause ? Clock::duration(0)
                              : std::min<Clock::duration>(connect / kTimesOfConnect, kLongestSettling);
}

seconds Longer(seconds pause, seconds longest) { return std::min(2 * pause, longest); }

}  // namespace

void WatchWords::Take(Words& words) {
  words.Count(count, "End after this many lines, not counting devices that come and go");
  words.Timeout(timeout, "End after this many seconds");
  TakeEnd(words);
  events.Take(words);
  words.Device();
  words.Flag("--all", all, "Every device at once")->excludes("--device");
}

CLI::Option* WatchWords::TakeEnd(Words& words) {
  return words.Flag("--no-wait", ends, "End if there is no device, or if it goes");
}

void Sleep(std::chrono::milliseconds length) { std::this_thread::sleep_for(length); }

Watch::Watch(const Request& request, const WatchWords& words, Events& events, Inquiry inquiry,
             Meanwhile meanwhile)
    : request_(request),
      words_(words),
      events_(events),
      inquiry_(std::move(inquiry)),
      meanwhile_(std::move(meanwhile)) {}

void Watch::Run() {
  Begin();
  while (watching_->GoesOn()) {
    events_.Step();
    if (Clock::now() >= look_) Look();
    const auto next = std::ranges::min_element(watched_, {}, &Watched::due);
    if (next != watched_.end() && next->due <= Clock::now()) {
      Ask(*next);
      meanwhile_({});
    } else {
      meanwhile_(Until(next == watched_.end() ? look_ : std::min(look_, next->due)));
    }
  }
}

void Watch::Begin() {
  look_ = again_ = Clock::now();
  if (words_.serves) return static_cast<void>(watching_.emplace(words_.timeout, words_.count, NoCard()));
  try {
    Compare(Found(), false);
    watching_.emplace(words_.timeout, words_.count, NoCard());
    for (const Watched& one : watched_) {
      SetActDev(one.place.entry);
      events_.Begin(one.place);
    }
  } catch (const Failure& none) {
    if (words_.ends || none.code != kNoDevice) throw;
    session_.reset();
    watching_.emplace(words_.timeout, words_.count, none);
    events_.Note(none.what() + std::string("; waiting"));
  }
  // What is there and holds no device that is watched stays so.
  const std::vector<std::string> attached = AttachedPaths(request_.link, inquiry_.product);
  for (const std::string& path : attached) retries_[path];
  look_ = again_ = Clock::now() + kLookPause;
}

// Every device that a new connect finds.
std::vector<DevicePlace> Watch::Search() {
  events_.BeginSearch();
  session_.reset();
  const auto begun = Clock::now();
  session_.emplace(request_.link, inquiry_.product, words_.serves ? Others::kLeft : Others::kCounted);
  connect_ = Clock::now() - begun;
  std::vector<DevicePlace> all;
  for (std::int16_t index = 0; index < GetDevCnt(); ++index) {
    SetActDev(index);
    all.push_back(ActivePlace());
  }
  return all;
}

// Those to watch. Throws Failure if there is none.
std::vector<DevicePlace> Watch::Chosen(const std::vector<DevicePlace>& all) {
  if (words_.all && !all.empty()) {
    session_->Settle();
    return Held(all);
  }
  DeviceChoice choice = request_.device;
  if (!chosen_.empty()) {
    auto place = std::ranges::find(all, chosen_, &DevicePlace::Name);
    if (place != all.end()) {
      SetActDev(place->entry);
      session_->Hold();
      session_->Settle();
      return {ActivePlace()};
    }
    place = std::ranges::find_if(all, [&](const DevicePlace& one) { return !Has(others_, one.path); });
    if (place == all.end()) throw Failure(kNoDevice, "");
    if (choice.word.empty()) choice = DeviceAt(place->index);
  }
  if (inquiry_.product == kReaders) {
    session_->UseForCards(choice);
  } else {
    session_->Use(choice);
  }
  session_->Settle();
  const DevicePlace place = ActivePlace();
  // An index may be that of one which was there before.
  if (Has(others_, place.path)) throw Failure(kNoDevice, "");
  chosen_ = place.Name();
  return {place};
}

// Those that no other run of the program has; the others may be let go. Throws Failure if all are taken.
std::vector<DevicePlace> Watch::Held(const std::vector<DevicePlace>& all) {
  std::vector<DevicePlace> held;
  for (const DevicePlace& place : all) {
    // It was told, and is watched once it can be had.
    if (const auto known = retries_.find(place.path);
        known != retries_.end() && !known->second.holder.empty())
      continue;
    SetActDev(place.entry);
    try {
      locks_.Take(place.path, ActiveDeviceName());
      held.push_back(place);
    } catch (const Failure& used) {
      if (words_.serves)
        retries_.try_emplace(place.path, Retry{Clock::now(), kFirstPause}).first->second.left = kAnyNumber;
      if (held.empty() && &place == &all.back()) throw;
      events_.Note(used.what());
    }
  }
  return held;
}

// Those to watch of what a new connect finds. Throws Failure if it finds others, or at first nothing at all;
// later on the reasons for that are not worth their searches. What is on USB and is another is not searched
// for again, while a port stays where it is when its reader is exchanged.
std::vector<DevicePlace> Watch::Found() {
  const std::vector<DevicePlace> all = Search();
  if (all.empty() && watching_) return {};
  try {
    return Chosen(all);
  } catch (const Failure& none) {
    if (none.code == kNoDevice && request_.link.kind == LinkKind::kUsb) {
      for (const DevicePlace& place : all) others_.push_back(place.path);
    }
    throw;
  }
}

void Watch::ConnectAgain() {
  std::vector<DevicePlace> found;
  try {
    found = Found();
  } catch (const Failure&) {
    found.clear();  // they are waited for
  }
  if (found.empty()) session_.reset();  // what is not watched is left to others
  Compare(found, true);
}

// Whoever was watched already stays so, with the card on it.
void Watch::Compare(const std::vector<DevicePlace>& found, bool tell) {
  const auto isFound = [&](const Watched& one) {
    return std::ranges::any_of(found, [&](const DevicePlace& place) { return IsSame(place, one.place); });
  };
  for (auto gone = watched_.begin();
       (gone = std::find_if_not(gone, watched_.end(), isFound)) != watched_.end();) {
    Leave(*gone);
    gone = watched_.erase(gone);
  }
  const std::vector<std::string> attached = AttachedPaths(request_.link, inquiry_.product);
  for (const DevicePlace& place : found) {
    auto same = std::ranges::find_if(watched_, [&](const Watched& one) { return IsSame(place, one.place); });
    if (same == watched_.end()) {
      same = watched_.insert(same, Watched{.place = place, .isListed = Has(attached, place.path)});
      if (tell) Welcome(place);
    }
    same->place = place;
    same->due = Clock::now() + inquiry_.pause;
  }
  KeepLocks();
}

void Watch::KeepLocks() {
  std::vector<std::string> paths;
  for (const Watched& one : watched_) paths.push_back(one.place.path);
  locks_.Keep(paths);
}

void Watch::Ask(Watched& watched) {
  SetActDev(watched.place.entry);
  const std::optional<int> events = inquiry_.ask(watched);
  watched.due = Clock::now() + inquiry_.pause;
  if (events) {
    watched.failed = 0;
    watching_->Count(*events);
    return;
  }
  const bool isGone =
      watched.isListed && !Has(AttachedPaths(request_.link, inquiry_.product), watched.place.path);
  if (++watched.failed < kFailedPolls && !isGone) return;
  if (words_.ends && watched_.size() == 1) {
    throw Failure(kDeviceError, ActiveDeviceName() + " does not answer, " + ErrorText());
  }
  Leave(watched);
  std::erase_if(watched_, [&](const Watched& one) { return &one == &watched; });
  KeepLocks();
}

void Watch::Welcome(const DevicePlace& place) {
  watching_->Expect(NoCard());
  events_.Tell("arrived", place, Json::object(), "arrived " + place.Name());
}

void Watch::Leave(Watched& watched) {
  const DevicePlace& place = watched.place;
  watching_->Count(inquiry_.leave(watched));
  events_.Tell("lost", place, Json::object(), "lost " + place.Name());
  retries_[place.path] = {Clock::now(), kFirstPause, kAnyNumber};
  again_ = Clock::now() + kLookPause;
  pause_ = kFirstPause;
  if (words_.all) return;
  others_ = AttachedPaths(request_.link, inquiry_.product);
  std::erase(others_, place.path);
  mayBeAmongOthers_ = request_.link.kind == LinkKind::kUsb && !others_.empty();
}

// While the one that was chosen is there, nobody else matters.
void Watch::Look() {
  if (words_.all || watched_.empty()) {
    const std::vector<std::string>& attached = attached_.Paths(request_.link, inquiry_.product);
    std::erase_if(retries_, [&](const auto& one) { return !Has(attached, one.first); });
    std::erase_if(others_, [&](const std::string& path) { return !Has(attached, path); });
    if (IsWorthConnecting(attached)) {
      ConnectAgain();
    } else {
      KeepLocks();
    }
  }
  look_ = Clock::now() + kLookPause;
}

bool Watch::IsWorthConnecting(const std::vector<std::string>& attached) {
  const auto now = Clock::now();
  const bool mayBeThere = std::exchange(mayBeAmongOthers_, false);
  // What it costs those that are watched.
  const Clock::duration connect = watched_.empty() ? Clock::duration(0) : connect_;
  bool isNew = false;
  bool isOpen = attached.empty();
  for (const std::string& path : attached) {
    const bool isWatched =
        std::ranges::count(watched_, path, [](const Watched& one) { return one.place.path; }) > 0;
    if (isWatched || Has(others_, path)) continue;
    const Retry fresh{now + Settling(connect), kFirstPause, kTriesOfNew};
    Retry& retry = retries_.try_emplace(path, fresh).first->second;
    if (!CanBeHeld(path, retry)) continue;
    isOpen = true;
    if (retry.left == 0 || now < retry.at) continue;
    isNew = true;
    if (retry.left > 0) --retry.left;
    retry.at = now + std::max<Clock::duration>(retry.pause, kTimesOfConnect * connect);
    retry.pause = Longer(retry.pause, kLongestPauseBesides);
  }
  // What no list shows may have come as well.
  const bool isTime = watched_.empty() && isOpen && now >= again_;
  if (isTime) {
    again_ = now + pause_;
    pause_ = Longer(pause_, kLongestPause);
  }
  return isNew || isTime || mayBeThere;
}

// A connect would take the replies of whoever has it.
bool Watch::CanBeHeld(const std::string& path, Retry& retry) {
  if (!words_.all) return true;
  const std::string holder = locks_.Try(path);
  if (!holder.empty() && std::exchange(retry.holder, holder) != holder)
    events_.Note(InUse(path, holder).what());
  if (holder.empty()) retry.holder.clear();
  return holder.empty();
}

std::chrono::milliseconds Watch::Until(Clock::time_point time) const {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - Clock::now());
  return std::clamp(left, std::chrono::milliseconds(0), kLongestSleep);
}

void Watch::With(const std::string& path, const Deed& deed) {
  const auto isThat = [&](const Watched& one) { return one.place.path == path; };
  const auto found = std::ranges::find_if(watched_, isThat);
  if (found == watched_.end()) throw Failure(kNoDevice, "there is no device " + path);
  SetActDev(found->place.entry);
  const auto rest = [&](Watched* watched) { watched->due = Clock::now() + inquiry_.pause; };
  const std::unique_ptr<Watched, decltype(rest)> resting(&*found, rest);
  deed(*session_, *found);
}

}  // namespace tavlyn::ctl
