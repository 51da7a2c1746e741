// list, info, read, watch, queue, raw and text.
#include "tools/tavlynctl/command_words.h"
#include "tools/tavlynctl/commands.h"

namespace tavlyn::ctl {

void AddReads(CLI::App& app, Options& options, Commands& commands) {
  CLI::App* list = Add(app, "list", "The devices that are found", options);
  CLI::App* info = Add(app, "info", "What a device tells of itself", options);
  CLI::App* read = Add(app, "read", "The card that lies on a reader, or the next that comes", options);
  AddTimeout(read, options, "Seconds to wait for a card (10)");
  CLI::App* watch = Add(app, "watch", "A line for each card that comes or goes, until Ctrl-C", options);
  AddCount(watch, options, "End after so many lines");
  AddTimeout(watch, options, "End after so many seconds");
  for (CLI::App* command : {info, read, watch}) AddDevice(command, options);
  for (CLI::App* command : {list, info}) AddProduct(command, options);
  commands.insert(
      commands.end(),
      {{list, "list", List}, {info, "info", Info}, {read, "read", Read}, {watch, "watch", Watch}});
}

void AddRaw(CLI::App& app, Options& options, Commands& commands) {
  CLI::App* queue = Add(app, "queue", "The oldest ID that was read while nobody asked", options);
  queue->add_flag("--first", options.first, "The first option that is passed on to the reader");
  queue->add_flag("--second", options.second, "The second one");
  CLI::App* raw = Add(app, "raw", "Sends a command of eight bytes and shows the reply", options);
  raw->add_option("HEX", options.words, "Bytes; those left out are 0")->required();
  CLI::App* text = Add(app, "text", "The texts that a reader holds", options);
  for (CLI::App* command : {queue, raw, text}) AddDevice(command, options);
  commands.insert(commands.end(), {{queue, "queue", Queue}, {raw, "raw", Raw}, {text, "text", Texts}});
}

}  // namespace tavlyn::ctl
