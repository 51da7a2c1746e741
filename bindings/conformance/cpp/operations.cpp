#include "bindings/conformance/cpp/operations.h"

#include <array>
#include <chrono>
#include <map>
#include <sstream>

#include "bindings/conformance/cpp/words.h"

namespace conformance {
namespace {

constexpr const char* kDone = "done";
constexpr const char* kNone = "none";

std::string Shown(const std::string& text) { return text.empty() ? "-" : text; }
std::string Shown(const tavlyn::card_id& card) { return std::to_string(card.bits()) + ' ' + card.hex(); }
std::string Shown(const tavlyn::card_event& event) {
  return (event.arrived ? "card " : "gone ") + Shown(event.card);
}
std::string Shown(const tavlyn::swipe& swipe) {
  std::string text;
  for (const tavlyn::track& track : swipe) {
    text += (text.empty() ? "" : ", ") + std::to_string(track.number) + ' ' + track.text;
  }
  return text;
}

template <class Event>
std::string Shown(const std::optional<Event>& event) {
  return event ? Shown(*event) : kNone;
}

std::string Failed(const tavlyn::error& error) { return "error " + error.word().hex() + ' ' + error.text(); }

template <class Kind>
Kind& As(Device& device) {
  return std::get<Kind>(device);
}

// What all devices have.
tavlyn::device& AnyOf(Device& device) {
  if (auto* reader = std::get_if<tavlyn::reader>(&device)) return *reader;
  if (auto* magstripe = std::get_if<tavlyn::magstripe>(&device)) return *magstripe;
  return As<tavlyn::sonar>(device);
}

std::chrono::milliseconds TimeOf(const Json& step) { return std::chrono::seconds(step.at("seconds")); }

// So many events, or those until the time is over or a failure comes.
template <class Event>
std::string Several(tavlyn::stream<Event> events, const Json& step) {
  std::string text;
  const auto add = [&](const std::string& one) { text += (text.empty() ? "" : ", ") + one; };
  int left = step.at("count");
  try {
    for (const Event& event : events) {
      add(Shown(event));
      if (--left == 0) break;
    }
  } catch (const tavlyn::error& error) {
    add(Failed(error));
  }
  return text.empty() ? kNone : text;
}

tavlyn::selection SelectionOf(const Json& step) {
  tavlyn::selection which;
  if (step.contains("serial")) which.serial(step["serial"]);
  if (step.contains("luid")) which.luid(step["luid"]);
  if (step.contains("index")) which.index(step["index"]);
  if (step.contains("com")) which.com(step["com"]);
  if (step.contains("ip")) {
    std::istringstream text(step["ip"].get<std::string>());
    std::array<unsigned, 5> parts{};
    char between = 0;
    text >> parts[0];
    for (std::size_t at = 1; at < parts.size(); ++at) text >> between >> parts[at];
    std::array<std::uint8_t, 4> address{};
    for (std::size_t at = 0; at < address.size(); ++at) address[at] = static_cast<std::uint8_t>(parts[at]);
    which.ip(address, static_cast<std::uint16_t>(parts[4]));
  }
  return which;
}

std::string Connect(Device& device, const Json& step) {
  device = std::monostate();
  const std::string product = step.at("product");
  const tavlyn::selection which = SelectionOf(step);
  if (product == "reader") device = tavlyn::connect(which);
  if (product == "magstripe") device = tavlyn::connect<tavlyn::magstripe>(which);
  if (product == "sonar") device = tavlyn::connect<tavlyn::sonar>(which);
  const tavlyn::device& found = AnyOf(device);
  return product + ' ' + Shown(found.serial_number()) + ' ' + std::to_string(found.luid()) + ' ' +
         Shown(found.part_number());
}

std::string Close(Device& device, const Json&) {
  device = std::monostate();
  return kDone;
}

std::string ReadCard(Device& device, const Json&) { return Shown(As<tavlyn::reader>(device).read_card()); }

std::string Cards(Device& device, const Json& step) {
  return Several(As<tavlyn::reader>(device).cards(TimeOf(step)), step);
}

std::string Events(Device& device, const Json& step) {
  return Several(As<tavlyn::reader>(device).events(TimeOf(step)), step);
}

struct Accessors {
  int (*get)(Device&, int configuration);
  void (*set)(Device&, int configuration, int value);
};

tavlyn::reader_config ConfigOf(tavlyn::reader& reader, int index) { return reader.config(index); }
tavlyn::sonar_config ConfigOf(tavlyn::sonar& sonar, int) { return sonar.config(); }

const std::map<std::string, Accessors>& Fields() {
#define GETTER(product, name)                                                     \
  [](Device& device, int index) {                                                 \
    return static_cast<int>(ConfigOf(As<tavlyn::product>(device), index).name()); \
  }
#define FIELD(product, name)                                                 \
  {#name, {GETTER(product, name), [](Device& device, int index, int value) { \
             auto config = ConfigOf(As<tavlyn::product>(device), index);     \
             config.name(static_cast<decltype(config.name())>(value));       \
           }}},
#define READ_ONLY_FIELD(product, name) {#name, {GETTER(product, name), nullptr}},
  static const std::map<std::string, Accessors> fields = {
#include "bindings/conformance/cpp/fields.inc"
  };
#undef READ_ONLY_FIELD
#undef FIELD
#undef GETTER
  return fields;
}

