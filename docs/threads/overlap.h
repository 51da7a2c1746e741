// Which calls may be made at the same time, found by making each of them in every situation and watching the
// lock, the library's variables and its traffic.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "tests/support/every_export.h"
#include "tests/support/situations.h"

namespace tavlyn::page {

enum class Overlap {
  kLocked,   // all that it does is done under the lock
  kReads,    // changes nothing and asks no device
  kChanges,  // changes the library's variables without the lock
  kTalks,    // talks to a device without the lock, or takes the lock for parts only
};

class Watched : public test::InSituation {
 protected:
  std::map<std::string_view, Overlap> OverlapOfAll();

 private:
  struct Seen {
    bool alwaysLocks = true;
    bool everLocks = false;
    bool changes = false;  // outside the lock, as the next one
    bool talks = false;
  };

  void Watch(const test::Export& exported, const test::Variant& variant, Seen& seen);
  void Meet();
  static void Save(std::uint32_t (*save)(const char*));
  static void LeaveMarks();
};

}  // namespace tavlyn::page
