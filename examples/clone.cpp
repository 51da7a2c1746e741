// Loads one configuration file into every reader that is plugged in.
#include <iostream>
#include <tavlyn.hpp>

int main(int count, char** words) try {
  if (count != 2) {
    std::cerr << "usage: clone FILE\n";
    return 2;
  }
  bool all = true;
  for (const tavlyn::reader& reader : tavlyn::connect_all()) {
    try {
      reader.load_secure(words[1]);
      std::cout << reader.serial_number() << " loaded\n";
    } catch (const tavlyn::error& error) {  // the others can be loaded all the same
      std::cerr << "the reader with LUID " << reader.luid() << ": " << error.what() << '\n';
      all = false;
    }
  }
  return all ? 0 : 1;
} catch (const tavlyn::error& error) {
  std::cerr << error.what() << '\n';
  return 1;
}
