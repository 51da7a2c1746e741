// config show: the whole configuration, or what of it differs from a file.
#include "tools/tavlynctl/config/config_show.h"

#include <algorithm>
#include <optional>
#include <string>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/config/comparison.h"
#include "tools/tavlynctl/config/fields.h"
#include "tools/tavlynctl/config/meanings.h"
#include "tools/tavlynctl/config/product_settings.h"
#include "tools/tavlynctl/config/values.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

constexpr const char* kNothing = "none";

// Of the selected configuration.
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

// What the words of one configuration are compared with: the values of a file by full name.
struct Baseline {
  Json values = Json::object();

  // Leaves what differs, and returns the file's values for it.
  Json Keep(Json& words, const std::string& prefix) const {
    Json others = Json::object();
    Json kept = Json::object();
    for (const auto& [name, value] : words.items()) {
      const std::string full = prefix + name;
      if (!values.contains(full) || values[full] == value) continue;
      kept[name] = value;
      others[full] = values[full];
    }
    words = std::move(kept);
    return others;
  }
};

Baseline BaselineOf(const Side& file, std::size_t index) {
  return index < file.configurations.size() ? Baseline{file.configurations[index]} : Baseline{};
}

// Each value with its unit, the file's if there is one, and its meaning.
void AddMeanings(Json& words, const std::string& prefix, const Json& others) {
  std::size_t width = 0;
  for (auto& [name, value] : words.items()) {
    const Meaning& meaning = MeaningOf(prefix + name);
    std::string text = ShownValue(meaning, value.get<int>());
    const auto other = others.find(prefix + name);
    if (other != others.end()) text += ", not " + ShownValue(meaning, other->get<int>());
    width = std::max(width, text.size());
    value = std::move(text);
  }
  for (auto& [name, value] : words.items()) {
    auto text = value.get<std::string>();
    text.resize(width + 2, ' ');
    text += MeaningOf(prefix + name).text;
    value = std::move(text);
  }
}

struct ShowConfig {
  std::optional<int> only;
  std::string changed;

  void Take(Words& words) {
    words.Product();
    words.Number("--config", only, 0, kHighestConfiguration, "Only this configuration of a plus reader");
    words
        .Text("--changed", changed,
              "Only what differs from this file, as config save wrote it of a device with its defaults")
        ->required(false)
        ->option_text("FILE");
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const std::optional<Side> file = Baselines(request.products);
    const Session session(request.link, file ? file->product : request.products);
    session.Use(request.device);
    Json document = request.DeviceDocument();
    if (file) document["file"] = changed;
    DescribeConfiguration(document, only);
    if (DeviceIsReader()) {
      ShowRecords(document, file, request.json);
    } else {
      ShowSettings(document, file, request.json);
    }
    return document;
  }

 private:
  [[nodiscard]] std::optional<Side> Baselines(std::uint32_t products) const {
    if (changed.empty()) return std::nullopt;
    RequireFile(changed);
    Side file = FileSide(changed);
    if ((file.product & products) == 0) {
      throw Failure(kUsage, changed + " is for a " + ProductName(file.product));
    }
    return file;
  }

  static void ShowSettings(Json& document, const std::optional<Side>& file, bool asJson) {
    Json& settings = document["settings"];
    Json others = Json::object();
    if (file) others = BaselineOf(*file, 0).Keep(settings, "");
    if (asJson && file) document["defaults"] = others;
    if (!asJson) AddMeanings(settings, "", others);
    if (!asJson && settings.empty()) settings = kNothing;
  }

  static void ShowRecords(Json& document, const std::optional<Side>& file, bool asJson) {
    for (Json& configuration : document["configurations"]) {
      const auto index = configuration["index"].get<std::size_t>();
      Json others = Json::object();
      Json records = Json::object();
      for (auto& [record, words] : configuration["records"].items()) {
        const std::string prefix = record + ".";
        if (file) others.update(BaselineOf(*file, index).Keep(words, prefix));
        if (!asJson) AddMeanings(words, prefix, others);
        if (!words.empty()) records[record] = std::move(words);
      }
      if (!asJson && records.empty()) records = kNothing;
      configuration["records"] = std::move(records);
      if (asJson && file) configuration["defaults"] = std::move(others);
    }
  }
};

}  // namespace

void DescribeConfiguration(Json& document, std::optional<int> only) {
  CheckConfiguration(only.value_or(0));
  if (!DeviceIsReader()) {
    document["product"] = ActiveProductName();
    document["settings"] = MirrorSettings();
    return;
  }
  Json& all = document["configurations"] = Json::array();
  for (int index = only.value_or(0); index <= only.value_or(GetMaxConfig()); ++index) {
    const SelectedConfiguration selected(index);
    all.push_back(Configuration(index));
  }
}

void AddConfigShow(Program& program) {
  program.Add<ShowConfig>("config show",
                          "Every record and field of a reader, or every setting of another product");
}

}  // namespace tavlyn::ctl
