// config show.
#include <array>
#include <cstring>
#include <string_view>

#include "api.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

using Words = std::array<std::int16_t, 8>;

template <typename Record>
bool Get(std::uint32_t (*get)(Record*), Words& words) {
  Record record{};
  static_assert(sizeof record == sizeof words);
  const bool done = get(&record) == 1;
  std::memcpy(words.data(), &record, sizeof record);
  return done;
}

struct RecordRow {
  std::string_view name;
  bool (*get)(Words&);
};

constexpr RecordRow kRecords[] = {{"IDBitCnts", [](Words& words) { return Get(GetIDBitCnts, words); }},
                                  {"CfgFlags", [](Words& words) { return Get(GetFlags, words); }},
                                  {"IDDispParms", [](Words& words) { return Get(GetIDDispParms, words); }},
                                  {"TimeParms", [](Words& words) { return Get(GetTimeParms, words); }},
                                  {"CfgFlags2", [](Words& words) { return Get(GetFlags2, words); }},
                                  {"CfgFlags3", [](Words& words) { return Get(GetFlags3, words); }},
                                  {"IDDispParms2", [](Words& words) { return Get(GetIDDispParms2, words); }},
                                  {"IDDispParms3", [](Words& words) { return Get(GetIDDispParms3, words); }},
                                  {"LEDCtrl", [](Words& words) { return Get(GetLEDCtrl, words); }},
                                  {"BprRlyCtrl", [](Words& words) { return Get(GetBprRlyCtrl, words); }}};

struct Field {
  std::string_view record;
  std::size_t word;
  std::string_view name;
};

constexpr Field kFields[] = {
#define FIELD(record, word, name) {#record, word, #name},
#include "core/fields.inc"
};

bool MeansNothing(std::string_view field) { return field.starts_with("iPad"); }

Json RecordValues(const RecordRow& row) {
  Words words{};
  if (!row.get(words)) {
    throw Failure(kDeviceError, std::string(row.name) + " of " + ActiveDeviceName() + ": " + ErrorText());
  }
  Json values = Json::object();
  for (const Field& field : kFields) {
    if (field.record == row.name && !MeansNothing(field.name)) {
      values[std::string(field.name)] = words[field.word];
    }
  }
  return values;
}

// Of the configuration that is selected.
Json Configuration(int index) {
  Json configuration{{"index", index}};
  if (const std::int32_t type = GetCardType(); type >= 0) {
    configuration["card_type"] = Hex(static_cast<unsigned>(type), 4);
    configuration["priority"] = GetCardPriority() != 0 ? "high" : "low";
  }
  Json& records = configuration["records"] = Json::object();
  for (const RecordRow& row : kRecords) records[std::string(row.name)] = RecordValues(row);
  return configuration;
}

}  // namespace

Json ShowConfig(const Options& options) {
  const Session session;
  session.Use(options.device);
  const int highest = GetMaxConfig();
  if (options.config && (*options.config < 0 || *options.config > highest)) {
    throw Failure(kUsage, ActiveDeviceName() + " has configurations 0 to " + std::to_string(highest));
  }
  Json document = NewDocument("config show");
  document["device"] = options.device;
  Json& all = document["configurations"] = Json::array();
  for (int index = options.config.value_or(0); index <= options.config.value_or(highest); ++index) {
    SetActConfig(static_cast<std::uint8_t>(index));  // refused by a plain reader, which has only one
    all.push_back(Configuration(index));
  }
  return document;
}

}  // namespace tavlyn::ctl
