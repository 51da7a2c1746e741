// track and swipe watch.
#include <chrono>
#include <optional>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/watch/inquiries.h"

namespace tavlyn::ctl {
namespace {

constexpr int kTracks = 3;
constexpr std::uint8_t kHeaderCount = 127;
constexpr std::chrono::milliseconds kSwipePause(100);

// Calls that fetch leave the error word alone; this call is refused, which clears it.
void ClearMagstripeErrorWord() { sorbaneSetActiveID(0, 0, 0, 0); }

// Byte 0 is the header; the track's bytes follow, up to its count.
std::string RawText(const std::uint8_t* bytes) {
  std::string text;
  for (int at = 1; at <= (bytes[0] & kHeaderCount); ++at) text += Hex(bytes[at], 2);
  return text;
}

std::string PlainText(const std::uint8_t* bytes) {
  return {reinterpret_cast<const char*>(bytes) + 1, std::size_t{bytes[0]} & kHeaderCount};
}

// A track of the last swipe, or null if it is empty. Throws Failure if it could not be fetched.
Json TrackOf(int number) {
  const auto track = static_cast<std::uint16_t>(number);
  ClearMagstripeErrorWord();
  const std::string raw = RawText(sorbaneGetTrackData(track, 0));
  const std::string text = PlainText(sorbaneGetTrackData(track, 1));
  if (GetLastLibErr() != 0 || raw.size() != 2 * text.size()) {
    throw Failure(kDeviceError, "track " + std::to_string(number) + " of " + ActiveDeviceName() +
                                    " could not be fetched, " + ErrorText());
  }
  if (text.empty()) return {};
  return {{"track", number}, {"characters", text.size()}, {"raw", raw}, {"text", text}};
}

// All tracks, or the one with that number.
Json TracksOf(int which) {
  Json tracks = Json::array();
  for (int number = 1; number <= kTracks; ++number) {
    if (which != 0 && which != number) continue;
    Json track = TrackOf(number);
    if (!track.is_null()) tracks.push_back(std::move(track));
  }
  return tracks;
}

// Nothing if they could not be fetched; the reader still has them.
std::optional<Json> FetchedTracks() try { return TracksOf(0); } catch (const Failure&) {
  return std::nullopt;
}

std::string SwipeLine(const Json& tracks) {
  std::string line = "swipe";
  for (const Json& track : tracks) {
    line += " " + std::to_string(track["track"].get<int>()) + " " + track["text"].get<std::string>();
  }
  return line;
}

struct ShowTracks {
  int number = 0;  // 0: all

  void Take(Words& words) {
    words.Number("NUMBER", number, 1, kTracks, "Only this track, 1 to 3");
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const Session session(request.link, kMagstripes);
    session.Use(request.device);
    Json tracks = TracksOf(number);
    if (tracks.empty()) throw Failure(kNoCard, "the last swipe left nothing there");
    Json document = request.DeviceDocument();
    document["tracks"] = std::move(tracks);
    return document;
  }
};

// Shows its events itself and returns no document.
struct WatchSwipes {
  WatchWords words;

  void Take(Words& taken) { words.Take(taken); }

  [[nodiscard]] Json Run(const Request& request) const {
    ShownEvents events(request, words.events);
    const auto tell = [&](const Watched& reader, const Json& tracks) {
      const std::string line = SwipeLine(tracks);
      events.Tell("swipe", reader.place, {{"tracks", tracks}},
                  words.all ? line + " on " + reader.place.Name() : line);
    };
    Watch(request, words, events, SwipeInquiry(tell)).Run();
    return {};
  }
};

}  // namespace

Inquiry SwipeInquiry(const TellSwipe& tell) {
  const auto ask = [tell](const Watched& reader) -> std::optional<int> {
    ClearMagstripeErrorWord();
    const std::uint32_t waits = sorbaneIsDataAvailable();
    if (GetLastLibErr() != 0) return std::nullopt;
    if (waits == 0) return 0;
    const auto tracks = FetchedTracks();
    if (!tracks) return std::nullopt;
    tell(reader, *tracks);
    sorbaneClearDataAvailable();
    return 1;
  };
  const auto leave = [](const Watched&) { return 0; };
  return {kMagstripes, kSwipePause, ask, leave};
}

void AddSwipes(Program& program) {
  program.Add<ShowTracks>("track", "The tracks of the last swipe, raw and as text");
  program.Group("swipe", "Swipes of a magnetic-stripe reader");
  program.Add<WatchSwipes>("swipe watch", "A line for each swipe, until Ctrl-C");
}

}  // namespace tavlyn::ctl
