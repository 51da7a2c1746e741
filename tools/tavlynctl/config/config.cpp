// config get, set, reset and defaults; cards.
#include <algorithm>
#include <charconv>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/awaited.h"
#include "tools/tavlynctl/config/backups.h"
#include "tools/tavlynctl/config/changes.h"
#include "tools/tavlynctl/config/fields.h"
#include "tools/tavlynctl/config/overwriting.h"
#include "tools/tavlynctl/config/product_settings.h"
#include "tools/tavlynctl/every_device.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

struct GetConfig {
  std::vector<std::string> names;
  int configuration = 0;

  void Take(Words& words) {
    words.Text("FIELD", names, "As config show names it: bBeepID, CfgFlags2.bBeepID, PingRateS");
    words.Number("--config", configuration, 0, kHighestConfiguration, "Configuration of a plus reader (0)");
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const std::uint32_t product = ProductOfWords(names);
    if (product != kReaders) return SettingsOf(product, request);
    std::vector<Field> wanted;
    for (const std::string& name : names) wanted.push_back(FindField(name));
    const Session session(request.link);
    session.Use(request.device);
    const SelectedConfiguration selected(configuration);
    Json document = request.DeviceDocument();
    document["configuration"] = configuration;
    Json& fields = document["fields"] = Json::object();
    for (const Field& field : wanted) fields[FullName(field)] = ReadRecord(field.id.record)[field.id.word];
    return document;
  }

 private:
  [[nodiscard]] Json SettingsOf(std::uint32_t product, const Request& request) const {
    const Session session(request.link, product);
    session.Use(request.device);
    CheckConfiguration(configuration);
    Json document = request.DeviceDocument();
    const Json mirror = MirrorSettings();
    Json& settings = document["settings"] = Json::object();
    for (const std::string& word : names) {
      const std::string name = FindSetting(word)->name;
      settings[name] = mirror.value(name, Json());
    }
    return document;
  }
};

struct SetConfig {
  std::vector<std::string> assignments;
  bool dryRun = false;
  int configuration = 0;

  void Take(Words& words) {
    words.Text("FIELD=VALUE", assignments,
               "The value is a number, or as config explain FIELD tells: on, 1.5s, 0x1F, hex, 'a'");
    words.DryRun(dryRun);
    words.Number("--config", configuration, 0, kHighestConfiguration, "Configuration of a plus reader (0)");
    words.DeviceToChange();
    words.All();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const std::uint32_t product = ProductOfWords(assignments);
    if (product != kReaders) return SetSettings(product, request);
    std::vector<FieldValue> values;
    for (const std::string& text : assignments) values.push_back(ParseFieldValue(text));
    return ForEachChosen(request, kReaders, [&] {
      CheckConfiguration(configuration);
      const Change change = ChangeOf(configuration, Values(values));
      const Backup backup(request.command, Backup::NeedOf(dryRun));
      {
        const SelectedConfiguration selected(configuration);
        Store(values);
      }
      return ApplyAndVerify(request.DeviceDocument(), {change}, SendingOf(dryRun), [&](const Json&) {
        backup.Keep();
        Commit();
      });
    });
  }

 private:
  [[nodiscard]] Json SetSettings(std::uint32_t product, const Request& request) const {
    const Json wanted = ParseSettings(assignments);
    return ForEachChosen(request, product, [&] {
      CheckConfiguration(configuration);
      const SettingsPlan plan{MirrorSettings(), wanted, MirrorSettings};
      const Backup backup(request.command, Backup::NeedOf(dryRun));
      StoreSettings(wanted);
      return ApplyAndVerifySettings(request.DeviceDocument(), plan, dryRun, [&](const Json&) {
        backup.Keep();
        Commit();
      });
    });
  }
};

struct ResetConfig {
  Overwriting over;

  void Take(Words& words) {
    over.TakeAll(words);
    words.Flag("--dry-run", over.dryRun, "Only test whether the device is there");
    words.Product();
    words.DeviceToChange();
    words.All();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    over.Require("this loads the factory configuration over what the device has");
    return ForEachChosen(request, request.products, [&] {
      if (!over.dryRun) Reset(request);
      Json document = request.DeviceDocument();
      document["reset"] = !over.dryRun;
      return document;
    });
  }

 private:
  void Reset(const Request& request) const {
    over.Confirm("load the factory configuration into " + ActiveDeviceName());
    Backup(request.command, over.Kept()).Keep();
    NowDoing("loading the factory configuration");
    if (ResetFactoryDflts() == 1) return;
    throw Failure(kDeviceError, ActiveDeviceName() + " could not be reset, " + ErrorText());
  }
};

