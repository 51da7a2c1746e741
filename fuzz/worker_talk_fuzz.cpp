// Hears any worker, in two pieces. Whatever it says, what comes of it is in an order that makes sense: a
// device arrives before it has cards, and in the end every card is gone, every device lost and every request
// answered.
#include <algorithm>
#include <map>
#include <string>

#include "fuzz/require.h"
#include "tools/tavlynd/worker_talk.h"

namespace tavlyn::fuzz {
namespace {

using agent::Json;

class Listener {
 public:
  explicit Listener(int requests) : requests_(requests) {}

  void Hear(const Json& said) {
    const std::string event = said.at("event").get<std::string>();
    Require(said.at("time").is_string() && agent::LineOf(said).size() > 1);
    if (event == "note") return;
    if (event == "reply") {
      Require(said.at("ok").is_boolean() && requests_-- > 0);
      return;
    }
    HearOf(said.at("device").at("path").get<std::string>(), event);
  }

  void End() const { Require(cards_.empty() && requests_ == 0); }

 private:
  void HearOf(const std::string& path, const std::string& event) {
    Require(!path.empty() && (event == "arrived") != (cards_.count(path) == 1));
    if (event == "arrived" || event == "gone") cards_[path] = false;
    if (event == "card") cards_[path] = true;
    if (event == "lost") cards_.erase(path);
  }

  std::map<std::string, bool> cards_;  // by device
  int requests_;
};

void Hear(std::string_view text) {
  const std::size_t half = text.size() / 2;
  Listener listener(2);
  const auto pass = [&](const Json& said) { listener.Hear(said); };
  agent::WorkerTalk talk;
  Require(talk.Expect("a") && talk.Expect("b"));
  agent::Lines lines;
  bool goesOn = true;
  for (const std::string_view piece : {text.substr(0, half), text.substr(half)}) {
    goesOn = goesOn && lines.Add(piece);
    while (const auto said = goesOn ? lines.Next() : std::nullopt) goesOn = talk.Hear(*said, pass);
  }
  Require(talk.Patience().count() >= 0);
  talk.End(pass);
  listener.End();
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Hear(tavlyn::fuzz::TextOf(data, size));
  return 0;
}
