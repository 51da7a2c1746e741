// config history and config undo.
#include <algorithm>
#include <charconv>
#include <cstdint>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/config/backups.h"
#include "tools/tavlynctl/config/comparison.h"
#include "tools/tavlynctl/config/loading.h"
#include "tools/tavlynctl/every_device.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

// How many values undo would change; null for a file that cannot be loaded.
Json DifferencesFrom(const Side& present, const KeptCopy& copy) try {
  return Differences(present, FileSide(copy.path)).size();
} catch (const Failure&) {
  return {};
}

void AddCopies(const std::string& name, const Side* present, Json& rows) {
  int number = 0;
  for (const KeptCopy& copy : CopiesOf(name)) {
    Json row{{"number", ++number}, {"time", copy.time}, {"before", copy.command}};
    if (present != nullptr) row["differences"] = DifferencesFrom(*present, copy);
    row["kept_for"] = name;
    row["file"] = copy.path;
    rows.push_back(std::move(row));
  }
}

// What is kept of every device, for a desk whose device is away.
Json AllCopies() {
  Json rows = Json::array();
  for (const std::string& name : DevicesWithCopies()) AddCopies(name, nullptr, rows);
  return rows;
}

struct History {
  void Take(Words& words) {
    words.Product();
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const try {
    const Session session(request.link, request.products);
    session.Use(request.device);
    Json document = request.DeviceDocument();
    const Side present = ActiveDeviceSide();
    AddCopies(FolderOfActiveDevice(), &present, document["copies"] = Json::array());
    return document;
  } catch (const Failure& failure) {
    Json copies = failure.code == kNoDevice && request.device.word.empty() ? AllCopies() : Json();
    if (copies.empty()) throw;
    Json document = request.Document();
    document["copies"] = std::move(copies);
    return document;
  }
};

// By its number in config history, or the beginning of its time.
KeptCopy ChosenCopy(const std::vector<KeptCopy>& all, const std::string& word) {
  std::size_t number = 0;
  const char* end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, number);
  constexpr std::size_t kDigitsOfYear = 4;
  if (error == std::errc() && stop == end && word.size() < kDigitsOfYear) {
    if (number >= 1 && number <= all.size()) return all[number - 1];
    throw Failure(kUsage, ActiveDeviceName() + " has copies 1 to " + std::to_string(all.size()));
  }
  const auto fits = [&](const KeptCopy& copy) { return copy.time.starts_with(word); };
  const auto found = std::ranges::find_if(all, fits);
  if (word.empty() || found == all.end())
    throw Failure(kUsage, "no copy is of " + word + "; config history lists them");
  if (std::ranges::count_if(all, fits) > 1)
    throw Failure(kUsage, "several copies are of " + word + "; config history lists them");
  return *found;
}

// A copy may be the other device's then, and has to be chosen by somebody who can tell.
void RequireOwnCopies() {
  const std::string folder = FolderOfActiveDevice();
  const auto active = static_cast<std::int16_t>(GetActDev());
  int same = 0;
  for (std::int16_t index = 0; SetActDev(index) == 1; ++index)
    same += FolderOfActiveDevice() == folder ? 1 : 0;
  SetActDev(active);
  if (same < 2) return;
  throw Failure(kUsage,
                "several devices have the serial number of " + ActiveDeviceName() +
                    ", so their copies are kept together; config load loads a file of config history");
}

struct Undo {
  std::string to = "1";
  Overwriting over;

  void Take(Words& words) {
    words
        .Parsed(
            "--to", [this](const std::string& word) { to = word; },
            "Number or time of a copy in config history; the newest without it")
        ->type_name("N|TIME");
    over.TakeAll(words);
    words.DryRun(over.dryRun);
    words.Product();
    words.DeviceToChange();
    words.All();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    over.Require("this overwrites the configuration");
    return ForEachChosen(request, request.products, [&] { return OfActive(request); });
  }

 private:
  [[nodiscard]] Json OfActive(const Request& request) const {
    const std::vector<KeptCopy> all = CopiesOf(FolderOfActiveDevice());
    if (all.empty()) throw Failure(kUsage, "nothing is kept of " + ActiveDeviceName());
    RequireOwnCopies();
    const KeptCopy copy = ChosenCopy(all, to);
    const Loading loading(copy.path, DeviceIsReader(), copy.path);
    Json document = request.DeviceDocument();
    document["time"] = copy.time;
    document["before"] = copy.command;
    document["file"] = copy.path;
    return loading.Into(std::move(document), {request.command, over});
  }
};

}  // namespace

void AddConfigHistory(Program& program) {
  program.Add<History>("config history", "What was kept of configurations that were overwritten");
  program.Add<Undo>("config undo", "Loads what was kept before the last change; a second one takes it back");
}

}  // namespace tavlyn::ctl
