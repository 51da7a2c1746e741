// Opens a door for known cards: the relay is on for a second.
#include <iostream>
#include <set>
#include <string>
#include <tavlyn.hpp>
#include <thread>

int main(int count, char** words) try {
  const std::set<std::string> known(words + 1, words + count);
  const tavlyn::reader reader = tavlyn::connect();
  for (const tavlyn::card_id& card : reader.cards(std::chrono::seconds(10))) {
    const bool opens = known.count(card.hex()) != 0;
    std::cout << card.hex() << (opens ? " opens the door" : " is not known") << std::endl;
    reader.leds(!opens, opens);
    reader.beep(opens ? 1 : 3);
    if (!opens) continue;
    reader.relay(true);
    std::this_thread::sleep_for(std::chrono::seconds(1));
    reader.relay(false);
  }
  reader.release_leds();
  return 0;
} catch (const tavlyn::error& error) {
  std::cerr << error.what() << '\n';
  return 1;
}