struct MovedDefaults {
  const char* word;
  const char* overwrites;  // the configuration with this; null if only the defaults change
  std::uint32_t (*move)();
};
constexpr MovedDefaults kMovedDefaults[] = {{"save", nullptr, SaveUserDflts},
                                            {"restore", "its user defaults", ResetUserDflts},
                                            {"plus", "its plus defaults", tavlynPlusDefaults}};

struct MoveDefaults {
  std::string what;
  Overwriting over;

  void Take(Words& words) {
    words.Choice("WHAT", what, {"save", "restore", "plus"},
                 "save, restore: its user defaults; plus: its plus defaults");
    over.TakeAll(words);
    words.DeviceToChange();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const MovedDefaults& moved = *std::ranges::find(kMovedDefaults, what, &MovedDefaults::word);
    const std::string overwrites = moved.overwrites != nullptr ? moved.overwrites : "";
    if (!overwrites.empty()) over.Require("this loads " + overwrites + " over what the reader has");
    const Session session(request.link);
    session.Use(request.device);
    RequirePlusReader();
    if (!overwrites.empty()) {
      over.Confirm("load " + overwrites + " into " + ActiveDeviceName());
      Backup(request.command, over.Kept()).Keep();
    }
    if (moved.move() != 1) {
      throw Failure(kDeviceError,
                    "the defaults of " + ActiveDeviceName() + " could not be moved, " + ErrorText());
    }
    Json document = request.DeviceDocument();
    document["done"] = what;
    return document;
  }
};

std::uint16_t ParseType(const std::string& text) {
  std::uint16_t type = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, type, 16);
  if (error == std::errc() && stop == end) return type;
  throw Failure(kUsage, text + " is not a card type: up to four hexadecimal digits");
}

struct ShowCardTypes {
  void Take(Words& words) { words.Device(); }

  [[nodiscard]] Json Run(const Request& request) const {
    const Session session(request.link);
    session.Use(request.device);
    RequirePlusReader();
    Json document = request.DeviceDocument();
    Json& all = document["configurations"] = Json::array();
    for (int index = 0; index <= GetMaxConfig(); ++index) {
      const SelectedConfiguration selected(index);
      Json configuration{{"index", index}};
      DescribeCardType(configuration);
      all.push_back(std::move(configuration));
    }
    return document;
  }
};

struct SetCardType {
  int index = 0;
  std::string typeText;
  std::string priority;
  bool dryRun = false;

  void Take(Words& words) {
    words.Number("INDEX", index, 0, kHighestConfiguration, "Configuration")->required();
    words.Text("TYPE", typeText, "Card type, hexadecimal");
    words.Choice("PRIORITY", priority, {"high", "low"}, "high or low");
    words.DryRun(dryRun);
    words.DeviceToChange();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const std::uint16_t type = ParseType(typeText);
    const Session session(request.link);
    session.Use(request.device);
    RequirePlusReader();
    CheckConfiguration(index);
    if (IsCardTypeInList(static_cast<std::int16_t>(type)) != 1) {
      throw Failure(kUsage, ActiveDeviceName() + " does not know card type " + Hex(type, 4));
    }
    const Change change = ChangeOf(index, {{kCardTypeName, Hex(type, 4)}, {kCardPriorityName, priority}});
    const Backup backup(request.command, Backup::NeedOf(dryRun));
    return ApplyAndVerify(request.DeviceDocument(), {change}, SendingOf(dryRun), [&](const Json&) {
      backup.Keep();
      {
        const SelectedConfiguration selected(index);
        SetCardTypePriority(type, priority == PriorityText(true) ? 1 : 0);
      }
      Commit();
    });
  }
};

}  // namespace

void AddConfig(Program& program) {
  program.Group("config", "The configuration of a device");
  AddConfigShow(program);
  AddConfigExplain(program);
  program.Add<GetConfig>("config get", "Single fields or settings");
  program.Add<SetConfig>("config set", "Sets fields or settings, and reads them back");
  AddConfigFiles(program);
  program.Add<ResetConfig>("config reset", "Loads the factory configuration");
  program.Add<MoveDefaults>("config defaults", "Moves the defaults that a plus reader keeps");
}

void AddCardTypes(Program& program) {
  program.Add<ShowCardTypes>("cards", "The card type and priority of each configuration of a plus reader");
  program.Add<SetCardType>("cards set", "Sets card type and priority, and reads them back");
}

}  // namespace tavlyn::ctl