std::string Get(Device& device, const Json& step) {
  return std::to_string(Fields().at(step.at("field")).get(device, step.value("configuration", 0)));
}

std::string Set(Device& device, const Json& step) {
  Fields().at(step.at("field")).set(device, step.value("configuration", 0), step.at("value"));
  return kDone;
}

std::string Commit(Device& device, const Json&) {
  if (auto* reader = std::get_if<tavlyn::reader>(&device)) reader->config().commit();
  if (auto* magstripe = std::get_if<tavlyn::magstripe>(&device)) magstripe->commit();
  if (auto* sonar = std::get_if<tavlyn::sonar>(&device)) sonar->config().commit();
  return kDone;
}

std::string Reload(Device& device, const Json&) {
  if (auto* reader = std::get_if<tavlyn::reader>(&device)) reader->config().reload();
  if (auto* magstripe = std::get_if<tavlyn::magstripe>(&device)) magstripe->reload();
  if (auto* sonar = std::get_if<tavlyn::sonar>(&device)) sonar->config().reload();
  return kDone;
}

std::string Save(Device& device, const Json& step) {
  const std::string path = step.at("path");
  if (step.value("secure", false)) {
    As<tavlyn::reader>(device).save_secure(path);
  } else {
    AnyOf(device).save(path);
  }
  return kDone;
}

std::string Load(Device& device, const Json& step) {
  const std::string path = step.at("path");
  if (step.value("secure", false)) {
    As<tavlyn::reader>(device).load_secure(path);
  } else {
    AnyOf(device).load(path);
  }
  return kDone;
}

std::string Beep(Device& device, const Json& step) {
  AnyOf(device).beep(step.value("count", 1), step.value("long", false));
  return kDone;
}

std::string Leds(Device& device, const Json& step) {
  As<tavlyn::reader>(device).leds(step.at("red"), step.at("green"));
  return kDone;
}

std::string Relay(Device& device, const Json& step) {
  As<tavlyn::reader>(device).relay(step.at("on"));
  return kDone;
}

std::string Volume(Device& device, const Json& step) {
  auto& reader = As<tavlyn::reader>(device);
  if (step.contains("value")) reader.volume(step["value"]);
  return std::to_string(reader.volume());
}

std::string Raw(Device& device, const Json& step) {
  const auto command = BytesOf(step.at("bytes"));
  const auto reply = AnyOf(device).raw({command.data(), command.size()});
  return tavlyn::hex({reply.data(), reply.size()});
}

std::string Swipe(Device& device, const Json& step) {
  for (const tavlyn::swipe& swipe : As<tavlyn::magstripe>(device).swipes(TimeOf(step))) return Shown(swipe);
  return kNone;
}

std::string Range(Device& device, const Json&) {
  const tavlyn::distance distance = As<tavlyn::sonar>(device).range();
  return std::to_string(distance.inches) + (distance.present ? " 1" : " 0");
}

std::string ErrorText(Device&, const Json& step) {
  return tavlyn::error_word(
             static_cast<std::uint32_t>(std::stoul(step.at("word").get<std::string>(), nullptr, 16)))
      .text();
}

using Operation = std::string (*)(Device&, const Json&);

const std::map<std::string, Operation> kOperations = {{"connect", Connect},
                                                      {"close", Close},
                                                      {"read_card", ReadCard},
                                                      {"cards", Cards},
                                                      {"events", Events},
                                                      {"get", Get},
                                                      {"set", Set},
                                                      {"commit", Commit},
                                                      {"reload", Reload},
                                                      {"save", Save},
                                                      {"load", Load},
                                                      {"beep", Beep},
                                                      {"leds", Leds},
                                                      {"relay", Relay},
                                                      {"volume", Volume},
                                                      {"raw", Raw},
                                                      {"swipe", Swipe},
                                                      {"range", Range},
                                                      {"error_text", ErrorText}};

}  // namespace

std::string Do(Device& device, const Json& step) {
  const Operation operation = kOperations.at(step.at("do"));
  try {
    return operation(device, step);
  } catch (const tavlyn::error& error) {
    return Failed(error);
  }
}

}  // namespace conformance
