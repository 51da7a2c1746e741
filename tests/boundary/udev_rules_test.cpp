// The udev rules give access to what the library accepts as its own by default, and to nothing else.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "hid/vidpid_table.h"

namespace tavlyn::boundary {
namespace {

using Identities = std::set<std::string>;

std::string Named(unsigned vid, unsigned pid) {
  char text[16];
  std::snprintf(text, sizeof text, "%04x:%04x", vid, pid);
  return text;
}

// A rule names identities and gives access to them, nothing else; a line of another form is not understood.
Identities OfRule(const std::string& line) {
  static const std::regex form(
      R"re(KERNEL=="hidraw\*", ATTRS\{idVendor\}=="(\w{4})", ATTRS\{idProduct\}=="([\w|]+)", TAG\+="uaccess", TAG\+="tavlyn")re");
  std::smatch parts;
  if (!std::regex_match(line, parts, form)) return {"not understood: " + line};
  Identities all;
  std::istringstream products(parts[2]);
  for (std::string product; std::getline(products, product, '|');) all.insert(parts[1].str() + ":" + product);
  return all;
}

TEST(UdevRules, NodesOfTheLibrarysIdentitiesAndNoOthers) {
  Identities permitted;
  std::ifstream rules(TAVLYN_UDEV_RULES);
  for (std::string line; std::getline(rules, line);) {
    if (!line.starts_with('#') && line.find("hidraw") != std::string::npos) permitted.merge(OfRule(line));
  }
  Identities known;
  for (const Product* product : kProducts) {
    known.insert(Named(product->usb.pair.vid, product->usb.pair.pid));
  }
  shared.vidPid = {};
  LoadVidPidTable();
  for (std::size_t row = 0; shared.vidPid.VidPidTable[row].VID != 0; ++row) {
    known.insert(Named(shared.vidPid.VidPidTable[row].VID, shared.vidPid.VidPidTable[row].PID));
  }
  shared.vidPid = {};
  EXPECT_EQ(known.size(), 12U);
  EXPECT_EQ(known, permitted);
}

}  // namespace
}  // namespace tavlyn::boundary
