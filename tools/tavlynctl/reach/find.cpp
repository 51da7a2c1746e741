// find.
#include <algorithm>
#include <cstdio>
#include <vector>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/process.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/progress.h"

namespace tavlyn::ctl {
namespace {

constexpr std::uint8_t kFirstHost = 1;
constexpr std::uint8_t kLastHost = 254;

IpRange OwnNetwork() {
  const std::uint32_t own = GetMyIpAddress();
  if (own == 0) throw Failure(kUsage, "this host has no address; name a range, such as 10.0.0.1-254");
  IpRange range;
  for (std::size_t at = 0; at < 3; ++at) range.ip[at] = static_cast<std::uint8_t>(own >> 8 * at);
  range.ip[3] = kFirstHost;
  range.last = kLastHost;
  return range;
}

// "10.0.0.1 to 254", "10.0.0.1".
std::string RangeName(const IpRange& range) {
  return Dotted(range.ip) + (range.last == range.ip[3] ? "" : " to " + std::to_string(range.last));
}

// How long this many addresses take, if that is worth mentioning.
std::string AskingTime(int count) {
  constexpr int kFew = 6;
  return count <= kFew ? "" : " takes up to " + std::to_string((count + 1) / 2) + " seconds";
}

// "asking 10.0.0.5        (5 of 254, found 1), up to 125 s more".
std::string Asked(const Ip& ip, int at, int count, std::size_t found) {
  std::string address = Dotted(ip);
  address.resize(15, ' ');
  const int seconds = (count - at) / 2;
  return "asking " + address + " (" + std::to_string(at + 1) + " of " + std::to_string(count) + ", found " +
         std::to_string(found) + ")" + (seconds > 2 ? ", up to " + std::to_string(seconds) + " s more" : "");
}

// The fourth octet of the adapter that answered at an address; 0 for none.
std::uint8_t Ask(const Ip& ip) {
  const auto fourth = static_cast<std::int16_t>(ip[3]);
  return static_cast<std::uint8_t>(FindXport(ip[0], ip[1], ip[2], fourth, fourth));
}

// One address at a time, so that every adapter is found and not only the first. An adapter may answer for an
// address that is not its own.
std::vector<Ip> Search(const IpRange& range) {
  std::vector<Ip> found;
  const int count = range.last - range.ip[3] + 1;
  const bool live = ProgressIsSeen();
  LiveLine line;
  if (live) {
    NoteStop();  // the live line is ended first
  } else if (!IsQuiet()) {
    std::fprintf(stderr, "asking %s%s\n", RangeName(range).c_str(), AskingTime(count).c_str());
  }
  for (int at = 0; at < count && !IsStopped(); ++at) {
    Ip asked = range.ip;
    asked[3] = static_cast<std::uint8_t>(range.ip[3] + at);
    if (live) line.Show(Asked(asked, at, count, found.size()));
    Ip answered = asked;
    answered[3] = Ask(asked);
    if (answered[3] != 0 && std::ranges::find(found, answered) == found.end()) found.push_back(answered);
  }
  line.End();
  if (IsStopped()) EndStopped();
  return found;
}

struct Find {
  std::optional<IpRange> range;

  void Take(Words& words) {
    const auto take = [this](const std::string& word) {
      range = ParseRange(word);
      if (range) return;
      throw CLI::ValidationError("RANGE",
                                 word + " is not an address or a range of them, such as 10.0.0.1-254");
    };
    words.Parsed("RANGE", take, "A.B.C.D or A.B.C.FIRST-LAST; this host's own network without it")
        ->type_name("");
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const std::vector<Ip> found = Search(range ? *range : OwnNetwork());
    if (found.empty()) throw Failure(kNoDevice, "no adapter answered");
    Json document = request.Document();
    document["adapters"] = Json::array();
    for (const Ip& ip : found) document["adapters"].push_back({{"address", Dotted(ip)}});
    return document;
  }
};

}  // namespace

void AddFind(Program& program) { program.Add<Find>("find", "The Ethernet adapters of an address range"); }

}  // namespace tavlyn::ctl
