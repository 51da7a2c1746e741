#include "tools/tavlynctl/config/backups.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>

#include "api.h"
#include "tools/path_names.h"
#include "tools/printable.h"
#include "tools/tavlynctl/awaited.h"
#include "tools/tavlynctl/choice.h"
#include "tools/tavlynctl/config/saving.h"
#include "tools/tavlynctl/config/state_folder.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kCopiesOfDevice = 50;
constexpr std::size_t kLongestName = 64;
constexpr std::string_view kTimeForm = "20261122T183201.123Z";

using Moment = std::chrono::sys_time<std::chrono::milliseconds>;

std::string BackupFolder() { return NameOfPath(PathOf(StateFolder()) / "backups"); }

std::vector<fs::path> EntriesOf(const fs::path& folder) {
  std::vector<fs::path> entries;
  if (!folder.is_absolute()) return entries;  // the environment names no place
  std::error_code over;
  for (fs::directory_iterator at(folder, over); at != fs::directory_iterator() && !over; at.increment(over)) {
    entries.push_back(at->path());
  }
  return entries;
}

// A serial number is text of the device's and must not lead out of the folder. What is not the text itself
// gets digits that tell such texts apart.
std::string NameFrom(const std::string& text) {
  std::string name = text.substr(0, kLongestName);
  for (char& letter : name) {
    const bool plain = (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'Z') ||
                       (letter >= 'a' && letter <= 'z');
    if (!plain) letter = '-';
  }
  return name == text ? name : name + "-" + HexHash(text);
}

std::string NameAt(Moment time, const std::string& command) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  char text[64];
  std::snprintf(text, sizeof text, "%04d%02u%02uT%02d%02d%02d.%03dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
  std::string words = command;
  std::ranges::replace(words, ' ', '-');
  return std::string(text) + "_" + words + (DeviceIsReader() ? ".hwg" : ".txt");
}

// "20261122T183201.123Z_config-load.hwg"; nothing for a file that is not one of these.
std::optional<KeptCopy> CopyAt(const fs::path& path) {
  const std::string name = NameOfPath(path.stem());
  if (name.size() <= kTimeForm.size() || name[kTimeForm.size()] != '_') return std::nullopt;
  KeptCopy copy{name.substr(0, kTimeForm.size()), name.substr(kTimeForm.size() + 1), NameOfPath(path)};
  for (std::size_t at = 0; at < kTimeForm.size(); ++at) {
    const bool digit = copy.time[at] >= '0' && copy.time[at] <= '9';
    if (digit != (kTimeForm[at] >= '0' && kTimeForm[at] <= '9')) return std::nullopt;
  }
  for (const std::size_t at : {13U, 11U}) copy.time.insert(at, ":");
  for (const std::size_t at : {6U, 4U}) copy.time.insert(at, "-");
  std::ranges::replace(copy.command, '-', ' ');
  return copy;
}

// As a name begins; nothing for what is no time.
std::optional<Moment> MomentIn(const std::string& name) {
  int year = 0;
  unsigned month = 0;
  unsigned day = 0;
  int part[4] = {};  // hours to milliseconds
  if (std::sscanf(name.c_str(), "%4d%2u%2uT%2d%2d%2d.%3dZ", &year, &month, &day, &part[0], &part[1], &part[2],
                  &part[3]) != 7) {
    return std::nullopt;
  }
  const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month),
                                         std::chrono::day(day)};
  if (!date.ok()) return std::nullopt;
  return std::chrono::sys_days(date) + std::chrono::hours(part[0]) + std::chrono::minutes(part[1]) +
         std::chrono::seconds(part[2]) + std::chrono::milliseconds(part[3]);
}

// A name that is later than those of all copies, which follow each other by their names; the clock may have
// been ahead when they were made.
std::string NewName(const std::string& folder, const std::string& command) {
  auto time = std::chrono::time_point_cast<std::chrono::milliseconds>(std::chrono::system_clock::now());
  for (const fs::path& one : EntriesOf(PathOf(folder))) {
    const auto taken = CopyAt(one) ? MomentIn(NameOfPath(one.filename())) : std::nullopt;
    if (taken) time = std::max(time, *taken + std::chrono::milliseconds(1));
  }
  return NameOfPath(PathOf(folder) / NameAt(time, command));
}

void RemoveOldest(const std::string& device) {
  const std::vector<KeptCopy> all = CopiesOf(device);
  std::error_code stays;
  for (std::size_t at = kCopiesOfDevice; at < all.size(); ++at) fs::remove(PathOf(all[at].path), stays);
}

}  // namespace

std::string FolderOfActiveDevice() {
  std::string serial = NameFrom(ActiveSerialNumber());
  if (!serial.empty()) return serial;
  return NameFrom(std::string(ActiveProductName()) + " " + GetVidPidVendorName() + " " + ActiveDevicePath());
}

std::vector<std::string> DevicesWithCopies() {
  std::vector<std::string> devices;
  for (const fs::path& one : EntriesOf(PathOf(BackupFolder()))) devices.push_back(NameOfPath(one.filename()));
  std::ranges::sort(devices);
  return devices;
}

std::vector<KeptCopy> CopiesOf(const std::string& device) {
  std::vector<KeptCopy> copies;
  for (const fs::path& one : EntriesOf(PathOf(BackupFolder()) / PathOf(device))) {
    if (auto copy = CopyAt(one)) copies.push_back(std::move(*copy));
  }
  std::ranges::sort(copies, std::greater(), &KeptCopy::time);
  return copies;
}

template <typename Step>
void Backup::Try(Step step) const try {
  step();
} catch (const Failure& failure) {
  const std::string why = std::string("the configuration cannot be kept for config undo: ") + failure.what();
  if (need_ == Need::kRequired) throw Failure(failure.code, why + "; --no-backup goes on without");
  NowResting();
  Tell(kProgram, why);
}

Backup::Backup(const std::string& command, Need need) : need_(need) {
  if (need != Need::kNone) Try([&] { Write(command); });
}

void Backup::Write(const std::string& command) {
  device_ = FolderOfActiveDevice();
  const std::string folder = NameOfPath(PathOf(BackupFolder()) / PathOf(device_));
  MakeOwnFolder(folder);
  file_.emplace(NewName(folder, command));
  try {
    SaveConfiguration(*file_, DeviceIsReader());
  } catch (const Failure&) {
    file_.reset();
    throw;
  }
}

void Backup::Keep() const {
  if (!file_) return;
  Try([&] { file_->Keep(); });
  RemoveOldest(device_);
}

}  // namespace tavlyn::ctl
