// config set, config reset and config defaults.
#include <vector>

#include "api.h"
#include "tools/tavlynctl/changes.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/fields.h"
#include "tools/tavlynctl/product_settings.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

struct Move {
  const char* word;
  std::uint32_t (*move)();
};
constexpr Move kMoves[] = {
    {"save", SaveUserDflts}, {"restore", ResetUserDflts}, {"plus", tavlynPlusDefaults}};

Json SetSettings(const Options& options, std::uint32_t product) {
  const Json wanted = ParseSettings(options.words);
  const Session session(options.link, product);
  session.Use(options.device);
  CheckConfiguration(options.config.value_or(0));
  const SettingsPlan plan{MirrorSettings(), wanted, MirrorSettings};
  StoreSettings(wanted);
  return CarrySettings(NewDocument("config set", options.device), plan, options.dryRun);
}

}  // namespace

Json SetConfig(const Options& options) {
  const std::uint32_t product = ProductOfWords(options.words);
  if (product != kReaders) return SetSettings(options, product);
  std::vector<Wish> wishes;
  for (const std::string& text : options.words) wishes.push_back(ParseWish(text));
  const Session session(options.link);
  session.Use(options.device);
  const int index = options.config.value_or(0);
  CheckConfiguration(index);
  const Change change = Wanting(index, Values(wishes));
  {
    const SelectedConfiguration selected(index);
    Store(wishes);
  }
  return Carry(NewDocument("config set", options.device), {change}, SendingOf(options.dryRun), Commit);
}

Json ResetConfig(const Options& options) {
  if (!options.yes && !options.dryRun) {
    throw Failure(kUsage, "this loads the factory configuration over what the reader has; --yes does it");
  }
  const Session session(options.link, options.products);
  session.Use(options.device);
  if (!options.dryRun && ResetFactoryDflts() != 1) {
    throw Failure(kDeviceError, ActiveDeviceName() + " could not be reset, " + ErrorText());
  }
  Json document = NewDocument("config reset", options.device);
  document["reset"] = !options.dryRun;
  return document;
}

Json MoveDefaults(const Options& options) {
  const Session session(options.link);
  session.Use(options.device);
  RequirePlusReader();
  for (const Move& one : kMoves) {
    if (options.choice != one.word || one.move() == 1) continue;
    throw Failure(kDeviceError,
                  "the defaults of " + ActiveDeviceName() + " could not be moved, " + ErrorText());
  }
  Json document = NewDocument("config defaults", options.device);
  document["done"] = options.choice;
  return document;
}

}  // namespace tavlyn::ctl
