#include "tools/tavlynd/payloads.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>

namespace tavlyn::agent {

// Bytes that are no UTF-8 are replaced: a device may say them.
std::string TextOf(const Json& payload) {
  return payload.dump(-1, ' ', false, Json::error_handler_t::replace);
}

namespace {

constexpr int kSchema = 1;

Json NewPayload() { return {{"schema", kSchema}}; }

// "2026-11-23T01:02:03.456Z"
std::string TimeOf(std::int64_t now) {
  const auto seconds = static_cast<std::time_t>(now / 1000);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 40> text{};
  const std::size_t size = std::strftime(text.data(), text.size(), "%FT%T", &parts);
  std::snprintf(text.data() + size, text.size() - size, ".%03dZ", static_cast<int>(now % 1000));
  return text.data();
}

std::string Hashed(const std::string& key, const std::string& text) {
  std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
  unsigned size = 0;
  HMAC(EVP_sha256(), key.data(), static_cast<int>(key.size()),
       reinterpret_cast<const unsigned char*>(text.data()), text.size(), bytes.data(), &size);
  std::string hex;
  for (unsigned at = 0; at < size; ++at) {
    constexpr const char* kDigits = "0123456789abcdef";
    hex += {kDigits[bytes[at] >> 4U], kDigits[bytes[at] & 0xFU]};
  }
  return hex;
}

// "26:03030201"; of a swipe a line for each track, "2:;4000=12?5".
std::string HashedText(const Json& said, const std::string& name) {
  if (name == "id") return TextOf(said.value("bits", Json())) + ":" + TextIn(said, "id");
  std::string text;
  for (const Json& track : said[name]) {
    if (!track.is_object()) continue;  // a worker may say anything
    text += (text.empty() ? "" : "\n") + TextOf(track.value("track", Json())) + ":" + TextIn(track, "text");
  }
  return text;
}

// What is published as it is; all else that a worker says stays here.
constexpr const char* kOpen[] = {"time", "bits", "present", "range"};

// What names a card goes as the settings say.
void AddCard(Json& payload, const Settings& settings, const Json& said) {
  for (const char* name : kOpen) {
    if (said.contains(name)) payload[name] = said[name];
  }
  for (const char* name : {"id", "tracks"}) {
    if (!said.contains(name)) continue;
    if (settings.ids == "plain") payload[name] = said[name];
    if (settings.ids == "hashed") payload["hash"] = Hashed(settings.siteKey, HashedText(said, name));
  }
}

}  // namespace

std::string EventPayload(const Settings& settings, const std::string& device, const Json& said,
                         std::int64_t sequence) {
  Json payload = NewPayload();
  payload["event"] = TextIn(said, "event");
  payload["sequence"] = sequence;
  payload["serial"] = device;
  AddCard(payload, settings, said);
  return TextOf(payload);
}

std::string StatePayload(const char* state, std::int64_t now) {
  Json payload = NewPayload();
  payload["state"] = state;
  if (now != 0) payload["time"] = TimeOf(now);
  return TextOf(payload);
}

std::string InfoPayload(const std::string& link, const Json& device) {
  Json payload = NewPayload();
  for (const auto& [name, value] : device.items()) payload[name] = value;
  payload["link"] = link;
  payload["agent"] = TAVLYN_VERSION;
  return TextOf(payload);
}

std::string AgentInfoPayload(const Settings& settings, std::int64_t dropped) {
  Json payload = NewPayload();
  payload["agent"] = TAVLYN_VERSION;
  payload["ids"] = settings.ids;
  payload["commands"] = settings.allowed;
  payload["dropped"] = dropped;
  return TextOf(payload);
}

Json ReplyWith(const Settings& settings, const std::string& request, const Json& outcome) {
  Json payload = NewPayload();
  payload["request"] = request;
  for (const char* name : {"ok", "result", "error", "took"}) {
    if (outcome.contains(name)) payload[name] = outcome[name];
  }
  if (outcome.contains("result") && outcome["result"].contains("id")) {
    payload["result"] = Json::object();
    AddCard(payload["result"], settings, outcome["result"]);
  }
  return payload;
}

Json Refusal(const std::string& request, const char* code, const std::string& text) {
  Json payload = NewPayload();
  payload["request"] = request;
  payload["ok"] = false;
  payload["error"] = {{"code", code}, {"text", text}};
  return payload;
}

}  // namespace tavlyn::agent
