// config show and config get.
#include "api.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/fields.h"
#include "tools/tavlynctl/product_settings.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

// Of the configuration that is selected.
Json Configuration(int index) {
  Json configuration{{"index", index}};
  DescribeCardType(configuration);
  std::array<RecordWords, kRecordCount> words;
  for (std::size_t i = 0; i < kRecordCount; ++i) words[i] = ReadRecord(static_cast<Record>(i));
  Json& records = configuration["records"] = Json::object();
  for (const Field& field : Fields()) {
    records[std::string(RecordOf(field))][field.name] = words[field.id.record][field.id.word];
  }
  return configuration;
}

Json GetSettings(const Options& options, std::uint32_t product) {
  const Session session(options.link, product);
  session.Use(options.device);
  CheckConfiguration(options.config.value_or(0));
  Json document = NewDocument("config get", options.device);
  const Json mirror = MirrorSettings();
  Json& settings = document["settings"] = Json::object();
  for (const std::string& word : options.words) {
    const std::string name = FindSetting(word)->name;
    settings[name] = mirror.value(name, Json());
  }
  return document;
}

}  // namespace

void DescribeCardType(Json& configuration) {
  const std::int32_t type = GetCardType();
  if (type < 0) return;
  configuration["card_type"] = Hex(static_cast<unsigned>(type), 4);
  configuration["priority"] = PriorityText(GetCardPriority() != 0);
}

Json ShowConfig(const Options& options) {
  const Session session(options.link, options.products);
  session.Use(options.device);
  Json document = NewDocument("config show", options.device);
  if (!ReaderIsActive()) {
    CheckConfiguration(options.config.value_or(0));
    document["product"] = ActiveProduct();
    document["settings"] = MirrorSettings();
    return document;
  }
  Json& all = document["configurations"] = Json::array();
  if (options.config) CheckConfiguration(*options.config);
  for (int index = options.config.value_or(0); index <= options.config.value_or(GetMaxConfig()); ++index) {
    const SelectedConfiguration selected(index);
    all.push_back(Configuration(index));
  }
  return document;
}

Json GetConfig(const Options& options) {
  const std::uint32_t product = ProductOfWords(options.words);
  if (product != kReaders) return GetSettings(options, product);
  std::vector<Field> wanted;
  for (const std::string& name : options.words) wanted.push_back(FindField(name));
  const Session session(options.link);
  session.Use(options.device);
  const SelectedConfiguration selected(options.config.value_or(0));
  Json document = NewDocument("config get", options.device);
  document["configuration"] = options.config.value_or(0);
  Json& fields = document["fields"] = Json::object();
  for (const Field& field : wanted) fields[FullName(field)] = ReadRecord(field.id.record)[field.id.word];
  return document;
}

}  // namespace tavlyn::ctl
