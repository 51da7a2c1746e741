#include "tools/tavlynctl/product_settings.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string_view>

#include "api.h"
#include "core/ascii_case.h"
#include "core/text_file.h"
#include "tools/tavlynctl/fields.h"
#include "tools/tavlynctl/file_problem.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

namespace fs = std::filesystem;

struct Title {
  std::uint32_t product;
  const char* text;
};
constexpr Title kTitles[] = {{kMagstripes, "--- Sorbane Configuration Template File ---"},
                             {kSensors, "--- Sonar Configuration Template File ---"}};
constexpr std::size_t kTitleRoom = 128;

constexpr std::string_view kBlanks = " \t\r\n\f\v";

std::string TextOfFile(const std::string& path) {
  const std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  if (!file || !(text << file.rdbuf())) throw NothingIn(path);
  return text.str();
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// "name: number" or "name = number", with a comment behind it or not.
void TakeLine(std::string_view line, Json& settings) {
  line = Trimmed(line);
  if (line.empty() || line.front() == kCommentMark || line.front() == kInformationMark) return;
  const std::size_t sign = line.find_first_of(":=");
  if (sign == std::string_view::npos) return;
  const std::string_view value = Trimmed(line.substr(sign + 1));
  int number = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  if (error == std::errc()) settings[std::string(Trimmed(line.substr(0, sign)))] = number;
}

// A folder that nobody had before, so that what is written into it is one's own.
class OwnFolder {
 public:
  OwnFolder() {
    std::random_device random;
    std::error_code error;
    const fs::path all = fs::temp_directory_path(error);
    if (!error) path_ = all / ("tavlynctl-" + Hex(random(), 8) + Hex(random(), 8));
    if (error || !fs::create_directory(path_, error)) {
      throw Failure(kBadFile, "no folder for temporary files can be made in " + all.string());
    }
    fs::permissions(path_, fs::perms::owner_all, error);
  }
  ~OwnFolder() {
    std::error_code none;
    fs::remove_all(path_, none);
  }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;

  [[nodiscard]] std::string File() const { return (path_ / "settings").string(); }

 private:
  fs::path path_;
};

}  // namespace

std::uint32_t ProductOfFile(const std::string& path) {
  const std::string head = TextOfFile(path).substr(0, kTitleRoom);
  for (const Title& title : kTitles) {
    if (head.find(title.text) != std::string::npos) return title.product;
  }
  return kReaders;
}

Json SettingsOfFile(const std::string& path) {
  std::istringstream text(TextOfFile(path));
  Json settings = Json::object();
  for (std::string line; std::getline(text, line);) TakeLine(line, settings);
  return settings;
}

Json MirrorSettings() {
  const OwnFolder folder;
  const std::string file = folder.File();
  if (WriteDevCfgToFile(file.c_str()) != 1) throw Failure(kBadFile, file + " cannot be written");
  Json settings = SettingsOfFile(file);
  // A magnetic-stripe reader is told neither of these.
  settings.erase("KeyPressTime");
  settings.erase("KeyReleaseTime");
  return settings;
}

Json NamedAsIn(const Json& mirror, const Json& file, std::uint32_t product) {
  // Sonar files may name a setting in any case, the others not.
  const bool anyCase = product == kSensors;
  Json named = Json::object();
  for (const auto& [name, value] : file.items()) {
    for (const auto& [known, old] : mirror.items()) {
      if (name == known || (anyCase && SameText(name, known))) named[known] = value;
    }
  }
  return named;
}

}  // namespace tavlyn::ctl
