// beep, led, relay and volume.
#include "tools/tavlynctl/command_words.h"
#include "tools/tavlynctl/commands.h"
#include "tools/word_checks.h"

namespace tavlyn::ctl {

void AddOutputs(CLI::App& app, Options& options, Commands& commands) {
  CLI::App* beep = Add(app, "beep", "Beeps now", options);
  beep->add_option("COUNT", options.count, "Beeps (1)")->check(WholeNumber(1, 5));
  beep->add_flag("--long", options.longBeep, "One or two long beeps");
  AddProduct(beep, options);
  CLI::App* led = Add(app, "led", "Switches the LEDs", options);
  led->add_option("COLOUR", options.words, "red, green or both words; off; auto: as the reader itself does")
      ->required()
      ->check(OneOf({"red", "green", "off", "auto"}));
  CLI::App* relay = Add(app, "relay", "Switches the relay", options);
  AddChoice(relay, options, "STATE", {"on", "off"});
  for (CLI::App* command : {led, relay}) command->add_flag("--store", options.store, "For good");
  CLI::App* volume = Add(app, "volume", "Tells or sets the volume of the beeper", options);
  volume->add_option("N", options.volume)->check(WholeNumber(0, 255));
  for (CLI::App* command : {beep, led, relay, volume}) AddDevice(command, options);
  commands.insert(
      commands.end(),
      {{beep, "beep", Beep}, {led, "led", Led}, {relay, "relay", Relay}, {volume, "volume", Volume}});
}

}  // namespace tavlyn::ctl
