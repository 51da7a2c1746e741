// What manual pages take from the sources: the prototypes of the headers, the table of error words, and the
// rules of udev.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "tools/manual/mdoc.h"
#include "tools/manual/tables.h"

namespace tavlyn::manual {
namespace {

namespace fs = std::filesystem;

std::string TextOf(const fs::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

// The first sentence of a header's own comment.
std::string About(const std::string& header) {
  static const std::regex form(R"(@file\s+\* ([^.]*\.))");
  std::smatch found;
  if (!std::regex_search(header, found, form)) return {};
  return std::regex_replace(found[1].str(), std::regex(R"(\s+\* )"), " ");
}

std::string CallsOf(const std::string& header) {
  static const std::regex form(R"(TAVLYN_CALL\s+(\w+)\()");
  std::set<std::string> names;
  for (std::sregex_iterator at(header.begin(), header.end(), form), end; at != end; ++at) {
    names.insert((*at)[1]);
  }
  std::string text;
  for (const std::string& name : names) {
    text += ".Fn " + name + (name == *names.rbegin() ? " .\n" : " ,\n");
  }
  return text;
}

}  // namespace

std::string LibraryCalls() {
  std::set<fs::path> headers;
  for (const fs::directory_entry& one : fs::directory_iterator(TAVLYN_HEADERS)) headers.insert(one.path());
  std::string text;
  for (const fs::path& path : headers) {
    const std::string header = TextOf(path);
    const std::string calls = CallsOf(header);
    if (calls.empty()) continue;
    text += ".Ss api/" + path.filename().string() + "\n" + Sentences(About(header)) + ".Pp\n" + calls;
  }
  return text;
}

std::string LibraryErrors() {
  std::string items;
  const auto add = [&](const char* name, std::uint32_t value, const char* words) {
    char hex[12];
    std::snprintf(hex, sizeof hex, "0x%X", static_cast<unsigned>(value));
    items += Item("Dv TAVLYN_ERR_" + std::string(name) + " Pq " + hex, words);
  };
#define ERROR_WORD(name, value, mask, words, how, when, remedy) add(#name, value, words);
#include "tools/tavlynctl/trouble/error_words.inc"
  return List(items);
}

std::string UdevRules() {
  std::ifstream file(TAVLYN_UDEV_RULES);
  std::string text;
  std::string comment;
  std::string rules;
  const auto end = [&] {
    if (!rules.empty()) text += (text.empty() ? "" : ".Pp\n") + Sentences(comment) + Literal(rules);
    comment.clear();
    rules.clear();
  };
  for (std::string line; std::getline(file, line);) {
    if (line.empty()) continue;
    if (!line.starts_with("# ")) {
      rules += line + "\n";
      continue;
    }
    if (!rules.empty()) end();
    comment += (comment.empty() ? "" : " ") + line.substr(2);
  }
  end();
  return text;
}

}  // namespace tavlyn::manual
