/// @file
/// Events one after another, for a range-based for.
#ifndef TAVLYN_STREAM_HPP
#define TAVLYN_STREAM_HPP

#include <chrono>
#include <cstddef>
#include <functional>
#include <iterator>
#include <optional>
#include <thread>
#include <utility>

#include "connection.hpp"
#include "values.hpp"

namespace tavlyn {

/// For a wait that only an error ends.
inline constexpr std::chrono::milliseconds forever = std::chrono::milliseconds::max();

namespace detail {

/// A device counts as lost after so many failures in a row.
inline constexpr int most_failures = 3;

inline clock::time_point end_of(std::chrono::milliseconds timeout) {
  return timeout == forever ? clock::time_point::max() : clock::now() + timeout;
}

/// Asks until there is an answer, with a pause before each try, and at least once. An error counts when it
/// comes several times in a row.
template <class Event, class Ask>
std::optional<Event> await(clock::time_point end, std::chrono::milliseconds pause, Ask&& ask) {
  int failures = 0;
  do {
    std::this_thread::sleep_for(pause);
    try {
      if (std::optional<Event> event = ask()) return event;
      failures = 0;
    } catch (const error&) {
      if (++failures == most_failures) throw;
    }
  } while (clock::now() < end);
  return std::nullopt;
}

}  // namespace detail

/// Events until the time is over. Each step of the iterator waits for the next one.
template <class Event>
class stream {
 public:
  /// The next event; nothing if none comes in time.
  using source = std::function<std::optional<Event>()>;

  class iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Event;
    using difference_type = std::ptrdiff_t;
    using pointer = const Event*;
    using reference = const Event&;

    iterator() = default;
    explicit iterator(source* from) : from_(from) { ++*this; }
    reference operator*() const { return *event_; }
    pointer operator->() const { return &*event_; }
    iterator& operator++() {
      event_ = (*from_)();
      if (!event_) from_ = nullptr;
      return *this;
    }
    void operator++(int) { ++*this; }
    friend bool operator==(const iterator& one, const iterator& other) { return one.from_ == other.from_; }
    friend bool operator!=(const iterator& one, const iterator& other) { return !(one == other); }

   private:
    source* from_ = nullptr;
    std::optional<Event> event_;
  };

  explicit stream(source next) : next_(std::move(next)) {}

  iterator begin() { return iterator(&next_); }
  iterator end() { return {}; }

 private:
  source next_;
};

}  // namespace tavlyn

#endif
