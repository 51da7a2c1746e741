#include "tools/tavlynd/worker/worker.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "tools/printable.h"
#include "tools/tavlynctl/device_lock.h"
#include "tools/tavlynctl/progress.h"
#include "tools/tavlynctl/ranges.h"
#include "tools/tavlynctl/session.h"
#include "tools/tavlynctl/watch/inquiries.h"
#include "tools/tavlynd/settings.h"
#include "tools/tavlynd/words.h"
#include "tools/tavlynd/worker/channel.h"
#include "tools/tavlynd/worker/deeds.h"
#include "tools/tavlynd/worker/link_word.h"
#include "tools/tavlynd/worker/told_events.h"

namespace tavlyn::agent {
namespace {

using ctl::Watched;
using std::chrono::milliseconds;

constexpr int kLongestPause = 60'000;  // ms
constexpr milliseconds kBetweenTries(100);

struct WorkerWords {
  WorkerLink link;
  milliseconds pause{};
};

std::optional<int> WholeNumberIn(const std::string& word) {
  int number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size() || number < 1) return std::nullopt;
  return number;
}

std::optional<WorkerWords> ParseWords(const std::vector<std::string>& words) {
  constexpr std::size_t kWords = 3;
  if (words.size() != kWords) return std::nullopt;
  auto link = ParseWorkerLink(words[0]);
  const auto pause = WholeNumberIn(words[1]);
  const auto baud = WholeNumberIn(words[2]);
  if (!link || !pause || !baud || *pause > kLongestPause) return std::nullopt;
  link->link.baud = static_cast<std::uint32_t>(*baud);
  return WorkerWords{*link, milliseconds(*pause)};
}

ctl::Inquiry CardsTold(const ctl::Link& link, ctl::Events& events) {
  return ctl::CardInquiry(link, [&events](const char* event, const Watched& reader) {
    events.Tell(event, reader.place, reader.on, "");
    return 1;
  });
}

ctl::Inquiry SwipesTold(ctl::Events& events) {
  return ctl::SwipeInquiry([&events](const Watched& reader, const Json& tracks) {
    events.Tell("swipe", reader.place, {{"tracks", tracks}}, "");
  });
}

// Whether somebody is there, whenever that changes.
ctl::Inquiry PresenceTold(ctl::Events& events) {
  const auto ask = [&events](Watched& sensor) -> std::optional<int> {
    ctl::Measurement measured;
    if (!ctl::Measure(measured)) return std::nullopt;
    const Json present = measured.status[0] != 0;
    if (present == sensor.on) return 0;
    sensor.on = present;
    events.Tell("presence", sensor.place, {{"present", present}, {"inches", measured.inches}}, "");
    return 1;
  };
  return {ctl::kSensors, {}, ask, [](const Watched&) { return 0; }};
}

ctl::Inquiry InquiryOf(const WorkerLink& link, ctl::Events& events) {
  if (link.product == ctl::kMagstripes) return SwipesTold(events);
  return link.product == ctl::kSensors ? PresenceTold(events) : CardsTold(link.link, events);
}

// The worker of an agent that was killed may still be finishing a command: two take each other's replies.
// Nothing is asked of this one before a device has arrived.
void AwaitLink(ctl::DeviceLock& lock, ToldEvents& events, Channel& channel) {
  std::string told;
  while (!lock.Try(kProgram)) {
    if (std::exchange(told, lock.Holder()) != lock.Holder()) {
      events.Note("waits for " + (lock.Holder().empty() ? "another program" : lock.Holder()));
    }
    events.Step();
    channel.Take(kBetweenTries);
  }
}

void WatchFor(const WorkerWords& words, ToldEvents& events, Channel& channel) {
  ctl::Request request;
  request.command = kProgram;
  request.link = words.link.link;
  request.json = true;
  ctl::WatchWords watchWords;
  watchWords.all = watchWords.serves = true;
  ctl::Inquiry inquiry = InquiryOf(words.link, events);
  inquiry.pause = std::max(inquiry.pause, words.pause);
  ctl::Watch* watching = nullptr;
  const auto meanwhile = [&](milliseconds longest) {
    const auto command = channel.Take(longest);
    if (!command) return;
    events.Expect(kLongPatience);
    events.Reply(Obey(*command, *watching));
  };
  ctl::Watch watch(request, watchWords, events, std::move(inquiry), meanwhile);
  watching = &watch;
  watch.Run();
}

}  // namespace

int RunWorker(const std::vector<std::string>& words) {
  const auto parsed = ParseWords(words);
  if (!parsed) {
    tavlyn::Tell(kProgram, "a worker is told LINK PAUSE BAUD");
    return kBadUsage;
  }
  ctl::BeQuiet();
  ctl::SetLockHolder(kProgram);
  try {
    Channel channel;
    ToldEvents events(channel);
    ctl::DeviceLock lock("link " + parsed->link.name);
    AwaitLink(lock, events, channel);
    WatchFor(*parsed, events, channel);
  } catch (const ctl::Failure& failure) {
    tavlyn::Tell(kProgram, words[0] + ": " + failure.what());
    return failure.code;
  } catch (const ParentGone&) {
    return 0;
  }
  return 0;
}

}  // namespace tavlyn::agent
