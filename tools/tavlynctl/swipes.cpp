// track and swipe watch.
#include <chrono>
#include <thread>

#include "api.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/session.h"
#include "tools/tavlynctl/watching.h"

namespace tavlyn::ctl {
namespace {

constexpr int kTracks = 3;
constexpr std::uint8_t kHeaderCount = 127;
constexpr std::chrono::milliseconds kSwipePause(100);

// Calls that fetch leave the error word alone; this one is refused and clears it.
void ClearMagstripeErrorWord() { sorbaneSetActiveID(0, 0, 0, 0); }

// Byte 0 is the header; those behind it up to its count.
std::string RawText(const std::uint8_t* bytes) {
  std::string text;
  for (int at = 1; at <= (bytes[0] & kHeaderCount); ++at) text += Hex(bytes[at], 2);
  return text;
}

std::string PlainText(const std::uint8_t* bytes) {
  return {reinterpret_cast<const char*>(bytes) + 1, std::size_t{bytes[0]} & kHeaderCount};
}

// A track of the last swipe, or null when it is empty. Throws Failure when it could not be fetched.
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

// All of them, or the one of that number.
Json TracksOf(int which) {
  Json tracks = Json::array();
  for (int number = 1; number <= kTracks; ++number) {
    if (which != 0 && which != number) continue;
    Json track = TrackOf(number);
    if (!track.is_null()) tracks.push_back(std::move(track));
  }
  return tracks;
}

void ShowSwipe(const Json& tracks, bool json) {
  std::string line = "swipe";
  for (const Json& track : tracks) {
    line += " " + std::to_string(track["track"].get<int>()) + " " + track["text"].get<std::string>();
  }
  Json event = NewDocument("swipe watch");
  event["event"] = "swipe";
  event["tracks"] = tracks;
  ShowEvent(event, line, json);
}

}  // namespace

Json Track(const Options& options) {
  const Session session(options.link, kMagstripes);
  session.Use(options.device);
  Json tracks = TracksOf(options.index);
  if (tracks.empty()) throw Failure(kNoCard, "the last swipe left nothing there");
  Json document = NewDocument("track", options.device);
  document["tracks"] = std::move(tracks);
  return document;
}

Json WatchSwipes(const Options& options) {
  Session session(options.link, kMagstripes);
  session.Use(options.device);
  session.Settle();
  Watching watching(options.timeout, options.count);
  TellWatched(options.json);
  Answers answers;
  while (watching.GoesOn()) {
    ClearMagstripeErrorWord();
    const std::uint32_t waits = sorbaneIsDataAvailable();
    if (!answers.Came(GetLastLibErr() == 0) || waits == 0) {
      std::this_thread::sleep_for(kSwipePause);
      continue;
    }
    ShowSwipe(TracksOf(0), options.json);
    watching.Count(1);
    sorbaneClearDataAvailable();
  }
  return {};
}

}  // namespace tavlyn::ctl
