#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "tests/adversary/own_memory.h"

namespace tavlyn::adversary {
namespace {

using Memory = std::span<const std::uint8_t>;

constexpr std::size_t kShortest = 4;

int DigitOf(std::uint8_t character) {
  if (character >= '0' && character <= '9') return character - '0';
  const int letter = character | 0x20;
  return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

class Search {
 public:
  explicit Search(Marker marker) : marker_(marker) {
    at_.fill(-1);
    for (std::size_t at = kMarkerBytes; at-- > 0;) at_[MarkerByte(marker, at)] = static_cast<int>(at);
  }

  // How many bytes of the marker begin here.
  [[nodiscard]] std::size_t Plain(Memory memory) const {
    return Run(memory.size(), [&](std::size_t at) { return static_cast<int>(memory[at]); });
  }
  [[nodiscard]] std::size_t AsText(Memory memory, std::size_t apart) const {
    return Run(memory.size() < 2 ? 0 : (memory.size() - 2) / apart + 1, [&](std::size_t at) {
      const int high = DigitOf(memory[at * apart]);
      const int low = DigitOf(memory[at * apart + 1]);
      return high < 0 || low < 0 ? -1 : high << 4 | low;
    });
  }

 private:
  template <typename ByteAt>
  [[nodiscard]] std::size_t Run(std::size_t most, ByteAt byteAt) const {
    const int first = most > 0 ? byteAt(0) : -1;
    if (first < 0 || at_[static_cast<std::size_t>(first)] < 0) return 0;
    const auto begin = static_cast<std::size_t>(at_[static_cast<std::size_t>(first)]);
    std::size_t length = 1;
    while (length < most && begin + length < kMarkerBytes &&
           byteAt(length) == MarkerByte(marker_, begin + length))
      ++length;
    return length >= kShortest ? length : 0;
  }

  Marker marker_;
  std::array<int, 256> at_{};  // where in the marker a byte is
};

struct Found {
  std::string_view owner;
  bool isText;
  std::size_t bytes;
};

// Nothing is allocated until the search is over: that could use the very memory that is to be searched.
struct Results {
  std::array<Found, 256> found;
  std::size_t count = 0;

  void Add(const Found& one) {
    if (count < found.size()) found[count++] = one;
  }
};

void FindIn(Memory memory, std::string_view owner, const Search& search, Memory leftOut, Results& results) {
  for (std::size_t at = 0; at < memory.size(); ++at) {
    const std::uint8_t* here = memory.data() + at;
    if (here >= leftOut.data() && here < leftOut.data() + leftOut.size()) continue;
    if (const std::size_t bytes = search.Plain(memory.subspan(at)); bytes > 0) {
      results.Add({owner, false, bytes});
      at += bytes - 1;
      continue;
    }
    for (const std::size_t apart : {2U, 3U}) {
      const std::size_t bytes = search.AsText(memory.subspan(at), apart);
      if (bytes == 0) continue;
      results.Add({owner, true, bytes});
      at += bytes * apart - 1;
      break;
    }
  }
}

std::string_view TextOfMaps() {
  static std::array<char, 65536> text;
  const int file = open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
  std::size_t length = 0;
  for (ssize_t got = 1; got > 0 && length < text.size();
       length += static_cast<std::size_t>(std::max<ssize_t>(got, 0)))
    got = read(file, text.data() + length, text.size() - length);
  close(file);
  return {text.data(), length};
}

constexpr std::size_t kStackBytes = 256UL * 1024;

// Where a deed runs, so that the search does not write over what it has left there.
Memory DeedStack() {
  static void* const stack =
      mmap(nullptr, kStackBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (stack == MAP_FAILED) throw std::runtime_error("no stack");
  return {static_cast<const std::uint8_t*>(stack), kStackBytes};
}

}  // namespace

void RunDeed(void* (*run)(void*), void* argument) {
  const Memory stack = DeedStack();
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstack(&attributes, const_cast<std::uint8_t*>(stack.data()), stack.size());
  pthread_t thread{};
  if (pthread_create(&thread, &attributes, run, argument) != 0) throw std::runtime_error("no thread");
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

Places Find(Marker marker, std::span<const std::uint8_t> callers) {
  const Search search(marker);
  Results results;
  std::string_view owner;
  std::uintptr_t previousEnd = 0;
  std::string_view left = TextOfMaps();
  while (!left.empty()) {
    const std::string_view line = left.substr(0, left.find('\n'));
    left.remove_prefix(std::min(line.size() + 1, left.size()));
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    if (std::sscanf(line.data(), "%lx-%lx", &begin, &end) != 2) break;
    const std::size_t path = line.find_first_of("/[");
    // What follows a file's memory without a gap and without a name is its too.
    if (path != std::string_view::npos || begin != previousEnd)
      owner = line.substr(
          std::min(path == std::string_view::npos ? path : std::max(path, line.rfind('/') + 1), line.size()));
    previousEnd = end;
    if (line.find(" rw-p ") == std::string_view::npos) continue;
    const Memory memory(reinterpret_cast<const std::uint8_t*>(begin), end - begin);
    FindIn(memory, memory.data() == DeedStack().data() ? "stack" : owner, search, callers, results);
  }
  Places places;
  for (std::size_t at = 0; at < results.count; ++at) {
    const Found& found = results.found[at];
    ++places[{std::string(found.owner) + (found.isText ? " text" : ""), found.bytes}];
  }
  return places;
}

}  // namespace tavlyn::adversary
