// cards and cards set.
#include <charconv>

#include "api.h"
#include "tools/tavlynctl/changes.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/fields.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

std::uint16_t ParseType(const std::string& text) {
  std::uint16_t type = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, type, 16);
  if (error == std::errc() && stop == end) return type;
  throw Failure(kUsage, text + " is no card type: up to four hexadecimal digits");
}

}  // namespace

Json Cards(const Options& options) {
  const Session session(options.link);
  session.Use(options.device);
  RequirePlusReader();
  Json document = NewDocument("cards", options.device);
  Json& all = document["configurations"] = Json::array();
  for (int index = 0; index <= GetMaxConfig(); ++index) {
    const SelectedConfiguration selected(index);
    Json configuration{{"index", index}};
    DescribeCardType(configuration);
    all.push_back(std::move(configuration));
  }
  return document;
}

Json SetCard(const Options& options) {
  const std::uint16_t type = ParseType(options.cardType);
  const Session session(options.link);
  session.Use(options.device);
  RequirePlusReader();
  CheckConfiguration(options.index);
  if (IsCardTypeInList(static_cast<std::int16_t>(type)) != 1) {
    throw Failure(kUsage, ActiveDeviceName() + " does not know card type " + Hex(type, 4));
  }
  const Change change =
      Wanting(options.index, {{kCardTypeName, Hex(type, 4)}, {kCardPriorityName, options.choice}});
  return Carry(NewDocument("cards set", options.device), {change}, SendingOf(options.dryRun), [&] {
    {
      const SelectedConfiguration selected(options.index);
      SetCardTypePriority(type, options.choice == PriorityText(true) ? 1 : 0);
    }
    Commit();
  });
}

}  // namespace tavlyn::ctl
