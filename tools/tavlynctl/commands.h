// The commands, one function each. They give their document or throw Failure.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tavlynctl/link.h"
#include "tools/tavlynctl/output.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {

struct Options {
  Link link;
  bool json = false;
  int device = 0;
  std::uint32_t products = kAllProducts;  // which a command may be about, where it takes several
  std::optional<double> timeout;          // seconds
  int count = 0;                          // events, beeps or bytes; 0: any number of events, one beep
  std::optional<int> config;              // without it all are shown and compared, and 0 is set
  std::vector<std::string> words;         // FIELD, FIELD=VALUE, a colour or hexadecimal bytes
  std::vector<std::string> files;
  std::string choice;  // one of the words that a command takes
  int index = 0;       // of a configuration, a module, a track or a user field; 0: all tracks or fields
  int state = 1;       // of the card analyzer
  std::string cardType;
  std::optional<int> volume;
  std::string header;  // of an item, and its bytes
  std::string data;
  bool keys = false;        // not the data
  bool showKeys = false;    // print key material
  std::optional<int> code;  // of a baud rate
  std::optional<IpRange> range;
  bool dryRun = false;
  bool strict = false;
  bool secure = false;
  bool ini = false;
  bool yes = false;
  bool store = false;
  bool longBeep = false;
  bool first = false;
  bool second = false;
  bool watch = false;
};

Json List(const Options& options);
Json Info(const Options& options);
Json Read(const Options& options);
// Shows its events itself and gives no document.
Json Watch(const Options& options);
Json ShowConfig(const Options& options);
Json GetConfig(const Options& options);
Json SetConfig(const Options& options);
Json SaveConfig(const Options& options);
Json LoadConfig(const Options& options);
Json DiffConfig(const Options& options);
Json ResetConfig(const Options& options);
Json MoveDefaults(const Options& options);
Json CheckFile(const Options& options);
Json Beep(const Options& options);
Json Led(const Options& options);
Json Relay(const Options& options);
Json Volume(const Options& options);
Json Cards(const Options& options);
Json SetCard(const Options& options);
Json StartAnalyzer(const Options& options);
Json StopAnalyzer(const Options& options);
Json AnalyzerStatus(const Options& options);
Json ListAnalyzed(const Options& options);
Json GetModule(const Options& options);
Json SetModule(const Options& options);
Json TransparentMode(const Options& options);
Json BleStatus(const Options& options);
Json SetBle(const Options& options);
Json Queue(const Options& options);
Json Raw(const Options& options);
Json Texts(const Options& options);

Json LoadKeys(const Options& options);
Json ReadSecure(const Options& options);
Json WriteSecure(const Options& options);
Json SaveBle(const Options& options);
Json LoadBle(const Options& options);
Json Find(const Options& options);
Json SerialBaud(const Options& options);
Json SerialWrite(const Options& options);
Json SerialRead(const Options& options);
Json Track(const Options& options);
// These show their events themselves and give no document.
Json WatchSwipes(const Options& options);
Json MagFields(const Options& options);
Json SetMagField(const Options& options);
// One measurement; with watch as those.
Json Range(const Options& options);

// Adds card type and priority of the selected configuration; nothing for a plain reader.
void DescribeCardType(Json& configuration);

}  // namespace tavlyn::ctl
