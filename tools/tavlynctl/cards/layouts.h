// Layouts of Wiegand cards: which bits are parity and which are numbers. They are the lines of a text file,
// tools/tavlynctl/cards/wiegand-layouts.txt, which describes its own form.
#pragma once

#include <string>
#include <vector>

namespace tavlyn::ctl {

// Bits count from 1 in the order in which a card sends them.
struct BitSpan {
  int first;
  int last;
};

struct Layout {
  struct Number {
    std::string name;
    BitSpan bits;
  };
  struct Parity {
    int bit;
    bool odd;
    std::vector<BitSpan> over;  // besides the bit itself
  };

  std::string name;
  int bits = 0;
  std::vector<Number> numbers;
  std::vector<Parity> parity;
};

// Of any card that a reader can tell of.
inline constexpr int kMostCardBits = 255;
inline constexpr int kMostNumberBits = 64;

// Throws Failure, which names the file, the line and what is wrong with it.
std::vector<Layout> ParseLayouts(const std::string& text, const std::string& file);

std::vector<Layout> BuiltInLayouts();
// These, then those of a file. Without a name that is the file in the user's configuration
// folder, if there is one.
std::vector<Layout> KnownLayouts(const std::string& file);

}  // namespace tavlyn::ctl
