/// @file
/// How the words of a configuration are reached.
#ifndef TAVLYN_RECORDS_HPP
#define TAVLYN_RECORDS_HPP

#include <cstdint>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include "connection.hpp"

namespace tavlyn {
namespace detail {

/// Makes the calls about records act on one configuration as long as the object lasts; the reader is not
/// told.
class selected_configuration {
 public:
  explicit selected_configuration(int index) : before_(static_cast<std::uint8_t>(GetActConfig())) {
    if (index < 0 || index > GetMaxConfig()) {
      throw std::out_of_range("there is no configuration " + std::to_string(index));
    }
    SetActConfig(static_cast<std::uint8_t>(index));  // refused by a plain reader, which has only one
  }
  ~selected_configuration() { SetActConfig(before_); }
  selected_configuration(const selected_configuration&) = delete;
  selected_configuration& operator=(const selected_configuration&) = delete;

 private:
  std::uint8_t before_;
};

/// What a word is called and may hold.
struct setting {
  const char* name;
  int least;
  int most;
  const char* unit;  // with a blank before it, or empty

  bool holds(int value) const { return least <= value && value <= most; }
  std::string range() const {
    return std::string(name) + " is " + std::to_string(least) + " to " + std::to_string(most) + unit;
  }
};

/// One configuration of a device. Its calls get and set whole records.
class record_words {
 public:
  record_words(handle device, int index) : device_(std::move(device)), index_(index) {}

  const handle& device() const { return device_; }

  template <class Get, class Record, class Word>
  int get(Get get_record, Word Record::*word) const {
    return whole<Record>(get_record).*word;
  }

  template <class Get, class Set, class Record, class Word>
  void set(Get get_record, Set set_record, Word Record::*word, int value, const setting& which) const {
    const Word narrow = static_cast<Word>(value);
    if (narrow != value) throw std::out_of_range(which.range() + ", not " + std::to_string(value));
    device_.on_active([&] {
      Record record = whole<Record>(get_record);
      if constexpr (std::is_same_v<Record, tsLEDCtrl> || std::is_same_v<Record, tsBprRlyCtrl>) {
        record.bVolatile = 0;  // a setting is for the next commit
      }
      record.*word = narrow;
      try {
        require([&] { return set_record(&record); });
      } catch (const error& refused) {
        throw refusal(refused, which, value);
      }
      if constexpr (std::is_same_v<Record, tsCfgFlags3>) mark_flags3();
    });
  }

 private:
  /// Only the library knows the range: some readers take more. It judges the other words of the record too.
  static error refusal(const error& refused, const setting& which, int value) {
    const std::string said = which.holds(value) ? which.name + (" could not be set: " + refused.text())
                                                : which.range() + ", not " + std::to_string(value);
    return {refused.word(), refused.text(), said};
  }
  /// bNotBootDev is in a block that only other records mark as changed.
  void mark_flags3() const {
    const auto beside = whole<tsCfgFlags2>(GetFlags2);
    require([&] { return SetFlags2(&beside); });
  }
  template <class Record, class Get>
  Record whole(Get get_record) const {
    device_.require_read();
    Record record{};
    require([&] { return get_record(&record); });
    return record;
  }
  template <class Call>
  void require(Call&& call) const {
    device_.require([&] {
      const selected_configuration selected(index_);
      return call();
    });
  }

  handle device_;
  int index_;
};

}  // namespace detail
}  // namespace tavlyn

#endif
