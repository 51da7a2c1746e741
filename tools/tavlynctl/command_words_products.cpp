// track, swipe and magfield of magnetic-stripe readers; range of sonar sensors.
#include "tools/tavlynctl/command_words.h"
#include "tools/tavlynctl/commands.h"
#include "tools/word_checks.h"

namespace tavlyn::ctl {
namespace {

void AddMagFields(CLI::App& app, Options& options, Commands& commands) {
  CLI::App* fields = Add(app, "magfield", "The user fields of a magnetic-stripe reader", options);
  fields->add_option("NUMBER", options.index, "Only this one")->check(WholeNumber(1, 11));
  CLI::App* set = Add(*fields, "set", "Sets parts of a user field, and reads them back", options);
  set->add_option("NUMBER", options.index, "User field")->required()->check(WholeNumber(1, 11));
  set->add_option("NAME=VALUE", options.words, "As magfield shows them; keys in hexadecimal")->required();
  AddDryRun(set, options);
  for (CLI::App* command : {fields, set}) AddDevice(command, options);
  // The inner word first: the outer counts as given too.
  commands.insert(commands.end(), {{set, "magfield set", SetMagField}, {fields, "magfield", MagFields}});
}

}  // namespace

void AddProducts(CLI::App& app, Options& options, Commands& commands) {
  CLI::App* track = Add(app, "track", "The tracks of the last swipe, raw and as text", options);
  track->add_option("NUMBER", options.index, "Only this one")->check(WholeNumber(1, 3));
  CLI::App& swipe = *app.add_subcommand("swipe", "Swipes of a magnetic-stripe reader");
  swipe.require_subcommand(1);
  CLI::App* watch = Add(swipe, "watch", "A line for each swipe, until Ctrl-C", options);
  AddCount(watch, options, "End after so many lines");
  AddTimeout(watch, options, "End after so many seconds");
  AddMagFields(app, options, commands);
  CLI::App* range = Add(app, "range", "What a sonar sensor measures: inches and status bits 0 to 2", options);
  CLI::Option* live = range->add_flag("--watch", options.watch, "Again and again, until Ctrl-C");
  AddCount(range, options, "End after so many measurements")->needs(live);
  for (CLI::App* command : {track, watch, range}) AddDevice(command, options);
  commands.insert(commands.end(),
                  {{track, "track", Track}, {watch, "swipe watch", WatchSwipes}, {range, "range", Range}});
}

}  // namespace tavlyn::ctl
